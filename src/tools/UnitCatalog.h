// The converter's categories and units, and conversion between two units of one category.
#pragma once

#include "market/MarketBoard.h"

#include <QList>
#include <QString>

#include <optional>

namespace tw {

struct Unit {
    // Kept in the tile's settings; stable across versions.
    QString id;
    // As the tile shows it: "km", "°F", "fl oz".
    QString symbol;
    QString name;
    // How many of the category's base unit one of these is (metres, kilograms, litres, m/s, m²,
    // bytes, seconds); 0 for temperature and currency, which convert otherwise.
    double factor = 0;
};

struct UnitCategory {
    QString id;
    QString name;
    QList<Unit> units;
    // What a new tile of the category converts from and to.
    QString from;
    QString to;
};

namespace UnitCatalog {

// Length, mass, volume, temperature, speed, area, data, time and currency, in that order.
const QList<UnitCategory>& categories();
// The category of `id`; length for an unknown one.
const UnitCategory& category(const QString& id);
// The unit of `id` in `category`; nullopt when it has none of that id.
std::optional<Unit> unit(const UnitCategory& category, const QString& id);

// `value` in `from` as `to`, both of `category`; currencies through `rates` (the central bank's,
// by base), nullopt where they name no rate between the two, or for units the category lacks.
std::optional<double> convert(const UnitCategory& category, double value, const QString& from,
                              const QString& to, const CurrencyBoard* rates = nullptr);

// What one `from` buys of `to` under `rates`: directly, the other way round, or across a third
// base that quotes both.
std::optional<double> currencyRate(const CurrencyBoard& rates, const QString& from,
                                   const QString& to);

} // namespace UnitCatalog

} // namespace tw
