#include "app/PictureCalendar.h"

#include "faces/CalendarFace.h"
#include "faces/RemindersFace.h"

namespace tw {

CalendarBoard pictureCalendar(const WidgetSettings& settings, const QDateTime& now) {
    CalendarBoard board;
    if (const auto filter = CalendarFilter::of(settings)) {
        board.events.insert(*filter, {CalendarState::ready, {}, CalendarFace::sampleEvents(now)});
    }
    if (const auto filter = RemindersFilter::of(settings)) {
        board.reminders.insert(*filter,
                               {CalendarState::ready, {}, RemindersFace::sampleReminders(now)});
    }
    return board;
}

} // namespace tw
