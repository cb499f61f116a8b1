// Quotes that look real, for pictures and the gallery's previews: a share, the coins of the
// table and the reference rates, with a day's line, at `now`.
#pragma once

#include "market/MarketBoard.h"
#include "model/WidgetInstance.h"

namespace tw {

// The tile's own symbol, coin currency and base are in it as well as the defaults.
MarketBoard sampleMarket(const QDateTime& now, const WidgetSettings& settings = {});

} // namespace tw
