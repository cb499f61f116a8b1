// What a calendar or reminders tile shows for its filter: the state of the last fetch and the
// last good list, kept while a new fetch runs and after a failed one.
#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace tw {

enum class CalendarState { ready, error, idle, loading, denied };

template <typename Item>
struct CalendarReading {
    CalendarState state = CalendarState::idle;
    // The error's sentence in `error`.
    QString message;
    std::optional<QList<Item>> lastGood;

    bool operator==(const CalendarReading&) const = default;
};

} // namespace tw
