#include "ManualClock.h"
#include "TarnwickProcess.h"
#include "app/LaunchChain.h"
#include "app/LaunchModes.h"
#include "faces/Wallpaper.h"
#include "platform/null/MemoryDefaults.h"
#include "tick/SnapshotClock.h"

#include <QDir>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

using tw::test::words;

namespace {

tw::test::ProcessRun runTarnwick(const QString& arguments, const QString& twkTime = {},
                                 const QString& display = {}) {
    const QTemporaryDir home;
    return tw::test::runTarnwick(QStringLiteral(TARNWICK_EXECUTABLE), words(arguments), home.path(),
                                 twkTime, display);
}

// No X server answers there.
const QString bogusDisplay = QStringLiteral(":9871");

const QString countsLine = QStringLiteral("widgets=51 sizes=9 themes=25\n");
const QString sizesEnd =
    QStringLiteral("51 widgets, 249 of 459 possible size slots filled (54 %)\n");
const QString helpStart = QStringLiteral("tarnwick 0.1.0\n\nUsage: tarnwick [MODE]");
const QString helpEnd =
    QStringLiteral("Exit status: 0 on success; 1 when a mode fails or no display can be opened.\n");

} // namespace

class TestLaunchChain : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // With several mode flags the first in the chain wins, whatever their order on the line.
    void modesAsAProcess_data() {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QString>("twkTime");
        QTest::addColumn<QString>("outStart");
        QTest::addColumn<QString>("outEnd");
        QTest::addColumn<int>("lines");
        QTest::newRow("counts") << "--counts" << QString() << countsLine << countsLine << 1;
        QTest::newRow("the pin changes no report") << "--counts"
                                                   << "7:30" << countsLine << countsLine << 1;
        QTest::newRow("list-sizes")
            << "--list-sizes" << QString() << "clock:small,wide,large,banner,wideTall\n"
            << "mirror:small,tall,wide,large,wideTall,huge\n"
            << 51;
        QTest::newRow("sizes") << "--sizes" << QString() << "widget " << sizesEnd << 53;
        QTest::newRow("sizes before counts")
            << "--counts --sizes" << QString() << "widget " << sizesEnd << 53;
        QTest::newRow("counts before list-sizes")
            << "--list-sizes --counts" << QString() << countsLine << countsLine << 1;
        QTest::newRow("probe-skylight, after list-sizes")
            << "--probe-skylight --list-sizes" << QString() << "clock:"
            << "mirror:small,tall,wide,large,wideTall,huge\n"
            << 51;
        QTest::newRow("probe-skylight")
            << "--probe-skylight" << QString() << "symbols available : no\n"
            << "RESULT            : FAILED\nreason            : this desktop does not allow "
               "drawing above its lock screen: the screen locker owns the screen while it is "
               "locked\n"
            << 9;
        QTest::newRow("help") << "--help" << QString() << helpStart << helpEnd << 55;
        QTest::newRow("-h wins over every mode")
            << "--counts -h" << QString() << helpStart << helpEnd << 55;
    }
    void modesAsAProcess() {
        QFETCH(QString, arguments);
        QFETCH(QString, twkTime);
        QFETCH(QString, outStart);
        QFETCH(QString, outEnd);
        QFETCH(int, lines);
        const auto run = runTarnwick(arguments, twkTime);
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
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QString>("display");
        QTest::addColumn<QString>("err");
        const QString unset = QStringLiteral("Tarnwick needs a display: set DISPLAY or "
                                             "WAYLAND_DISPLAY.\n");
        const QString bogus = QStringLiteral("Tarnwick needs a display: cannot open DISPLAY=%1; "
                                             "set DISPLAY or WAYLAND_DISPLAY to a running "
                                             "display.\n")
                                  .arg(bogusDisplay);
        QTest::newRow("no flag, no display") << "" << QString() << unset;
        QTest::newRow("unknown flag, no display") << "--web example.com" << QString() << unset;
        QTest::newRow("case-sensitive, display that cannot be opened")
            << "--COUNTS" << bogusDisplay << bogus;
        QTest::newRow("whole arguments only, display that cannot be opened")
            << "--counts=yes -platform xcb" << bogusDisplay << bogus;
        QTest::newRow("a mode without its value is absent")
            << "--snapshot-widget" << QString()
            << unset + QStringLiteral("--snapshot-widget is missing its value and was ignored; "
                                      "see tarnwick --help.\n");
        QTest::newRow("off-screen platform") << "--verbose"
                                             << "offscreen" << unset;
    }
    void hostNeedsADisplay() {
        QFETCH(QString, arguments);
        QFETCH(QString, display);
        const auto run = runTarnwick(arguments, QString(), display);
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.out, QString());
        QTEST(run.err, "err");
    }

    // The wallpaper modes stand before --sizes and --counts and need no display: the pictures are
    // drawn off-screen, and with no display reached nothing is applied. DIR stands for a fresh
    // folder, BLOCKED for a path under a regular file.
    void wallpaperModes_data() {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("out");
        QTest::addColumn<QString>("err");
        QTest::addColumn<int>("pictures");
        const int all = int(tw::Wallpaper::all().size());
        const QString written = QStringLiteral("wallpapers written=%1 dir=DIR\n").arg(all);
        QTest::newRow("all written") << "--wallpapers DIR" << 0 << "" << written << all;
        QTest::newRow("before counts") << "--counts --wallpapers DIR" << 0 << "" << written << all;
        QTest::newRow("folder that cannot be made") << "--wallpapers BLOCKED" << 1 << ""
                                                    << "wallpapers written=0 dir=BLOCKED\n"
                                                    << 0;
        QTest::newRow("unknown id")
            << "--apply-wallpaper nope --sizes" << 1 << "apply-wallpaper id=nope count=-1\n"
            << "" << 0;
        QTest::newRow("ids are exact")
            << "--apply-wallpaper Dawn" << 1 << "apply-wallpaper id=Dawn count=-1\n"
            << "" << 0;
        QTest::newRow("no display to show it on")
            << "--apply-wallpaper dawn" << 0 << "apply-wallpaper id=dawn count=0\n"
            << "" << 0;
    }
    void wallpaperModes() {
        QFETCH(QString, arguments);
        QFETCH(QString, out);
        QFETCH(QString, err);
        QFETCH(int, pictures);
        const QTemporaryDir scratch;
        const QString dir = scratch.filePath(QStringLiteral("pictures"));
        QFile blocker(scratch.filePath(QStringLiteral("file")));
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        const QString blocked = blocker.fileName() + QLatin1String("/pictures");
        const auto fill = [&](QString text) {
            return text.replace(QLatin1String("DIR"), dir)
                .replace(QLatin1String("BLOCKED"), blocked);
        };
        const auto run = runTarnwick(fill(arguments));
        QTEST(run.exitCode, "exitCode");
        QCOMPARE(run.out, fill(out));
        // A failure may be explained in the log above the line.
        QVERIFY2(err.isEmpty() || run.err.endsWith(fill(err)), qPrintable(run.err));
        const QStringList files = QDir(dir).entryList(QDir::Files);
        QCOMPARE(files.size(), pictures);
        // Each a picture of its own at the size asked for.
        QSet<QRgb> middles;
        for (const QString& file : files) {
            const QImage picture(QDir(dir).filePath(file));
            QCOMPARE(picture.size(), QSize(960, 600));
            middles.insert(picture.pixel(480, 300));
        }
        QCOMPARE(middles.size(), pictures);
    }

    // A mode nobody can find is a mode nobody uses.
    void helpNamesEveryMode() {
        const auto run = runTarnwick(QStringLiteral("--help"));
        for (const tw::LaunchStep& step : tw::LaunchChain::steps()) {
            if (step.flag != nullptr) {
                QVERIFY2(run.out.contains(QLatin1String(step.flag)), step.flag);
            }
        }
    }

    // TWK_TIME is read by the one step without a flag, which lies before the picture modes.
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
