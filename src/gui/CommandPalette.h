#pragma once
// The command palette (Ctrl+Shift+P): a search box over every command of the
// window; Enter or a double click chooses one. The window runs the choice once
// the palette has closed, so the command's own dialogs stand alone.

#include <QDialog>
#include <string>

class QLineEdit;
class QListWidget;

namespace core {
class CommandRegistry;
}

namespace gui {

class CommandPalette : public QDialog {
    Q_OBJECT
public:
    CommandPalette(const core::CommandRegistry& commands, QWidget* parent);

    QLineEdit* searchBox() const { return search_; }
    QListWidget* list() const { return list_; }
    // The command chosen ("" when the palette was closed without a choice).
    const std::string& chosen() const { return chosen_; }

protected:
    bool eventFilter(QObject* watched, QEvent* e) override;

private:
    void refill();
    void choose();

    const core::CommandRegistry& commands_;
    QLineEdit* search_ = nullptr;
    QListWidget* list_ = nullptr;
    std::string chosen_;
};

}  // namespace gui
