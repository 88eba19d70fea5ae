#pragma once
// Helpers for driving dialogs that block in their own event loop.

#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <memory>

namespace guitest {

// Runs `act` on the first modal dialog that comes up (polling the event loop),
// giving up after `timeoutMs`. Returns a flag that turns true once it ran.
inline std::shared_ptr<bool> whenModal(std::function<void(QWidget*)> act, int timeoutMs = 10000) {
    auto done = std::make_shared<bool>(false);
    auto timer = new QTimer;
    auto waited = std::make_shared<int>(0);
    QObject::connect(timer, &QTimer::timeout, [=] {
        *waited += 20;
        QWidget* w = QApplication::activeModalWidget();
        if (w && w->isVisible()) {
            timer->stop();
            timer->deleteLater();
            *done = true;
            act(w);
        } else if (*waited > timeoutMs) {
            timer->stop();
            timer->deleteLater();
        }
    });
    timer->start(20);
    return done;
}

}  // namespace guitest
