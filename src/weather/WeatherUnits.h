// Whether a place reads temperatures in Fahrenheit.
#pragma once

#include <QSet>
#include <QString>

#include <optional>

namespace tw {

class WeatherUnits {
public:
    WeatherUnits() = delete;

    enum class SystemRegion { us, elsewhere };

    // The ISO codes of the countries that use Fahrenheit.
    static const QSet<QString>& fahrenheitCountries();
    // A known country decides alone, whatever its case; without one, only English on a machine
    // set to the United States prefers Fahrenheit.
    static bool prefersFahrenheit(const std::optional<QString>& country, const QString& language,
                                  SystemRegion systemRegion);
};

} // namespace tw
