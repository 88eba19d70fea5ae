#pragma once
// frm03_MirrowMain: the main window. Menus and tool buttons come from the
// command registry, the controls below the scene from the main form's
// declaration; txtComment above the scene, staStatusBar with its panels and
// proMirrowMain with cmdInterruptProcess below.

#include <QMainWindow>
#include <string>
#include <vector>

class QLabel;
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

protected:
    void closeEvent(QCloseEvent* e) override;
    void changeEvent(QEvent* e) override;
    bool eventFilter(QObject* watched, QEvent* e) override;

private:
    void layoutOnce();
    // After the handlers of a key or a click: the window follows the state they left.
    void afterInput();
    // Starts and stops timAutoRotate and timSlider as the state asks.
    void syncTimers();

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
    QTimer* autoRotate_ = nullptr;
    QTimer* slider_ = nullptr;
    bool running_ = false;
    bool inLayout_ = false;
    bool layoutAgain_ = false;
};

}  // namespace gui
