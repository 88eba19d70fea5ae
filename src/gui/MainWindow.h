#pragma once
// frm03_MirrowMain: the main window. Menus and tool buttons come from the
// command registry, the controls below the scene from the main form's
// declaration; txtComment above the scene, staStatusBar with its panels and
// proMirrowMain with cmdInterruptProcess below.

#include <QMainWindow>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class QLabel;
class QMenu;
class QSettings;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QTimer;
class QToolBar;

namespace core {
class AppContext;
}

namespace gui {

class CommandMenus;
class FormBinder;
class QtUi;
class RecentFiles;
class RenderWidget;

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit MainWindow(core::AppContext& ctx, QWidget* parent = nullptr);
    ~MainWindow() override;

    RenderWidget* renderWidget() const { return render_; }
    CommandMenus& commandMenus() const { return *menus_; }
    FormBinder* mainFormBinder() const { return binder_; }
    QLineEdit* commentBox() const { return comment_; }
    QProgressBar* progressBar() const { return progress_; }
    QLabel* statusPanel(int panel) const;

    // Runs a registered command as a click would: a failure is reported and the
    // window stays usable.
    void runCommand(const std::string& name);
    // A tool button's press by another button than the left, through its
    // "<command>_MouseDown" procedure.
    void runPress(const std::string& name, int button, int shift);
    // Picks up commands registered since the last call and the registry's and the
    // main form's current state.
    void syncCommands();

    void setProgress(int percent);
    void setComment(const std::string& text);
    void setStatus(int panel, const std::string& text);
    // frm17_FullComment: the whole comment log of the run.
    void showFullComment();
    // Lays the window out for its size (Form_Resize) and places the scene.
    void layoutForm();
    // The settings changed the form's size or the status bar: the window follows.
    void applyWindowSettings();

    // Opens a file without a dialog: a world by association, any other file
    // through the command that reads its extension (its dialog gets the path).
    // With `add` the scene is kept. False when nothing could read it.
    bool openFile(const std::string& path, bool add = false);
    RecentFiles& recentFiles() const { return *recent_; }
    QMenu* recentMenu() const { return recentMenu_; }
    // Ctrl+Shift+P: the search box over the commands; the chosen one runs after it closes.
    void showCommandPalette();
    // Key M: the file menu at the mouse.
    void popUpFileMenu();
    // Key P: the scene saved as a picture and shown in the image viewer.
    void screenshotToViewer();
    // Shows a saved screenshot (the desktop's viewer unless replaced); false when it could not.
    std::function<bool(const QString& path)> imageViewer;
    // The last screenshot written ("" before the first).
    const QString& lastScreenshot() const { return lastScreenshot_; }

protected:
    void closeEvent(QCloseEvent* e) override;
    void dragEnterEvent(QDragEnterEvent* e) override;
    void dropEvent(QDropEvent* e) override;
    void changeEvent(QEvent* e) override;
    bool eventFilter(QObject* watched, QEvent* e) override;

private:
    void runGuarded(const std::string& name,
                    const std::function<void(core::AppContext&)>& handler);
    void layoutOnce();
    // After the handlers of a key or a click: the window follows the state they left.
    void afterInput();
    // Starts and stops timAutoRotate and timSlider as the state asks.
    void syncTimers();
    void registerWindowCommands();
    void rebuildRecentMenu();
    void openRecent(const QString& path, const QString& command);
    QtUi* qtUi() const;

    core::AppContext& ctx_;
    QWidget* area_ = nullptr;
    QLineEdit* comment_ = nullptr;
    RenderWidget* render_ = nullptr;
    QWidget* controls_ = nullptr;
    FormBinder* binder_ = nullptr;
    QToolBar* tools_ = nullptr;
    CommandMenus* menus_ = nullptr;
    QProgressBar* progress_ = nullptr;
    QPushButton* interrupt_ = nullptr;
    std::vector<QLabel*> panels_;
    std::unique_ptr<QSettings> settings_;
    std::unique_ptr<RecentFiles> recent_;
    QMenu* recentMenu_ = nullptr;
    QString lastScreenshot_;
    QTimer* autoRotate_ = nullptr;
    QTimer* slider_ = nullptr;
    bool running_ = false;
    bool inLayout_ = false;
    bool layoutAgain_ = false;
};

}  // namespace gui
