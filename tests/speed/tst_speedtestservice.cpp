#include "ManualClock.h"
#include "ManualScheduler.h"
#include "SpeedTestServer.h"
#include "TestRows.h"
#include "model/JsonCoding.h"
#include "platform/null/MemoryDefaults.h"
#include "speed/SpeedTestSchedule.h"
#include "speed/SpeedTestService.h"

#include <QSignalSpy>
#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace std::chrono_literals;
using Kind = SpeedTestPhase::Kind;

Q_DECLARE_METATYPE(tw::SpeedTestPhase::Kind)
Q_DECLARE_METATYPE(QList<tw::SpeedTestResult>)

namespace {

// Small and quick: the line is real, time is the test's.
SpeedTestPlan quickPlan() {
    SpeedTestPlan plan;
    plan.pings = 3;
    plan.parallel = 2;
    plan.downloadTime = 2s;
    plan.uploadTime = 2s;
    plan.downloadBytes = 2'000'000;
    plan.uploadBytes = 500'000;
    return plan;
}

const SpeedTestResult earlier{QDateTime(QDate(2026, 3, 14), QTime(8, 0)), 93.5, 21.25, 12.5};

struct Rig {
    Rig(const QUrl& base, const QList<SpeedTestResult>& history = {})
        : service({clock, scheduler, withHistory(history), Endpoints::under(base.toString()),
                   quickPlan()}) {}

    // Lets the line move `real` milliseconds per 0.1 s of the test's time until `done`.
    bool drive(const std::function<bool()>& done, int steps = 400, int real = 4) {
        for (int i = 0; i < steps && !done(); ++i) {
            QTest::qWait(real);
            scheduler.advance(100ms);
        }
        return done();
    }
    bool reaches(Kind kind, int real = 4) {
        return drive([&] { return service.phase().kind == kind; }, 400, real);
    }

    ManualClock clock;
    ManualScheduler scheduler{&clock};
    MemoryDefaults defaults;
    SpeedTestService service;

private:
    MemoryDefaults& withHistory(const QList<SpeedTestResult>& history) {
        defaults.setValue(SpeedTestService::historyKey(),
                          QString::fromUtf8(SpeedTestResult::encodeHistory(history)));
        return defaults;
    }
};

QUrl closedPort() {
    return QUrl(QStringLiteral("http://127.0.0.1:9"));
}

} // namespace

class TestSpeedTestService : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void runsThroughItsPhases() {
        SpeedTestServer server({.rate = 50'000'000});
        Rig rig(server.base());
        QList<Kind> phases;
        QList<double> progress;
        connect(&rig.service, &SpeedTestService::boardChanged, this, [&] {
            if (phases.isEmpty() || phases.last() != rig.service.phase().kind) {
                phases.append(rig.service.phase().kind);
            }
            progress.append(rig.service.board().progress);
        });
        rig.service.start();
        // Enough real time for uploads to pass the socket buffers that take their first bytes.
        QVERIFY(rig.reaches(Kind::done, 20));

        QCOMPARE(phases, QList<Kind>({Kind::ping, Kind::download, Kind::upload, Kind::done}));
        QVERIFY(std::is_sorted(progress.begin(), progress.end()));
        QCOMPARE(progress.last(), 1.0);
        const SpeedTestBoard& board = rig.service.board();
        QCOMPARE(board.history.size(), 1);
        const SpeedTestResult result = board.history.last();
        QVERIFY(result.downMbps > 0 && result.upMbps > 0);
        QCOMPARE(board.downMbps, result.downMbps);
        QCOMPARE(result.date, rig.clock.now());
        QCOMPARE(SpeedTestResult::decodeHistory(
                     rig.defaults.value(SpeedTestService::historyKey()).toByteArray()),
                 board.history);
        // The pings one after another, then the transfers side by side.
        const QStringList targets = server.targets();
        const QString ping = QStringLiteral("/speedtest/__down?bytes=0");
        const QString down = QStringLiteral("/speedtest/__down?bytes=2000000");
        QCOMPARE(targets.mid(0, 5), QStringList({ping, ping, ping, down, down}));
        QVERIFY(targets.count(QStringLiteral("/speedtest/__up")) >= 2);
        QVERIFY(server.swallowed() > 0);
    }

    // Every way a run ends early leaves no progress behind, the history as it was and the
    // last result's figures on show.
    void endsEarly_data() {
        QTest::addColumn<QString>("how");
        QTest::addColumn<Kind>("during");
        QTest::addColumn<Kind>("end");
        row("no server", "closed", Kind::ping, Kind::failed);
        row("a server that never answers", "silent", Kind::ping, Kind::failed);
        row("line dropped mid-download", "drop", Kind::download, Kind::failed);
        row("line dropped mid-upload", "drop", Kind::upload, Kind::failed);
        row("cancelled mid-download", "cancel", Kind::download, Kind::idle);
        row("cancelled while pinging", "cancel", Kind::ping, Kind::idle);
    }
    void endsEarly() {
        QFETCH(QString, how);
        QFETCH(Kind, during);
        QFETCH(Kind, end);
        SpeedTestServer server({.rate = 20'000'000});
        if (how == QLatin1String("silent")) {
            server.setMode(SpeedTestServer::Mode::silent);
        }
        Rig rig(how == QLatin1String("closed") ? closedPort() : server.base(), {earlier});
        rig.service.start();
        QVERIFY(rig.reaches(during));
        if (how == QLatin1String("drop")) {
            rig.drive([] { return false; }, 12);
            server.drop();
        } else if (how == QLatin1String("cancel")) {
            rig.service.cancel();
        }
        QVERIFY(rig.reaches(end));

        const SpeedTestBoard& board = rig.service.board();
        QCOMPARE(board.progress, 0.0);
        QCOMPARE(board.liveMbps, 0.0);
        QCOMPARE(board.history, QList<SpeedTestResult>({earlier}));
        QCOMPARE(board.downMbps, earlier.downMbps);
        QCOMPARE(board.pingMs, earlier.pingMs);
        QCOMPARE(SpeedTestResult::decodeHistory(
                     rig.defaults.value(SpeedTestService::historyKey()).toByteArray()),
                 board.history);
        if (end == Kind::failed) {
            QCOMPARE(board.phase.message, QStringLiteral("No connection to the test server"));
        }
        // Nothing left running: time passing changes nothing.
        const int changes = QSignalSpy(&rig.service, &SpeedTestService::boardChanged).count();
        QSignalSpy later(&rig.service, &SpeedTestService::boardChanged);
        rig.scheduler.advance(60s);
        QCOMPARE(later.count(), changes);
        QVERIFY(rig.scheduler.pending().empty());
    }

    void runIfDue_data() {
        QTest::addColumn<QList<SpeedTestResult>>("history");
        QTest::addColumn<int>("minutesAgo");
        QTest::addColumn<bool>("running");
        QTest::addColumn<bool>("starts");
        row("never measured", QList<SpeedTestResult>(), 0, false, true);
        row("last is younger than the interval", QList<SpeedTestResult>{earlier}, 30, false, false);
        row("last is older than the interval", QList<SpeedTestResult>{earlier}, 61, false, true);
        row("during a run", QList<SpeedTestResult>(), 0, true, false);
    }
    void runIfDue() {
        QFETCH(QList<SpeedTestResult>, history);
        QFETCH(int, minutesAgo);
        QFETCH(bool, running);
        QFETCH(bool, starts);
        SpeedTestServer server({.rate = 20'000'000});
        Rig rig(server.base(), history);
        if (running) {
            rig.service.start();
            QVERIFY(rig.reaches(Kind::download));
        }
        QSignalSpy changes(&rig.service, &SpeedTestService::boardChanged);
        rig.service.runIfDue(1h, earlier.date.addSecs(minutesAgo * 60));
        QCOMPARE(rig.service.phase().kind,
                 starts ? Kind::ping : (running ? Kind::download : Kind::idle));
        QCOMPARE(changes.count(), starts ? 1 : 0);
    }

    // A tile's schedule starts a test once the last is as old as its interval, tries again 5,
    // then 10 minutes after failures, and stops with the last tile that asks.
    void tilesSchedule() {
        Rig rig(closedPort(), {earlier});
        rig.clock.setNow(earlier.date.addSecs(30 * 60));
        SpeedTestSchedule schedule(rig.service, rig.clock, rig.scheduler);
        WidgetInstance tile;
        tile.kind = QStringLiteral("speedtest");
        tile.settings = WidgetSettings{{QStringLiteral("every"), QStringLiteral("3600")}};
        WidgetInstance asksNothing = tile;
        asksNothing.settings = WidgetSettings{{QStringLiteral("every"), QStringLiteral("0")}};
        schedule.setTiles({{asksNothing, true}});
        QVERIFY(rig.scheduler.pending().empty());
        schedule.setTiles({{asksNothing, true}, {tile, false}});
        QCOMPARE(schedule.every(), 1h);
        QCOMPARE(rig.service.phase().kind, Kind::idle);
        rig.scheduler.advance(25min);
        QCOMPARE(rig.service.phase().kind, Kind::idle);
        rig.scheduler.advance(5min);
        QCOMPARE(rig.service.phase().kind, Kind::ping);
        QVERIFY(rig.reaches(Kind::failed));
        rig.scheduler.advance(5min);
        QCOMPARE(rig.service.phase().kind, Kind::ping);
        QVERIFY(rig.reaches(Kind::failed));
        rig.scheduler.advance(5min);
        QCOMPARE(rig.service.phase().kind, Kind::failed);
        rig.scheduler.advance(5min);
        QCOMPARE(rig.service.phase().kind, Kind::ping);
        QVERIFY(rig.reaches(Kind::failed));
        schedule.setTiles({});
        QCOMPARE(schedule.every(), 0s);
        QVERIFY(rig.scheduler.pending().empty());
    }

    // The stored history is read leniently: what cannot be read is dropped, not the rest.
    void storedHistory_data() {
        QTest::addColumn<QByteArray>("stored");
        QTest::addColumn<int>("kept");
        row("not JSON", QByteArray("[{\"date\": 1"), 0);
        row("not a list", QByteArray("{\"date\": 1}"), 0);
        row("bad members dropped",
            QByteArray("[1, {\"date\": 800000000, \"downMbps\": 50, \"upMbps\": 10, \"pingMs\": "
                       "9}, {\"date\": \"x\", \"downMbps\": 5, \"upMbps\": 1, \"pingMs\": 1}, "
                       "{\"date\": 800000001, \"downMbps\": -5, \"upMbps\": 1, \"pingMs\": 1}, "
                       "{\"date\": 800000002, \"upMbps\": 1, \"pingMs\": 1}]"),
            1);
        QByteArray many = "[";
        for (int i = 0; i < 40; ++i) {
            many += (i > 0 ? "," : "") + QByteArray("{\"date\": ") + QByteArray::number(i) +
                    ", \"downMbps\": 1, \"upMbps\": 1, \"pingMs\": 1}";
        }
        row("the newest thirty", many + "]", 30);
    }
    void storedHistory() {
        QFETCH(QByteArray, stored);
        QFETCH(int, kept);
        ManualClock clock;
        ManualScheduler scheduler(&clock);
        MemoryDefaults defaults;
        defaults.setValue(SpeedTestService::historyKey(), QString::fromUtf8(stored));
        SpeedTestService service({clock, scheduler, defaults, Endpoints(), quickPlan()});
        QCOMPARE(service.board().history.size(), kept);
        if (kept == 30) {
            QCOMPARE(service.last()->date,
                     QDateTime::fromSecsSinceEpoch(JsonCoding::referenceDateOffset + 39));
        }
    }
};

QTEST_GUILESS_MAIN(TestSpeedTestService)
#include "tst_speedtestservice.moc"
