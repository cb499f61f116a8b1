// Calendars and task lists kept as vdir folders: one ".ics" file per item in a folder per
// collection, its name in a "displayname" file and its colour in a "color" file beside them. A
// broken, huge or hostile file is skipped with one log line; a completed reminder is written back
// into its own file atomically, on top of whatever another program wrote there last.
#pragma once

#include "platform/CalendarStore.h"

#include <QHash>
#include <QMutex>
#include <QSet>
#include <QStringList>

namespace tw {

class VdirCalendarStore final : public CalendarStore {
public:
    struct Folders {
        // Folders that are collections or hold them, up to three levels down.
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

private:
    QList<CalendarList> collections() const;
    std::optional<QByteArray> readItem(const QString& path) const;

    Folders m_folders;
    // Files already logged as unreadable, by path, size and time of change, so a file that
    // stays broken costs one line.
    mutable QMutex m_mutex;
    mutable QSet<QString> m_logged;
};

} // namespace tw
