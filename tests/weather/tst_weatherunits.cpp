#include "TestRows.h"
#include "weather/WeatherUnits.h"

#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace Qt::StringLiterals;

using Region = WeatherUnits::SystemRegion;
using Country = std::optional<QString>;

class TestWeatherUnits : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void prefersFahrenheit_data() {
        QTest::addColumn<Country>("country");
        QTest::addColumn<QString>("language");
        QTest::addColumn<Region>("region");
        QTest::addColumn<bool>("fahrenheit");
        row("us in lower case", Country(u"us"_s), u"de"_s, Region::elsewhere, true);
        row("Puerto Rico", Country(u"PR"_s), u"es"_s, Region::elsewhere, true);
        row("a known country decides", Country(u"DE"_s), u"en"_s, Region::us, false);
        row("no country, English in the US", Country(), u"en"_s, Region::us, true);
        row("an empty country is none", Country(u""_s), u"en"_s, Region::us, true);
        row("no country, German in the US", Country(), u"de"_s, Region::us, false);
        row("no country, English elsewhere", Country(), u"en"_s, Region::elsewhere, false);
    }
    void prefersFahrenheit() {
        QFETCH(Country, country);
        QFETCH(QString, language);
        QFETCH(Region, region);
        QFETCH(bool, fahrenheit);
        QCOMPARE(WeatherUnits::prefersFahrenheit(country, language, region), fahrenheit);
    }
};

QTEST_GUILESS_MAIN(TestWeatherUnits)
#include "tst_weatherunits.moc"
