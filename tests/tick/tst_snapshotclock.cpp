#include "ManualClock.h"
#include "tick/SnapshotClock.h"

#include <QTest>
#include <QTimeZone>

using tw::SnapshotClock;

class TestSnapshotClock : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void pinFromText_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("pinned"); // empty: no pin
        QTest::newRow("hour and minute: tomorrow") << "7:30"
                                                   << "2026-03-15 07:30:00";
        QTest::newRow("leading zeros") << "07:05"
                                       << "2026-03-15 07:05:00";
        QTest::newRow("midnight") << "0:0"
                                  << "2026-03-15 00:00:00";
        QTest::newRow("earlier than now is still tomorrow") << "9:00"
                                                            << "2026-03-15 09:00:00";
        QTest::newRow("hour only") << "7"
                                   << "";
        QTest::newRow("with seconds") << "7:30:15"
                                      << "";
        QTest::newRow("unparsable piece dropped") << "x:7:30"
                                                  << "2026-03-15 07:30:00";
        QTest::newRow("unparsable middle dropped") << "7:am:30"
                                                   << "2026-03-15 07:30:00";
        QTest::newRow("empty pieces") << "7::30"
                                      << "2026-03-15 07:30:00";
        QTest::newRow("blank makes a piece unparsable") << " 7:30"
                                                        << "";
        QTest::newRow("hour out of range") << "25:00"
                                           << "";
        QTest::newRow("minute out of range") << "7:60"
                                             << "";
        QTest::newRow("negative hour") << "-1:30"
                                       << "";
        QTest::newRow("empty") << ""
                               << "";
        QTest::newRow("too large to be a number") << "99999999999:30"
                                                  << "";
    }
    void pinFromText() {
        QFETCH(QString, text);
        QFETCH(QString, pinned);
        const QDateTime now(QDate(2026, 3, 14), QTime(9, 26, 53));
        const std::optional<QDateTime> pin = SnapshotClock::pinFor(text, now);
        QCOMPARE(pin ? pin->toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")) : QString(), pinned);
    }

    void tomorrowCrossesMonthAndYear() {
        const QDateTime now(QDate(2026, 12, 31), QTime(23, 59, 59));
        QCOMPARE(SnapshotClock::pinFor(QStringLiteral("7:30"), now),
                 QDateTime(QDate(2027, 1, 1), QTime(7, 30)));
    }

    // Clocks jump from 02:00 to 03:00 in Berlin on 29 March 2026: the first moment after.
    void timeInAClockChangeGap() {
        const QTimeZone berlin("Europe/Berlin");
        if (!berlin.isValid()) {
            QSKIP("no time-zone data for Europe/Berlin");
        }
        const QDateTime now(QDate(2026, 3, 28), QTime(12, 0), berlin);
        const std::optional<QDateTime> pin = SnapshotClock::pinFor(QStringLiteral("2:30"), now);
        QVERIFY(pin);
        QCOMPARE(*pin, QDateTime(QDate(2026, 3, 29), QTime(3, 0), berlin));
    }

    void pinHoldsWhileTheSystemClockRuns() {
        tw::test::ManualClock system;
        SnapshotClock clock(system);
        QCOMPARE(clock.now(), system.now());
        system.advance(std::chrono::minutes(5));
        QCOMPARE(clock.now(), system.now());

        const QDateTime pin(QDate(2026, 3, 15), QTime(7, 30));
        clock.setPinned(pin);
        system.advance(std::chrono::minutes(5));
        QCOMPARE(clock.now(), pin);
        QCOMPARE(clock.uptime(), system.uptime());

        clock.setPinned(std::nullopt);
        QCOMPARE(clock.now(), system.now());
    }
};

QTEST_GUILESS_MAIN(TestSnapshotClock)
#include "tst_snapshotclock.moc"
