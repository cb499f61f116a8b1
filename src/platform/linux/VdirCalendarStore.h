// Calendars and task lists kept as vdir folders: one ".ics" file per item in a folder per
// collection, its name in a "displayname" file and its colour in a "color" file beside them. A
// broken, huge or hostile file is skipped with one log line; a completed reminder is written back
// into its own file atomically, on top of whatever another program wrote there last. What a
// collection gave is kept while none of its files changes, so after a change in one folder only
// that folder is read again.
#pragma once

#include "platform/CalendarStore.h"
#include "platform/linux/ICalReader.h"

#include <QHash>
#include <QMutex>
#include <QSet>
#include <QStringList>

namespace tw {

class VdirCalendarStore final : public CalendarStore {
public:
    struct Folders {
        // Folders that are collections or hold them, up to three levels down (the usual places;
        // the person's own come through `setOwnFolders`).
        QStringList roots;
        // Likewise, but never written to (the copies of subscribed calendars).
        QStringList readOnlyRoots;
    };

    // Larger item files are skipped: no calendar item needs this much.
    static constexpr qint64 mostFileBytes = 8 * 1024 * 1024;

    explicit VdirCalendarStore(Folders folders);

    // Where vdir setups usually keep their collections, below `home` and `dataHome`.
    static QStringList usualRoots(const QString& home, const QString& dataHome);

    QList<CalendarList> calendars() const override;
    QList<CalendarList> reminderLists() const override;
    Fetched<CalendarEventItem> events(const QDateTime& from, const QDateTime& to,
                                      const std::optional<QString>& calendarID,
                                      const QTimeZone& zone) const override;
    Fetched<ReminderItem> reminders(const std::optional<QString>& listID,
                                    const std::optional<QDateTime>& completedSince,
                                    const QTimeZone& zone) const override;
    QString setCompleted(const QString& reminderID, bool completed, const QDateTime& now) override;
    void setOwnFolders(const QStringList& folders) override;

    // Item files parsed since construction, for the tests of what a change reads again.
    int filesParsed() const;

private:
    // One collection's items as last read, for as long as `signature` (its item files' names,
    // sizes and times of change, its name and colour) and the span stay the same.
    struct Kept {
        QString signature;
        QDateTime from;
        QDateTime to;
        QByteArray zone;
        QList<CalendarEventItem> events;
        // With the file each came from.
        QList<std::pair<QString, ICalReader::Todo>> todos;
    };

    QList<CalendarList> collections() const;
    std::optional<QByteArray> readItem(const QString& path) const;
    // Nothing for a file without `component`, which cannot hold what is looked for.
    std::optional<ICalReader::Contents> parse(const QString& path, const QDateTime& from,
                                              const QDateTime& to, const QTimeZone& zone,
                                              const char* component) const;
    Kept keptEvents(const CalendarList& calendar, const QDateTime& from, const QDateTime& to,
                    const QTimeZone& zone) const;
    Kept keptTodos(const CalendarList& list, const QTimeZone& zone) const;

    Folders m_folders;
    QStringList m_own;
    // Files already logged as unreadable, by path, size and time of change, so a file that
    // stays broken costs one line.
    mutable QMutex m_mutex;
    mutable QSet<QString> m_logged;
    mutable QHash<QString, Kept> m_events;
    mutable QHash<QString, Kept> m_todos;
    mutable int m_parsed = 0;
};

} // namespace tw
