#include "weather/WeatherUnits.h"

namespace tw {

const QSet<QString>& WeatherUnits::fahrenheitCountries() {
    static const QSet<QString> countries{
        QStringLiteral("US"), QStringLiteral("LR"), QStringLiteral("MM"), QStringLiteral("BS"),
        QStringLiteral("BZ"), QStringLiteral("KY"), QStringLiteral("PW"), QStringLiteral("FM"),
        QStringLiteral("MH"), QStringLiteral("PR"), QStringLiteral("GU"), QStringLiteral("VI"),
        QStringLiteral("AS"), QStringLiteral("MP")};
    return countries;
}

bool WeatherUnits::prefersFahrenheit(const std::optional<QString>& country, const QString& language,
                                     SystemRegion systemRegion) {
    if (country && !country->isEmpty()) {
        return fahrenheitCountries().contains(country->toUpper());
    }
    return language == QLatin1String("en") && systemRegion == SystemRegion::us;
}

} // namespace tw
