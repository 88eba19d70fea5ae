#pragma once
// Real widgets for a form's declared controls, bound both ways: a person's
// change goes to Form::setFromUser (so the form's handlers run as they do for
// scripts), and after every handler each widget is refreshed from its control,
// since a handler may change any control of the form.

#include <QObject>
#include <QWidget>
#include <functional>
#include <map>
#include <set>
#include <string>

#include "forms/Form.h"

class QLayout;
class QBoxLayout;

namespace gui {

class FormBinder : public QObject {
    Q_OBJECT
public:
    // Builds the widgets of every control except those named in `skip` into
    // `container` (which gets a vertical layout, or a horizontal one when
    // `horizontal`). Frames become group boxes holding their controls.
    FormBinder(forms::Form& form, QWidget* container, bool horizontal = false,
               std::set<std::string> skip = {});

    forms::Form& form() { return form_; }
    QWidget* widget(const std::string& control) const;
    // Copies every control's state into its widget.
    void refresh();
    // Runs after each change a person made (and its handler), with the control's name.
    std::function<void(const std::string& control)> afterChange;

private:
    void build(QWidget* container, QBoxLayout* layout, const std::string& frame);
    QWidget* makeWidget(forms::Control& c, QWidget* parent);
    void userChange(const std::string& control, const std::string& value);
    void userClick(const std::string& control);
    void refreshOne(const forms::Control& c, QWidget* w);

    forms::Form& form_;
    std::set<std::string> skip_;
    std::map<std::string, QWidget*> widgets_;
    bool syncing_ = false;
};

}  // namespace gui
