// A countdown timer as its settings keep it: the minutes chosen, and while it runs the moment it
// ends ("endsAt"), while paused the seconds left ("paused"). Nothing ticks: the state is a point
// in time, so a timer runs on through a quit. One that ran out keeps its end, and so reads
// finished, at that moment, after a quit as before it.
#pragma once

#include "model/WidgetInstance.h"

#include <QDateTime>

#include <array>
#include <optional>

namespace tw {

struct TimerState {
    enum class Phase { idle, running, paused, finished };

    using Presets = std::array<int, 4>;
    static constexpr Presets defaultPresets{3, 5, 10, 25};

    int selectedMinutes = 5;
    // The lengths the large tile offers while idle, from "presets": four minutes, 1 to 120,
    // separated by commas; anything else gives the defaults.
    Presets presets = defaultPresets;
    std::optional<QDateTime> endsAt;
    std::optional<double> remainingWhenPaused;
    QString label;

    static TimerState from(const WidgetSettings& settings);
    // "minutes": 5 when absent or unreadable, held to 1 to 120.
    static int minutes(const WidgetSettings& settings);

    Phase phase(const QDateTime& now) const;
    double total() const { return selectedMinutes * 60.0; }
    // Seconds left: the full time while idle, never below 0.
    double remaining(const QDateTime& now) const;
    // The part still to run, 1 when idle, 0 when finished.
    double fraction(const QDateTime& now) const;

    // The settings after a press of the tile's button: idle or paused starts, running pauses,
    // finished goes back to idle.
    static WidgetSettings toggled(WidgetSettings settings, const QDateTime& now);
    static WidgetSettings reset(WidgetSettings settings);
    // A new length, which also stops the timer.
    static WidgetSettings withMinutes(WidgetSettings settings, int minutes);
};

} // namespace tw
