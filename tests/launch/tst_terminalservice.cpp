#include "ManualClock.h"
#include "ManualScheduler.h"
#include "TestRows.h"
#include "launch/TerminalService.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;
using namespace std::chrono_literals;
using tw::test::ManualClock;
using tw::test::ManualScheduler;
using tw::test::row;
using Outcome = RunResult::Outcome;

Q_DECLARE_METATYPE(tw::RunResult::Outcome)

namespace {

struct Rig {
    ManualClock clock;
    ManualScheduler scheduler{&clock};
    QTemporaryDir home;
    TerminalService service{scheduler, clock, home.path()};
    const QUuid id = QUuid::createUuid();

    void show(const QString& command, bool inView = true, int interval = 60, int timeout = 10) {
        service.setTiles({{id,
                           TerminalSettings::fromSettings(
                               {{QStringLiteral("command"), command},
                                {QStringLiteral("interval"), QString::number(interval)},
                                {QStringLiteral("timeout"), QString::number(timeout)}}),
                           inView}});
    }
    const TerminalState& state() const { return *service.state(id); }
    bool waitEnded() {
        return QTest::qWaitFor([&] { return !state().running; }, 10000);
    }
};

bool processGone(const QString& pidFile) {
    QFile file(pidFile);
    if (!QTest::qWaitFor([&] { return file.exists() && file.size() > 0; }, 5000) ||
        !file.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QString proc = QStringLiteral("/proc/") + QString::fromLatin1(file.readAll().trimmed());
    // Gone, or a zombie nobody waits for any more.
    return QTest::qWaitFor(
        [&] {
            QFile stat(proc + QStringLiteral("/stat"));
            return !stat.open(QIODevice::ReadOnly) || stat.readAll().contains(") Z ");
        },
        5000);
}

} // namespace

class TestTerminalService : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void outcome_data() {
        QTest::addColumn<QString>("command");
        QTest::addColumn<int>("advanceSeconds"); // virtual time once started: the time-out
        QTest::addColumn<Outcome>("outcome");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("lastLine");
        QTest::addColumn<qsizetype>("lines");
        row("output shown", "printf 'one\\ntwo\\n'", 0, Outcome::exited, 0, "two", qsizetype(2));
        row("stderr merged, exit code kept", "sh -c 'echo oops >&2; exit 3'", 0, Outcome::exited, 3,
            "oops", qsizetype(1));
        row("a hang ends at the time-out", "sleep 30", 5, Outcome::timedOut, 0, "", qsizetype(0));
        row("a flood ends at the cap", "yes", 0, Outcome::capped, 0, "y",
            qsizetype(TerminalService::outputCap / 2));
        row("a missing program", "no-such-program-of-tarnwick --x", 0, Outcome::failedToStart, 0,
            "", qsizetype(0));
        row("stdin is closed, not waited on", "cat", 0, Outcome::exited, 0, "", qsizetype(0));
    }
    void outcome() {
        QFETCH(QString, command);
        QFETCH(int, advanceSeconds);
        QFETCH(Outcome, outcome);
        QFETCH(int, exitCode);
        QFETCH(QString, lastLine);
        QFETCH(qsizetype, lines);
        Rig rig;
        rig.show(command, true, 60, 5);
        if (advanceSeconds > 0) {
            QTest::qWait(200);
            QVERIFY(rig.state().running);
            rig.scheduler.advance(std::chrono::seconds(advanceSeconds));
        }
        QVERIFY(rig.waitEnded());
        QCOMPARE(rig.state().outcome, std::optional(outcome));
        QCOMPARE(rig.state().exitCode, exitCode);
        QCOMPARE(rig.state().text.lines.size(), lines);
        if (lines > 0) {
            QCOMPARE(rig.state().text.lines.last().text(), lastLine);
        }
    }

    void runsOnlyInViewAtItsPace() {
        Rig rig;
        rig.show(QStringLiteral("printf x"), false);
        QVERIFY(!rig.state().running);
        QVERIFY(!rig.state().outcome);
        rig.show(QStringLiteral("printf x"), true, 30);
        QVERIFY(rig.waitEnded());
        QCOMPARE(rig.state().text.plain(), QStringLiteral("x"));
        rig.scheduler.advance(29s);
        QVERIFY(!rig.state().running);
        rig.scheduler.advance(1s);
        QVERIFY(rig.state().running);
        QVERIFY(rig.waitEnded());
        // Out of view nothing is due; back in view after the pace it runs at once.
        rig.show(QStringLiteral("printf x"), false, 30);
        rig.scheduler.advance(60s);
        QVERIFY(!rig.state().running);
        rig.show(QStringLiteral("printf x"), true, 30);
        QVERIFY(rig.state().running);
    }

    void hidingKillsTheRunAndKeepsTheOutput() {
        Rig rig;
        rig.show(QStringLiteral("printf first"));
        QVERIFY(rig.waitEnded());
        rig.service.runNow(rig.id);
        const QString pidFile = rig.home.filePath(QStringLiteral("pid"));
        // What the command starts in the background goes with it.
        rig.show(QStringLiteral("sh -c 'sleep 30 & echo $! > ") + pidFile +
                 QStringLiteral("; wait'"));
        QVERIFY(rig.state().running);
        QVERIFY(!rig.state().outcome); // a new command starts afresh
        QTest::qWait(100);
        rig.show(rig.service.state(rig.id)->command.text(), false);
        QVERIFY(!rig.state().running);
        QVERIFY(processGone(pidFile));
    }

    void clickRunsOnlyAtRestAndInView() {
        Rig rig;
        rig.show(QStringLiteral("printf x"), true, 0);
        QVERIFY(rig.waitEnded());
        rig.scheduler.advance(3600s);
        QVERIFY(!rig.state().running);
        rig.service.runNow(rig.id);
        QVERIFY(rig.state().running);
        QVERIFY(rig.waitEnded());
        rig.show(QStringLiteral("printf x"), false, 0);
        rig.service.runNow(rig.id);
        QVERIFY(!rig.state().running);
    }

    void aBadCommandSaysWhyAndRunsNothing() {
        Rig rig;
        rig.show(QStringLiteral("ls | wc"));
        QVERIFY(!rig.state().running);
        QVERIFY(!rig.state().problem.isEmpty());
        rig.service.setTiles({});
        QCOMPARE(rig.service.state(rig.id), nullptr);
    }

    void runsInTheChosenDirectory() {
        Rig rig;
        QVERIFY(QDir(rig.home.path()).mkdir(QStringLiteral("sub")));
        rig.service.setTiles({{rig.id,
                               TerminalSettings::fromSettings(
                                   {{QStringLiteral("command"), QStringLiteral("pwd")},
                                    {QStringLiteral("directory"), QStringLiteral("~/sub")}}),
                               true}});
        QVERIFY(rig.waitEnded());
        QCOMPARE(rig.state().text.plain(),
                 QDir(rig.home.filePath(QStringLiteral("sub"))).canonicalPath());
    }
};

QTEST_GUILESS_MAIN(TestTerminalService)
#include "tst_terminalservice.moc"
