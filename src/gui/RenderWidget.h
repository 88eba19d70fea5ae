#pragma once
// picRenderWindow: the scene drawn by the renderer inside the main window. Keys,
// clicks, moves and wheel turns go to the application's input handlers, the
// same ones scripts drive.

#include <QKeySequence>
#include <QOpenGLWidget>
#include <memory>
#include <string>
#include <vector>

#include "engine/Engine.h"

namespace core {
class AppContext;
}
namespace render {
class Renderer;
}

namespace gui {

class RenderWidget : public QOpenGLWidget {
    Q_OBJECT
public:
    RenderWidget(core::AppContext& ctx, QWidget* parent = nullptr);
    ~RenderWidget() override;

    // Asks for a frame: the texts queued since the last one are shown in it.
    void requestFrame();
    // Null until the first paint made the GL context.
    render::Renderer* renderer() { return renderer_.get(); }
    // Why the renderer could not start ("" when it did or has not tried).
    const std::string& glError() const { return glError_; }
    // A window shortcut that works over the scene too (every other key belongs to the key table).
    void passShortcut(const QKeySequence& k) { passed_.push_back(k); }
    // Frames drawn so far.
    quint64 frames() const { return frames_; }

signals:
    // After each key, click, move or wheel turn the handlers took.
    void inputHandled();

protected:
    void initializeGL() override;
    void paintGL() override;
    void resizeGL(int w, int h) override;
    bool event(QEvent* e) override;
    void keyPressEvent(QKeyEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    void mouseDoubleClickEvent(QMouseEvent* e) override;
    void wheelEvent(QWheelEvent* e) override;

private:
    void releaseGl();

    core::AppContext& ctx_;
    std::unique_ptr<render::Renderer> renderer_;
    std::vector<engine::TextItem> texts_;
    bool frameRequested_ = true;
    std::string glError_;
    quint64 frames_ = 0;
    std::vector<QKeySequence> passed_;
};

}  // namespace gui
