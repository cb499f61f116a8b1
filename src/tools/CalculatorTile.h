// What a calculator tile shows: its state, whether it takes the keys now, and a copy just made.
#pragma once

#include "model/WidgetInstance.h"
#include "tools/CalculatorState.h"

namespace tw {

struct CalculatorTile {
    CalculatorState state;
    bool focused = false;
    // A copy was made a moment ago: the display says so.
    bool copied = false;

    // The tape ("tape") and the unfinished entry ("entry") a tile keeps in its settings.
    static CalculatorTile fromSettings(const WidgetSettings& settings);
    // "decimals": the places results are given to, or -1 (automatic) when unset or unreadable.
    static int decimals(const WidgetSettings& settings);
    // What previews and pictures show: a tape of three sums and a sum being typed.
    static CalculatorTile sample();

    bool operator==(const CalculatorTile&) const = default;
};

} // namespace tw
