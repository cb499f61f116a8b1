// What a unit converter tile shows: its state, whether it takes the keys now, a copy just made.
#pragma once

#include "tools/ConverterState.h"

namespace tw {

struct ConverterTile {
    ConverterState state;
    bool focused = false;
    bool copied = false;

    // The result as the tile shows and copies it: two places for money (none for the yen and
    // won), else seven significant digits.
    static QString resultText(const ConverterState& state, double value);

    bool operator==(const ConverterTile&) const = default;
};

} // namespace tw
