#include "gui/MainWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QCursor>
#include <QDateTime>
#include <QDesktopServices>
#include <QDialog>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileInfo>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QSettings>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QUrl>
#include <QVBoxLayout>
#include <cstdio>
#include <exception>

#include "core/AppContext.h"
#include "core/MainForm.h"
#include "core/Navigation.h"
#include "forms/Frm03MirrowMain.h"
#include "gui/CommandMenus.h"
#include "gui/CommandPalette.h"
#include "gui/FileRoute.h"
#include "gui/FormBinder.h"
#include "gui/QtUi.h"
#include "gui/RecentFiles.h"
#include "gui/RenderWidget.h"
#include "persistence/WorldFiles.h"

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
    menus_->setPressRunner([this](const std::string& n, int button, int shift) {
        runPress(n, button, shift);
    });

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

    settings_ = std::make_unique<QSettings>("Tarvik", "Tarvik");
    recent_ = std::make_unique<RecentFiles>(settings_.get());
    imageViewer = [](const QString& path) {
        return QDesktopServices::openUrl(QUrl::fromLocalFile(path));
    };
    setAcceptDrops(true);
    render_->passShortcut(QKeySequence("Ctrl+Shift+P"));
    registerWindowCommands();
    ctx_.windowSettingsChanged = [this](core::AppContext&) { applyWindowSettings(); };

    resize(1100, 800);
    syncCommands();
    recentMenu_ = menus_->ensureMenu("File")->addMenu("Recent Files");
    recentMenu_->setObjectName("menu:File/Recent Files");
    rebuildRecentMenu();
}

MainWindow::~MainWindow() {
    // The context outlives the window.
    ctx_.windowSettingsChanged = nullptr;
}

QLabel* MainWindow::statusPanel(int panel) const {
    if (panel < 1 || panel > static_cast<int>(panels_.size())) return nullptr;
    return panels_[panel - 1];
}

QtUi* MainWindow::qtUi() const { return dynamic_cast<QtUi*>(&ctx_.ui); }

void MainWindow::registerWindowCommands() {
    auto add = [this](const char* name, const char* caption, const char* menu, const char* shortcut,
                      void (MainWindow::*act)()) {
        if (ctx_.commands.find(name)) return;
        QPointer<MainWindow> self(this);
        core::Command c;
        c.name = name;
        c.caption = caption;
        c.menuPath = menu;
        c.shortcut = shortcut;
        c.handler = [self, act](core::AppContext&) {
            if (self) (self.data()->*act)();
        };
        ctx_.commands.add(std::move(c));
    };
    add(core::kFileMenuCommand, "File menu", "", "", &MainWindow::popUpFileMenu);
    menus_->keepOffToolbar(core::kFileMenuCommand);
    add(core::kScreenshotCommand, "Screenshot to image viewer", "View", "",
        &MainWindow::screenshotToViewer);
    add("mnuCommandPalette", "Command Palette...", "View", "Ctrl+Shift+P",
        &MainWindow::showCommandPalette);
}

void MainWindow::runCommand(const std::string& name) {
    const core::Command* c = ctx_.commands.find(name);
    if (!c || !c->handler) return;
    // The interrupt button must work while another command runs; others wait.
    if (!c->enabled) return;
    if (running_ && name != "cmdInterruptProcess") return;
    runGuarded(name, c->handler);  // a copy: the registry may grow while it runs
}

void MainWindow::runPress(const std::string& name, int button, int shift) {
    const core::Command* c = ctx_.commands.find(name);
    const core::Procedure* press = ctx_.procedures.find(name + "_MouseDown");
    if (!c || !c->enabled || !press || running_) return;
    auto body = press->body;
    runGuarded(name, [body, button, shift](core::AppContext& a) {
        std::vector<core::Value> args{core::Value(button), core::Value(shift)};
        body(a, args);
    });
}

void MainWindow::runGuarded(const std::string& name,
                            const std::function<void(core::AppContext&)>& handler) {
    const bool outer = !running_;
    if (outer) running_ = true;
    QtUi* port = qtUi();
    if (port && outer) port->takeLastOpened();
    try {
        handler(ctx_);
    } catch (const std::exception& ex) {
        std::fprintf(stderr, "%s: %s\n", name.c_str(), ex.what());
        QMessageBox::warning(this, "Error", q(name + ": " + ex.what()));
    } catch (...) {
        QMessageBox::warning(this, "Error", q(name + " failed"));
    }
    if (outer) running_ = false;
    // A file that a reading command took from its dialog goes to the recent files.
    if (port && outer) {
        const auto opened = port->takeLastOpened();
        if (opened && readsFiles(name) && ctx_.state.bolFileCancelled == 0) {
            recent_->add(QString::fromStdString(*opened), q(name));
            rebuildRecentMenu();
        }
    }
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

// ---- settings, files, palette ----------------------------------------------------

void MainWindow::applyWindowSettings() {
    // What the window has around the form, with the status bar as it is about to be.
    const bool was = !statusBar()->isHidden(), want = ctx_.settings.statusBarVisible;
    int aroundW = width() - area_->width(), aroundH = height() - area_->height();
    if (was && !want) aroundH -= statusBar()->height();
    if (!was && want) aroundH += statusBar()->sizeHint().height();
    statusBar()->setVisible(want);
    const auto& s = ctx_.state;
    const int w = s.formWidth > 0 ? s.formWidth / kTwipsPerPixel : area_->width();
    const int h = s.formHeight > 0 ? s.formHeight / kTwipsPerPixel : area_->height();
    if (!isMinimized() && w > 0 && h > 0) resize(w + aroundW, h + aroundH);
    layoutForm();
}

bool MainWindow::openFile(const std::string& path, bool add) {
    const QFileInfo info(q(path));
    if (!info.isFile()) {
        ctx_.ui.msgBox("The file cannot be found: " + path, ui::Buttons::OK, "File does not exist");
        return false;
    }
    if (running_) return false;
    const std::string full = QDir::cleanPath(info.absoluteFilePath()).toStdString();
    const auto route = routeFor(ctx_.commands, full, add);
    if (!route) {
        const std::string name = info.fileName().toStdString();
        ctx_.ui.msgBox(knownExtension(extensionOf(full))
                           ? "This kind of file cannot be opened yet: " + name
                           : "Tarvik does not read this kind of file: " + name,
                       ui::Buttons::OK, "Open");
        return false;
    }
    if (route->world) {
        running_ = true;
        const bool ok = persistence::p_subAssFileOpen(ctx_, full);
        running_ = false;
        if (ok) {
            recent_->add(q(full), q(route->command));
            rebuildRecentMenu();
        }
        syncCommands();
        return ok;
    }
    QtUi* port = qtUi();
    if (!port) return false;
    port->handOverNextOpen(full);
    runCommand(route->command);
    port->dropHandOver();
    return true;
}

void MainWindow::openRecent(const QString& path, const QString& command) {
    if (!QFileInfo(path).isFile()) {
        ctx_.ui.msgBox("The file cannot be found: " + path.toStdString(), ui::Buttons::OK,
                       "File does not exist");
        recent_->remove(path);
        rebuildRecentMenu();
        return;
    }
    const std::string name = command.toStdString();
    const core::Command* c = ctx_.commands.find(name);
    if (!c || !c->enabled) {
        // the command is gone or busy: the extension decides
        openFile(path.toStdString());
        return;
    }
    if (name == "mnuSTATEFileOpenInitialize") {
        openFile(path.toStdString());
        return;
    }
    if (QtUi* port = qtUi()) {
        port->handOverNextOpen(path.toStdString());
        runCommand(name);
        port->dropHandOver();
    }
}

void MainWindow::rebuildRecentMenu() {
    if (!recentMenu_) return;
    recentMenu_->clear();
    const auto& all = recent_->entries();
    for (int i = 0; i < static_cast<int>(all.size()); ++i) {
        const RecentFile f = all[i];
        QAction* a = recentMenu_->addAction(RecentFiles::menuText(i, f));
        a->setObjectName(QString("mnuRecentFile%1").arg(i + 1));
        a->setToolTip(f.path);
        connect(a, &QAction::triggered, this, [this, f] { openRecent(f.path, f.command); });
    }
    if (all.empty()) {
        recentMenu_->addAction("(no files yet)")->setEnabled(false);
        return;
    }
    recentMenu_->addSeparator();
    QAction* clear = recentMenu_->addAction("Clear Recent Files");
    clear->setObjectName("mnuClearRecentFiles");
    connect(clear, &QAction::triggered, this, [this] {
        recent_->clear();
        rebuildRecentMenu();
    });
}

void MainWindow::dragEnterEvent(QDragEnterEvent* e) {
    const QMimeData* m = e->mimeData();
    if (m && m->hasUrls())
        for (const QUrl& u : m->urls())
            if (u.isLocalFile()) {
                e->acceptProposedAction();
                return;
            }
    e->ignore();
}

void MainWindow::dropEvent(QDropEvent* e) {
    const QMimeData* m = e->mimeData();
    if (!m || !m->hasUrls()) return e->ignore();
    QStringList files;
    for (const QUrl& u : m->urls())
        if (u.isLocalFile()) files << u.toLocalFile();
    if (files.isEmpty()) return e->ignore();
    e->acceptProposedAction();
    // Ctrl keeps the scene; several files: the first opens, the others are added.
    const bool addFirst = e->modifiers().testFlag(Qt::ControlModifier);
    // After the drop has finished: the readers show dialogs of their own.
    QTimer::singleShot(0, this, [this, files, addFirst] {
        for (int i = 0; i < files.size(); ++i) openFile(files[i].toStdString(), addFirst || i > 0);
    });
}

void MainWindow::showCommandPalette() {
    CommandPalette palette(ctx_.commands, this);
    if (palette.exec() != QDialog::Accepted || palette.chosen().empty()) return;
    // The palette ran as a command itself: the choice runs once that has ended.
    const std::string chosen = palette.chosen();
    QTimer::singleShot(0, this, [this, chosen] { runCommand(chosen); });
}

void MainWindow::popUpFileMenu() {
    QMenu* file = menus_->menu("File");
    if (!file) return;
    const QPoint cursor = render_->mapFromGlobal(QCursor::pos());
    const QPoint at = render_->rect().contains(cursor) ? cursor : render_->rect().center();
    file->popup(render_->mapToGlobal(at));
}

void MainWindow::screenshotToViewer() {
    const QImage picture = render_->grabFramebuffer();
    const QString name = "Tarvik screenshot " +
                         QDateTime::currentDateTime().toString("yyyy-MM-dd HH-mm-ss-zzz") + ".png";
    const QString path = QDir(QDir::tempPath()).filePath(name);
    if (picture.isNull() || !picture.save(path, "PNG")) {
        ctx_.ui.msgBox("The screenshot could not be saved: " + path.toStdString(), ui::Buttons::OK,
                       "Screenshot");
        return;
    }
    lastScreenshot_ = path;
    if (!imageViewer || !imageViewer(path))
        ctx_.ui.msgBox("The screenshot was saved as " + path.toStdString() +
                           " but no picture viewer could show it",
                       ui::Buttons::OK, "Screenshot");
}

}  // namespace gui
