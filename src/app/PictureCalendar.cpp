#include "app/PictureCalendar.h"

#include "faces/CalendarFace.h"

namespace tw {

CalendarBoard pictureCalendar(const WidgetSettings& settings, const QDateTime& now) {
    CalendarBoard board;
    if (const auto filter = CalendarFilter::of(settings)) {
        board.events.insert(*filter, {CalendarState::ready, {}, CalendarFace::sampleEvents(now)});
    }
    return board;
}

} // namespace tw
