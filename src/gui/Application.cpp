#include "gui/Application.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "app/Registration.h"
#include "core/Camera.h"
#include "core/MainForm.h"
#include "core/Navigation.h"
#include "gui/MainWindow.h"
#include "gui/RenderWidget.h"
#include "persistence/SettingsFile.h"
#include "render/DemoScene.h"

namespace gui {

Application::Application() : ctx_(std::make_unique<core::AppContext>(ui_)) {
    ctx_->strProgramFolder = QCoreApplication::applicationDirPath().toStdString();
    app::registerAll(*ctx_);
    // The window navigates whether or not the registration has taken the navigator in yet.
    core::installNavigation(*ctx_);
    window_ = std::make_unique<MainWindow>(*ctx_);
    ui_.attach(window_.get());
}

Application::~Application() {
    ui_.attach(nullptr);
    window_.reset();
}

bool Application::start() {
    window_->show();
    const bool ok = app::startMainForm(*ctx_);
    // the user's saved settings; scripts start on the defaults instead
    if (ok) persistence::loadStartupSettings(*ctx_);
    window_->syncCommands();
    window_->layoutForm();
    return ok;
}

bool Application::loadDemo() {
    auto& ctx = *ctx_;
    if (render::buildDemoScene(ctx.engine) == 0) return false;
    core::setRotationCentre(ctx, ctx.engine.group_get_center_of_mass(0));
    if (!core::p_subInitializeCamera(ctx, false)) return false;
    fitView();
    return true;
}

void Application::fitView() {
    auto& ctx = *ctx_;
    engine::Point3 lo, hi;
    if (!ctx.engine.group_bounding_box(0, lo, hi)) return;
    const double size = engine::length(hi - lo);
    if (size > 0 && std::isfinite(size)) ctx.state.dblCamDistance = std::max(size * 1.1, 238.0);
    core::p_subMainLoop(ctx, true);
}

bool Application::openFromCommandLine(const std::string& path, bool add) {
    const bool ok = window_->openFile(path, add);
    core::p_subMainLoop(*ctx_, true);
    return ok;
}

}  // namespace gui
