#include "TarnwickProcess.h"
#include "TestRows.h"
#include "weather/SkyReport.h"

#include <QTest>

using namespace tw;
using namespace tw::test;

class TestSkyReport : public QObject {
    Q_OBJECT

private Q_SLOTS:
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

QTEST_GUILESS_MAIN(TestSkyReport)
#include "tst_skyreport.moc"
