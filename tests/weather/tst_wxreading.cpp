#include "TestRows.h"
#include "settings/Localization.h"
#include "weather/WxReading.h"

#include <QTest>
#include <QTimeZone>

using namespace tw;
using namespace tw::test;
using namespace Qt::StringLiterals;

namespace {

WxLive live() {
    WxLive live;
    live.temp = -18;
    live.feels = -40;
    live.hi = 37;
    live.lo = -1;
    live.hourly = {{u"Now"_s, WxCondition::clear, 20}, {u"01"_s, WxCondition::rain, -18}};
    live.daily = {{QDate(2026, 11, 25), WxCondition::snow, -3, 2},
                  {QDate(2026, 11, 26), WxCondition::clouds, 0, 100}};
    live.air = WxAirQuality{42, 8.5, 12};
    return live;
}

} // namespace

class TestWxReading : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsTheLiveForecast() {
        const WxReading r = reading(live());
        const QLocale locale = Localization::locale();
        QCOMPARE(r.hourly, (QList<WxHourEntry>{{0, u"Now"_s, u"sun.max.fill"_s, 20},
                                               {1, u"01"_s, u"cloud.rain.fill"_s, -18}}));
        QCOMPARE(r.daily,
                 (QList<WxDayEntry>{
                     {0, locale.dayName(3, QLocale::ShortFormat), u"cloud.snow.fill"_s, -3, 2},
                     {1, locale.dayName(4, QLocale::ShortFormat), u"cloud.sun.fill"_s, 0, 100}}));
        QCOMPARE(r.air, live().air);

        const WxReading rainy = reskin(r, WxCondition::rain);
        QCOMPARE(rainy.hourly.first().symbol, u"cloud.rain.fill"_s);
        QCOMPARE(rainy.daily.last().symbol, u"cloud.rain.fill"_s);
        QCOMPARE(rainy.daily.last().hi, 100);
    }

    void convertsEveryTemperatureToFahrenheit() {
        const WxReading f = inFahrenheit(reading(live()));
        QCOMPARE((QList<int>{f.temp, f.feels, f.hi, f.lo}), (QList<int>{0, -40, 99, 30}));
        QCOMPARE(f.hourly.last().temp, 0);
        QCOMPARE((QList<int>{f.daily.first().lo, f.daily.first().hi}), (QList<int>{27, 36}));
        QCOMPARE(f.daily.last().hi, 212);
    }

    void tellsNight_data() {
        QTest::addColumn<WxMode>("mode");
        QTest::addColumn<bool>("hasData");
        QTest::addColumn<QString>("sunrise");
        QTest::addColumn<QString>("sunset");
        QTest::addColumn<QString>("now");
        QTest::addColumn<bool>("night");
        const auto a = WxMode::automatic;
        row("before sunrise", a, true, u"07:00"_s, u"17:00"_s, u"06:59"_s, true);
        row("at sunrise", a, true, u"07:00"_s, u"17:00"_s, u"07:00"_s, false);
        row("at sunset", a, true, u"07:00"_s, u"17:00"_s, u"17:00"_s, true);
        row("manual mode", WxMode::manual, true, u"07:00"_s, u"17:00"_s, u"23:00"_s, false);
        row("no data", a, false, u"07:00"_s, u"17:00"_s, u"23:00"_s, false);
        row("no sunset", a, true, u"07:00"_s, u""_s, u"23:00"_s, false);
    }
    void tellsNight() {
        QFETCH(WxMode, mode);
        QFETCH(bool, hasData);
        QFETCH(QString, sunrise);
        QFETCH(QString, sunset);
        QFETCH(QString, now);
        QFETCH(bool, night);
        const auto at = [](const QString& time) -> std::optional<QDateTime> {
            if (time.isEmpty()) {
                return std::nullopt;
            }
            return QDateTime(QDate(2026, 11, 24), QTime::fromString(time), QTimeZone::utc());
        };
        std::optional<WxReading> data;
        if (hasData) {
            data = WxReading{};
            data->sunrise = at(sunrise);
            data->sunset = at(sunset);
        }
        QCOMPARE(isNight(data, *at(now), mode), night);
    }
};

QTEST_GUILESS_MAIN(TestWxReading)
#include "tst_wxreading.moc"
