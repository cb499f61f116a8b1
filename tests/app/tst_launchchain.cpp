#include "ManualClock.h"
#include "TarnwickProcess.h"
#include "TestRows.h"
#include "app/LaunchChain.h"
#include "app/LaunchModes.h"
#include "faces/Wallpaper.h"
#include "platform/null/MemoryDefaults.h"
#include "tick/SnapshotClock.h"

#include <QDir>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

using tw::test::matches;
using tw::test::row;
using tw::test::words;

namespace {

// No X server answers there.
const QString bogus = QStringLiteral(":9871");
const QString counts = QStringLiteral("widgets=51 sizes=9 themes=25\n");
const QString sizes =
    QStringLiteral("widget …51 widgets, 249 of 459 possible size slots filled (54 %)\n");
const QString listed = QStringLiteral("clock:small,wide,large,banner,wideTall\n…"
                                      "mirror:small,tall,wide,large,wideTall,huge\n");
const QString help = QStringLiteral("tarnwick 0.1.0\n\nUsage: tarnwick [MODE]…Exit status: 0 on "
                                    "success; 1 when a mode fails or no display can be opened.\n");
const QString unset = QStringLiteral("Tarnwick needs a display: set DISPLAY or WAYLAND_DISPLAY.\n");
const QString unopened = QStringLiteral("Tarnwick needs a display: cannot open DISPLAY=:9871; set "
                                        "DISPLAY or WAYLAND_DISPLAY to a running display.\n");

} // namespace

class TestLaunchChain : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // The executable as a user runs it. With several mode flags the first in the chain wins,
    // whatever their order on the line. Without a mode the desktop host starts, and without a
    // display it says so in one sentence before Qt can abort for want of one. The wallpaper modes
    // need no display; DIR stands for a fresh folder, BLOCKED for a path under a regular file.
    // Expected text is matched with "…" standing for anything.
    void runs_data() {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QString>("twkTime");
        QTest::addColumn<QString>("display");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("out");
        QTest::addColumn<int>("lines");
        QTest::addColumn<QString>("err");
        QTest::addColumn<int>("pictures");
        const QString none;
        const int all = int(tw::Wallpaper::all().size());
        const QString written = QStringLiteral("…wallpapers written=%1 dir=DIR\n").arg(all);
        const QString probe = QStringLiteral(
            "symbols available : no\n…RESULT            : FAILED\nreason            : this desktop "
            "does not allow drawing above its lock screen: the screen locker owns the screen while "
            "it is locked\n");
        const QString ignored = QStringLiteral(
            "--snapshot-widget is missing its value and was ignored; see tarnwick --help.\n");
        row("counts", "--counts", none, none, 0, counts, 1, "", 0);
        row("the pin changes no report", "--counts", "7:30", none, 0, counts, 1, "", 0);
        row("list-sizes before probe-skylight", "--probe-skylight --list-sizes", none, none, 0,
            listed, 51, "", 0);
        row("sizes before counts", "--counts --sizes", none, none, 0, sizes, 53, "", 0);
        row("counts before list-sizes", "--list-sizes --counts", none, none, 0, counts, 1, "", 0);
        row("probe-skylight", "--probe-skylight", none, none, 0, probe, 9, "", 0);
        // The test host is a closed port here: the run ends at its first ping.
        row("speedtest-cli before list-sizes", "--list-sizes --speedtest-cli", none, none, 0,
            "phase=failed(No connection to the test server) live=0.0 down=— ping=—\n", 1, "…", 0);
        // -1 lines: all that --help prints alone.
        row("-h wins over every mode", "--counts -h", none, none, 0, help, -1, "", 0);
        row("no flag, no display", "", none, none, 1, "", 0, unset, 0);
        row("unknown flag, no display", "--bogus example.com", none, none, 1, "", 0, unset, 0);
        // A page without the picture's path falls through to the desktop host.
        row("--web without its path", "--web example.com", none, none, 1, "", 0,
            unset + QStringLiteral(
                        "--web is missing its value and was ignored; see tarnwick --help.\n"),
            0);
        row("case-sensitive, display that cannot be opened", "--COUNTS", none, bogus, 1, "", 0,
            unopened, 0);
        row("whole arguments only", "--counts=yes -platform xcb", none, bogus, 1, "", 0, unopened,
            0);
        row("a mode without its value is absent", "--snapshot-widget", none, none, 1, "", 0,
            unset + ignored, 0);
        row("off-screen platform", "--verbose", none, "offscreen", 1, "", 0, unset, 0);
        row("wallpapers before counts", "--counts --wallpapers DIR", none, none, 0, "", 0, written,
            all);
        row("wallpapers: folder that cannot be made", "--wallpapers BLOCKED", none, none, 1, "", 0,
            "…wallpapers written=0 dir=BLOCKED\n", 0);
        row("apply-wallpaper before sizes, unknown id", "--apply-wallpaper nope --sizes", none,
            none, 1, "apply-wallpaper id=nope count=-1\n", 1, "…", 0);
        row("wallpaper ids are exact", "--apply-wallpaper Dawn", none, none, 1,
            "apply-wallpaper id=Dawn count=-1\n", 1, "…", 0);
        row("no display to show the wallpaper on", "--apply-wallpaper dawn", none, none, 0,
            "apply-wallpaper id=dawn count=0\n", 1, "…", 0);
        // The sky needs no display; times are on the given moment's day, in its offset.
        row("sky", "--sky 52.52 13.40 2026-03-20T18:30:00+01:00", none, none, 0,
            "phase=0.0…\nillumination=…\nsunrise=2026-03-20T06:…+01:00\nsunset=2026-03-20T18:…"
            "+01:00\nmoonrise=2026-03-20T0…+01:00\nmoonset=2026-03-20T…+01:00\nsubsolar_lat=-0.81"
            "\nsubsolar_lon=-82.50\n",
            8, "", 0);
        row("counts before sky", "--sky 0 0 2026-03-20T12:00:00Z --counts", none, none, 0, counts,
            1, "", 0);
        row("sky: latitude off the globe", "--sky 91 0 2026-03-20T12:00:00Z", none, none, 1, "", 0,
            "sky: the latitude …\"91\"\n", 0);
        row("sky: a value missing", "--sky 0 0", none, none, 1, "", 0, "usage: tarnwick --sky …\n",
            0);
    }
    void runs() {
        QFETCH(QString, arguments);
        QFETCH(QString, twkTime);
        QFETCH(QString, display);
        QFETCH(QString, out);
        QFETCH(QString, err);
        QFETCH(int, pictures);
        const QTemporaryDir scratch;
        const QString dir = scratch.filePath(QStringLiteral("pictures"));
        QFile blocker(scratch.filePath(QStringLiteral("file")));
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        const auto fill = [&](QString text) {
            return text.replace(QLatin1String("DIR"), dir)
                .replace(QLatin1String("BLOCKED"), blocker.fileName() + QLatin1String("/pictures"));
        };
        const auto run = tw::test::runTarnwick(QStringLiteral(TARNWICK_EXECUTABLE),
                                               tw::test::words(fill(arguments)), scratch.path(),
                                               twkTime, display);
        QTEST(run.exitCode, "exitCode");
        QVERIFY2(matches(run.out, fill(out)), qPrintable(run.out.left(300)));
        QFETCH(int, lines);
        if (lines < 0) {
            lines = int(tw::test::runTarnwick(QStringLiteral(TARNWICK_EXECUTABLE),
                                              {QStringLiteral("--help")}, scratch.path())
                            .out.count(QLatin1Char('\n')));
        }
        QCOMPARE(int(run.out.count(QLatin1Char('\n'))), lines);
        QVERIFY2(matches(run.err, fill(err)), qPrintable(run.err));
        // Each wallpaper a picture of its own at the size asked for.
        const QStringList files = QDir(dir).entryList(QDir::Files);
        QCOMPARE(files.size(), pictures);
        QSet<QRgb> middles;
        for (const QString& file : files) {
            const QImage picture(QDir(dir).filePath(file));
            QCOMPARE(picture.size(), QSize(960, 600));
            middles.insert(picture.pixel(480, 300));
        }
        QCOMPARE(middles.size(), pictures);
    }

    // The command line as each step reads it; values are joined by "|".
    void values_data() {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("flag");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("expected");
        row("flag present", "--counts", "--counts", 0, "");
        row("flag absent", "", "--counts", 0, "absent");
        row("exact case", "--Counts", "--counts", 0, "absent");
        row("whole argument", "--counts=1", "--counts", 0, "absent");
        row("one value", "--theme ocean", "--theme", 1, "ocean");
        row("value missing", "--theme", "--theme", 1, "absent");
        row("two values, one given", "--web example.com", "--web", 2, "absent");
        row("two values", "--web example.com /tmp/a.png --dark", "--web", 2,
            "example.com|/tmp/a.png");
        row("first occurrence wins", "--theme ocean --theme rose", "--theme", 1, "ocean");
        row("a value may look like a flag", "--theme --dark", "--theme", 1, "--dark");
        row("first occurrence lacks its value, no second chance", "--web a --web", "--web", 2,
            "a|--web");
    }
    void values() {
        QFETCH(QString, line);
        QFETCH(QString, flag);
        QFETCH(int, count);
        const tw::LaunchArguments arguments(words(QStringLiteral("tarnwick ") + line));
        const std::optional<QStringList> values = arguments.values(flag, count);
        QTEST(values ? values->join(QLatin1Char('|')) : QStringLiteral("absent"), "expected");
        if (count == 1) {
            QCOMPARE(arguments.value(flag), values ? std::optional(values->first()) : std::nullopt);
        }
    }

    // A mode nobody can find is a mode nobody uses.
    void helpNamesEveryMode() {
        const QTemporaryDir home;
        const auto run = tw::test::runTarnwick(QStringLiteral(TARNWICK_EXECUTABLE),
                                               {QStringLiteral("--help")}, home.path());
        for (const tw::LaunchStep& step : tw::LaunchChain::steps()) {
            QVERIFY2(step.flag == nullptr || run.out.contains(QLatin1String(step.flag)), step.flag);
        }
    }

    // TWK_TIME pins the clock to a time of day, the next one to come; anything else is ignored.
    void timeStepPinsTheClock_data() {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("now");
        row("7:30", "7:30", "2026-03-15 07:30:00");
        row("7", "7", "2026-03-14 09:26:53");
        row("7:30:15", "7:30:15", "2026-03-14 09:26:53");
        row("unset", QString(), "2026-03-14 09:26:53");
    }
    void timeStepPinsTheClock() {
        QFETCH(QString, value);
        value.isNull() ? (void)qunsetenv("TWK_TIME") : (void)qputenv("TWK_TIME", value.toUtf8());
        tw::test::ManualClock system;
        tw::SnapshotClock clock(system);
        tw::MemoryDefaults defaults;
        const tw::LaunchArguments arguments({QStringLiteral("tarnwick")});
        QString out;
        QTextStream stream(&out);
        tw::LaunchContext context{arguments, clock, defaults, stream, stream, {}};
        QCOMPARE(tw::runSnapshotTimeStep(context), std::nullopt);
        qunsetenv("TWK_TIME");
        QTEST(clock.now().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")), "now");
        QVERIFY(out.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestLaunchChain)
#include "tst_launchchain.moc"
