#include "gui/RecentFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <algorithm>

namespace gui {

namespace {
constexpr const char* kPathsKey = "recentFiles/paths";
constexpr const char* kCommandsKey = "recentFiles/commands";

QString key(const QString& path) {
    // one file, however its path was spelt
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}
}  // namespace

RecentFiles::RecentFiles(QSettings* settings) : settings_(settings) { load(); }

void RecentFiles::load() {
    entries_.clear();
    if (!settings_) return;
    const QStringList paths = settings_->value(kPathsKey).toStringList();
    const QStringList commands = settings_->value(kCommandsKey).toStringList();
    for (int i = 0; i < paths.size() && static_cast<int>(entries_.size()) < kMaxEntries; ++i) {
        if (paths[i].isEmpty() || i >= commands.size() || commands[i].isEmpty()) continue;
        entries_.push_back({paths[i], commands[i]});
    }
}

void RecentFiles::save() const {
    if (!settings_) return;
    QStringList paths, commands;
    for (const RecentFile& f : entries_) {
        paths << f.path;
        commands << f.command;
    }
    settings_->setValue(kPathsKey, paths);
    settings_->setValue(kCommandsKey, commands);
    settings_->sync();
}

void RecentFiles::add(const QString& path, const QString& command) {
    if (path.isEmpty() || command.isEmpty()) return;
    const QString k = key(path);
    entries_.erase(std::remove_if(entries_.begin(), entries_.end(),
                                  [&](const RecentFile& f) { return key(f.path) == k; }),
                   entries_.end());
    entries_.insert(entries_.begin(), {k, command});
    if (static_cast<int>(entries_.size()) > kMaxEntries) entries_.resize(kMaxEntries);
    save();
}

void RecentFiles::remove(const QString& path) {
    const QString k = key(path);
    entries_.erase(std::remove_if(entries_.begin(), entries_.end(),
                                  [&](const RecentFile& f) { return key(f.path) == k; }),
                   entries_.end());
    save();
}

void RecentFiles::clear() {
    entries_.clear();
    save();
}

QString RecentFiles::menuText(int i, const RecentFile& f) {
    const QFileInfo info(f.path);
    const QString number = i < 9 ? QString("&%1 ").arg(i + 1) : QString("%1 ").arg(i + 1);
    QString name = info.fileName();
    name.replace('&', "&&");
    QString folder = QDir::toNativeSeparators(info.absolutePath());
    folder.replace('&', "&&");
    return number + name + "   (" + folder + ")";
}

}  // namespace gui
