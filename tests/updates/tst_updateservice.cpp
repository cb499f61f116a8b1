#include "LoopbackHttpServer.h"
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "TestRows.h"
#include "net/QtHttpClient.h"
#include "platform/null/MemoryDefaults.h"
#include "updates/ReleaseFeed.h"
#include "updates/UpdateService.h"
#include "updates/WhatsNew.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimeZone>

using namespace tw;
using namespace tw::test;
using Answer = LoopbackHttpServer::Answer;
using Outcome = UpdateStatus::Outcome;

Q_DECLARE_METATYPE(tw::test::LoopbackHttpServer::Answer)
Q_DECLARE_METATYPE(tw::UpdateStatus::Outcome)
Q_DECLARE_METATYPE(tw::Release)

namespace {

const QByteArray feedPath = "/releases/releases.json";

QByteArray feed(const char* releases) {
    return QByteArray(R"({"format":1,"releases":[)") + releases + "]}";
}

const QByteArray newer = feed(
    R"({"version":"0.3.0","notes":["Stacks remember their order"]},)"
    R"({"version":"0.2.0","notes":["Quotes on the desktop"]},{"version":"0.1.0","notes":["First"]})");

struct Rig {
    LoopbackHttpServer server;
    ManualClock clock{QDateTime(QDate(2026, 11, 24), QTime(12, 0), QTimeZone::utc())};
    ManualScheduler scheduler{&clock};
    QtHttpClient http{scheduler};
    MemoryDefaults defaults;

    std::unique_ptr<UpdateService> service(const QString& running = QStringLiteral("0.1.0")) {
        return std::make_unique<UpdateService>(UpdateService::Services{
            .http = http,
            .endpoints = Endpoints::under(server.url(QString()).toString()),
            .clock = clock,
            .scheduler = scheduler,
            .defaults = defaults,
            .runningVersion = running,
            .language = QStringLiteral("en"),
        });
    }
    int requests() const { return int(server.requests().size()); }
};

bool settles(const UpdateService& service) {
    return QTest::qWaitFor([&] { return !service.status().checking; }, 10'000);
}

QString newerVersions(const UpdateStatus& status) {
    QStringList list;
    for (const Release& release : status.newer) {
        list << release.version.toString();
    }
    return list.join(QLatin1Char(' '));
}

} // namespace

class TestUpdateService : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void check_data() {
        QTest::addColumn<Answer>("answer");
        QTest::addColumn<QString>("running");
        QTest::addColumn<Outcome>("outcome");
        QTest::addColumn<QString>("newer");
        QTest::addColumn<QString>("failure");
        row("newer", LoopbackHttpServer::ok(newer), "0.1.0", Outcome::available, "0.3.0 0.2.0", "");
        row("same", LoopbackHttpServer::ok(newer), "0.3.0", Outcome::upToDate, "", "");
        row("older", LoopbackHttpServer::ok(newer), "1.0.0", Outcome::upToDate, "", "");
        row("a pre-release is not offered",
            LoopbackHttpServer::ok(feed(R"({"version":"0.2.0-rc.1"})")), "0.1.0", Outcome::upToDate,
            "", "");
        row("empty list", LoopbackHttpServer::ok(feed("")), "0.1.0", Outcome::upToDate, "", "");
        row("broken", LoopbackHttpServer::ok("{\"releases\":[{\"vers"), "0.1.0", Outcome::failed,
            "", "could not be read");
        row("error page", LoopbackHttpServer::ok("<html>oops</html>"), "0.1.0", Outcome::failed, "",
            "could not be read");
        row("not found", LoopbackHttpServer::status(404), "0.1.0", Outcome::failed, "",
            "answered 404");
        row("huge", LoopbackHttpServer::huge(8 * 1024 * 1024), "0.1.0", Outcome::failed, "",
            "larger than");
        row("garbage", LoopbackHttpServer::garbage(), "0.1.0", Outcome::failed, "", "could not be");
        row("dropped", LoopbackHttpServer::drop(newer), "0.1.0", Outcome::failed, "", "could not");
    }
    void check() {
        QFETCH(Answer, answer);
        QFETCH(QString, running);
        Rig rig;
        rig.server.route(feedPath, answer);
        const auto service = rig.service(running);
        QSignalSpy changed(service.get(), &UpdateService::statusChanged);
        service->checkNow();
        QVERIFY(service->status().checking);
        QVERIFY(settles(*service));
        QTEST(service->status().outcome, "outcome");
        QTEST(newerVersions(service->status()), "newer");
        QFETCH(QString, failure);
        QVERIFY2(service->status().failure.contains(failure),
                 qPrintable(service->status().failure));
        QCOMPARE(failure.isEmpty(), service->status().failure.isEmpty());
        QCOMPARE(service->status().lastCheck, rig.clock.now());
        QCOMPARE(changed.count(), 2);
        // Only the list is asked for: no query, no version, nothing of the person.
        QCOMPARE(rig.server.requests().first().target, feedPath);
        QVERIFY(!rig.server.requests().first().header("user-agent").contains(running.toUtf8()));
    }

    void timeoutFails() {
        Rig rig;
        rig.server.route(feedPath, LoopbackHttpServer::stall());
        const auto service = rig.service();
        service->checkNow();
        QVERIFY(QTest::qWaitFor([&] { return rig.requests() == 1; }, 5000));
        rig.scheduler.advance(UpdateService::timeout);
        QVERIFY(settles(*service));
        QCOMPARE(service->status().outcome, Outcome::failed);
        QVERIFY(service->status().failure.contains(QLatin1String("in time")));
    }

    // Found once, it stays found through a failed check and a restart, until it is installed.
    void whatWasFoundStands() {
        Rig rig;
        rig.server.route(feedPath, LoopbackHttpServer::ok(newer));
        auto service = rig.service();
        service->checkNow();
        QVERIFY(settles(*service));
        rig.server.route(feedPath, LoopbackHttpServer::ok("{}"));
        service->checkNow();
        QVERIFY(settles(*service));
        QCOMPARE(service->status().outcome, Outcome::failed);
        QCOMPARE(newerVersions(service->status()), QStringLiteral("0.3.0 0.2.0"));

        service = rig.service();
        QSignalSpy found(service.get(), &UpdateService::newVersionFound);
        QCOMPARE(service->status().outcome, Outcome::failed);
        QCOMPARE(service->status().newer.first().notes,
                 QStringList{QStringLiteral("Stacks remember their order")});
        QCOMPARE(service->status().lastCheck, rig.clock.now());
        // Announced once per version, across restarts.
        rig.server.route(feedPath, LoopbackHttpServer::ok(newer));
        service->checkNow();
        QVERIFY(settles(*service));
        QCOMPARE(found.count(), 0);
        rig.server.route(feedPath, LoopbackHttpServer::ok(feed(R"({"version":"0.4.0"})")));
        service->checkNow();
        QVERIFY(settles(*service));
        QCOMPARE(found.count(), 1);
        QCOMPARE(found.first().first().value<Release>().version.toString(),
                 QStringLiteral("0.4.0"));

        service = rig.service(QStringLiteral("0.4.0"));
        QCOMPARE(service->status().available(), nullptr);
        QCOMPARE(rig.requests(), 4);
    }

    // Automatic checks: one at start and one a day; off asks nothing, by hand still works.
    void schedule() {
        Rig rig;
        rig.server.route(feedPath, LoopbackHttpServer::ok(newer));
        const auto service = rig.service();
        QVERIFY(service->automatic());
        service->start();
        QVERIFY(settles(*service));
        QCOMPARE(rig.requests(), 1);
        rig.scheduler.advance(UpdateService::interval - std::chrono::minutes(1));
        QCOMPARE(rig.requests(), 1);
        rig.scheduler.advance(std::chrono::minutes(1));
        QVERIFY(settles(*service));
        QCOMPARE(rig.requests(), 2);

        service->setAutomatic(false);
        rig.scheduler.advance(3 * UpdateService::interval);
        QCOMPARE(rig.requests(), 2);
        const auto restarted = rig.service();
        restarted->start();
        rig.scheduler.advance(UpdateService::interval);
        QCOMPARE(rig.requests(), 2);
        restarted->checkNow();
        QVERIFY(settles(*restarted));
        QCOMPARE(rig.requests(), 3);

        restarted->setAutomatic(true);
        QVERIFY(settles(*restarted));
        QCOMPARE(rig.requests(), 4);
    }

    void whatsNewOnceAfterAnUpdate_data() {
        QTest::addColumn<QString>("previous"); // "-": no update recorded
        QTest::addColumn<QString>("running");
        QTest::addColumn<QString>("shown");
        row("after an update", "0.1.0", "0.3.0", "0.3.0 0.2.0");
        row("previous unknown: this version's", "", "0.2.0", "0.2.0");
        row("downgrade", "0.3.0", "0.2.0", "");
        row("no update", "-", "0.3.0", "");
    }
    void whatsNewOnceAfterAnUpdate() {
        QFETCH(QString, previous);
        QFETCH(QString, running);
        MemoryDefaults defaults;
        if (previous != QLatin1String("-")) {
            WhatsNew::recordUpdate(defaults, previous);
        }
        const ReleaseFeed shipped = ReleaseFeed::fromAnswer(newer, QString()).value();
        QStringList shown;
        for (const Release& release : WhatsNew::pendingNotes(defaults, shipped, running)) {
            shown << release.version.toString();
        }
        QTEST(shown.join(QLatin1Char(' ')), "shown");
        WhatsNew::markShown(defaults);
        QVERIFY(!WhatsNew::isPending(defaults));
        QVERIFY(WhatsNew::pendingNotes(defaults, shipped, running).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestUpdateService)
#include "tst_updateservice.moc"
