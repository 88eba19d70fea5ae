#include "gui/CommandPalette.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QVBoxLayout>

#include "core/Commands.h"
#include "gui/PaletteSearch.h"

namespace gui {

namespace {
constexpr int kNameRole = Qt::UserRole + 1;
QString q(const std::string& s) { return QString::fromStdString(s); }
}  // namespace

CommandPalette::CommandPalette(const core::CommandRegistry& commands, QWidget* parent)
    : QDialog(parent), commands_(commands) {
    setObjectName("frmCommandPalette");
    setWindowTitle("Command Palette");
    auto* lay = new QVBoxLayout(this);
    search_ = new QLineEdit(this);
    search_->setObjectName("txtPaletteSearch");
    search_->setPlaceholderText("Type to search the commands, Enter runs the one selected");
    search_->setClearButtonEnabled(true);
    search_->installEventFilter(this);
    lay->addWidget(search_);
    list_ = new QListWidget(this);
    list_->setObjectName("lstPaletteCommands");
    list_->setUniformItemSizes(true);
    lay->addWidget(list_);
    auto* hint = new QLabel("Up and Down choose, Enter runs, Esc closes", this);
    hint->setEnabled(false);
    lay->addWidget(hint);
    connect(search_, &QLineEdit::textChanged, this, &CommandPalette::refill);
    connect(search_, &QLineEdit::returnPressed, this, &CommandPalette::choose);
    connect(list_, &QListWidget::itemActivated, this, [this] { choose(); });
    resize(560, 380);
    refill();
}

void CommandPalette::refill() {
    list_->clear();
    const auto& all = commands_.all();
    for (const PaletteHit& h : searchCommands(all, search_->text().toStdString())) {
        const core::Command& c = all[h.index];
        QString text = q(plainCaption(c));
        if (!c.menuPath.empty()) text += "    " + q(c.menuPath);
        if (!c.shortcut.empty()) text += "    " + q(c.shortcut);
        auto* item = new QListWidgetItem(text, list_);
        item->setData(kNameRole, q(c.name));
        item->setToolTip(q(c.name));
        // shown, so a person learns it exists, but not to be run now
        if (!c.enabled) item->setFlags(item->flags() & ~Qt::ItemIsEnabled);
    }
    for (int i = 0; i < list_->count(); ++i)
        if (list_->item(i)->flags() & Qt::ItemIsEnabled) {
            list_->setCurrentRow(i);
            break;
        }
}

void CommandPalette::choose() {
    QListWidgetItem* item = list_->currentItem();
    if (!item || !(item->flags() & Qt::ItemIsEnabled)) return;
    chosen_ = item->data(kNameRole).toString().toStdString();
    accept();
}

bool CommandPalette::eventFilter(QObject* watched, QEvent* e) {
    if (watched == search_ && e->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(e)->key();
        if (key == Qt::Key_Down || key == Qt::Key_Up || key == Qt::Key_PageDown ||
            key == Qt::Key_PageUp) {
            // the list moves while the typing stays in the box
            QKeyEvent copy(QEvent::KeyPress, key, Qt::NoModifier);
            QCoreApplication::sendEvent(list_, &copy);
            return true;
        }
    }
    return QDialog::eventFilter(watched, e);
}

}  // namespace gui
