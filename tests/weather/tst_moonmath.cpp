#include "SkyReference.h"
#include "TestRows.h"
#include "weather/MoonMath.h"

#include <QTest>

using namespace tw;
using namespace tw::test;

namespace {

// The bounds below are the worst distances from the reference measured over whole years, not
// what a tile would like: the series are short, the sun's longitude stays in the frame of the
// year 2000 while the moon's moves on (the phases come most of an hour early, and more each
// year), and the moon's horizon counts no parallax. src/weather/README.md keeps the figures.
constexpr double phaseMinutes = 78;

QDateTime utc(const char* iso) {
    QDateTime at = QDateTime::fromString(QString::fromLatin1(iso), Qt::ISODate);
    at.setTimeZone(QTimeZone::utc());
    return at;
}

} // namespace

class TestMoonMath : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void namesThePhase_data() {
        QTest::addColumn<double>("phase");
        QTest::addColumn<QString>("name");
        row("0", 0.0, "New moon");
        row("just below 0.03", 0.0299, "New moon");
        row("0.03", 0.03, "Waxing crescent");
        row("0.22", 0.22, "First quarter");
        row("0.2799", 0.2799, "First quarter");
        row("0.28", 0.28, "Waxing gibbous");
        row("0.47", 0.47, "Full moon");
        row("0.53", 0.53, "Waning gibbous");
        row("0.72", 0.72, "Last quarter");
        row("0.78", 0.78, "Waning crescent");
        row("just below 0.97", 0.9699, "Waning crescent");
        row("0.97", 0.97, "New moon");
        row("just below 1", 0.9999, "New moon");
    }
    void namesThePhase() {
        QFETCH(double, phase);
        QFETCH(QString, name);
        QCOMPARE(MoonMath::nameForPhase(phase), name);
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
        const qint64 start = first.toMSecsSinceEpoch();
        const qint64 end = first.addYears(1).toMSecsSinceEpoch();
        for (qint64 t = start; t < end; t += 3600000) {
            const double ours =
                MoonMath::illumination(QDateTime::fromMSecsSinceEpoch(t, QTimeZone::utc()))
                    .fraction;
            worst = std::max(worst, std::abs(ours - sky::moonIlluminatedFraction(t)) * 100);
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

    // Every second day of a year, in the place's own time.
    void risesAndSetsWithTheReference_data() {
        QTest::addColumn<double>("latitude");
        QTest::addColumn<double>("longitude");
        QTest::addColumn<int>("offsetHours");
        QTest::addColumn<int>("year");
        QTest::addColumn<double>("worstSeconds");
        row("Quito", -0.18, -78.47, -5, 2026, 320.0);
        row("Berlin", 52.52, 13.40, 1, 2026, 495.0);
        row("Sydney", -33.87, 151.21, 10, 2026, 365.0);
        row("New York, leap year", 40.71, -74.01, -5, 2024, 370.0);
        row("59° north, leap year", 59.0, 10.75, 1, 2024, 755.0);
        row("west of the date line", -17.7, 179.99, 12, 2026, 310.0);
        row("east of the date line", 51.88, -179.99, -12, 2026, 460.0);
    }
    void risesAndSetsWithTheReference() {
        QFETCH(double, latitude);
        QFETCH(double, longitude);
        QFETCH(int, offsetHours);
        QFETCH(int, year);
        QFETCH(double, worstSeconds);
        const QTimeZone zone(offsetHours * 3600);
        sky::Deviation deviation;
        deviation.edge = 20 * 60000;
        for (QDate day(year, 1, 1); day.year() == year; day = day.addDays(2)) {
            const MoonMath::Times ours = MoonMath::times(day, latitude, longitude, zone);
            const qint64 start = day.startOfDay(zone).toMSecsSinceEpoch();
            const sky::RiseSet reference = sky::moonRiseSet(start, latitude, longitude);
            deviation.add("rise", start, ours.rise, reference.rise);
            deviation.add("set", start, ours.set, reference.set);
        }
        qInfo("worst %.0f s", deviation.worstSeconds);
        QVERIFY2(deviation.disagreements.isEmpty(), qPrintable(deviation.disagreements.join(u',')));
        QVERIFY(deviation.worstSeconds <= worstSeconds);
    }

    void keepsTheDayOfARiseWithoutASet() {
        const MoonMath::Times times =
            MoonMath::times(QDate(2026, 1, 25), 48.85, 2.35, QTimeZone::utc());
        QVERIFY(times.rise.has_value());
        QVERIFY(!times.set.has_value());
        QVERIFY(!times.alwaysUp && !times.alwaysDown);
        QCOMPARE(times.rise->date(), QDate(2026, 1, 25));
    }

    void staysUpOrDownAllDayNearThePole_data() {
        QTest::addColumn<QDate>("day");
        QTest::addColumn<bool>("alwaysUp");
        row("high declination", QDate(2026, 1, 1), true);
        row("low declination", QDate(2026, 1, 12), false);
    }
    void staysUpOrDownAllDayNearThePole() {
        QFETCH(QDate, day);
        QFETCH(bool, alwaysUp);
        const MoonMath::Times times = MoonMath::times(day, 78.2, 15.6, QTimeZone::utc());
        QVERIFY(!times.rise && !times.set);
        QCOMPARE(times.alwaysUp, alwaysUp);
        QCOMPARE(times.alwaysDown, !alwaysUp);
        const double altitude =
            MoonMath::position(day.startOfDay(QTimeZone::utc()), 78.2, 15.6).altitude;
        QCOMPARE(altitude > 0, alwaysUp);
    }
};

QTEST_GUILESS_MAIN(TestMoonMath)
#include "tst_moonmath.moc"
