// The small digital clock names the weekday once, whatever stands on its top line.
#include "faces/ClockFace.h"

#include <QLocale>
#include <QTest>

using namespace tw;

class TestClockFace : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void smallLinesNameTheWeekdayOnce_data() {
        QTest::addColumn<bool>("h24");
        QTest::addColumn<QString>("city");
        QTest::addColumn<QString>("top");
        QTest::addColumn<QString>("bottom");
        QTest::newRow("24 hours") << true << QString() << "Monday"
                                  << "23 November";
        QTest::newRow("12 hours") << false << QString() << "Monday"
                                  << "PM 23 November";
        // Under a city the date carries the weekday, since nothing else does.
        QTest::newRow("a city") << true << QStringLiteral("Tokyo") << "Tokyo"
                                << "Mon 23 Nov";
    }
    void smallLinesNameTheWeekdayOnce() {
        QFETCH(bool, h24);
        QFETCH(QString, city);
        QFETCH(QString, top);
        QFETCH(QString, bottom);
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        const QDateTime now(QDate(2026, 11, 23), QTime(14, 5));
        const ClockFace::SmallLines lines = ClockFace::smallLines(now, h24, city);
        QCOMPARE(lines.top, top);
        QCOMPARE(lines.time, h24 ? QStringLiteral("14:05") : QStringLiteral("2:05"));
        QCOMPARE(lines.bottom, bottom);
    }
};

QTEST_GUILESS_MAIN(TestClockFace)
#include "tst_clockface.moc"
