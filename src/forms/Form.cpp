#include "forms/Form.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <stdexcept>

namespace forms {

namespace {

std::string lower(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return s;
}

// 1/0 or true/false, as a person's tick or untick.
bool parseOnOff(const std::string& value, int& out) {
    std::string v = lower(value);
    if (v == "1" || v == "true") {
        out = 1;
        return true;
    }
    if (v == "0" || v == "false") {
        out = 0;
        return true;
    }
    return false;
}

bool parseNumber(const std::string& value, double& out) {
    const char* b = value.data();
    const char* e = b + value.size();
    if (b != e && *b == '+') ++b;
    auto res = std::from_chars(b, e, out);
    return res.ec == std::errc() && res.ptr == e && std::isfinite(out);
}

void run(Control& c) {
    if (c.onChange) c.onChange();
}

}  // namespace

Form::Form(std::string name, std::string caption)
    : name_(std::move(name)), caption_(std::move(caption)) {}

Control& Form::add(ControlKind kind, const std::string& name, const std::string& caption,
                   const std::string& frame) {
    auto c = std::make_unique<Control>();
    c->kind = kind;
    c->name = name;
    c->caption = caption;
    c->frame = frame;
    Control& ref = *c;
    controls_.push_back(std::move(c));
    byName_[name] = &ref;
    return ref;
}

Control* Form::find(const std::string& name) {
    auto it = byName_.find(name);
    return it == byName_.end() ? nullptr : it->second;
}

const Control* Form::find(const std::string& name) const {
    auto it = byName_.find(name);
    return it == byName_.end() ? nullptr : it->second;
}

Control& Form::at(const std::string& name) {
    Control* c = find(name);
    if (!c) throw std::out_of_range("form " + name_ + " has no control " + name);
    return *c;
}

void Form::ensureLoaded() {
    if (loaded_) return;
    loaded_ = true;  // before onLoad: a load that sets controls must not load again
    onLoad();
}

bool Form::setFromUser(const std::string& control, const std::string& value) {
    Control* c = find(control);
    if (!c) return false;
    ensureLoaded();
    switch (c->kind) {
        case ControlKind::OptionButton: {
            int on = 0;
            if (!parseOnOff(value, on)) return false;
            if (on) {
                setOption(control);
            } else {
                // An option cannot be clicked off; taking it off runs nothing.
                c->value = 0;
            }
            return true;
        }
        case ControlKind::CheckBox: {
            int on = 0;
            if (!parseOnOff(value, on)) return false;
            setCheck(control, on);
            return true;
        }
        case ControlKind::TextBox:
        case ControlKind::ComboBox:
            setText(control, value);
            return true;
        case ControlKind::ListBox: {
            auto it = std::find(c->items.begin(), c->items.end(), value);
            if (it == c->items.end()) return false;
            int index = static_cast<int>(it - c->items.begin());
            if (c->text == value && c->value == index) return true;
            c->text = value;
            c->value = index;
            run(*c);
            return true;
        }
        case ControlKind::Slider: {
            double d = 0;
            if (!parseNumber(value, d)) return false;
            long v = std::lround(d);
            if (v < c->min || v > c->max) return false;
            if (c->value == v) return true;
            c->value = static_cast<int>(v);
            run(*c);
            return true;
        }
        case ControlKind::CommandButton:
            run(*c);
            return true;
        case ControlKind::Label:
        case ControlKind::Frame:
            return false;
    }
    return false;
}

std::string Form::valueOf(const std::string& control) const {
    const Control* c = find(control);
    if (!c) return {};
    switch (c->kind) {
        case ControlKind::TextBox:
        case ControlKind::ComboBox:
        case ControlKind::ListBox:
            return c->text;
        case ControlKind::CheckBox:
        case ControlKind::OptionButton:
        case ControlKind::Slider:
            return std::to_string(c->value);
        case ControlKind::Label:
        case ControlKind::Frame:
        case ControlKind::CommandButton:
            return c->caption;
    }
    return {};
}

void Form::click(const std::string& button) {
    Control& c = at(button);
    ensureLoaded();
    run(c);
}

void Form::setOption(const std::string& name) {
    Control& c = at(name);
    if (c.kind != ControlKind::OptionButton) {
        setCheck(name, 1);
        return;
    }
    if (c.value) return;  // clicking an option that is already on does nothing
    for (auto& other : controls_) {
        if (other.get() != &c && other->kind == ControlKind::OptionButton &&
            other->frame == c.frame)
            other->value = 0;
    }
    c.value = 1;
    run(c);
}

void Form::setCheck(const std::string& name, int v) {
    Control& c = at(name);
    if (c.kind == ControlKind::OptionButton) {
        if (v) {
            setOption(name);
        } else {
            c.value = 0;
        }
        return;
    }
    if (c.value == v) return;
    c.value = v;
    run(c);
}

void Form::setText(const std::string& name, const std::string& text) {
    Control& c = at(name);
    if (c.text == text) return;
    c.text = text;
    if (c.kind == ControlKind::ListBox) {
        auto it = std::find(c.items.begin(), c.items.end(), text);
        c.value = it == c.items.end() ? -1 : static_cast<int>(it - c.items.begin());
    }
    run(c);
}

int Form::checkValue(const std::string& name) const {
    const Control* c = find(name);
    return c ? c->value : 0;
}

bool Form::optionValue(const std::string& name) const {
    const Control* c = find(name);
    return c && c->value != 0;
}

const std::string& Form::text(const std::string& name) const {
    static const std::string empty;
    const Control* c = find(name);
    return c ? c->text : empty;
}

// ---- FormRegistry --------------------------------------------------------------

void FormRegistry::add(std::unique_ptr<Form> form) {
    if (!form) return;
    // A form registered again under the same name replaces the old one.
    for (auto& f : forms_) {
        if (f->name() == form->name()) {
            f = std::move(form);
            return;
        }
    }
    forms_.push_back(std::move(form));
}

Form* FormRegistry::find(const std::string& name) {
    for (auto& f : forms_)
        if (f->name() == name) return f.get();
    return nullptr;
}

std::vector<Form*> FormRegistry::all() {
    std::vector<Form*> out;
    out.reserve(forms_.size());
    for (auto& f : forms_) out.push_back(f.get());
    return out;
}

}  // namespace forms
