#pragma once
// Helpers for driving dialogs that block in their own event loop.

#include <QApplication>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <memory>

#include <gtest/gtest.h>

#include "core/AppContext.h"
#include "gui/Application.h"
#include "gui/MainWindow.h"

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

// Polls the event loop until `done` holds or `ms` have passed; whether it holds.
inline bool waitFor(const std::function<bool()>& done, int ms = 8000) {
    for (int waited = 0; waited < ms && !done(); waited += 20) QTest::qWait(20);
    return done();
}

// One started application a test; it is left without the exit question.
struct Started {
    gui::Application app;
    Started() {
        EXPECT_TRUE(app.start());
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&app.window()));
    }
    ~Started() {
        app.context().state.bolProgramEnding = true;
        app.window().close();
    }
    core::AppContext& ctx() { return app.context(); }
    gui::MainWindow& win() { return app.window(); }
};

}  // namespace guitest
