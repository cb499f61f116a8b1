#include "ManualClock.h"
#include "ManualScheduler.h"
#include "TestRows.h"
#include "ambient/AmbientSoundService.h"

#include <QSignalSpy>
#include <QTest>

using namespace tw;
using namespace std::chrono_literals;
using tw::test::ManualClock;
using tw::test::ManualScheduler;
using tw::test::row;

namespace {

// Stands in for the sound device, which this machine lacks: what the service asked of it.
class RecordingPlayer : public LoopPlayer {
public:
    void play(AmbientSound sound, float to) override {
        playing = sound;
        gain = to;
        ++plays;
    }
    void setGain(float to) override { gain = to; }
    void stop() override {
        playing.reset();
        ++stops;
    }

    std::optional<AmbientSound> playing;
    float gain = -1;
    int plays = 0;
    int stops = 0;
};

struct Rig {
    ManualClock clock;
    ManualScheduler scheduler{&clock};
    RecordingPlayer player;
    AmbientSoundService service{player, clock, scheduler};
};

} // namespace

class TestAmbientSoundService : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void sleepTimer_data() {
        QTest::addColumn<int>("minutes");
        QTest::addColumn<int>("afterSeconds");
        QTest::addColumn<bool>("playing");
        QTest::addColumn<double>("fade");
        row("no timer plays on", 0, 7200, true, 1.0);
        row("full volume until the last minute", 15, 14 * 60, true, 1.0);
        row("half way through the fade, a quarter of the gain", 15, 14 * 60 + 30, true, 0.25);
        row("the end stops the sound and lets go of the device", 15, 15 * 60 + 1, false, 0.0);
        row("a short timer fades over its second half", 1, 45, true, 0.25);
    }
    void sleepTimer() {
        QFETCH(int, minutes);
        QFETCH(int, afterSeconds);
        QFETCH(bool, playing);
        QFETCH(double, fade);
        Rig rig;
        rig.service.setVolume(0.8);
        rig.service.setSleepLength(std::chrono::minutes(minutes));
        rig.service.play();
        QCOMPARE(rig.service.sleepEnds().has_value(), minutes > 0);
        rig.scheduler.advance(std::chrono::seconds(afterSeconds));
        QCOMPARE(rig.service.isPlaying(), playing);
        QCOMPARE(rig.player.playing.has_value(), playing);
        if (playing) {
            QVERIFY2(std::abs(double(rig.player.gain) - 0.64 * fade) < 0.01,
                     qPrintable(QString::number(rig.player.gain)));
        } else {
            QCOMPARE(rig.player.stops, 1);
            QVERIFY(!rig.service.sleepEnds());
        }
    }

    // A new length counts from now; a pause forgets the running timer, and the next play
    // starts it afresh.
    void sleepTimerRestarts() {
        Rig rig;
        rig.service.setSleepLength(15min);
        rig.service.play();
        rig.scheduler.advance(10min);
        rig.service.setSleepLength(30min);
        rig.scheduler.advance(20min);
        QVERIFY(rig.service.isPlaying());
        rig.service.pause();
        rig.scheduler.advance(60min);
        QCOMPARE(rig.player.stops, 1);
        rig.service.play();
        QCOMPARE(rig.service.sleepEnds(), rig.clock.now().addSecs(30 * 60));
        rig.scheduler.advance(30min);
        QVERIFY(!rig.service.isPlaying());
    }

    void controls() {
        Rig rig;
        QSignalSpy changed(&rig.service, &AmbientSoundService::changed);
        rig.service.setSound(AmbientSound::waves);
        rig.service.setVolume(3);
        QCOMPARE(rig.service.volume(), 1.0);
        QVERIFY(!rig.player.playing);
        rig.service.toggle();
        QCOMPARE(rig.player.playing, AmbientSound::waves);
        QCOMPARE(rig.player.gain, 1.0f);
        rig.service.setSound(AmbientSound::brown);
        QCOMPARE(rig.player.playing, AmbientSound::brown);
        rig.service.setVolume(-1);
        QCOMPARE(rig.player.gain, 0.0f);
        rig.service.play();
        QCOMPARE(rig.player.plays, 2);
        rig.service.toggle();
        QVERIFY(!rig.player.playing);
        QCOMPARE(changed.count(), 6);
    }

    void deviceProblems() {
        Rig rig;
        rig.service.setSleepLength(15min);
        rig.service.play();
        Q_EMIT rig.player.failed(LoopPlayer::Problem::noDevice);
        QVERIFY(!rig.service.isPlaying());
        QCOMPARE(rig.service.problem(), LoopPlayer::Problem::noDevice);
        QVERIFY(!rig.service.sleepEnds());
        rig.service.play();
        QVERIFY(!rig.service.problem());
    }
};

QTEST_GUILESS_MAIN(TestAmbientSoundService)
#include "tst_ambientsoundservice.moc"
