#include "SkyReference.h"
#include "TestRows.h"
#include "weather/SunGeometry.h"

#include <QTest>

#include <numbers>

using namespace tw;
using namespace tw::test;

namespace {

constexpr double degree = std::numbers::pi / 180;

// Sunrise and sunset hold to a minute of the reference. The subsolar bounds are the worst
// distances measured over a whole year, not the tenth of a degree one would like: the point is a
// calendar approximation without the equation of time. src/weather/README.md keeps the figures.
constexpr double riseSetSeconds = 60;
constexpr double subsolarLatitudeDegrees = 1.36;
constexpr double subsolarLongitudeDegrees = 4.12;

} // namespace

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

    void followsTheSunOverALeapYear() {
        double latitude = 0;
        double longitude = 0;
        const qint64 start =
            QDateTime(QDate(2024, 1, 1), QTime(0, 0), QTimeZone::utc()).toMSecsSinceEpoch();
        for (qint64 t = start; t < start + 366LL * 86400000; t += 3600000) {
            const SunGeometry::Subsolar ours =
                SunGeometry::subsolar(QDateTime::fromMSecsSinceEpoch(t, QTimeZone::utc()));
            const sky::GroundPoint reference = sky::subsolarPoint(t);
            latitude = std::max(latitude, std::abs(ours.lat / degree - reference.latitude));
            longitude = std::max(
                longitude, std::abs(sky::signedDegrees(ours.lon / degree - reference.longitude)));
        }
        qInfo("subsolar point: worst %.3f° in latitude, %.3f° in longitude", latitude, longitude);
        QVERIFY(latitude <= subsolarLatitudeDegrees);
        QVERIFY(longitude <= subsolarLongitudeDegrees);
    }

    // Every day of a year, in the place's own time, on both sides of the equator and the date line.
    void risesAndSetsWithTheReference_data() {
        QTest::addColumn<double>("latitude");
        QTest::addColumn<double>("longitude");
        QTest::addColumn<int>("offsetHours");
        QTest::addColumn<int>("year");
        row("Quito", -0.18, -78.47, -5, 2026);
        row("Berlin", 52.52, 13.40, 1, 2026);
        row("Sydney", -33.87, 151.21, 10, 2026);
        row("New York, leap year", 40.71, -74.01, -5, 2024);
        row("59° north, leap year", 59.0, 10.75, 1, 2024);
        row("Cape Town", -33.92, 18.42, 2, 2026);
        row("west of the date line", -17.7, 179.99, 12, 2026);
        row("east of the date line", 51.88, -179.99, -12, 2026);
    }
    void risesAndSetsWithTheReference() {
        QFETCH(double, latitude);
        QFETCH(double, longitude);
        QFETCH(int, offsetHours);
        QFETCH(int, year);
        const QTimeZone zone(offsetHours * 3600);
        sky::Deviation deviation;
        for (QDate day(year, 1, 1); day.year() == year; day = day.addDays(1)) {
            const HorizonTimes ours = SunGeometry::times(day, latitude, longitude, zone);
            const qint64 start = day.startOfDay(zone).toMSecsSinceEpoch();
            const sky::RiseSet reference = sky::sunRiseSet(start, latitude, longitude);
            deviation.add("rise", start, ours.rise, reference.rise);
            deviation.add("set", start, ours.set, reference.set);
        }
        qInfo("worst %.0f s", deviation.worstSeconds);
        QVERIFY2(deviation.disagreements.isEmpty(), qPrintable(deviation.disagreements.join(u',')));
        QVERIFY(deviation.worstSeconds <= riseSetSeconds);
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
        const sky::RiseSet reference =
            sky::sunRiseSet(day.startOfDay(QTimeZone(3600)).toMSecsSinceEpoch(), 78.2, 15.6);
        QVERIFY(!reference.rise && !reference.set);
    }
};

QTEST_GUILESS_MAIN(TestSunGeometry)
#include "tst_sungeometry.moc"
