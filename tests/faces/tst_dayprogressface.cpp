// The day's and the year's progress count real calendar lengths.
#include "faces/DayProgressFace.h"
#include "faces/YearProgressFace.h"

#include <QTest>
#include <QTimeZone>

using namespace tw;

class TestDayProgressFace : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void dayFraction_data();
    void dayFraction();
    void yearFraction_data();
    void yearFraction();
};

void TestDayProgressFace::dayFraction_data() {
    QTest::addColumn<QDateTime>("now");
    QTest::addColumn<double>("expected");
    const QTimeZone berlin("Europe/Berlin");
    QTest::newRow("midnight") << QDateTime(QDate(2026, 6, 1), QTime(0, 0), berlin) << 0.0;
    QTest::newRow("noon") << QDateTime(QDate(2026, 6, 1), QTime(12, 0), berlin) << 0.5;
    QTest::newRow("last second") << QDateTime(QDate(2026, 6, 1), QTime(23, 59, 59), berlin)
                                 << 86399.0 / 86400.0;
    // The spring change makes a day of 23 hours: at noon 11 of them have passed.
    QTest::newRow("short day") << QDateTime(QDate(2026, 3, 29), QTime(12, 0), berlin)
                               << 11.0 / 23.0;
    QTest::newRow("long day") << QDateTime(QDate(2026, 10, 25), QTime(12, 0), berlin)
                              << 13.0 / 25.0;
}

void TestDayProgressFace::dayFraction() {
    QFETCH(QDateTime, now);
    QFETCH(double, expected);
    QVERIFY(std::abs(DayProgressFace::fraction(now) - expected) < 1e-9);
}

void TestDayProgressFace::yearFraction_data() {
    QTest::addColumn<QDateTime>("now");
    QTest::addColumn<double>("expected");
    const QTimeZone utc = QTimeZone::utc();
    QTest::newRow("new year") << QDateTime(QDate(2026, 1, 1), QTime(0, 0), utc) << 0.0;
    QTest::newRow("second day") << QDateTime(QDate(2026, 1, 2), QTime(0, 0), utc) << 1.0 / 365.0;
    QTest::newRow("leap year's 29 February")
        << QDateTime(QDate(2028, 2, 29), QTime(0, 0), utc) << 59.0 / 366.0;
    QTest::newRow("last day, noon")
        << QDateTime(QDate(2026, 12, 31), QTime(12, 0), utc) << 364.5 / 365.0;
}

void TestDayProgressFace::yearFraction() {
    QFETCH(QDateTime, now);
    QFETCH(double, expected);
    QVERIFY(std::abs(YearProgressFace::fraction(now) - expected) < 1e-9);
}

QTEST_APPLESS_MAIN(TestDayProgressFace)
#include "tst_dayprogressface.moc"
