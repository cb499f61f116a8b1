// Which events or reminders a tile shows, read from its settings. A tile whose person has not
// chosen a source yet has no filter: nothing is read for it.
#pragma once

#include "model/WidgetInstance.h"

#include <QHashFunctions>
#include <QString>

#include <optional>

namespace tw {

struct CalendarFilter {
    // None: every calendar.
    std::optional<QString> calendarID;

    // The "calendar" setting: "all", a calendar's id, or nothing chosen yet.
    static std::optional<CalendarFilter> of(const WidgetSettings& settings);

    bool operator==(const CalendarFilter&) const = default;
};

struct RemindersFilter {
    // None: every list.
    std::optional<QString> listID;
    bool includeCompleted = false;

    // The "list" setting as "calendar" above, and "showCompleted".
    static std::optional<RemindersFilter> of(const WidgetSettings& settings);

    bool operator==(const RemindersFilter&) const = default;
};

inline size_t qHash(const CalendarFilter& filter, size_t seed = 0) {
    return qHashMulti(seed, filter.calendarID.has_value(), filter.calendarID.value_or(QString()));
}

inline size_t qHash(const RemindersFilter& filter, size_t seed = 0) {
    return qHashMulti(seed, filter.listID.has_value(), filter.listID.value_or(QString()),
                      filter.includeCompleted);
}

} // namespace tw
