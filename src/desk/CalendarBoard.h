// The events and reminders every calendar and reminders tile shows, as faces draw them. A plain
// value: the host keeps one up to date from its services, a picture fills its own.
#pragma once

#include "desk/CalendarFilter.h"
#include "desk/CalendarReading.h"
#include "platform/CalendarItems.h"

#include <QHash>

namespace tw {

struct CalendarBoard {
    QHash<CalendarFilter, CalendarReading<CalendarEventItem>> events;
    QHash<RemindersFilter, CalendarReading<ReminderItem>> reminders;
    // Why the last reminder could not be marked, and when: the tiles say so for a while.
    QString reminderProblem;
    QDateTime reminderProblemAt;

    // What a tile with these settings shows: nullopt when its person has chosen nothing yet,
    // a `loading` reading when its first fetch has not come back.
    std::optional<CalendarReading<CalendarEventItem>>
    eventsFor(const WidgetSettings& settings) const;
    std::optional<CalendarReading<ReminderItem>> remindersFor(const WidgetSettings& settings) const;

    bool operator==(const CalendarBoard&) const = default;
};

} // namespace tw
