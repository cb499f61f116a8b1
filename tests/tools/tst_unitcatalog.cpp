#include "TestRows.h"
#include "tools/ConverterState.h"
#include "tools/UnitCatalog.h"

#include <QTest>

#include <cmath>

using namespace tw;
using tw::test::row;

namespace {

CurrencyBoard rates() {
    CurrencyBoard board;
    CurrencyRates eur;
    eur.base = QStringLiteral("EUR");
    eur.rates = {{QStringLiteral("USD"), 1.10}, {QStringLiteral("GBP"), 0.85}};
    board.latest.insert(eur.base, eur);
    CurrencyRates jpy;
    jpy.base = QStringLiteral("JPY");
    jpy.rates = {{QStringLiteral("CHF"), 0.006}};
    board.latest.insert(jpy.base, jpy);
    return board;
}

} // namespace

class TestUnitCatalog : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void convert_data() {
        QTest::addColumn<QString>("category");
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        QTest::addColumn<double>("result"); // NaN: none
        const double none = std::nan("");
        row("a marathon in km", "length", 26.21875, "mi", "km", 42.194988);
        row("inches to cm", "length", 12.0, "in", "cm", 30.48);
        row("nautical mile", "length", 1.0, "nmi", "m", 1852.0);
        row("pounds to kg", "mass", 1.0, "lb", "kg", 0.45359237);
        row("stone to lb", "mass", 1.0, "st", "lb", 14.0);
        row("gallon to litres", "volume", 1.0, "gal", "l", 3.785411784);
        row("cups in a gallon", "volume", 1.0, "gal", "cup", 16.0);
        row("body temperature", "temperature", 37.0, "c", "f", 98.6);
        row("the same in both", "temperature", -40.0, "f", "c", -40.0);
        row("absolute zero", "temperature", 0.0, "k", "c", -273.15);
        row("speed limit", "speed", 100.0, "kmh", "mph", 62.137119);
        row("knots", "speed", 10.0, "kn", "kmh", 18.52);
        row("hectare", "area", 1.0, "ha", "m2", 10000.0);
        row("acre to ft²", "area", 1.0, "ac", "ft2", 43560.0);
        row("a disk's gigabytes", "data", 500.0, "GB", "GiB", 465.661287);
        row("a line's megabits", "data", 100.0, "Mbit", "MB", 12.5);
        row("a week in hours", "time", 1.0, "wk", "h", 168.0);
        row("a unit of another category", "length", 1.0, "kg", "m", none);
        row("currency directly", "currency", 100.0, "EUR", "USD", 110.0);
        row("currency the other way", "currency", 110.0, "USD", "EUR", 100.0);
        row("currency across a base", "currency", 1.10, "USD", "GBP", 0.85);
        row("currency through a second base", "currency", 1.0, "CHF", "JPY", 1 / 0.006);
        row("a currency without a rate", "currency", 1.0, "EUR", "INR", none);
        row("a currency into itself", "currency", 5.0, "INR", "INR", 5.0);
    }
    void convert() {
        QFETCH(QString, category);
        QFETCH(double, value);
        QFETCH(QString, from);
        QFETCH(QString, to);
        QFETCH(double, result);
        const CurrencyBoard board = rates();
        const auto converted =
            UnitCatalog::convert(UnitCatalog::category(category), value, from, to, &board);
        QCOMPARE(converted.has_value(), !std::isnan(result));
        if (converted) {
            QVERIFY2(std::fabs(*converted - result) <= 1e-6 * std::max(1.0, std::fabs(result)),
                     qPrintable(QString::number(*converted, 'g', 12)));
        }
    }

    void categoriesAreWhole() {
        QStringList ids;
        for (const UnitCategory& category : UnitCatalog::categories()) {
            ids.append(category.id);
            QVERIFY(UnitCatalog::unit(category, category.from));
            QVERIFY(UnitCatalog::unit(category, category.to));
            QSet<QString> units;
            for (const Unit& unit : category.units) {
                QVERIFY2(!units.contains(unit.id), qPrintable(unit.id));
                units.insert(unit.id);
            }
        }
        QCOMPARE(ids.join(QLatin1Char(',')),
                 QStringLiteral("length,mass,volume,temperature,speed,area,data,time,currency"));
    }

    void converterState_data() {
        QTest::addColumn<QString>("keys"); // "S" swap, "B" backspace, "E" escape, ">" next "to"
        QTest::addColumn<QString>("amount");
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        row("a digit replaces the first amount", "42", "42", "km", "mi");
        row("a sum", "12*3", "12*3", "km", "mi");
        row("minus is the sign of a number", "5-", "-5", "km", "mi");
        row("minus twice", "5--", "5", "km", "mi");
        row("minus in a sum subtracts", "5+2-", "5+2-", "km", "mi");
        row("swap keeps the amount and a digit starts anew", "7S3", "3", "mi", "km");
        row("backspace edits", "123B", "12", "km", "mi");
        row("escape clears", "12E", "", "km", "mi");
        row("cycling the target unit", ">", "1", "km", "nmi");
    }
    void converterState() {
        QFETCH(QString, keys);
        QFETCH(QString, amount);
        QFETCH(QString, from);
        QFETCH(QString, to);
        ConverterState state;
        for (const QChar key : keys) {
            if (key == QLatin1Char('S')) {
                state.swap();
            } else if (key == QLatin1Char('B')) {
                state.backspace();
            } else if (key == QLatin1Char('E')) {
                state.escape();
            } else if (key == QLatin1Char('>')) {
                state.cycle(ConverterState::Picking::to, 1);
            } else {
                state.type(key);
            }
        }
        QCOMPARE(state.amount, amount);
        QCOMPARE(state.from, from);
        QCOMPARE(state.to, to);
        QCOMPARE(ConverterState::fromSettings(state.toSettings()).to, to);
    }

    void converterSettings() {
        ConverterState state;
        state.picking = ConverterState::Picking::category;
        QVERIFY(state.pick(QStringLiteral("temperature")));
        QCOMPARE(state.from, QStringLiteral("c"));
        state.amount = QStringLiteral("-40");
        QCOMPARE(state.result(nullptr), -40.0);
        const ConverterState back = ConverterState::fromSettings(state.toSettings());
        QCOMPARE(back.category, state.category);
        QCOMPARE(back.amount, state.amount);
        // Units of another category, or none known, fall back to the category's own.
        const ConverterState odd = ConverterState::fromSettings(
            {{QStringLiteral("category"), QStringLiteral("mass")},
             {QStringLiteral("from"), QStringLiteral("km")},
             {QStringLiteral("amount"), QString(500, QLatin1Char('9'))}});
        QCOMPARE(odd.from, QStringLiteral("kg"));
        QCOMPARE(odd.to, QStringLiteral("lb"));
        QCOMPARE(odd.amount, QStringLiteral("1"));
    }
};

QTEST_GUILESS_MAIN(TestUnitCatalog)
#include "tst_unitcatalog.moc"
