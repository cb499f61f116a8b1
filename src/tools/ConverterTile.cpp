#include "tools/ConverterTile.h"

#include "tools/CalcParser.h"

#include <cmath>

namespace tw {

QString ConverterTile::resultText(const ConverterState& state, double value) {
    if (state.category == QLatin1String("currency")) {
        const bool whole = state.to == QLatin1String("JPY") || state.to == QLatin1String("KRW") ||
                           state.to == QLatin1String("HUF");
        return CalcNumber::format(value, whole ? 0 : 2);
    }
    if (value == 0 || !std::isfinite(value)) {
        return CalcNumber::format(value);
    }
    const double magnitude = std::floor(std::log10(std::fabs(value)));
    const double scale = std::pow(10.0, 6 - magnitude);
    const double rounded = std::round(value * scale) / scale;
    return CalcNumber::format(std::isfinite(rounded) ? rounded : value);
}

} // namespace tw
