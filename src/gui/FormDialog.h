#pragma once
// A form shown modally as a real dialog built from its declaration.

#include <QDialog>

#include "forms/Form.h"
#include "ui/Ui.h"

namespace gui {

class FormBinder;

class FormDialog : public QDialog {
    Q_OBJECT
public:
    FormDialog(forms::Form& form, QWidget* parent);
    FormBinder& binder() { return *binder_; }
    // Runs the dialog until a handler hides the form (Accept when that was the
    // form's accept button) or it is closed by its frame (Close).
    ui::FormAction run();

protected:
    void reject() override;  // the frame's close button and Escape

private:
    forms::Form& form_;
    FormBinder* binder_ = nullptr;
    ui::FormAction action_ = ui::FormAction::Close;
};

}  // namespace gui
