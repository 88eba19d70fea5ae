#include "gui/ScreenshotMode.h"

#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QDialog>
#include <QMessageBox>
#include <QMouseEvent>
#include <QScreen>
#include <QTimer>
#include <cstdio>

#include "core/AppContext.h"
#include "gui/Application.h"
#include "gui/CommandPalette.h"
#include "gui/MainWindow.h"
#include "gui/RenderWidget.h"

namespace gui {

namespace {

void finish(const QImage& picture, const QString& file) {
    const bool ok = !picture.isNull() && picture.save(file, "PNG");
    std::fprintf(stderr, ok ? "screenshot saved: %s\n" : "screenshot failed: %s\n",
                 qPrintable(file));
    QApplication::exit(ok ? 0 : 1);
}

// The mouse over the polygon nearest the middle of the scene, so a name shows.
void hoverOverScene(core::AppContext& ctx, MainWindow& w) {
    RenderWidget* rw = w.renderWidget();
    QPointF at(rw->width() / 2.0, rw->height() / 2.0);
    double best = 1e300;
    for (int y = 8; y < rw->height(); y += 16)
        for (int x = 8; x < rw->width(); x += 16) {
            if (ctx.engine.engine_2D_point_to_3D(x, y).polygon == 0) continue;
            const double d = (x - at.x()) * (x - at.x()) + (y - at.y()) * (y - at.y());
            if (d < best) {
                best = d;
                at = QPointF(x, y);
            }
        }
    QMouseEvent move(QEvent::MouseMove, at, rw->mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QApplication::sendEvent(rw, &move);
}

}  // namespace

void closeBoxesUnattended() {
    auto* timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, [] {
        QWidget* modal = QApplication::activeModalWidget();
        if (auto* box = qobject_cast<QMessageBox*>(modal))
            box->close();
        else if (auto* dialog = qobject_cast<QDialog*>(modal))
            dialog->accept();  // a form takes what it holds
    });
    timer->start(200);
}

void scheduleScreenshot(Application& app, const ScreenshotRequest& r) {
    MainWindow& w = app.window();
    if (r.width > 0 && r.height > 0) w.resize(r.width, r.height);
    // llvmpipe needs a moment for the first frames.
    QTimer::singleShot(1500, &w, [&app, &w, r] {
        if (r.showInfo) {
            if (auto* info = w.findChild<QCheckBox*>("chkShowInfo")) info->click();
            hoverOverScene(app.context(), w);
        }
        if (r.paletteQuery.isEmpty()) {
            QTimer::singleShot(500, &w, [&w, r] { finish(w.grab().toImage(), r.file); });
            return;
        }
        auto* palette = new CommandPalette(app.context().commands, &w);
        palette->setAttribute(Qt::WA_DeleteOnClose);
        palette->show();
        palette->searchBox()->setText(r.paletteQuery);
        QTimer::singleShot(800, &w, [&w, r] {
            // the palette is a window of its own: take the screen where the main window is
            QScreen* screen = w.screen();
            const QRect g = w.frameGeometry();
            finish(screen ? screen->grabWindow(0, g.x(), g.y(), g.width(), g.height()).toImage()
                          : QImage(),
                   r.file);
        });
    });
}

}  // namespace gui
