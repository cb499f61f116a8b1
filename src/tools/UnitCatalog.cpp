#include "tools/UnitCatalog.h"

#include "text/L.h"

namespace tw {

namespace {

Unit unit(const char* id, const QString& symbol, const QString& name, double factor = 0) {
    return {QLatin1String(id), symbol, name, factor};
}

QString tr(const char* key, const char* text) {
    return L(key, QString::fromUtf8(text));
}

QList<UnitCategory> build() {
    const double inch = 0.0254;
    const double foot = 0.3048;
    const double pound = 0.45359237;
    const double gallonUs = 3.785411784;
    const double byte = 1;
    return {
        {QStringLiteral("length"),
         tr("convert.length", "Length"),
         {unit("mm", QStringLiteral("mm"), tr("unit.mm", "Millimetres"), 0.001),
          unit("cm", QStringLiteral("cm"), tr("unit.cm", "Centimetres"), 0.01),
          unit("m", QStringLiteral("m"), tr("unit.m", "Metres"), 1),
          unit("km", QStringLiteral("km"), tr("unit.km", "Kilometres"), 1000),
          unit("in", QStringLiteral("in"), tr("unit.in", "Inches"), inch),
          unit("ft", QStringLiteral("ft"), tr("unit.ft", "Feet"), foot),
          unit("yd", QStringLiteral("yd"), tr("unit.yd", "Yards"), 0.9144),
          unit("mi", QStringLiteral("mi"), tr("unit.mi", "Miles"), 1609.344),
          unit("nmi", QStringLiteral("nmi"), tr("unit.nmi", "Nautical miles"), 1852)},
         QStringLiteral("km"),
         QStringLiteral("mi")},
        {QStringLiteral("mass"),
         tr("convert.mass", "Mass"),
         {unit("mg", QStringLiteral("mg"), tr("unit.mg", "Milligrams"), 1e-6),
          unit("g", QStringLiteral("g"), tr("unit.g", "Grams"), 0.001),
          unit("kg", QStringLiteral("kg"), tr("unit.kg", "Kilograms"), 1),
          unit("t", QStringLiteral("t"), tr("unit.t", "Tonnes"), 1000),
          unit("oz", QStringLiteral("oz"), tr("unit.oz", "Ounces"), pound / 16),
          unit("lb", QStringLiteral("lb"), tr("unit.lb", "Pounds"), pound),
          unit("st", QStringLiteral("st"), tr("unit.st", "Stones"), pound * 14)},
         QStringLiteral("kg"),
         QStringLiteral("lb")},
        {QStringLiteral("volume"),
         tr("convert.volume", "Volume"),
         {unit("ml", QStringLiteral("mL"), tr("unit.ml", "Millilitres"), 0.001),
          unit("l", QStringLiteral("L"), tr("unit.l", "Litres"), 1),
          unit("m3", QStringLiteral("m³"), tr("unit.m3", "Cubic metres"), 1000),
          unit("tsp", QStringLiteral("tsp"), tr("unit.tsp", "Teaspoons (US)"), gallonUs / 768),
          unit("tbsp", QStringLiteral("tbsp"), tr("unit.tbsp", "Tablespoons (US)"), gallonUs / 256),
          unit("floz", QStringLiteral("fl oz"), tr("unit.floz", "Fluid ounces (US)"),
               gallonUs / 128),
          unit("cup", QStringLiteral("cup"), tr("unit.cup", "Cups (US)"), gallonUs / 16),
          unit("pt", QStringLiteral("pt"), tr("unit.pt", "Pints (US)"), gallonUs / 8),
          unit("gal", QStringLiteral("gal"), tr("unit.gal", "Gallons (US)"), gallonUs),
          unit("galuk", QStringLiteral("gal UK"), tr("unit.galuk", "Gallons (UK)"), 4.54609)},
         QStringLiteral("l"),
         QStringLiteral("gal")},
        {QStringLiteral("temperature"),
         tr("convert.temperature", "Temperature"),
         {unit("c", QStringLiteral("°C"), tr("unit.c", "Celsius")),
          unit("f", QStringLiteral("°F"), tr("unit.f", "Fahrenheit")),
          unit("k", QStringLiteral("K"), tr("unit.k", "Kelvin"))},
         QStringLiteral("c"),
         QStringLiteral("f")},
        {QStringLiteral("speed"),
         tr("convert.speed", "Speed"),
         {unit("ms", QStringLiteral("m/s"), tr("unit.ms", "Metres per second"), 1),
          unit("kmh", QStringLiteral("km/h"), tr("unit.kmh", "Kilometres per hour"), 1 / 3.6),
          unit("mph", QStringLiteral("mph"), tr("unit.mph", "Miles per hour"), 0.44704),
          unit("kn", QStringLiteral("kn"), tr("unit.kn", "Knots"), 1852.0 / 3600),
          unit("fts", QStringLiteral("ft/s"), tr("unit.fts", "Feet per second"), foot)},
         QStringLiteral("kmh"),
         QStringLiteral("mph")},
        {QStringLiteral("area"),
         tr("convert.area", "Area"),
         {unit("cm2", QStringLiteral("cm²"), tr("unit.cm2", "Square centimetres"), 1e-4),
          unit("m2", QStringLiteral("m²"), tr("unit.m2", "Square metres"), 1),
          unit("ha", QStringLiteral("ha"), tr("unit.ha", "Hectares"), 1e4),
          unit("km2", QStringLiteral("km²"), tr("unit.km2", "Square kilometres"), 1e6),
          unit("in2", QStringLiteral("in²"), tr("unit.in2", "Square inches"), inch * inch),
          unit("ft2", QStringLiteral("ft²"), tr("unit.ft2", "Square feet"), foot * foot),
          unit("yd2", QStringLiteral("yd²"), tr("unit.yd2", "Square yards"), 0.9144 * 0.9144),
          unit("ac", QStringLiteral("ac"), tr("unit.ac", "Acres"), 4046.8564224),
          unit("mi2", QStringLiteral("mi²"), tr("unit.mi2", "Square miles"), 1609.344 * 1609.344)},
         QStringLiteral("m2"),
         QStringLiteral("ft2")},
        {QStringLiteral("data"),
         tr("convert.data", "Data"),
         {unit("bit", QStringLiteral("bit"), tr("unit.bit", "Bits"), byte / 8),
          unit("B", QStringLiteral("B"), tr("unit.B", "Bytes"), byte),
          unit("kB", QStringLiteral("kB"), tr("unit.kB", "Kilobytes"), 1e3),
          unit("MB", QStringLiteral("MB"), tr("unit.MB", "Megabytes"), 1e6),
          unit("GB", QStringLiteral("GB"), tr("unit.GB", "Gigabytes"), 1e9),
          unit("TB", QStringLiteral("TB"), tr("unit.TB", "Terabytes"), 1e12),
          unit("KiB", QStringLiteral("KiB"), tr("unit.KiB", "Kibibytes"), 1024.0),
          unit("MiB", QStringLiteral("MiB"), tr("unit.MiB", "Mebibytes"), 1048576.0),
          unit("GiB", QStringLiteral("GiB"), tr("unit.GiB", "Gibibytes"), 1073741824.0),
          unit("TiB", QStringLiteral("TiB"), tr("unit.TiB", "Tebibytes"), 1099511627776.0),
          unit("Mbit", QStringLiteral("Mbit"), tr("unit.Mbit", "Megabits"), 1e6 / 8),
          unit("Gbit", QStringLiteral("Gbit"), tr("unit.Gbit", "Gigabits"), 1e9 / 8)},
         QStringLiteral("GB"),
         QStringLiteral("GiB")},
        {QStringLiteral("time"),
         tr("convert.time", "Time"),
         {unit("ms", QStringLiteral("ms"), tr("unit.msec", "Milliseconds"), 0.001),
          unit("s", QStringLiteral("s"), tr("unit.s", "Seconds"), 1),
          unit("min", QStringLiteral("min"), tr("unit.min", "Minutes"), 60),
          unit("h", QStringLiteral("h"), tr("unit.h", "Hours"), 3600),
          unit("d", QStringLiteral("d"), tr("unit.d", "Days"), 86400),
          unit("wk", QStringLiteral("wk"), tr("unit.wk", "Weeks"), 604800),
          unit("yr", QStringLiteral("yr"), tr("unit.yr", "Years"), 31557600)},
         QStringLiteral("h"),
         QStringLiteral("min")},
        {QStringLiteral("currency"),
         tr("convert.currency", "Currency"),
         {unit("EUR", QStringLiteral("EUR"), tr("currency.EUR", "Euro")),
          unit("USD", QStringLiteral("USD"), tr("currency.USD", "US dollar")),
          unit("GBP", QStringLiteral("GBP"), tr("currency.GBP", "Pound sterling")),
          unit("JPY", QStringLiteral("JPY"), tr("currency.JPY", "Japanese yen")),
          unit("CHF", QStringLiteral("CHF"), tr("currency.CHF", "Swiss franc")),
          unit("CAD", QStringLiteral("CAD"), tr("currency.CAD", "Canadian dollar")),
          unit("AUD", QStringLiteral("AUD"), tr("currency.AUD", "Australian dollar")),
          unit("CNY", QStringLiteral("CNY"), tr("currency.CNY", "Chinese yuan")),
          unit("SEK", QStringLiteral("SEK"), tr("currency.SEK", "Swedish krona")),
          unit("NOK", QStringLiteral("NOK"), tr("currency.NOK", "Norwegian krone")),
          unit("DKK", QStringLiteral("DKK"), tr("currency.DKK", "Danish krone")),
          unit("PLN", QStringLiteral("PLN"), tr("currency.PLN", "Polish złoty")),
          unit("CZK", QStringLiteral("CZK"), tr("currency.CZK", "Czech koruna")),
          unit("HUF", QStringLiteral("HUF"), tr("currency.HUF", "Hungarian forint")),
          unit("INR", QStringLiteral("INR"), tr("currency.INR", "Indian rupee")),
          unit("BRL", QStringLiteral("BRL"), tr("currency.BRL", "Brazilian real")),
          unit("MXN", QStringLiteral("MXN"), tr("currency.MXN", "Mexican peso")),
          unit("KRW", QStringLiteral("KRW"), tr("currency.KRW", "South Korean won")),
          unit("SGD", QStringLiteral("SGD"), tr("currency.SGD", "Singapore dollar")),
          unit("HKD", QStringLiteral("HKD"), tr("currency.HKD", "Hong Kong dollar")),
          unit("NZD", QStringLiteral("NZD"), tr("currency.NZD", "New Zealand dollar")),
          unit("ZAR", QStringLiteral("ZAR"), tr("currency.ZAR", "South African rand")),
          unit("TRY", QStringLiteral("TRY"), tr("currency.TRY", "Turkish lira"))},
         QStringLiteral("EUR"),
         QStringLiteral("USD")},
    };
}

double toKelvin(double value, const QString& unit) {
    if (unit == QLatin1String("c")) {
        return value + 273.15;
    }
    if (unit == QLatin1String("f")) {
        return (value - 32) * 5 / 9 + 273.15;
    }
    return value;
}

double fromKelvin(double kelvin, const QString& unit) {
    if (unit == QLatin1String("c")) {
        return kelvin - 273.15;
    }
    if (unit == QLatin1String("f")) {
        return (kelvin - 273.15) * 9 / 5 + 32;
    }
    return kelvin;
}

std::optional<double> quoted(const CurrencyBoard& rates, const QString& base, const QString& code) {
    const auto found = rates.latest.constFind(base);
    if (found == rates.latest.constEnd()) {
        return std::nullopt;
    }
    if (code == base) {
        return 1.0;
    }
    const auto rate = found->rates.constFind(code);
    if (rate == found->rates.constEnd() || !(*rate > 0)) {
        return std::nullopt;
    }
    return *rate;
}

} // namespace

const QList<UnitCategory>& UnitCatalog::categories() {
    static const QList<UnitCategory> all = build();
    return all;
}

const UnitCategory& UnitCatalog::category(const QString& id) {
    for (const UnitCategory& category : categories()) {
        if (category.id == id) {
            return category;
        }
    }
    return categories().front();
}

std::optional<Unit> UnitCatalog::unit(const UnitCategory& category, const QString& id) {
    for (const Unit& unit : category.units) {
        if (unit.id == id) {
            return unit;
        }
    }
    return std::nullopt;
}

std::optional<double> UnitCatalog::currencyRate(const CurrencyBoard& rates, const QString& from,
                                                const QString& to) {
    if (from == to) {
        return 1.0;
    }
    if (const auto direct = quoted(rates, from, to)) {
        return direct;
    }
    if (const auto back = quoted(rates, to, from)) {
        return 1 / *back;
    }
    for (auto it = rates.latest.cbegin(); it != rates.latest.cend(); ++it) {
        const auto a = quoted(rates, it.key(), from);
        const auto b = quoted(rates, it.key(), to);
        if (a && b) {
            return *b / *a;
        }
    }
    return std::nullopt;
}

std::optional<double> UnitCatalog::convert(const UnitCategory& category, double value,
                                           const QString& from, const QString& to,
                                           const CurrencyBoard* rates) {
    const std::optional<Unit> source = unit(category, from);
    const std::optional<Unit> target = unit(category, to);
    if (!source || !target) {
        return std::nullopt;
    }
    if (category.id == QLatin1String("temperature")) {
        return fromKelvin(toKelvin(value, from), to);
    }
    if (category.id == QLatin1String("currency")) {
        if (from == to) {
            return value;
        }
        if (rates == nullptr) {
            return std::nullopt;
        }
        const std::optional<double> rate = currencyRate(*rates, from, to);
        return rate ? std::optional<double>(value * *rate) : std::nullopt;
    }
    return value * source->factor / target->factor;
}

} // namespace tw
