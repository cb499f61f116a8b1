// The sky's mathematics: the moon's phases and light, the subsolar point, rises and sets of both
// bodies against an independent reference, and the sky report's reading of its arguments.
#include "SkyReference.h"
#include "TarnwickProcess.h"
#include "TestRows.h"
#include "weather/MoonMath.h"
#include "weather/SkyReport.h"
#include "weather/SunGeometry.h"

#include <QTest>

#include <numbers>

using namespace tw;
using namespace tw::test;

namespace {

constexpr double degree = std::numbers::pi / 180;

// The bounds below are the worst distances from the reference measured over whole years, not
// what a tile would like: the moon's series are short, the sun's longitude stays in the frame of
// the year 2000 while the moon's moves on (the phases come most of an hour early, and more each
// year), the moon's horizon counts no parallax, and the subsolar point is a calendar
// approximation without the equation of time. src/weather/README.md keeps the figures.
constexpr double phaseMinutes = 78;
constexpr double sunRiseSetSeconds = 60;
constexpr double subsolarLatitudeDegrees = 1.36;
constexpr double subsolarLongitudeDegrees = 4.12;

QDateTime utc(const char* iso) {
    QDateTime at = QDateTime::fromString(QString::fromLatin1(iso), Qt::ISODate);
    at.setTimeZone(QTimeZone::utc());
    return at;
}

} // namespace

class TestSkyMath : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Each name from its lower bound to just below the next.
    void namesThePhase_data() {
        QTest::addColumn<QList<double>>("phases");
        QTest::addColumn<QString>("name");
        row("new", QList<double>{0, 0.0299, 0.97, 0.9999}, "New moon");
        row("waxing crescent", QList<double>{0.03}, "Waxing crescent");
        row("first quarter", QList<double>{0.22, 0.2799}, "First quarter");
        row("waxing gibbous", QList<double>{0.28}, "Waxing gibbous");
        row("full", QList<double>{0.47}, "Full moon");
        row("waning gibbous", QList<double>{0.53}, "Waning gibbous");
        row("last quarter", QList<double>{0.72}, "Last quarter");
        row("waning crescent", QList<double>{0.78, 0.9699}, "Waning crescent");
    }
    void namesThePhase() {
        QFETCH(QList<double>, phases);
        for (double phase : phases) {
            QTEST(MoonMath::nameForPhase(phase), "name");
        }
    }

    // Both sides of a new moon are "New moon"; the next one is a month on, not the one just passed.
    void newMoonWrapsAndComesBackAMonthLater() {
        const QDateTime newMoon =
            MoonMath::next(MoonMath::Phase::newMoon, utc("2024-02-29T06:00:00"));
        const MoonMath::Illumination before = MoonMath::illumination(newMoon.addSecs(-600));
        const MoonMath::Illumination after = MoonMath::illumination(newMoon.addSecs(600));
        QVERIFY2(before.phase > 0.999 && before.phase < 1,
                 qPrintable(QString::number(before.phase)));
        QVERIFY2(after.phase >= 0 && after.phase < 0.001, qPrintable(QString::number(after.phase)));
        QVERIFY(before.fraction < 0.01 && after.fraction < 0.01);
        QCOMPARE(MoonMath::nameForPhase(before.phase), MoonMath::nameForPhase(after.phase));

        const QDateTime following = MoonMath::next(MoonMath::Phase::newMoon, newMoon.addSecs(60));
        const double days = double(newMoon.secsTo(following)) / 86400;
        QVERIFY2(days > 29.2 && days < 29.9, qPrintable(QString::number(days)));
    }

    // Every hour of a year.
    void lightsLikeTheReference_data() {
        QTest::addColumn<int>("year");
        QTest::addColumn<double>("worstPoints");
        row("leap year", 2024, 0.5);
        row("two years on", 2026, 0.55);
    }
    void lightsLikeTheReference() {
        QFETCH(int, year);
        QFETCH(double, worstPoints);
        double worst = 0;
        const QDateTime first(QDate(year, 1, 1), QTime(0, 0), QTimeZone::utc());
        for (qint64 t = first.toMSecsSinceEpoch(); t < first.addYears(1).toMSecsSinceEpoch();
             t += 3600000) {
            const QDateTime at = QDateTime::fromMSecsSinceEpoch(t, QTimeZone::utc());
            worst = std::max(worst, std::abs(MoonMath::illumination(at).fraction -
                                             sky::moonIlluminatedFraction(t)) *
                                        100);
        }
        qInfo("lit fraction: worst %.3f percentage points", worst);
        QVERIFY(worst <= worstPoints);
    }

    void reachesThePhasesWithTheReference() {
        double worst = 0;
        for (const MoonMath::Phase phase : {MoonMath::Phase::newMoon, MoonMath::Phase::firstQuarter,
                                            MoonMath::Phase::full, MoonMath::Phase::lastQuarter}) {
            for (QDateTime at = utc("2026-01-01T00:00:00"); at.date().year() == 2026;) {
                const QDateTime ours = MoonMath::next(phase, at);
                const qint64 reference =
                    sky::nextElongation(at.toMSecsSinceEpoch(), int(phase) * 90.0);
                worst =
                    std::max(worst, double(std::abs(ours.toMSecsSinceEpoch() - reference)) / 60000);
                at = ours.addSecs(86400);
            }
        }
        qInfo("principal phases: worst %.1f min", worst);
        QVERIFY(worst <= phaseMinutes);
    }

    void placesTheSubsolarPoint_data() {
        QTest::addColumn<QDateTime>("at");
        QTest::addColumn<double>("latitude");
        QTest::addColumn<double>("longitude");
        const auto at = [](int y, int m, int d, int h) {
            return QDateTime(QDate(y, m, d), QTime(h, 0), QTimeZone::utc());
        };
        // The formula's own zero falls on the 81st day, a day or two off the true equinox.
        row("March equinox", at(2026, 3, 22, 12), 0.0, 0.0);
        row("June 21", at(2026, 6, 21, 12), 23.44, 0.0);
        row("June 21 of a leap year", at(2024, 6, 21, 12), 23.44, 0.0);
        row("evening in UTC", at(2026, 3, 22, 18), 0.0, -90.0);
        row("morning in UTC", at(2026, 3, 22, 6), 0.0, 90.0);
        row("midnight", at(2026, 3, 22, 0), 0.0, 180.0);
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

    // A year in the place's own time, on both sides of the equator and the date line: the sun
    // every day, the moon every second day.
    void risesAndSetsWithTheReference_data() {
        QTest::addColumn<double>("latitude");
        QTest::addColumn<double>("longitude");
        QTest::addColumn<int>("offsetHours");
        QTest::addColumn<int>("year");
        QTest::addColumn<double>("moonSeconds");
        row("Quito", -0.18, -78.47, -5, 2026, 320.0);
        row("Berlin", 52.52, 13.40, 1, 2026, 495.0);
        row("Sydney", -33.87, 151.21, 10, 2026, 365.0);
        row("New York, leap year", 40.71, -74.01, -5, 2024, 370.0);
        row("59° north, leap year", 59.0, 10.75, 1, 2024, 755.0);
        row("Cape Town", -33.92, 18.42, 2, 2026, 355.0);
        row("west of the date line", -17.7, 179.99, 12, 2026, 310.0);
        row("east of the date line", 51.88, -179.99, -12, 2026, 460.0);
    }
    void risesAndSetsWithTheReference() {
        QFETCH(double, latitude);
        QFETCH(double, longitude);
        QFETCH(int, offsetHours);
        QFETCH(int, year);
        QFETCH(double, moonSeconds);
        const QTimeZone zone(offsetHours * 3600);
        sky::Deviation sun;
        sky::Deviation moon;
        moon.edge = 20 * 60000;
        for (QDate day(year, 1, 1); day.year() == year; day = day.addDays(1)) {
            const qint64 start = day.startOfDay(zone).toMSecsSinceEpoch();
            const HorizonTimes ours = SunGeometry::times(day, latitude, longitude, zone);
            const sky::RiseSet reference = sky::sunRiseSet(start, latitude, longitude);
            sun.add("sunrise", start, ours.rise, reference.rise);
            sun.add("sunset", start, ours.set, reference.set);
            if (day.dayOfYear() % 2 == 1) {
                const HorizonTimes moonOurs = MoonMath::times(day, latitude, longitude, zone);
                const sky::RiseSet moonReference = sky::moonRiseSet(start, latitude, longitude);
                moon.add("moonrise", start, moonOurs.rise, moonReference.rise);
                moon.add("moonset", start, moonOurs.set, moonReference.set);
            }
        }
        qInfo("worst: sun %.0f s, moon %.0f s", sun.worstSeconds, moon.worstSeconds);
        const QStringList disagreements = sun.disagreements + moon.disagreements;
        QVERIFY2(disagreements.isEmpty(), qPrintable(disagreements.join(u',')));
        QVERIFY(sun.worstSeconds <= sunRiseSetSeconds);
        QVERIFY(moon.worstSeconds <= moonSeconds);
    }

    // At 78° north either body may stay up or down all day, as the reference has it.
    void staysUpOrDownAllDayNearThePole_data() {
        QTest::addColumn<bool>("isSun");
        QTest::addColumn<QDate>("day");
        QTest::addColumn<bool>("alwaysUp");
        row("polar day", true, QDate(2026, 6, 21), true);
        row("polar night", true, QDate(2026, 12, 21), false);
        row("moon at high declination", false, QDate(2026, 1, 1), true);
        row("moon at low declination", false, QDate(2026, 1, 12), false);
    }
    void staysUpOrDownAllDayNearThePole() {
        QFETCH(bool, isSun);
        QFETCH(QDate, day);
        QFETCH(bool, alwaysUp);
        const QTimeZone zone(3600);
        const HorizonTimes times =
            (isSun ? SunGeometry::times : MoonMath::times)(day, 78.2, 15.6, zone);
        QVERIFY(!times.rise && !times.set);
        QCOMPARE(times.alwaysUp, alwaysUp);
        QCOMPARE(times.alwaysDown, !alwaysUp);
        const qint64 start = day.startOfDay(zone).toMSecsSinceEpoch();
        const sky::RiseSet reference =
            (isSun ? sky::sunRiseSet : sky::moonRiseSet)(start, 78.2, 15.6);
        QVERIFY(!reference.rise && !reference.set);
        QCOMPARE((isSun ? sky::sunAboveHorizon : sky::moonAboveHorizon)(start, 78.2, 15.6) > 0,
                 alwaysUp);
    }
    // "" where the text is read; otherwise the start of the refusal.
    void readsOnlyAPlaceOnTheGlobeAndAMomentWithItsOffset_data() {
        QTest::addColumn<QString>("latitude");
        QTest::addColumn<QString>("longitude");
        QTest::addColumn<QString>("time");
        QTest::addColumn<QString>("refusal");
        const char* when = "2026-03-20T12:00:00Z";
        row("the poles and the date line", "-90", "180", when, "");
        row("an offset and milliseconds", "90", "-180", "2026-03-20T12:00:00.250+05:45", "");
        row("latitude beyond a pole", "90.01", "0", when, "the latitude");
        row("latitude no number", "north", "0", when, "the latitude");
        row("latitude not a number", "nan", "0", when, "the latitude");
        row("latitude with a comma", "52,5", "0", when, "the latitude");
        row("longitude beyond the date line", "0", "-180.5", when, "the longitude");
        row("longitude infinite", "0", "inf", when, "the longitude");
        row("no offset", "0", "0", "2026-03-20T12:00:00", "the time");
        row("a date alone", "0", "0", "2026-03-20", "the time");
        row("no such day", "0", "0", "2026-02-30T12:00:00Z", "the time");
        row("empty", "0", "0", "", "the time");
    }
    void readsOnlyAPlaceOnTheGlobeAndAMomentWithItsOffset() {
        QFETCH(QString, latitude);
        QFETCH(QString, longitude);
        QFETCH(QString, time);
        QFETCH(QString, refusal);
        const std::variant<SkyReport::Query, QString> read =
            SkyReport::read(latitude, longitude, time);
        const QString* problem = std::get_if<QString>(&read);
        QCOMPARE(problem ? problem->left(refusal.size()) : QString(), refusal);
        if (problem) {
            QVERIFY2(problem->endsWith(QLatin1Char('"') + time + QLatin1Char('"')) ||
                         problem->contains(latitude) || problem->contains(longitude),
                     qPrintable(*problem));
        }
    }

    // Times on the moment's own day, told in its offset; none where the body neither rises nor
    // sets.
    void tellsTheSkyOnTheMomentsDay_data() {
        QTest::addColumn<QString>("latitude");
        QTest::addColumn<QString>("longitude");
        QTest::addColumn<QString>("time");
        QTest::addColumn<QString>("expected");
        row("Berlin at the equinox", "52.52", "13.40", "2026-03-20T18:30:00+01:00",
            "sunrise=2026-03-20T06:…+01:00\nsunset=2026-03-20T18:…+01:00\n");
        row("polar day", "78.2", "15.6", "2026-06-21T23:30:00+02:00",
            "sunrise=none\nsunset=none\n");
        row("just west of the date line, late", "-17.7", "179.99", "2026-12-21T23:59:59+12:00",
            "sunrise=2026-12-21T05:…+12:00\nsunset=2026-12-21T18:…+12:00\n");
        row("east of the date line in UTC: the set before the rise", "51.88", "-179.99",
            "2026-12-21T00:00:00Z",
            "sunrise=2026-12-21T20:…+00:00\nsunset=2026-12-21T03:…+00:00\n");
    }
    void tellsTheSkyOnTheMomentsDay() {
        QFETCH(QString, latitude);
        QFETCH(QString, longitude);
        QFETCH(QString, time);
        QFETCH(QString, expected);
        const std::variant<SkyReport::Query, QString> read =
            SkyReport::read(latitude, longitude, time);
        QVERIFY(std::holds_alternative<SkyReport::Query>(read));
        const QString lines = SkyReport::lines(std::get<SkyReport::Query>(read));
        QVERIFY2(matches(lines, QStringLiteral("phase=…\nillumination=…\n") + expected +
                                    QStringLiteral("moonrise=…\nmoonset=…\nsubsolar_lat=…\n"
                                                   "subsolar_lon=…\n")),
                 qPrintable(lines));
    }
};

QTEST_GUILESS_MAIN(TestSkyMath)
#include "tst_skymath.moc"
