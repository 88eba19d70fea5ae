#pragma once
// A dialog as plain logic: its controls and their handlers, no toolkit.
// The window builds a real dialog from the declaration and binds both ways;
// scripts set the same controls by name.

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace forms {

enum class ControlKind { Label, TextBox, ComboBox, ListBox, CheckBox, OptionButton, CommandButton, Frame, Slider };

struct Control {
    ControlKind kind = ControlKind::Label;
    std::string name;
    std::string caption;
    std::string frame;  // name of the frame it sits in ("" for the form)
    std::vector<std::string> items;  // combo and list boxes
    std::string text;   // text, combo and list value
    int value = 0;      // check box 0/1/2, option 0/1, slider value
    int min = 0, max = 100, smallChange = 1;
    bool enabled = true;
    bool visible = true;
    // Runs on a person's change (click, edit, selection).
    std::function<void()> onChange;
};

class Form {
public:
    explicit Form(std::string name, std::string caption = {});
    virtual ~Form() = default;

    const std::string& name() const { return name_; }
    const std::string& caption() const { return caption_; }
    void setCaption(std::string c) { caption_ = std::move(c); }

    // Declaration, in display order.
    Control& add(ControlKind kind, const std::string& name, const std::string& caption = {},
                 const std::string& frame = {});
    Control* find(const std::string& name);
    const Control* find(const std::string& name) const;
    Control& at(const std::string& name);  // throws std::out_of_range for an unknown name
    const std::vector<std::unique_ptr<Control>>& controls() const { return controls_; }

    // Setting a control as a person would, running its handler as the dialogs rely on:
    // an option button only when it was off (and the others of its frame go off),
    // a check box only on a change, a text or combo box on a change, a command
    // button always. Returns false for a bad value.
    bool setFromUser(const std::string& control, const std::string& value);
    // Value as scripts read it: text for text, combo and list boxes; 1/0/2 for
    // option and check boxes; the number for sliders; the caption for the others.
    std::string valueOf(const std::string& control) const;
    // A click of a command button.
    void click(const std::string& button);

    // The same from code (handlers run the same way).
    void setOption(const std::string& name);
    void setCheck(const std::string& name, int v);
    void setText(const std::string& name, const std::string& text);
    int checkValue(const std::string& name) const;
    bool optionValue(const std::string& name) const;
    const std::string& text(const std::string& name) const;

    // Load runs once before the form is first shown or touched.
    void ensureLoaded();
    bool loaded() const { return loaded_; }
    // Name of the button that accepts the form ("cmdAccept", "cmdOK", ...).
    virtual std::string acceptButton() const { return "cmdOK"; }
    // Closing by the frame (the X): default hides it; forms set their cancel flags here.
    virtual void onQueryClose() {}
    // The modal loop ends when the handler of a button hides the form.
    void hide() { shown_ = false; }
    void setShown(bool s) { shown_ = s; }
    bool shown() const { return shown_; }

protected:
    virtual void onLoad() {}

private:
    std::string name_;
    std::string caption_;
    std::vector<std::unique_ptr<Control>> controls_;
    std::map<std::string, Control*> byName_;
    bool loaded_ = false;
    bool shown_ = false;
};

// Every form of the open window, by name.
class FormRegistry {
public:
    void add(std::unique_ptr<Form> form);
    Form* find(const std::string& name);
    template <class T>
    T& get(const std::string& name) {
        return dynamic_cast<T&>(*find(name));
    }
    std::vector<Form*> all();

private:
    std::vector<std::unique_ptr<Form>> forms_;
};

}  // namespace forms
