#pragma once
// The files opened lately, newest first, kept in the user's settings so that
// the next run offers them too. Each remembers the command that read it, so it
// reopens the way it was opened.

#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

class QSettings;

namespace gui {

struct RecentFile {
    QString path;
    QString command;
};

class RecentFiles {
public:
    static constexpr int kMaxEntries = 10;

    // Kept in `settings` (the caller keeps it alive); null keeps them for this run only.
    explicit RecentFiles(QSettings* settings);

    const std::vector<RecentFile>& entries() const { return entries_; }
    // To the top; the same file further down goes.
    void add(const QString& path, const QString& command);
    void remove(const QString& path);
    void clear();
    // The menu text of entry i (from 0): "&1 name   folder".
    static QString menuText(int i, const RecentFile& f);

private:
    void load();
    void save() const;

    QSettings* settings_;
    std::vector<RecentFile> entries_;
};

}  // namespace gui
