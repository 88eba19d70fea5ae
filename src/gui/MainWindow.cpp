#include "gui/MainWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>
#include <cstdio>
#include <exception>

#include "core/AppContext.h"
#include "core/MainForm.h"
#include "core/Navigation.h"
#include "forms/Frm03MirrowMain.h"
#include "gui/CommandMenus.h"
#include "gui/FormBinder.h"
#include "gui/RenderWidget.h"

namespace gui {

namespace {

constexpr int kTwipsPerPixel = 15;

QString q(const std::string& s) { return QString::fromStdString(s); }

// The central area tells the window when its size changes.
class FormArea : public QWidget {
public:
    explicit FormArea(MainWindow* w) : QWidget(w), window_(w) {}

protected:
    void resizeEvent(QResizeEvent*) override { window_->layoutForm(); }

private:
    MainWindow* window_;
};

forms::Form& mainForm(core::AppContext& ctx) {
    if (!ctx.forms.find("frm03_MirrowMain"))
        ctx.forms.add(std::make_unique<forms::Frm03MirrowMain>());
    return *ctx.forms.find("frm03_MirrowMain");
}

}  // namespace

MainWindow::MainWindow(core::AppContext& ctx, QWidget* parent) : QMainWindow(parent), ctx_(ctx) {
    setObjectName("frm03_MirrowMain");
    forms::Form& form = mainForm(ctx_);
    setWindowTitle(q(form.caption()));

    area_ = new FormArea(this);
    setCentralWidget(area_);
    comment_ = new QLineEdit(area_);
    comment_->setObjectName("txtComment");
    comment_->setReadOnly(true);
    comment_->setToolTip("Click to see every comment of this session");
    comment_->installEventFilter(this);
    render_ = new RenderWidget(ctx_, area_);
    connect(render_, &RenderWidget::inputHandled, this, &MainWindow::afterInput);
    controls_ = new QWidget(area_);
    controls_->setObjectName("fraControls");
    binder_ = new FormBinder(form, controls_, true, {"txtComment"});
    binder_->afterChange = [this](const std::string&) { syncCommands(); };

    tools_ = new QToolBar("Tools", this);
    tools_->setObjectName("tbrTools");
    tools_->setToolButtonStyle(Qt::ToolButtonTextOnly);
    addToolBar(Qt::RightToolBarArea, tools_);
    menus_ = new CommandMenus(
        ctx_, menuBar(), tools_, [this](const std::string& n) { runCommand(n); }, this);
    menus_->keepOffToolbar("cmdInterruptProcess");

    progress_ = new QProgressBar(this);
    progress_->setObjectName("proMirrowMain");
    progress_->setRange(0, 100);
    progress_->setValue(0);
    progress_->setMaximumWidth(200);
    interrupt_ = new QPushButton("Stop", this);
    interrupt_->setObjectName("cmdInterruptProcess");
    interrupt_->setToolTip("Interrupt the running process");
    connect(interrupt_, &QPushButton::clicked, this, [this] { runCommand("cmdInterruptProcess"); });
    statusBar()->setObjectName("staStatusBar");
    statusBar()->addPermanentWidget(progress_);
    statusBar()->addPermanentWidget(interrupt_);
    setStatus(1, "");

    autoRotate_ = new QTimer(this);
    autoRotate_->setObjectName("timAutoRotate");
    autoRotate_->setInterval(40);
    connect(autoRotate_, &QTimer::timeout, this, [this] {
        core::timAutoRotate_Timer(ctx_);
        syncTimers();
    });
    slider_ = new QTimer(this);
    slider_->setObjectName("timSlider");
    slider_->setInterval(50);
    connect(slider_, &QTimer::timeout, this, [this] {
        core::timSlider_Timer(ctx_);
        syncTimers();
    });

    resize(1100, 800);
    syncCommands();
}

MainWindow::~MainWindow() = default;

QLabel* MainWindow::statusPanel(int panel) const {
    if (panel < 1 || panel > static_cast<int>(panels_.size())) return nullptr;
    return panels_[panel - 1];
}

void MainWindow::runCommand(const std::string& name) {
    const core::Command* c = ctx_.commands.find(name);
    if (!c || !c->handler) return;
    // The interrupt button must work while another command runs; others wait.
    if (!c->enabled) return;
    if (running_ && name != "cmdInterruptProcess") return;
    const bool outer = !running_;
    if (outer) running_ = true;
    auto handler = c->handler;  // the registry may grow while it runs
    try {
        handler(ctx_);
    } catch (const std::exception& ex) {
        std::fprintf(stderr, "%s: %s\n", name.c_str(), ex.what());
        QMessageBox::warning(this, "Error", q(name + ": " + ex.what()));
    } catch (...) {
        QMessageBox::warning(this, "Error", q(name + " failed"));
    }
    if (outer) running_ = false;
    syncCommands();
    if (ctx_.state.bolProgramEnding) close();
}

void MainWindow::afterInput() {
    syncCommands();
    if (ctx_.state.bolProgramEnding) close();
}

void MainWindow::syncTimers() {
    const auto& s = ctx_.state;
    if (s.timAutoRotateEnabled && !isMinimized()) {
        if (!autoRotate_->isActive()) autoRotate_->start();
    } else {
        autoRotate_->stop();
    }
    if (s.timSliderEnabled) {
        if (!slider_->isActive()) slider_->start();
    } else {
        slider_->stop();
    }
}

void MainWindow::syncCommands() {
    menus_->sync();
    binder_->refresh();
    if (auto* f = ctx_.forms.find("frm03_MirrowMain")) setWindowTitle(q(f->caption()));
    if (const core::Command* c = ctx_.commands.find("cmdInterruptProcess"))
        interrupt_->setEnabled(c->enabled);
    syncTimers();
}

void MainWindow::setProgress(int percent) { progress_->setValue(std::clamp(percent, 0, 100)); }

void MainWindow::setComment(const std::string& text) {
    comment_->setText(q(text));
    comment_->setCursorPosition(0);
}

void MainWindow::setStatus(int panel, const std::string& text) {
    if (panel < 1 || panel > 16) return;
    while (static_cast<int>(panels_.size()) < panel) {
        auto* l = new QLabel(this);
        l->setObjectName(QString("staStatusBar.Panel%1").arg(panels_.size() + 1));
        statusBar()->addWidget(l, panels_.empty() ? 1 : 0);
        panels_.push_back(l);
    }
    panels_[panel - 1]->setText(q(text));
}

void MainWindow::showFullComment() {
    if (forms::Form* f = ctx_.forms.find("frm17_FullComment")) {
        ctx_.ui.showModal(*f);
        return;
    }
    QDialog d(this);
    d.setObjectName("frm17_FullComment");
    d.setWindowTitle("Comments");
    auto* lay = new QVBoxLayout(&d);
    auto* text = new QPlainTextEdit(&d);
    text->setObjectName("txtFullComment");
    text->setReadOnly(true);
    QString log = q(ctx_.state.strCommentLog);
    log.replace("\r\n", "\n");
    text->setPlainText(log);
    lay->addWidget(text);
    auto* ok = new QPushButton("OK", &d);
    connect(ok, &QPushButton::clicked, &d, &QDialog::accept);
    lay->addWidget(ok, 0, Qt::AlignRight);
    d.resize(640, 400);
    d.exec();
}

void MainWindow::layoutForm() {
    // The frame drawn by the resize lets events run, which can bring another resize.
    if (inLayout_) {
        layoutAgain_ = true;
        return;
    }
    inLayout_ = true;
    do {
        layoutAgain_ = false;
        layoutOnce();
    } while (layoutAgain_);
    inLayout_ = false;
}

void MainWindow::layoutOnce() {
    auto& s = ctx_.state;
    s.windowState = isMinimized() ? 1 : 0;
    s.formWidth = area_->width() * kTwipsPerPixel;
    s.formHeight = area_->height() * kTwipsPerPixel;
    core::Form_Resize(ctx_);
    if (s.windowState == 1) return;
    const auto& L = s.layout;
    const int top = L.renderTop / kTwipsPerPixel;
    comment_->setGeometry(0, 0, area_->width(), std::max(top - 2, 1));
    render_->setGeometry(L.renderLeft / kTwipsPerPixel, top, L.renderWidth / kTwipsPerPixel,
                         L.renderHeight / kTwipsPerPixel);
    const int framesTop = std::max(L.framesTop / kTwipsPerPixel, top + render_->height());
    controls_->setGeometry(0, framesTop, area_->width(), std::max(area_->height() - framesTop, 1));
}

void MainWindow::closeEvent(QCloseEvent* e) {
    if (ctx_.state.bolProgramEnding || core::Form_QueryUnload(ctx_)) {
        e->accept();
    } else {
        e->ignore();
    }
}

void MainWindow::changeEvent(QEvent* e) {
    QMainWindow::changeEvent(e);
    if (e->type() == QEvent::WindowStateChange) layoutForm();
}

bool MainWindow::eventFilter(QObject* watched, QEvent* e) {
    if (watched == comment_ && e->type() == QEvent::MouseButtonPress) {
        showFullComment();
        return true;
    }
    return QMainWindow::eventFilter(watched, e);
}

}  // namespace gui
