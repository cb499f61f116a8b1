// The app time service on a manual clock with an application in front and idle time set by the
// test: it counts only while a tile is shown and the person is there, and keeps its file.
#include "Files.h"
#include "LedgerTotals.h"
#include "ManualScheduler.h"
#include "TestRows.h"
#include "desk/AppUsageService.h"
#include "platform/null/FixedForegroundApplication.h"
#include "platform/null/FixedUserPresence.h"
#include "platform/null/PlainAppDirectory.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace std::chrono_literals;

namespace {

const QUuid tile = QUuid::fromString(QLatin1String("{5d0c7f6e-4d1a-4a43-9d39-2b0f3b9f6a11}"));

struct Fixture {
    QTemporaryDir dir;
    ManualClock clock{QDateTime::fromSecsSinceEpoch(1773478800)};
    ManualScheduler scheduler{&clock};
    FixedForegroundApplication foreground;
    FixedUserPresence presence;
    PlainAppDirectory apps;
    std::unique_ptr<AppUsageService> service;

    Fixture() {
        apps.add(QStringLiteral("xscreensaver"), {.name = QStringLiteral("XScreenSaver"),
                                                  .icon = {},
                                                  .category = AppCategory::other,
                                                  .isScreenLocker = true});
        make();
    }
    QString path() const { return dir.filePath(QStringLiteral("app-usage.json")); }
    void make() {
        service =
            std::make_unique<AppUsageService>(AppUsageService::Services{.foreground = foreground,
                                                                        .presence = presence,
                                                                        .apps = apps,
                                                                        .clock = clock,
                                                                        .scheduler = scheduler,
                                                                        .path = path()});
    }
    void show(const WidgetSettings& settings = {}) { service->showTiles({{tile, settings}}); }
    void front(const QString& id, bool self = false) {
        foreground.activate({.id = id, .name = id.toUpper(), .isThisProgram = self});
    }

    // Steps separated by blanks: "+N" lets N seconds pass; "show", "hide"; "front:<id>" brings an
    // app forward ("self" this program's window, "-" a window without class); "idle:N"; "away",
    // "back".
    void play(const QString& steps) {
        for (const QString& step : steps.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            const QString argument = step.section(QLatin1Char(':'), 1);
            if (step.startsWith(QLatin1Char('+'))) {
                scheduler.advance(std::chrono::seconds(step.mid(1).toInt()));
            } else if (step == QLatin1String("show")) {
                show();
            } else if (step == QLatin1String("hide")) {
                service->showTiles({});
            } else if (step.startsWith(QLatin1String("front:"))) {
                front(argument == QLatin1String("-") ? QString() : argument,
                      argument == QLatin1String("self"));
            } else if (step.startsWith(QLatin1String("idle:"))) {
                presence.setIdleSeconds(argument.toDouble());
            } else {
                presence.setAway(step == QLatin1String("away"));
            }
        }
    }
};

QString stored(const QString& path) {
    const std::optional<AppUsageLedger> ledger = AppUsageLedger::fromJson(readFile(path));
    return ledger ? totals(*ledger) : QStringLiteral("(none)");
}

} // namespace

class TestAppUsageService : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void counts_data() {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("expected");
        row("nothing counts without a tile", "front:a +100", "");
        row("a tile on the desktop starts the count", "front:a +30 show +100", "a=100");
        row("the last tile gone stops it", "front:a show +40 hide +100", "a=40");
        row("a switch counts to the moment, not to the tick", "front:a show +30 front:b +10",
            "a=30 b=10");
        row("away stops the clock, back starts it", "front:a show +20 away +100 back +20", "a=40");
        row("this program, the screen locker and classless windows count as nothing",
            "front:self show +40 front:xscreensaver +40 front:- +40", "");
        row("five minutes without input stop the clock at that moment",
            "front:a show idle:301 +20 +100", "a=19");
    }
    void counts() {
        QFETCH(QString, steps);
        QFETCH(QString, expected);
        Fixture f;
        f.play(steps);
        QCOMPARE(totals(f.service->tracker().ledger), expected);
    }

    void keepsItsFile() {
        Fixture f;
        f.play(QStringLiteral("front:a show +100"));
        // Saved every fifth tick: the one at 80 s.
        QCOMPARE(stored(f.path()), QStringLiteral("a=80"));
        f.service.reset();
        QCOMPARE(stored(f.path()), QStringLiteral("a=100"));
        f.make();
        f.play(QStringLiteral("show +20"));
        QCOMPARE(totals(f.service->tracker().ledger), QStringLiteral("a=120"));
    }

    void unreadableFileIsSetAside() {
        Fixture f;
        QVERIFY(writeFile(f.path(), "\x01 not a ledger"));
        f.play(QStringLiteral("front:a show +20"));
        QCOMPARE(totals(f.service->tracker().ledger), QStringLiteral("a=20"));
        const QStringList aside =
            QDir(f.dir.path()).entryList({QStringLiteral("app-usage.*.corrupt")});
        QCOMPARE(aside.size(), 1);
        QCOMPARE(readFile(f.dir.filePath(aside.first())), QByteArray("\x01 not a ledger"));
        f.play(QStringLiteral("hide"));
        QCOMPARE(stored(f.path()), QStringLiteral("a=20"));
    }

    void clearForgetsEverything() {
        Fixture f;
        f.play(QStringLiteral("front:a show +100"));
        QVERIFY(QFile::exists(f.path()));
        f.service->clear();
        QVERIFY(!QFile::exists(f.path()));
        QCOMPARE(f.service->board().viewFor(tile)->summary, AppUsageSummary());
        // The running stretch went too: the next tick starts a new one.
        f.play(QStringLiteral("+40"));
        QCOMPARE(totals(f.service->tracker().ledger), QStringLiteral("a=20"));
    }

    void tilesLookAgainAfterTheirPeriod() {
        Fixture f;
        f.play(QStringLiteral("front:a"));
        f.show({{QStringLiteral("every"), QStringLiteral("30")}});
        QSignalSpy changed(f.service.get(), &AppUsageService::boardChanged);
        f.scheduler.advance(29min);
        f.service->refresh();
        QCOMPARE(f.service->board().viewFor(tile)->summary.total, 0.0);
        f.scheduler.advance(1min);
        f.service->refresh();
        QCOMPARE(f.service->board().viewFor(tile)->summary.total, 1800.0);
        QCOMPARE(changed.count(), 1);
        // Other settings are looked at at once.
        f.show({{QStringLiteral("every"), QStringLiteral("30")},
                {QStringLiteral("group"), QStringLiteral("categories")}});
        QCOMPARE(f.service->board().viewFor(tile)->summary.rows.first().appID,
                 QStringLiteral("cat:other"));
    }
};

QTEST_GUILESS_MAIN(TestAppUsageService)
#include "tst_appusageservice.moc"
