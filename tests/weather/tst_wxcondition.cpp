#include "TestRows.h"
#include "weather/WxCondition.h"

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
};

QTEST_GUILESS_MAIN(TestWxCondition)
#include "tst_wxcondition.moc"
