#include "desk/CalendarBoard.h"

namespace tw {
namespace {

template <typename Filter, typename Item>
std::optional<CalendarReading<Item>>
readingFor(const QHash<Filter, CalendarReading<Item>>& readings, const WidgetSettings& settings) {
    const std::optional<Filter> filter = Filter::of(settings);
    if (!filter) {
        return std::nullopt;
    }
    return readings.value(*filter, CalendarReading<Item>{CalendarState::loading, {}, {}});
}

} // namespace

std::optional<CalendarReading<CalendarEventItem>>
CalendarBoard::eventsFor(const WidgetSettings& settings) const {
    return readingFor(events, settings);
}

std::optional<CalendarReading<ReminderItem>>
CalendarBoard::remindersFor(const WidgetSettings& settings) const {
    return readingFor(reminders, settings);
}

} // namespace tw
