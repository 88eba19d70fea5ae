#pragma once
// The Ui port with real Qt dialogs, drawing into the main window.

#include <QElapsedTimer>
#include <QPointer>
#include <optional>
#include <string>

#include "ui/Ui.h"

class QWidget;

namespace gui {

class MainWindow;

class QtUi : public ui::Ui {
public:
    QtUi() = default;
    // The window the dialogs belong to and the port's widgets live in. Until it
    // is attached the port shows dialogs without a parent and keeps the rest.
    void attach(MainWindow* window);

    ui::Answer msgBox(const std::string& text, ui::Buttons buttons,
                      const std::string& title) override;
    std::optional<std::string> inputBox(const std::string& prompt, const std::string& title,
                                        const std::string& defaultText) override;
    std::optional<std::string> openFile(const ui::FileRequest& req) override;
    std::optional<std::string> saveFile(const ui::FileRequest& req) override;
    std::optional<engine::Rgb> chooseColour(engine::Rgb initial) override;
    ui::FormAction showModal(forms::Form& form) override;

    void setPointer(int shape) override;
    int pointer() const override { return pointer_; }
    void setProgress(int percent) override;
    void setComment(const std::string& text) override;
    void setStatus(int panel, const std::string& text) override;
    void pumpEvents() override;
    void beep() override;
    bool openExternal(const std::string& path) override;
    void setFocus() override;
    void requestFrame() override;
    ui::DateTime now() const override;

    // The next open dialog answers with `path` without showing: a file dropped
    // on the window or picked from the recent files goes to the command's own
    // dialog this way.
    void handOverNextOpen(const std::string& path) { handOver_ = path; }
    // Forgets a handed-over path no dialog took.
    void dropHandOver() { handOver_.reset(); }
    // The file the last open dialog gave (handed over or chosen), then forgets it.
    std::optional<std::string> takeLastOpened();

private:
    QWidget* parentWidget() const;

    QPointer<MainWindow> window_;
    int pointer_ = 1;
    bool waitCursor_ = false;
    std::optional<std::string> handOver_;
    std::optional<std::string> lastOpened_;
    QElapsedTimer sincePump_;
};

}  // namespace gui
