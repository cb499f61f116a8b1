#include "ambient/QtLoopPlayer.h"

#include <QAudioDevice>
#include <QMediaDevices>
#include <QSignalSpy>
#include <QTest>

using namespace tw;

class TestQtLoopPlayer : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Without any sound output, playing says so instead of failing silently; the player still
    // takes every call and shuts down cleanly.
    void noOutputIsAProblemTheTileShows() {
        if (!QMediaDevices::audioOutputs().isEmpty()) {
            QSKIP("this machine has a sound output, and no test makes a sound");
        }
        QtLoopPlayer player;
        QSignalSpy failed(&player, &LoopPlayer::failed);
        player.play(AmbientSound::rain, 0.5f);
        QVERIFY(failed.wait(10000));
        QCOMPARE(failed.first().at(0).value<LoopPlayer::Problem>(), LoopPlayer::Problem::noDevice);
        player.setGain(1);
        player.stop();
    }
};

QTEST_GUILESS_MAIN(TestQtLoopPlayer)
#include "tst_qtloopplayer.moc"
