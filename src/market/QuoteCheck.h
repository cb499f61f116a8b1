// What a service said of a symbol, coin or currency list a person typed into a tile's settings.
#pragma once

#include <QString>

namespace tw {

struct QuoteCheck {
    bool ok = false;
    // What the person reads under the field: the name and price found, or why there is none.
    QString text;
    // The value to keep in the settings when `ok` ("AAPL", "bitcoin", "USD,GBP").
    QString value;

    bool operator==(const QuoteCheck&) const = default;
};

} // namespace tw
