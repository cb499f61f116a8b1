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

// The real executable, with its preferences in a directory of its own.
Run runTarnwick(const QStringList& arguments, const QString& home,
                const QString& twkTime = QString()) {
    QProcessEnvironment environment = tw::test::isolatedEnvironment(home, twkTime);
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    return tw::test::runProcess(QStringLiteral(TARNWICK_EXECUTABLE), arguments, environment);
}

const QString countsLine = QStringLiteral("widgets=51 sizes=9 themes=25\n");
const QString sizesEnd =
    QStringLiteral("51 widgets, 249 of 459 possible size slots filled (54 %)\n");
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
    }
    void modesAsAProcess() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, outStart);
        QFETCH(QString, outEnd);
        QFETCH(int, lines);
        QTemporaryDir home;
        const Run run = runTarnwick(arguments, home.path());
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.err, QString());
        QVERIFY2(run.out.startsWith(outStart), qPrintable(run.out.left(200)));
        QVERIFY2(run.out.endsWith(outEnd), qPrintable(run.out.right(200)));
        QCOMPARE(run.out.count(QLatin1Char('\n')), lines);
    }

    // Without a mode the desktop host starts; the off-screen platform has no desktop to put
    // tiles on, and the host says so instead of running unseen.
    void hostNeedsADisplay_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("no flag: the host") << QStringList{};
        QTest::newRow("case-sensitive") << QStringList{QStringLiteral("--COUNTS")};
        QTest::newRow("whole arguments only") << QStringList{QStringLiteral("--counts=yes")};
        QTest::newRow("unknown flags fall through")
            << QStringList{QStringLiteral("--web"), QStringLiteral("example.com")};
    }
    void hostNeedsADisplay() {
        QFETCH(QStringList, arguments);
        QTemporaryDir home;
        const Run run = runTarnwick(arguments, home.path());
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.out, QString());
        QVERIFY2(run.err.contains(QLatin1String("Tarnwick needs a display")), qPrintable(run.err));
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
