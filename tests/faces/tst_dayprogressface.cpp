// The day's and the year's progress count real calendar lengths.
#include "faces/DayProgressFace.h"
#include "faces/YearProgressFace.h"

#include <QTest>
#include <QTimeZone>

using namespace tw;

class TestDayProgressFace : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void fraction_data() {
        QTest::addColumn<bool>("year");
        QTest::addColumn<QDateTime>("now");
        QTest::addColumn<double>("expected");
        const QTimeZone berlin("Europe/Berlin");
        const QTimeZone utc = QTimeZone::utc();
        const QDate june(2026, 6, 1);
        QTest::newRow("midnight") << false << QDateTime(june, QTime(0, 0), berlin) << 0.0;
        QTest::newRow("noon") << false << QDateTime(june, QTime(12, 0), berlin) << 0.5;
        QTest::newRow("last second")
            << false << QDateTime(june, QTime(23, 59, 59), berlin) << 86399.0 / 86400.0;
        // The spring change makes a day of 23 hours: at noon 11 of them have passed.
        QTest::newRow("short day")
            << false << QDateTime(QDate(2026, 3, 29), QTime(12, 0), berlin) << 11.0 / 23.0;
        QTest::newRow("long day") << false << QDateTime(QDate(2026, 10, 25), QTime(12, 0), berlin)
                                  << 13.0 / 25.0;
        QTest::newRow("new year") << true << QDateTime(QDate(2026, 1, 1), QTime(0, 0), utc) << 0.0;
        QTest::newRow("second day")
            << true << QDateTime(QDate(2026, 1, 2), QTime(0, 0), utc) << 1.0 / 365.0;
        QTest::newRow("leap year's 29 February")
            << true << QDateTime(QDate(2028, 2, 29), QTime(0, 0), utc) << 59.0 / 366.0;
        QTest::newRow("last day, noon")
            << true << QDateTime(QDate(2026, 12, 31), QTime(12, 0), utc) << 364.5 / 365.0;
    }
    void fraction() {
        QFETCH(bool, year);
        QFETCH(QDateTime, now);
        QFETCH(double, expected);
        const double fraction =
            year ? YearProgressFace::fraction(now) : DayProgressFace::fraction(now);
        QVERIFY2(std::abs(fraction - expected) < 1e-9, qPrintable(QString::number(fraction)));
    }
};

QTEST_APPLESS_MAIN(TestDayProgressFace)
#include "tst_dayprogressface.moc"
