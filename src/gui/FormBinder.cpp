#include "gui/FormBinder.h"

#include <QAbstractItemView>
#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <algorithm>
#include <cstdio>
#include <exception>

namespace gui {

using forms::Control;
using forms::ControlKind;

namespace {

QString q(const std::string& s) { return QString::fromStdString(s); }

bool takesALabel(ControlKind k) {
    return k == ControlKind::TextBox || k == ControlKind::ComboBox || k == ControlKind::Slider;
}

}  // namespace

FormBinder::FormBinder(forms::Form& form, QWidget* container, bool horizontal,
                       std::set<std::string> skip)
    : QObject(container), form_(form), skip_(std::move(skip)) {
    auto* layout = horizontal ? static_cast<QBoxLayout*>(new QHBoxLayout(container))
                              : static_cast<QBoxLayout*>(new QVBoxLayout(container));
    if (horizontal) layout->setContentsMargins(4, 2, 4, 2);
    syncing_ = true;
    build(container, layout, "");
    syncing_ = false;
    if (horizontal) layout->addStretch(1);
    refresh();
}

QWidget* FormBinder::widget(const std::string& control) const {
    auto it = widgets_.find(control);
    return it == widgets_.end() ? nullptr : it->second;
}

void FormBinder::build(QWidget* container, QBoxLayout* layout, const std::string& frame) {
    const auto& controls = form_.controls();
    QHBoxLayout* buttonRow = nullptr;
    for (std::size_t i = 0; i < controls.size(); ++i) {
        Control& c = *controls[i];
        if (c.frame != frame || skip_.count(c.name)) continue;
        if (c.kind != ControlKind::CommandButton) buttonRow = nullptr;
        if (c.kind == ControlKind::Frame) {
            auto* box = new QGroupBox(q(c.caption), container);
            box->setObjectName(q(c.name));
            auto* inner = new QVBoxLayout(box);
            build(box, inner, c.name);
            widgets_[c.name] = box;
            layout->addWidget(box);
            continue;
        }
        QWidget* w = makeWidget(c, container);
        widgets_[c.name] = w;
        if (c.kind == ControlKind::CommandButton) {
            if (!buttonRow) {
                buttonRow = new QHBoxLayout;
                buttonRow->addStretch(1);
                layout->addLayout(buttonRow);
            }
            buttonRow->addWidget(w);
            continue;
        }
        // A label followed by its input, or an input with a caption, share a row.
        const bool labelled = c.kind == ControlKind::Label && i + 1 < controls.size() &&
                              controls[i + 1]->frame == frame &&
                              takesALabel(controls[i + 1]->kind) &&
                              !skip_.count(controls[i + 1]->name);
        if (labelled) {
            Control& next = *controls[++i];
            QWidget* input = makeWidget(next, container);
            widgets_[next.name] = input;
            auto* row = new QHBoxLayout;
            row->addWidget(w);
            row->addWidget(input, 1);
            layout->addLayout(row);
        } else if (takesALabel(c.kind) && !c.caption.empty()) {
            auto* row = new QHBoxLayout;
            auto* label = new QLabel(q(c.caption), container);
            row->addWidget(label);
            row->addWidget(w, 1);
            layout->addLayout(row);
        } else {
            layout->addWidget(w);
        }
    }
}

QWidget* FormBinder::makeWidget(Control& c, QWidget* parent) {
    const std::string name = c.name;
    QWidget* w = nullptr;
    switch (c.kind) {
        case ControlKind::Label:
        case ControlKind::Frame: {
            auto* l = new QLabel(parent);
            l->setWordWrap(true);
            w = l;
            break;
        }
        case ControlKind::TextBox: {
            auto* e = new QLineEdit(parent);
            connect(e, &QLineEdit::textEdited, this,
                    [this, name](const QString& t) { userChange(name, t.toStdString()); });
            w = e;
            break;
        }
        case ControlKind::ComboBox: {
            auto* cb = new QComboBox(parent);
            cb->setEditable(true);
            cb->setInsertPolicy(QComboBox::NoInsert);
            connect(cb, &QComboBox::textActivated, this,
                    [this, name](const QString& t) { userChange(name, t.toStdString()); });
            connect(cb->lineEdit(), &QLineEdit::editingFinished, this, [this, name, cb] {
                const Control* ctl = form_.find(name);
                const std::string t = cb->currentText().toStdString();
                if (ctl && ctl->text != t) userChange(name, t);
            });
            w = cb;
            break;
        }
        case ControlKind::ListBox: {
            auto* lw = new QListWidget(parent);
            lw->setSelectionMode(QAbstractItemView::SingleSelection);
            connect(lw, &QListWidget::itemClicked, this, [this, name](QListWidgetItem* it) {
                userChange(name, it->text().toStdString());
            });
            w = lw;
            break;
        }
        case ControlKind::CheckBox: {
            auto* cb = new QCheckBox(parent);
            connect(cb, &QCheckBox::clicked, this,
                    [this, name](bool on) { userChange(name, on ? "1" : "0"); });
            w = cb;
            break;
        }
        case ControlKind::OptionButton: {
            auto* rb = new QRadioButton(parent);
            // The form turns the others of its frame off; Qt's own grouping would fight it.
            rb->setAutoExclusive(false);
            connect(rb, &QRadioButton::clicked, this,
                    [this, name](bool) { userChange(name, "1"); });
            w = rb;
            break;
        }
        case ControlKind::CommandButton: {
            auto* b = new QPushButton(parent);
            connect(b, &QPushButton::clicked, this, [this, name] { userClick(name); });
            w = b;
            break;
        }
        case ControlKind::Slider: {
            auto* s = new QSlider(Qt::Horizontal, parent);
            connect(s, &QSlider::valueChanged, this, [this, name](int v) {
                if (!syncing_) userChange(name, std::to_string(v));
            });
            w = s;
            break;
        }
    }
    w->setObjectName(q(name));
    return w;
}

void FormBinder::userChange(const std::string& control, const std::string& value) {
    if (syncing_) return;
    try {
        form_.setFromUser(control, value);
    } catch (const std::exception& ex) {
        std::fprintf(stderr, "%s.%s: %s\n", form_.name().c_str(), control.c_str(), ex.what());
    }
    refresh();
    if (afterChange) afterChange(control);
}

void FormBinder::userClick(const std::string& control) {
    if (syncing_) return;
    try {
        form_.click(control);
    } catch (const std::exception& ex) {
        std::fprintf(stderr, "%s.%s: %s\n", form_.name().c_str(), control.c_str(), ex.what());
    }
    refresh();
    if (afterChange) afterChange(control);
}

void FormBinder::refresh() {
    const bool was = syncing_;
    syncing_ = true;
    for (const auto& c : form_.controls()) {
        if (QWidget* w = widget(c->name)) refreshOne(*c, w);
    }
    syncing_ = was;
}

void FormBinder::refreshOne(const Control& c, QWidget* w) {
    w->setEnabled(c.enabled);
    w->setVisible(c.visible);
    switch (c.kind) {
        case ControlKind::Label:
            static_cast<QLabel*>(w)->setText(q(c.caption));
            break;
        case ControlKind::Frame:
            if (auto* box = qobject_cast<QGroupBox*>(w)) box->setTitle(q(c.caption));
            break;
        case ControlKind::TextBox: {
            auto* e = static_cast<QLineEdit*>(w);
            if (e->text() != q(c.text)) e->setText(q(c.text));
            break;
        }
        case ControlKind::ComboBox: {
            auto* cb = static_cast<QComboBox*>(w);
            QStringList items;
            for (const auto& s : c.items) items << q(s);
            QStringList have;
            for (int i = 0; i < cb->count(); ++i) have << cb->itemText(i);
            if (have != items) {
                cb->clear();
                cb->addItems(items);
            }
            if (cb->currentText() != q(c.text)) {
                const int idx = cb->findText(q(c.text));
                if (idx >= 0) cb->setCurrentIndex(idx);
                cb->setEditText(q(c.text));
            }
            break;
        }
        case ControlKind::ListBox: {
            auto* lw = static_cast<QListWidget*>(w);
            QStringList have;
            for (int i = 0; i < lw->count(); ++i) have << lw->item(i)->text();
            QStringList items;
            for (const auto& s : c.items) items << q(s);
            if (have != items) {
                lw->clear();
                lw->addItems(items);
            }
            const auto found = lw->findItems(q(c.text), Qt::MatchExactly);
            lw->setCurrentItem(found.isEmpty() ? nullptr : found.front());
            // A short list needs no more room than its items.
            const int rows = std::clamp(lw->count(), 1, 8);
            const int rowHeight = std::max(lw->sizeHintForRow(0), 12);
            lw->setMaximumHeight(rows * rowHeight + 2 * lw->frameWidth() + 2);
            break;
        }
        case ControlKind::CheckBox: {
            auto* cb = static_cast<QCheckBox*>(w);
            cb->setText(q(c.caption));
            cb->setTristate(c.value == 2);
            cb->setCheckState(c.value == 2 ? Qt::PartiallyChecked
                                           : (c.value ? Qt::Checked : Qt::Unchecked));
            break;
        }
        case ControlKind::OptionButton: {
            auto* rb = static_cast<QRadioButton*>(w);
            rb->setText(q(c.caption));
            rb->setChecked(c.value != 0);
            break;
        }
        case ControlKind::CommandButton:
            static_cast<QPushButton*>(w)->setText(q(c.caption));
            break;
        case ControlKind::Slider: {
            auto* s = static_cast<QSlider*>(w);
            s->setRange(c.min, c.max);
            s->setSingleStep(std::max(1, c.smallChange));
            s->setPageStep(std::max(1, c.smallChange * 10));
            s->setValue(c.value);
            break;
        }
    }
}

}  // namespace gui
