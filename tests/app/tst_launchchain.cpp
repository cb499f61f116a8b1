#include "ManualClock.h"
#include "TarnwickProcess.h"
#include "app/LaunchChain.h"
#include "app/LaunchModes.h"
#include "platform/null/MemoryDefaults.h"
#include "tick/SnapshotClock.h"

#include <QTemporaryDir>
#include <QTest>

namespace {

using Run = tw::test::ProcessRun;

// The real executable, with its preferences in a directory of its own, on the off-screen
// platform, or with no platform chosen and `display` as DISPLAY (none when empty).
Run runTarnwick(const QStringList& arguments, const QString& home,
                const QString& twkTime = QString(),
                const QString& display = QStringLiteral("offscreen")) {
    QProcessEnvironment environment = tw::test::isolatedEnvironment(home, twkTime);
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    environment.remove(QStringLiteral("DISPLAY"));
    environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    if (display == QLatin1String("offscreen")) {
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), display);
    } else if (!display.isEmpty()) {
        environment.insert(QStringLiteral("DISPLAY"), display);
    }
    return tw::test::runProcess(QStringLiteral(TARNWICK_EXECUTABLE), arguments, environment);
}

// No X server answers there.
const QString bogusDisplay = QStringLiteral(":9871");

const QString countsLine = QStringLiteral("widgets=51 sizes=9 themes=25\n");
const QString sizesEnd =
    QStringLiteral("51 widgets, 249 of 459 possible size slots filled (54 %)\n");
const int helpLines = 39;
const QString listSizesStart = QStringLiteral("clock:small,wide,large,banner,wideTall\n");

} // namespace

class TestLaunchChain : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void modesAsAProcess_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("outStart");
        QTest::addColumn<QString>("outEnd");
        QTest::addColumn<int>("lines");
        QTest::newRow("counts") << QStringList{QStringLiteral("--counts")} << countsLine
                                << countsLine << 1;
        QTest::newRow("list-sizes")
            << QStringList{QStringLiteral("--list-sizes")} << listSizesStart
            << QStringLiteral("mirror:small,tall,wide,large,wideTall,huge\n") << 51;
        QTest::newRow("sizes") << QStringList{QStringLiteral("--sizes")}
                               << QStringLiteral("widget ") << sizesEnd << 53;
        QTest::newRow("first in the chain wins, not first on the line")
            << QStringList{QStringLiteral("--counts"), QStringLiteral("--sizes")}
            << QStringLiteral("widget ") << sizesEnd << 53;
        QTest::newRow("later flags are ignored")
            << QStringList{QStringLiteral("--list-sizes"), QStringLiteral("--counts")} << countsLine
            << countsLine << 1;
        const QString helpStart = QStringLiteral("tarnwick 0.1.0\n\nUsage: tarnwick [MODE]");
        const QString helpEnd =
            QStringLiteral("Exit status: 0 on success; 1 when a mode fails or no display can be "
                           "opened.\n");
        QTest::newRow("help") << QStringList{QStringLiteral("--help")} << helpStart << helpEnd
                              << helpLines;
        QTest::newRow("-h wins over every mode")
            << QStringList{QStringLiteral("--counts"), QStringLiteral("-h")} << helpStart << helpEnd
            << helpLines;
    }
    void modesAsAProcess() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, outStart);
        QFETCH(QString, outEnd);
        QFETCH(int, lines);
        QTemporaryDir home;
        const Run run = runTarnwick(arguments, home.path(), QString(), QString());
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.err, QString());
        QVERIFY2(run.out.startsWith(outStart), qPrintable(run.out.left(200)));
        QVERIFY2(run.out.endsWith(outEnd), qPrintable(run.out.right(200)));
        QCOMPARE(run.out.count(QLatin1Char('\n')), lines);
    }

    // Without a mode the desktop host starts. Without a display it says so in one sentence and
    // ends, whatever else is on the line, before Qt can abort for want of one; on the off-screen
    // platform there is no desktop to put tiles on.
    void hostNeedsADisplay_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("display");
        QTest::addColumn<QString>("err");
        const QString unset = QStringLiteral("Tarnwick needs a display: set DISPLAY or "
                                             "WAYLAND_DISPLAY.\n");
        const QString bogus = QStringLiteral("Tarnwick needs a display: cannot open DISPLAY=%1; "
                                             "set DISPLAY or WAYLAND_DISPLAY to a running "
                                             "display.\n")
                                  .arg(bogusDisplay);
        QTest::newRow("no flag, no display") << QStringList{} << QString() << unset;
        QTest::newRow("unknown flag, no display")
            << QStringList{QStringLiteral("--web"), QStringLiteral("example.com")} << QString()
            << unset;
        QTest::newRow("case-sensitive, display that cannot be opened")
            << QStringList{QStringLiteral("--COUNTS")} << bogusDisplay << bogus;
        QTest::newRow("whole arguments only, display that cannot be opened")
            << QStringList{QStringLiteral("--counts=yes"), QStringLiteral("-platform"),
                           QStringLiteral("xcb")}
            << bogusDisplay << bogus;
        QTest::newRow("a mode without its value is absent")
            << QStringList{QStringLiteral("--snapshot-widget")} << QString()
            << unset + QStringLiteral("--snapshot-widget is missing its value and was ignored; "
                                      "see tarnwick --help.\n");
        QTest::newRow("off-screen platform")
            << QStringList{QStringLiteral("--verbose")} << QStringLiteral("offscreen") << unset;
    }
    void hostNeedsADisplay() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, display);
        QTemporaryDir home;
        const Run run = runTarnwick(arguments, home.path(), QString(), display);
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.out, QString());
        QTEST(run.err, "err");
    }

    // A mode nobody can find is a mode nobody uses.
    void helpNamesEveryMode() {
        QTemporaryDir home;
        const Run run = runTarnwick({QStringLiteral("--help")}, home.path());
        for (const tw::LaunchStep& step : tw::LaunchChain::steps()) {
            if (step.flag != nullptr) {
                QVERIFY2(run.out.contains(QLatin1String(step.flag)), step.flag);
            }
        }
    }

    // The pin changes nothing in the reports: they stay the same for any TWK_TIME.
    void reportsIgnoreTheTime() {
        QTemporaryDir home;
        const Run run =
            runTarnwick({QStringLiteral("--counts")}, home.path(), QStringLiteral("7:30"));
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.out, countsLine);
        QCOMPARE(run.err, QString());
    }

    void winnerFollowsTheTable_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("winner");
        QTest::newRow("none") << QStringList{} << QString();
        QTest::newRow("sizes before counts")
            << QStringList{QStringLiteral("--counts"), QStringLiteral("--sizes")}
            << QStringLiteral("--sizes");
        QTest::newRow("counts before list-sizes")
            << QStringList{QStringLiteral("--list-sizes"), QStringLiteral("--counts")}
            << QStringLiteral("--counts");
        QTest::newRow("list-sizes alone")
            << QStringList{QStringLiteral("--list-sizes")} << QStringLiteral("--list-sizes");
    }
    void winnerFollowsTheTable() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, winner);
        const tw::LaunchStep* step = tw::LaunchChain::winner(
            tw::LaunchArguments(QStringList{QStringLiteral("tarnwick")} + arguments));
        QCOMPARE(step ? QString::fromLatin1(step->flag) : QString(), winner);
    }

    // TWK_TIME is read by the one step without a flag, which lies before --list-sizes.
    void timeStepPinsTheClock_data() {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("now");
        QTest::newRow("7:30") << "7:30"
                              << "2026-03-15 07:30:00";
        QTest::newRow("7") << "7"
                           << "2026-03-14 09:26:53";
        QTest::newRow("7:30:15") << "7:30:15"
                                 << "2026-03-14 09:26:53";
        QTest::newRow("unset") << QString() << "2026-03-14 09:26:53";
    }
    void timeStepPinsTheClock() {
        QFETCH(QString, value);
        if (value.isNull()) {
            qunsetenv("TWK_TIME");
        } else {
            qputenv("TWK_TIME", value.toUtf8());
        }
        tw::test::ManualClock system;
        tw::SnapshotClock clock(system);
        tw::MemoryDefaults defaults;
        const tw::LaunchArguments arguments({QStringLiteral("tarnwick")});
        QString out;
        QString err;
        QTextStream outStream(&out);
        QTextStream errStream(&err);
        tw::LaunchContext context{arguments, clock, defaults, outStream, errStream, {}};
        QCOMPARE(tw::runSnapshotTimeStep(context), std::nullopt);
        qunsetenv("TWK_TIME");
        QTEST(clock.now().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")), "now");
        QVERIFY(out.isEmpty() && err.isEmpty());
    }

    void timeStepStandsBeforeTheWidgetModes() {
        const QList<tw::LaunchStep>& steps = tw::LaunchChain::steps();
        qsizetype timeStep = -1;
        qsizetype listSizes = -1;
        for (qsizetype i = 0; i < steps.size(); ++i) {
            if (steps.at(i).run == &tw::runSnapshotTimeStep) {
                timeStep = i;
            } else if (steps.at(i).flag &&
                       QLatin1String(steps.at(i).flag) == QLatin1String("--list-sizes")) {
                listSizes = i;
            }
        }
        QVERIFY(timeStep >= 0 && listSizes > timeStep);
        QVERIFY(steps.at(timeStep).flag == nullptr);
    }
};

QTEST_GUILESS_MAIN(TestLaunchChain)
#include "tst_launchchain.moc"
