#include "ManualClock.h"
#include "TestRows.h"
#include "live/CameraReport.h"
#include "live/MirrorBehaviour.h"
#include "live/QtCameraFeed.h"

#include <QSignalSpy>
#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace std::chrono_literals;
using State = MirrorSession::State;
using Problem = CameraFeed::Problem;

Q_DECLARE_METATYPE(tw::MirrorSession::State)
Q_DECLARE_METATYPE(tw::CameraFeed::Problem)

namespace {

// A camera this machine lacks: the test plugs it in, pulls it out and hands pictures over.
class FakeFeed final : public CameraFeed {
public:
    bool plugged = true;
    bool open = false;
    int starts = 0;

    bool hasCamera() const override { return plugged; }
    void start() override {
        open = true;
        ++starts;
    }
    void stop() override { open = false; }
    void show(QColor color) {
        QImage picture(640, 480, QImage::Format_RGB32);
        picture.fill(color);
        Q_EMIT frame(picture);
    }
    void breakWith(Problem problem) {
        open = false;
        Q_EMIT this->problem(problem);
    }
};

struct Rig {
    ManualClock clock;
    FakeFeed feed;
    MirrorSession session{feed, clock};
};

} // namespace

class MirrorTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The camera opens only with the person's leave and the tile in view, and closes with
    // either gone; nothing of it is kept.
    void opensOnlyWhenAllowedAndInView_data() {
        QTest::addColumn<bool>("allowed");
        QTest::addColumn<bool>("inView");
        QTest::addColumn<bool>("plugged");
        QTest::addColumn<State>("expected");
        row("not allowed", false, true, true, State::off);
        row("out of view", true, false, true, State::paused);
        row("no camera", true, true, false, State::noCamera);
        row("allowed in view", true, true, true, State::starting);
    }
    void opensOnlyWhenAllowedAndInView() {
        QFETCH(bool, allowed);
        QFETCH(bool, inView);
        QFETCH(bool, plugged);
        QFETCH(State, expected);
        Rig rig;
        rig.feed.plugged = plugged;
        rig.session.update(allowed, inView, QSize(200, 100));
        QCOMPARE(rig.session.state(), expected);
        QCOMPARE(rig.feed.open, expected == State::starting);
        if (expected == State::starting) {
            rig.feed.show(Qt::red);
            QCOMPARE(rig.session.state(), State::live);
            rig.session.update(true, false, QSize(200, 100));
            QVERIFY(!rig.feed.open);
            QVERIFY(rig.session.picture().isNull());
        }
    }

    // Pictures at the tile's pixels, no more often than the pace; a late one after closing is
    // dropped.
    void takesPicturesAtAPace() {
        Rig rig;
        QSignalSpy changed(&rig.session, &MirrorSession::changed);
        rig.session.update(true, true, QSize(200, 100));
        rig.feed.show(Qt::red);
        QCOMPARE(rig.session.picture().size(), QSize(200, 150));
        rig.clock.advance(MirrorSession::framePace - 1ms);
        rig.feed.show(Qt::blue);
        QCOMPARE(rig.session.picture().pixelColor(0, 0), QColor(Qt::red));
        rig.clock.advance(1ms);
        rig.feed.show(Qt::blue);
        QCOMPARE(rig.session.picture().pixelColor(0, 0), QColor(Qt::blue));
        QCOMPARE(changed.count(), 3);
        rig.session.update(false, true, QSize(200, 100));
        rig.clock.advance(1s);
        rig.feed.show(Qt::green);
        QCOMPARE(rig.session.state(), State::off);
        QVERIFY(rig.session.picture().isNull());
    }

    // A problem stands until a retry (or a camera plugged in, for those that went away).
    void problemsStandUntilRetried_data() {
        QTest::addColumn<Problem>("problem");
        QTest::addColumn<State>("expected");
        QTest::addColumn<bool>("plugBringsBack");
        row("in use", Problem::inUse, State::inUse, false);
        row("denied", Problem::denied, State::denied, false);
        row("unplugged mid-stream", Problem::disappeared, State::disappeared, true);
        row("driver failed", Problem::failed, State::failed, false);
    }
    void problemsStandUntilRetried() {
        QFETCH(Problem, problem);
        QFETCH(State, expected);
        QFETCH(bool, plugBringsBack);
        Rig rig;
        rig.session.update(true, true, QSize(100, 100));
        rig.feed.show(Qt::red);
        rig.feed.breakWith(problem);
        QCOMPARE(rig.session.state(), expected);
        QVERIFY(rig.session.picture().isNull());
        // Scrolling away and back does not knock again.
        rig.session.update(true, false, QSize(100, 100));
        rig.session.update(true, true, QSize(100, 100));
        QCOMPARE(rig.feed.starts, 1);
        Q_EMIT rig.feed.camerasChanged();
        QCOMPARE(rig.feed.starts, plugBringsBack ? 2 : 1);
        rig.session.retry();
        QCOMPARE(rig.session.state(), State::starting);
        QVERIFY(rig.feed.open);
    }

    void behaviourFollowsTilesAndRetriesOnClick() {
        ManualClock clock;
        FakeFeed* feed = nullptr;
        MirrorBehaviour behaviour(
            [&feed] {
                auto made = std::make_unique<FakeFeed>();
                feed = made.get();
                return made;
            },
            clock, [] { return 2.0; });
        WidgetInstance tile;
        tile.kind = QStringLiteral("mirror");
        tile.size = WidgetSize::large;
        tile.settings = WidgetSettings{{QStringLiteral("allowed"), QStringLiteral("true")}};
        behaviour.setTiles({{tile, true}});
        QVERIFY(feed != nullptr && feed->open);
        feed->show(Qt::red);
        // The camera's 4:3 covering the square tile at two pixels a point.
        QCOMPARE(behaviour.session(tile.id)->picture().size(), QSize(544, 408));
        feed->breakWith(Problem::inUse);
        QVERIFY(!behaviour.press(tile, QStringLiteral("other")));
        QVERIFY(behaviour.press(tile, MirrorBehaviour::retryCommand));
        QVERIFY(feed->open);
        behaviour.setTiles({});
        QCOMPARE(behaviour.session(tile.id), nullptr);
    }

    void driverWordsNameTheProblem_data() {
        QTest::addColumn<QString>("error");
        QTest::addColumn<Problem>("problem");
        row("busy", "Device or resource busy", Problem::inUse);
        row("permission", "Could not open device: Permission denied", Problem::denied);
        row("gone", "No such device", Problem::disappeared);
        row("other", "Internal data stream error", Problem::failed);
    }
    void driverWordsNameTheProblem() {
        QFETCH(QString, error);
        QFETCH(Problem, problem);
        QCOMPARE(QtCameraFeed::problemOf(error), problem);
    }

    void reportsWhatTheSystemKnows_data() {
        QTest::addColumn<QStringList>("cameras");
        QTest::addColumn<QList<VideoNode>>("nodes");
        QTest::addColumn<QString>("report");
        const VideoNode open{QStringLiteral("/dev/video0"), QStringLiteral("Integrated Camera"),
                             true, true};
        const VideoNode shut{QStringLiteral("/dev/video1"), {}, false, false};
        row("nothing", QStringList(), QList<VideoNode>(),
            "access:  unknown\ncameras: none\ndevices: none found\n");
        row("one camera", QStringList{QStringLiteral("Integrated Camera")},
            QList<VideoNode>{open, shut},
            "access:  authorized\ncamera:  Integrated Camera\n"
            "devices: /dev/video0 (Integrated Camera, readable, writable)\n"
            "devices: /dev/video1 (not readable, not writable)\n");
        row("nodes shut", QStringList(), QList<VideoNode>{shut},
            "access:  denied\ncameras: none\ndevices: /dev/video1 (not readable, not writable)\n");
    }
    void reportsWhatTheSystemKnows() {
        QFETCH(QStringList, cameras);
        QFETCH(QList<VideoNode>, nodes);
        QFETCH(QString, report);
        QCOMPARE(cameraReport(cameras, nodes), report);
    }
};

QTEST_MAIN(MirrorTest)
#include "tst_mirror.moc"
