// A tile's forecast: conditions and scenes from the service's codes, the reading a face draws,
// Fahrenheit and night.
#include "TestRows.h"
#include "settings/Localization.h"
#include "weather/MockForecast.h"
#include "weather/WxCondition.h"
#include "weather/WxReading.h"
#include "weather/WxScene.h"

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
    void mapsWmoCodes_data() {
        QTest::addColumn<QList<int>>("codes");
        QTest::addColumn<WxCondition>("condition");
        row("clear sky", QList<int>{0, 1}, WxCondition::clear);
        row("cloud and fog", QList<int>{2, 3, 45, 48}, WxCondition::clouds);
        row("drizzle and rain", QList<int>{51, 55, 61, 66, 67}, WxCondition::rain);
        row("snow", QList<int>{71, 75, 77, 85, 86}, WxCondition::snow);
        row("showers and storms", QList<int>{80, 81, 82, 95, 96, 99}, WxCondition::rain);
        row("codes between", QList<int>{4, 44, 49, 50, 68, 70, 78, 79, 83, 84, 87, 90, 94},
            WxCondition::clouds);
        row("codes outside", QList<int>{-1, 100, 2147483647}, WxCondition::clouds);
    }
    void mapsWmoCodes() {
        QFETCH(QList<int>, codes);
        QFETCH(WxCondition, condition);
        for (int code : codes) {
            QVERIFY2(conditionForWmoCode(code) == condition, qPrintable(QString::number(code)));
        }
    }

    void showsTheMoonOnlyForAClearNight_data() {
        QTest::addColumn<WxCondition>("condition");
        QTest::addColumn<bool>("night");
        QTest::addColumn<QString>("symbol");
        row("clear day", WxCondition::clear, false, u"sun.max.fill"_s);
        row("clear night", WxCondition::clear, true, u"moon.stars.fill"_s);
        row("cloudy night", WxCondition::clouds, true, u"cloud.sun.fill"_s);
    }
    void showsTheMoonOnlyForAClearNight() {
        QFETCH(WxCondition, condition);
        QFETCH(bool, night);
        QTEST(conditionSymbol(condition, night), "symbol");
    }

    void scenes_data() {
        QTest::addColumn<WxCondition>("condition");
        QTest::addColumn<std::optional<int>>("code");
        QTest::addColumn<WxScene>("scene");
        const std::optional<int> none;
        row("fog is more than clouds", WxCondition::clouds, std::optional(45), WxScene::fog);
        row("rime fog", WxCondition::clouds, std::optional(48), WxScene::fog);
        row("thunder is more than rain", WxCondition::rain, std::optional(95), WxScene::thunder);
        row("thunder with hail", WxCondition::rain, std::optional(99), WxScene::thunder);
        row("showers stay rain", WxCondition::rain, std::optional(82), WxScene::rain);
        row("overcast stays clouds", WxCondition::clouds, std::optional(3), WxScene::clouds);
        row("no code: the condition alone", WxCondition::snow, none, WxScene::snow);
    }
    void scenes() {
        QFETCH(WxCondition, condition);
        QFETCH(std::optional<int>, code);
        QFETCH(WxScene, scene);
        QCOMPARE(sceneFor(condition, code), scene);
        QCOMPARE(wxSceneFromRawValue(rawValue(scene)), std::optional(scene));
    }

    // A made-up forecast keeps to what a real one guarantees, and shows the scene it was made for.
    void mockForecastsLookReal() {
        const QDateTime evening(QDate(2026, 1, 10), QTime(23, 40));
        for (WxScene scene : allWxScenes) {
            const WxLive live = mockLive(scene, evening);
            QCOMPARE(sceneFor(live.condition, live.code), scene);
            QCOMPARE(live.hourly.size(), 12);
            QCOMPARE(live.hourly.first().label, u"Now"_s);
            QCOMPARE(live.hourly.at(1).label, u"00"_s);
            QCOMPARE(live.daily.size(), 7);
            QCOMPARE(live.daily.first().date, evening.date().addDays(1));
            QVERIFY(live.lo <= live.temp && live.temp <= live.hi);
            QVERIFY(*live.sunrise < *live.sunset);
            QVERIFY(!live.isDay);
            for (const WxLiveDay& day : live.daily) {
                QVERIFY(day.lo <= day.hi);
            }
        }
    }

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
        QTEST(isNight(data, *at(now), mode), "night");
    }
};

QTEST_GUILESS_MAIN(TestWxReading)
#include "tst_wxreading.moc"
