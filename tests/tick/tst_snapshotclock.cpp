#include "ManualClock.h"
#include "tick/SnapshotClock.h"

#include <QTest>
#include <QTimeZone>

using tw::SnapshotClock;

class TestSnapshotClock : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void pinFromText_data() {
        QTest::addColumn<QDateTime>("now");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("pinned"); // empty: no pin
        const QDateTime now(QDate(2026, 3, 14), QTime(9, 26, 53));
        const auto row = [&now](const char* name, const char* text, const char* pinned) {
            QTest::newRow(name) << now << QString::fromLatin1(text) << QString::fromLatin1(pinned);
        };
        row("hour and minute: tomorrow", "7:30", "2026-03-15 07:30:00");
        row("leading zeros", "07:05", "2026-03-15 07:05:00");
        row("midnight", "0:0", "2026-03-15 00:00:00");
        row("earlier than now is still tomorrow", "9:00", "2026-03-15 09:00:00");
        row("unparsable pieces dropped", "x:7:am:30", "2026-03-15 07:30:00");
        row("empty pieces", "7::30", "2026-03-15 07:30:00");
        row("blank makes a piece unparsable", " 7:30", "");
        row("hour out of range", "25:00", "");
        row("minute out of range", "7:60", "");
        row("negative hour", "-1:30", "");
        row("empty", "", "");
        row("too large to be a number", "99999999999:30", "");
        QTest::newRow("tomorrow crosses month and year")
            << QDateTime(QDate(2026, 12, 31), QTime(23, 59, 59)) << "7:30"
            << "2027-01-01 07:30:00";
        // Clocks jump from 02:00 to 03:00 in Berlin that night: the first moment after.
        QTest::newRow("a time in a clock-change gap")
            << QDateTime(QDate(2026, 3, 28), QTime(12, 0), QTimeZone("Europe/Berlin")) << "2:30"
            << "2026-03-29 03:00:00";
    }
    void pinFromText() {
        QFETCH(QDateTime, now);
        QFETCH(QString, text);
        const std::optional<QDateTime> pin = SnapshotClock::pinFor(text, now);
        QTEST(pin ? pin->toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")) : QString(), "pinned");
        QVERIFY(!pin || pin->timeZone() == now.timeZone());
    }

    // Under a pin the uptime runs on; without one the system's time shows again.
    void pinHoldsWhileTheSystemClockRuns() {
        tw::test::ManualClock system;
        SnapshotClock clock(system);
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
