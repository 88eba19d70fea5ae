#include "gui/FormDialog.h"

#include "gui/FormBinder.h"

namespace gui {

FormDialog::FormDialog(forms::Form& form, QWidget* parent) : QDialog(parent), form_(form) {
    form_.ensureLoaded();
    setObjectName(QString::fromStdString(form_.name()));
    setWindowTitle(QString::fromStdString(form_.caption()));
    binder_ = new FormBinder(form_, this);
    binder_->afterChange = [this](const std::string& control) {
        setWindowTitle(QString::fromStdString(form_.caption()));
        if (form_.shown()) return;
        action_ = control == form_.acceptButton() ? ui::FormAction::Accept : ui::FormAction::Close;
        done(action_ == ui::FormAction::Accept ? QDialog::Accepted : QDialog::Rejected);
    };
}

ui::FormAction FormDialog::run() {
    form_.setShown(true);
    binder_->refresh();
    exec();
    form_.setShown(false);
    return action_;
}

void FormDialog::reject() {
    if (form_.shown()) {
        form_.onQueryClose();
        form_.hide();
        action_ = ui::FormAction::Close;
    }
    QDialog::reject();
}

}  // namespace gui
