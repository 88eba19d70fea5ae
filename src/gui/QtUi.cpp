#include "gui/QtUi.h"

#include <QApplication>
#include <QColorDialog>
#include <QDateTime>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>
#include <QUrl>

#include "gui/FileFilter.h"
#include "gui/FormDialog.h"
#include "gui/MainWindow.h"
#include "gui/RenderWidget.h"

namespace gui {

namespace {
constexpr qint64 kPumpMilliseconds = 15;
}

namespace {

QString q(const std::string& s) { return QString::fromStdString(s); }

QString startPath(const ui::FileRequest& req) {
    if (req.initialDir.empty()) return q(req.fileName);
    if (req.fileName.empty()) return q(req.initialDir);
    return QDir(q(req.initialDir)).filePath(q(req.fileName));
}

Qt::CursorShape cursorFor(int shape) {
    switch (shape) {
        case 2:
            return Qt::CrossCursor;  // pan
        case 5:
            return Qt::SizeAllCursor;  // rotate
        case 7:
            return Qt::SizeVerCursor;  // zoom
        case 11:
            return Qt::WaitCursor;  // hourglass
        case 14:
            return Qt::CrossCursor;  // pick
        default:
            return Qt::ArrowCursor;  // 0, 1 and the rest
    }
}

}  // namespace

void QtUi::attach(MainWindow* window) { window_ = window; }

QWidget* QtUi::parentWidget() const { return window_.data(); }

ui::Answer QtUi::msgBox(const std::string& text, ui::Buttons buttons, const std::string& title) {
    QMessageBox box(parentWidget());
    box.setWindowTitle(q(title));
    box.setText(q(text));
    QMessageBox::StandardButtons std = QMessageBox::Ok;
    switch (buttons) {
        case ui::Buttons::OK:
            std = QMessageBox::Ok;
            break;
        case ui::Buttons::OKCancel:
            std = QMessageBox::Ok | QMessageBox::Cancel;
            break;
        case ui::Buttons::YesNo:
            std = QMessageBox::Yes | QMessageBox::No;
            break;
        case ui::Buttons::YesNoCancel:
            std = QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
            break;
    }
    box.setStandardButtons(std);
    // The frame's close button answers as the box's way out would.
    if (buttons == ui::Buttons::YesNo) box.setEscapeButton(QMessageBox::No);
    // The wait pointer must not hide the question.
    const bool wait = waitCursor_;
    if (wait) QApplication::restoreOverrideCursor();
    const int r = box.exec();
    if (wait) QApplication::setOverrideCursor(Qt::WaitCursor);
    switch (r) {
        case QMessageBox::Yes:
            return ui::Answer::Yes;
        case QMessageBox::No:
            return ui::Answer::No;
        case QMessageBox::Cancel:
            return ui::Answer::Cancel;
        default:
            return buttons == ui::Buttons::OK || buttons == ui::Buttons::OKCancel
                       ? (r == QMessageBox::Ok ? ui::Answer::OK : ui::Answer::Cancel)
                       : ui::Answer::Cancel;
    }
}

std::optional<std::string> QtUi::inputBox(const std::string& prompt, const std::string& title,
                                          const std::string& defaultText) {
    bool ok = false;
    const QString t = QInputDialog::getText(parentWidget(), q(title), q(prompt), QLineEdit::Normal,
                                            q(defaultText), &ok);
    if (!ok) return std::nullopt;
    return t.toStdString();
}

std::optional<std::string> QtUi::takeLastOpened() {
    auto f = std::move(lastOpened_);
    lastOpened_.reset();
    return f;
}

std::optional<std::string> QtUi::openFile(const ui::FileRequest& req) {
    if (handOver_) {
        lastOpened_ = std::move(handOver_);
        handOver_.reset();
        return lastOpened_;
    }
    const QString f = QFileDialog::getOpenFileName(parentWidget(), q(req.title), startPath(req),
                                                   q(qtFileFilter(req.filter)));
    if (f.isEmpty()) return std::nullopt;
    lastOpened_ = f.toStdString();
    return lastOpened_;
}

std::optional<std::string> QtUi::saveFile(const ui::FileRequest& req) {
    const QString f = QFileDialog::getSaveFileName(parentWidget(), q(req.title), startPath(req),
                                                   q(qtFileFilter(req.filter)));
    if (f.isEmpty()) return std::nullopt;
    return f.toStdString();
}

std::optional<engine::Rgb> QtUi::chooseColour(engine::Rgb initial) {
    const QColor c = QColorDialog::getColor(
        QColor(initial.r & 255, initial.g & 255, initial.b & 255), parentWidget());
    if (!c.isValid()) return std::nullopt;
    return engine::Rgb{c.red(), c.green(), c.blue()};
}

ui::FormAction QtUi::showModal(forms::Form& form) {
    FormDialog dialog(form, parentWidget());
    return dialog.run();
}

void QtUi::setPointer(int shape) {
    pointer_ = shape;
    const bool wait = shape == 11;
    if (wait != waitCursor_) {
        if (wait)
            QApplication::setOverrideCursor(Qt::WaitCursor);
        else
            QApplication::restoreOverrideCursor();
        waitCursor_ = wait;
    }
    if (window_ && !wait) window_->renderWidget()->setCursor(cursorFor(shape));
}

void QtUi::setProgress(int percent) {
    if (window_) window_->setProgress(percent);
}

void QtUi::setComment(const std::string& text) {
    if (window_) window_->setComment(text);
}

void QtUi::setStatus(int panel, const std::string& text) {
    if (window_) window_->setStatus(panel, text);
}

void QtUi::pumpEvents() {
    // Long loops pump after every record; bringing the menus up to date costs far
    // more than a record, and a person sees nothing faster than a frame.
    if (sincePump_.isValid() && sincePump_.elapsed() < kPumpMilliseconds) return;
    sincePump_.restart();
    if (window_) window_->syncCommands();
    QCoreApplication::processEvents();
}

void QtUi::beep() { QApplication::beep(); }

bool QtUi::openExternal(const std::string& path) {
    const QString p = QString::fromStdString(path);
    // A link may be a web address as well as a file.
    const QUrl url = p.contains(QStringLiteral("://"))
                         ? QUrl(p)
                         : QUrl::fromLocalFile(QFileInfo(p).absoluteFilePath());
    return QDesktopServices::openUrl(url);
}

void QtUi::setFocus() {
    if (window_) window_->renderWidget()->setFocus();
}

void QtUi::requestFrame() {
    if (window_) window_->renderWidget()->requestFrame();
}

ui::DateTime QtUi::now() const {
    const QDateTime t = QDateTime::currentDateTime();
    return {t.date().year(), t.date().month(),  t.date().day(),
            t.time().hour(), t.time().minute(), t.time().second()};
}

}  // namespace gui
