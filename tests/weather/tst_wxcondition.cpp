#include "TestRows.h"
#include "weather/MockForecast.h"
#include "weather/WxCondition.h"
#include "weather/WxScene.h"

#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace Qt::StringLiterals;

class TestWxCondition : public QObject {
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
        row("snowy night", WxCondition::snow, true, u"cloud.snow.fill"_s);
    }
    void showsTheMoonOnlyForAClearNight() {
        QFETCH(WxCondition, condition);
        QFETCH(bool, night);
        QFETCH(QString, symbol);
        QCOMPARE(conditionSymbol(condition, night), symbol);
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
};

QTEST_GUILESS_MAIN(TestWxCondition)
#include "tst_wxcondition.moc"
