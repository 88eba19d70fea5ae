#include "gui/CommandMenus.h"

#include <QAction>
#include <QMouseEvent>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <algorithm>

#include "core/AppContext.h"
#include "gui/InputCodes.h"

namespace gui {

namespace {
QString q(const std::string& s) { return QString::fromStdString(s); }

// Single keys belong to the render window's key table; only combinations are
// menu shortcuts, the rest is shown beside the entry.
bool isMenuShortcut(const std::string& s) {
    return s.find("Ctrl+") != std::string::npos || s.find("Alt+") != std::string::npos;
}
}  // namespace

CommandMenus::CommandMenus(core::AppContext& ctx, QMenuBar* menus, QToolBar* tools, Runner run,
                           QObject* parent)
    : QObject(parent), ctx_(ctx), menus_(menus), tools_(tools), run_(std::move(run)) {}

QMenu* CommandMenus::menuFor(const std::string& path) {
    if (auto it = menusByPath_.find(path); it != menusByPath_.end()) return it->second;
    const auto slash = path.rfind('/');
    QMenu* m = nullptr;
    if (slash == std::string::npos) {
        m = menus_->addMenu(q(path));
    } else {
        m = menuFor(path.substr(0, slash))->addMenu(q(path.substr(slash + 1)));
    }
    m->setObjectName(q("menu:" + path));
    connect(m, &QMenu::aboutToShow, this, &CommandMenus::sync);
    menusByPath_[path] = m;
    return m;
}

QMenu* CommandMenus::menu(const std::string& path) const {
    auto it = menusByPath_.find(path);
    return it == menusByPath_.end() ? nullptr : it->second;
}

QAction* CommandMenus::action(const std::string& command) const {
    auto it = actions_.find(command);
    return it == actions_.end() ? nullptr : it->second;
}

void CommandMenus::sync() {
    const auto& all = ctx_.commands.all();
    for (; built_ < all.size(); ++built_) {
        const core::Command& c = all[built_];
        if (!c.form.empty() || actions_.count(c.name)) continue;
        const bool onToolbar =
            c.menuPath.empty() &&
            std::find(offToolbar_.begin(), offToolbar_.end(), c.name) == offToolbar_.end();
        if (c.menuPath.empty() && !onToolbar) continue;
        auto* a = new QAction(q(c.caption.empty() ? c.name : c.caption), this);
        a->setObjectName(q(c.name));
        a->setToolTip(q(c.caption + (c.shortcut.empty() ? "" : "  (" + c.shortcut + ")")));
        if (!c.shortcut.empty()) {
            if (isMenuShortcut(c.shortcut)) {
                a->setShortcut(QKeySequence::fromString(q(c.shortcut)));
            } else if (!onToolbar) {
                a->setText(a->text() + "\t" + q(c.shortcut));
            }
        }
        if (c.toolButton) a->setCheckable(true);
        const std::string name = c.name;
        connect(a, &QAction::triggered, this, [this, name] { run_(name); });
        if (onToolbar) {
            tools_->addAction(a);
            if (QWidget* button = tools_->widgetForAction(a); button && c.toolButton) {
                button->setProperty("tarvikCommand", q(c.name));
                button->installEventFilter(this);
            }
        } else {
            menuFor(c.menuPath)->addAction(a);
        }
        actions_[c.name] = a;
    }
    for (const auto& c : all) {
        QAction* a = action(c.name);
        if (!a) continue;
        a->setEnabled(c.enabled);
        if (a->isCheckable()) a->setChecked(c.highlighted);
    }
}

bool CommandMenus::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress && press_) {
        const auto* e = static_cast<QMouseEvent*>(event);
        const int button = e->button() == Qt::RightButton    ? 2
                           : e->button() == Qt::MiddleButton ? 4
                                                             : 0;
        const QString name = watched->property("tarvikCommand").toString();
        auto* w = qobject_cast<QWidget*>(watched);
        if (button != 0 && !name.isEmpty() && w && w->isEnabled()) {
            press_(name.toStdString(), button, shiftMaskOf(e->modifiers()));
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace gui
