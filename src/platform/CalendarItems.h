// What the person's calendars and reminder lists hold, as the calendar and reminders tiles show it.
#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>

namespace tw {

// One occurrence of an event: a repeating event gives one item per time it happens.
struct CalendarEventItem {
    QString id;
    QString title;
    QDateTime startDate;
    // After the last moment of the event: an all-day event of one day ends at the next midnight.
    QDateTime endDate;
    bool isAllDay = false;
    // "#rrggbb"; empty for none.
    QString calendarColor;
    QString calendarTitle;

    bool operator==(const CalendarEventItem&) const = default;
};

// A calendar or a reminder list the person may choose.
struct CalendarList {
    QString id;
    QString title;
    // "#rrggbb".
    QString color;
    // Subscriptions and folders we may not write to.
    bool readOnly = false;
    // The folder it is kept in, where other programs may change it; empty for none.
    QString folder;

    bool operator==(const CalendarList&) const = default;
};

struct ReminderItem {
    QString id;
    QString title;
    std::optional<QDateTime> dueDate;
    bool isCompleted = false;
    // "#rrggbb"; empty for none.
    QString calendarColor;
    QString listName;
    // 1 (highest) to 9; 0 for none.
    int priority = 0;

    bool operator==(const ReminderItem&) const = default;
};

} // namespace tw
