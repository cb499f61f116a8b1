// The person's calendars and reminder lists as the system keeps them. Every call may block on
// the disk and is safe from any thread: the services call it away from the main thread.
#pragma once

#include "platform/CalendarItems.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>
#include <QTimeZone>

#include <optional>

namespace tw {

class CalendarStore {
public:
    CalendarStore() = default;
    virtual ~CalendarStore() = default;
    CalendarStore(const CalendarStore&) = delete;
    CalendarStore& operator=(const CalendarStore&) = delete;

    // What a read gives: the items, or why there are none.
    template <typename Item>
    struct Fetched {
        QList<Item> items;
        // Empty on success; otherwise a sentence for the tile.
        QString error;
    };

    virtual QList<CalendarList> calendars() const = 0;
    virtual QList<CalendarList> reminderLists() const = 0;

    // Every occurrence that overlaps [from, to), sorted by start, of one calendar or, with none,
    // of all of them. All-day events fall on their days in `zone`, wherever they were written.
    virtual Fetched<CalendarEventItem> events(const QDateTime& from, const QDateTime& to,
                                              const std::optional<QString>& calendarID,
                                              const QTimeZone& zone) const = 0;

    // The open reminders of one list or of all of them, and those completed since
    // `completedSince` when it is given.
    virtual Fetched<ReminderItem> reminders(const std::optional<QString>& listID,
                                            const std::optional<QDateTime>& completedSince,
                                            const QTimeZone& zone) const = 0;

    // Marks a reminder done or open again at `now`; the error's sentence on failure, else empty.
    virtual QString setCompleted(const QString& reminderID, bool completed,
                                 const QDateTime& now) = 0;

    // Folders of the person's own to read beside the usual places, from now on.
    virtual void setOwnFolders(const QStringList& folders) = 0;
};

} // namespace tw
