#include "TestRows.h"
#include "weather/SunGeometry.h"

#include <QTest>

#include <numbers>

using namespace tw;
using namespace tw::test;

class TestSunGeometry : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void placesTheSubsolarPoint_data() {
        QTest::addColumn<QDateTime>("at");
        QTest::addColumn<double>("latitude");
        QTest::addColumn<double>("longitude");
        const auto utc = [](int y, int m, int d, int h, int min) {
            return QDateTime(QDate(y, m, d), QTime(h, min), QTimeZone::utc());
        };
        // The formula's own zero falls on the 81st day, a day or two off the true equinox.
        row("March equinox", utc(2026, 3, 22, 12, 0), 0.0, 0.0);
        row("June 21", utc(2026, 6, 21, 12, 0), 23.44, 0.0);
        row("June 21 of a leap year", utc(2024, 6, 21, 12, 0), 23.44, 0.0);
        row("evening in UTC", utc(2026, 3, 22, 18, 0), 0.0, -90.0);
        row("morning in UTC", utc(2026, 3, 22, 6, 0), 0.0, 90.0);
        row("midnight", utc(2026, 3, 22, 0, 0), 0.0, 180.0);
        row("noon in another offset",
            QDateTime(QDate(2026, 3, 22), QTime(14, 30), QTimeZone(2 * 3600)), 0.0, -7.5);
        row("no date", QDateTime(), -23.0015, 180.0);
    }
    void placesTheSubsolarPoint() {
        QFETCH(QDateTime, at);
        QFETCH(double, latitude);
        QFETCH(double, longitude);
        const SunGeometry::Subsolar point = SunGeometry::subsolar(at);
        constexpr double degree = std::numbers::pi / 180;
        QVERIFY2(std::abs(point.lat / degree - latitude) < 0.01,
                 qPrintable(QString::number(point.lat / degree)));
        QVERIFY2(std::abs(point.lon / degree - longitude) < 1e-9,
                 qPrintable(QString::number(point.lon / degree)));
    }

    void countsEveryYearAs365Days() {
        const QTime noon(12, 0);
        QCOMPARE(SunGeometry::subsolar(QDateTime(QDate(2024, 12, 31), noon, QTimeZone::utc())).lat,
                 SunGeometry::subsolar(QDateTime(QDate(2025, 1, 1), noon, QTimeZone::utc())).lat);
    }

    void hasPolarDayAndNight_data() {
        QTest::addColumn<QDate>("day");
        QTest::addColumn<bool>("alwaysUp");
        row("June", QDate(2026, 6, 21), true);
        row("December", QDate(2026, 12, 21), false);
    }
    void hasPolarDayAndNight() {
        QFETCH(QDate, day);
        QFETCH(bool, alwaysUp);
        const HorizonTimes times = SunGeometry::times(day, 78.2, 15.6, QTimeZone(3600));
        QVERIFY(!times.rise && !times.set);
        QCOMPARE(times.alwaysUp, alwaysUp);
        QCOMPARE(times.alwaysDown, !alwaysUp);
    }
};

QTEST_GUILESS_MAIN(TestSunGeometry)
#include "tst_sungeometry.moc"
