// A stopwatch as its settings keep it: the time gathered while stopped ("swAcc"), the moment it
// last started while it runs ("swAnchor"), the laps as totals ("swLaps") and the laps dropped off
// the front of the list ("swDropped": their count and the total of the last one dropped). The
// time away counts: a running stopwatch runs on through a quit.
#pragma once

#include "model/WidgetInstance.h"

#include <QDateTime>
#include <QList>

#include <optional>

namespace tw {

struct StopwatchState {
    static constexpr int maxLaps = 50;

    std::optional<QDateTime> anchor;
    double accumulated = 0;
    // Each the total time at that lap, oldest first.
    QList<double> laps;
    int droppedLaps = 0;
    double droppedElapsed = 0;

    static StopwatchState from(const WidgetSettings& settings);
    WidgetSettings appliedTo(WidgetSettings settings) const;
    // "hundredths": the display option.
    static bool showsHundredths(const WidgetSettings& settings);

    bool isRunning() const { return anchor.has_value(); }
    double elapsed(const QDateTime& now) const;
    // The time of each lap kept, from the one before it (the first from `droppedElapsed`).
    QList<double> lapSplits() const;
    // The number of the lap at `index` of `laps`, counting those dropped.
    int lapNumber(int index) const { return droppedLaps + index + 1; }

    StopwatchState toggled(const QDateTime& now) const;
    // Appends the elapsed time; past 50 the oldest goes.
    StopwatchState withLap(const QDateTime& now) const;
    static StopwatchState reset() { return {}; }
};

} // namespace tw
