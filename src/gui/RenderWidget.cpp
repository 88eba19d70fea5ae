#include "gui/RenderWidget.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QOpenGLContext>
#include <QWheelEvent>
#include <cstdio>

#include "core/AppContext.h"
#include "gui/InputCodes.h"
#include "render/Renderer.h"

namespace gui {

RenderWidget::RenderWidget(core::AppContext& ctx, QWidget* parent)
    : QOpenGLWidget(parent), ctx_(ctx) {
    setObjectName("picRenderWindow");
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setMinimumSize(1, 1);
}

RenderWidget::~RenderWidget() { releaseGl(); }

void RenderWidget::releaseGl() {
    if (!renderer_) return;
    makeCurrent();
    renderer_->release();
    renderer_.reset();
    doneCurrent();
}

void RenderWidget::initializeGL() {
    renderer_ = std::make_unique<render::Renderer>();
    glError_.clear();
    if (!renderer_->initialize(&glError_)) {
        std::fprintf(stderr, "picRenderWindow: %s\n", glError_.c_str());
        renderer_.reset();
    }
    connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, &RenderWidget::releaseGl,
            Qt::UniqueConnection);
}

void RenderWidget::resizeGL(int w, int h) {
    // Picking works in the widget's pixels: keep the engine's window the widget's size.
    ctx_.engine.set_window_size(std::max(w, 1), std::max(h, 1));
}

void RenderWidget::requestFrame() {
    frameRequested_ = true;
    update();
}

void RenderWidget::paintGL() {
    if (!renderer_) return;
    // Texts last one frame; a repaint the window system asks for shows the last ones again.
    std::vector<engine::TextItem> fresh = ctx_.engine.take_queued_texts();
    if (frameRequested_ || !fresh.empty()) texts_ = std::move(fresh);
    frameRequested_ = false;
    const qreal dpr = devicePixelRatioF();
    const int w = static_cast<int>(width() * dpr + 0.5), h = static_cast<int>(height() * dpr + 0.5);
    // Never framebuffer 0: the widget draws into its own framebuffer object.
    renderer_->render(ctx_.engine, texts_, w, h, defaultFramebufferObject());
    ++frames_;
}

bool RenderWidget::event(QEvent* e) {
    // Every key pressed over the scene belongs to the key table, not to menu shortcuts.
    if (e->type() == QEvent::ShortcutOverride && ctx_.input.onKeyDown) {
        auto* k = static_cast<QKeyEvent*>(e);
        const QKeySequence pressed(k->keyCombination());
        for (const QKeySequence& s : passed_)
            if (s == pressed) return QOpenGLWidget::event(e);
        if (keyCodeOf(k->key()) != 0) {
            e->accept();
            return true;
        }
    }
    return QOpenGLWidget::event(e);
}

void RenderWidget::keyPressEvent(QKeyEvent* e) {
    const int code = keyCodeOf(e->key());
    if (code == 0 || !ctx_.input.onKeyDown) {
        QOpenGLWidget::keyPressEvent(e);
        return;
    }
    ctx_.input.onKeyDown(ctx_, code, shiftMaskOf(e->modifiers()));
    emit inputHandled();
}

void RenderWidget::mousePressEvent(QMouseEvent* e) {
    setFocus(Qt::MouseFocusReason);
    if (!ctx_.input.onMouseDown) return;
    const QPointF p = e->position();
    ctx_.input.onMouseDown(ctx_, buttonMaskOf(e->button()), shiftMaskOf(e->modifiers()), p.x(),
                           p.y());
    emit inputHandled();
}

void RenderWidget::mouseMoveEvent(QMouseEvent* e) {
    if (!ctx_.input.onMouseMove) return;
    const QPointF p = e->position();
    ctx_.input.onMouseMove(ctx_, buttonMaskOf(e->buttons()), shiftMaskOf(e->modifiers()), p.x(),
                           p.y());
    if (e->buttons() != Qt::NoButton) emit inputHandled();
}

void RenderWidget::mouseReleaseEvent(QMouseEvent* e) {
    if (!ctx_.input.onMouseUp) return;
    const QPointF p = e->position();
    ctx_.input.onMouseUp(ctx_, buttonMaskOf(e->button()), shiftMaskOf(e->modifiers()), p.x(),
                         p.y());
    emit inputHandled();
}

void RenderWidget::mouseDoubleClickEvent(QMouseEvent* e) {
    if (!ctx_.input.onDblClick) {
        mousePressEvent(e);
        return;
    }
    const QPointF p = e->position();
    ctx_.input.onDblClick(ctx_, p.x(), p.y());
    emit inputHandled();
}

void RenderWidget::wheelEvent(QWheelEvent* e) {
    if (!ctx_.input.onWheel) return;
    const int delta = e->angleDelta().y();
    if (delta == 0) return;
    const QPointF p = e->position();
    ctx_.input.onWheel(ctx_, delta, p.x(), p.y());
    emit inputHandled();
}

}  // namespace gui
