// The alarm on virtual time: how often each length plays and when it falls silent by itself.
#include "ManualScheduler.h"
#include "desk/Alarm.h"
#include "platform/null/SilentSoundPlayer.h"

#include <QSignalSpy>
#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace std::chrono_literals;

class TestAlarm : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void lengths_data() {
        QTest::addColumn<int>("sound");
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("plays");
        // Milliseconds the ring lasts; 0 for one that never rings.
        QTest::addColumn<int>("rings");
        QTest::newRow("once") << int(WidgetSound::glass) << int(AlarmLength::once) << 1 << 0;
        QTest::newRow("no sound never rings")
            << int(WidgetSound::none) << int(AlarmLength::untilStopped) << 0 << 0;
        QTest::newRow("ten seconds")
            << int(WidgetSound::ping) << int(AlarmLength::tenSeconds) << 8 << 9200;
        QTest::newRow("thirty seconds")
            << int(WidgetSound::hero) << int(AlarmLength::thirtySeconds) << 26 << 29900;
        QTest::newRow("until stopped ends after ten minutes")
            << int(WidgetSound::purr) << int(AlarmLength::untilStopped) << 521 << 599150;
    }
    void lengths() {
        QFETCH(int, sound);
        QFETCH(int, length);
        QFETCH(int, plays);
        QFETCH(int, rings);
        ManualClock clock;
        ManualScheduler scheduler(&clock);
        SilentSoundPlayer sounds;
        Alarm alarm(scheduler, clock, sounds);
        alarm.start(WidgetSound(sound), AlarmLength(length));
        QCOMPARE(alarm.isRinging(), rings > 0);
        if (rings > 0) {
            scheduler.advance(std::chrono::milliseconds(rings - 1));
            QVERIFY(alarm.isRinging());
        }
        scheduler.advance(1h);
        QVERIFY(!alarm.isRinging());
        QCOMPARE(sounds.played().size(), plays);
        QCOMPARE(scheduler.pendingCount(), 0);
    }

    // Stopped, it plays no more; started again, the old ring is gone and the new one counts.
    void stopAndRestart() {
        ManualClock clock;
        ManualScheduler scheduler(&clock);
        SilentSoundPlayer sounds;
        Alarm alarm(scheduler, clock, sounds);
        QSignalSpy ringing(&alarm, &Alarm::ringingChanged);
        alarm.start(WidgetSound::glass, AlarmLength::untilStopped);
        scheduler.advance(5s);
        alarm.stop();
        scheduler.advance(1h);
        QCOMPARE(sounds.played(), QStringList(5, QStringLiteral("Glass")));
        alarm.start(WidgetSound::tink, AlarmLength::tenSeconds);
        alarm.start(WidgetSound::tink, AlarmLength::once);
        scheduler.advance(1h);
        QCOMPARE(sounds.played().size(), 7);
        QCOMPARE(ringing.size(), 4);
        QVERIFY(!alarm.isRinging());
    }
};

QTEST_GUILESS_MAIN(TestAlarm)
#include "tst_alarm.moc"
