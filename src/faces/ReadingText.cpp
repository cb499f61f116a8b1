#include "faces/ReadingText.h"

#include "settings/Formatters.h"
#include "text/L.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tw::ReadingText {

namespace {

// One decimal below ten so that small figures keep a useful digit; the threshold is where one
// decimal would round up to "10.0".
int decimalsFor(double value, bool wholeUnit) {
    return !wholeUnit && value < 9.95 ? 1 : 0;
}

double rounded(double value, int decimals) {
    const double factor = decimals == 0 ? 1.0 : 10.0;
    return std::round(value * factor) / factor;
}

struct Unit {
    const char* key;
    const char* english;
};

constexpr std::array kUnits{
    Unit{"unit.bytes", "B"},      Unit{"unit.kilobytes", "KB"}, Unit{"unit.megabytes", "MB"},
    Unit{"unit.gigabytes", "GB"}, Unit{"unit.terabytes", "TB"}, Unit{"unit.petabytes", "PB"},
};

} // namespace

QString missing() {
    return QStringLiteral("\u2014");
}

QString bytes(double amount) {
    if (!std::isfinite(amount) || amount < 0) {
        return missing();
    }
    double value = amount;
    std::size_t unit = 0;
    // The unit is chosen after rounding, so 999.6 KB reads "1.0 MB" and never "1000 KB".
    while (unit + 1 < kUnits.size() && rounded(value, decimalsFor(value, unit == 0)) >= 1000) {
        value /= 1000;
        ++unit;
    }
    const int decimals = decimalsFor(value, unit == 0);
    return Formatters::number(decimals, Grouping::on)->string(value) + QChar(u'\u00a0') +
           L(kUnits.at(unit).key, QLatin1String(kUnits.at(unit).english));
}

QString rate(double bytesPerSecond) {
    const QString amount = bytes(bytesPerSecond);
    return amount == missing() ? amount : L("unit.perSecond", QStringLiteral("%1/s")).arg(amount);
}

QString duration(int minutes) {
    if (minutes < 0) {
        return missing();
    }
    const int hours = minutes / 60;
    const int rest = minutes % 60;
    if (hours == 0) {
        return L("duration.minutes", QStringLiteral("%1 min")).arg(rest);
    }
    if (rest == 0) {
        return L("duration.hours", QStringLiteral("%1 h")).arg(hours);
    }
    return L("duration.hoursMinutes", QStringLiteral("%1 h %2 min")).arg(hours).arg(rest);
}

QString percent(std::optional<double> fraction) {
    if (!fraction || std::isnan(*fraction)) {
        return missing();
    }
    return Formatters::number(0, Grouping::on)
               ->string(std::round(std::clamp(*fraction, 0.0, 1.0) * 100)) +
           QLatin1Char('%');
}

} // namespace tw::ReadingText
