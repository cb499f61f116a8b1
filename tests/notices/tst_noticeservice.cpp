#include "Files.h"
#include "LoopbackHttpServer.h"
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "TestRows.h"
#include "model/WidgetRegistry.h"
#include "net/QtHttpClient.h"
#include "notices/NoticeService.h"
#include "platform/null/MemoryDefaults.h"
#include "platform/null/NullWorkspace.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

using namespace tw;
using namespace tw::test;

namespace {

const QByteArray feedAB = "{\"notices\":[{\"id\":\"a\",\"title\":{\"en\":\"First\"}},"
                          "{\"id\":\"b\",\"placements\":[\"menu\"]}]}";
const QByteArray feedC = "{\"notices\":[{\"id\":\"c\"}]}";

// A service's surroundings: a real loopback feed, the real client, virtual time, a data directory.
struct Rig {
    LoopbackHttpServer server;
    ManualClock clock{QDateTime(QDate(2026, 5, 10), QTime(12, 0), QTimeZone::utc())};
    ManualScheduler scheduler{&clock};
    QtHttpClient http{scheduler};
    MemoryDefaults defaults;
    NullWorkspace workspace;
    WidgetRegistry registry;
    QTemporaryDir dir;

    QString cachePath() const { return dir.filePath(NoticeService::cacheFileName()); }

    std::unique_ptr<NoticeService> service(const QUrl& feed, bool testing = false) {
        auto made =
            std::make_unique<NoticeService>(NoticeService::Services{.http = http,
                                                                    .clock = clock,
                                                                    .scheduler = scheduler,
                                                                    .defaults = defaults,
                                                                    .registry = &registry,
                                                                    .workspace = &workspace},
                                            NoticeService::Setup{.feedUrl = feed,
                                                                 .testing = testing,
                                                                 .cachePath = cachePath(),
                                                                 .dataDirectory = dir.path(),
                                                                 .version = QStringLiteral("0.1.0"),
                                                                 .language = QStringLiteral("en")});
        return made;
    }
    std::unique_ptr<NoticeService> served() { return service(server.url(u"/campaign.json"_qs)); }

    // Starts the service and waits for its first fetch to settle.
    void startAndSettle(NoticeService& s) {
        const qsizetype before = server.requests().size();
        QSignalSpy changed(&s, &NoticeService::changed);
        s.start();
        QTRY_VERIFY(server.requests().size() > before);
        // A refused answer says nothing: give it the time a good one would take.
        changed.wait(300);
    }
};

QString ids(const QList<Notice>& notices) {
    QStringList out;
    for (const Notice& n : notices) {
        out.append(n.id);
    }
    return out.join(QLatin1Char(','));
}

} // namespace

class TestNoticeService : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aRestartOfflineShowsTheCachedFeedAndItsMemory() {
        Rig rig;
        rig.server.route("/campaign.json", LoopbackHttpServer::ok(feedAB));
        {
            auto first = rig.served();
            rig.startAndSettle(*first);
            QCOMPARE(ids(first->notices(Notice::Placement::banner, rig.clock.now())), u"a"_qs);
            QCOMPARE(readFile(rig.cachePath()), feedAB);
            const Notice a = first->feed().first();
            first->shown(a, rig.clock.now());
            first->shown(a, rig.clock.now());
            QCOMPARE(first->state().record(u"a"_qs).count, 1);
            QCOMPARE(first->top(Notice::Placement::menu)->id, u"b"_qs);
            first->dismiss(first->feed().at(1));
            QVERIFY(!first->top(Notice::Placement::menu));
        }
        // Offline: the feed comes from the cache before any fetch, with what was dismissed.
        auto offline = rig.service(QUrl(u"http://127.0.0.1:9/campaign.json"_qs));
        QCOMPARE(offline->feed().size(), 2);
        QVERIFY(!offline->top(Notice::Placement::menu));
        // Shown in the last run, once: gone now.
        QVERIFY(!offline->top(Notice::Placement::banner));
        offline->start();
        QTRY_VERIFY(!offline->feed().isEmpty());
        QCOMPARE(offline->state().record(u"a"_qs).count, 1);
    }

    void aBadAnswerChangesNothing_data() {
        QTest::addColumn<LoopbackHttpServer::Answer>("answer");
        row("corrupt with 200", LoopbackHttpServer::ok("{\"notices\":[{\"id\":"));
        row("no object with 200", LoopbackHttpServer::ok("[]"));
        row("not modified", LoopbackHttpServer::status(304));
        row("server error with a feed", LoopbackHttpServer::status(500, feedC));
        row("accepted is not whole", LoopbackHttpServer::status(203, feedC));
        row("over the cap", LoopbackHttpServer::huge(NoticeService::maxFeedBytes + 1));
        row("cut off", LoopbackHttpServer::drop(feedC));
        row("garbage", LoopbackHttpServer::garbage());
    }
    void aBadAnswerChangesNothing() {
        QFETCH(LoopbackHttpServer::Answer, answer);
        Rig rig;
        QVERIFY(writeFile(rig.cachePath(), feedAB));
        rig.server.route("/campaign.json", answer);
        auto service = rig.served();
        rig.startAndSettle(*service);
        QCOMPARE(ids(service->feed()), u"a,b"_qs);
        QCOMPARE(readFile(rig.cachePath()), feedAB);
    }

    void aSilentServerTimesOutAndKeepsTheFeed() {
        Rig rig;
        QVERIFY(writeFile(rig.cachePath(), feedAB));
        rig.server.route("/campaign.json", LoopbackHttpServer::stall());
        auto service = rig.served();
        service->start();
        QTRY_COMPARE(rig.server.requests().size(), 1);
        rig.scheduler.advance(NoticeService::fetchTimeout);
        // A fetch under way is not doubled; the time-out frees the next.
        service->refresh();
        QTRY_COMPARE(rig.server.requests().size(), 2);
        QCOMPARE(ids(service->feed()), u"a,b"_qs);
    }

    void refreshesEverySixHoursWhileEnabled() {
        Rig rig;
        rig.server.route("/campaign.json", LoopbackHttpServer::ok(feedAB));
        auto service = rig.served();
        rig.startAndSettle(*service);
        QVERIFY(!rig.defaults.value(NoticeService::firstSeenKey).toString().isEmpty());
        rig.server.route("/campaign.json", LoopbackHttpServer::ok(feedC));
        rig.scheduler.advance(NoticeService::refreshInterval - std::chrono::minutes(31));
        QCOMPARE(rig.server.requests().size(), 1);
        rig.scheduler.advance(std::chrono::minutes(31));
        QTRY_COMPARE(ids(service->feed()), u"c"_qs);
        QCOMPARE(rig.server.requests().first().header("User-Agent"), QByteArray("Tarnwick"));

        // Off empties every placement at once and fetches nothing; on shows again at once.
        QSignalSpy changed(service.get(), &NoticeService::changed);
        service->setEnabled(false);
        QCOMPARE(changed.size(), 1);
        QVERIFY(!service->top(Notice::Placement::banner));
        rig.scheduler.advance(NoticeService::refreshInterval * 2);
        QCOMPARE(rig.server.requests().size(), 2);
        QCOMPARE(rig.defaults.value(NoticeService::enabledKey), QVariant(false));
        service->setEnabled(true);
        QCOMPARE(service->top(Notice::Placement::banner)->id, u"c"_qs);
        QCOMPARE(rig.server.requests().size(), 2);
    }

    void forgetsNoticesLongGoneFromTheFeed() {
        Rig rig;
        NoticeState old;
        old.noteShown(u"gone-long-ago"_qs, rig.clock.now().addDays(-121));
        old.noteShown(u"gone-lately"_qs, rig.clock.now().addDays(-30));
        old.noteDismissed(u"gone-lately"_qs);
        rig.defaults.setValue(NoticeService::stateKey, QString::fromUtf8(old.toJson()));
        auto service = rig.served();
        service->apply(feedC, rig.clock.now());
        QCOMPARE(service->state().records.keys(), QStringList{u"gone-lately"_qs});
        auto again = rig.served();
        QVERIFY(again->state().record(u"gone-lately"_qs).dismissed);
    }

    void aTriedOutFeedStoresNothing() {
        Rig rig;
        const QString feedFile = rig.dir.filePath(u"trial.json"_qs);
        QVERIFY(writeFile(feedFile, feedAB));
        NoticeState real;
        real.noteDismissed(u"a"_qs);
        rig.defaults.setValue(NoticeService::stateKey, QString::fromUtf8(real.toJson()));
        const QVariant before = rig.defaults.value(NoticeService::stateKey);

        const QUrl url = NoticeService::feedURL(Endpoints(), feedFile);
        QVERIFY(url.isLocalFile());
        auto service = rig.service(url, NoticeService::isTesting(feedFile));
        service->start();
        // Dismissed in the real memory, but the memory is not consulted.
        const std::optional<Notice> a = service->top(Notice::Placement::banner);
        QVERIFY(a);
        service->shown(*a, rig.clock.now());
        service->dismiss(*a);
        QVERIFY(!service->top(Notice::Placement::banner));
        service->resetMemory();
        QVERIFY(service->top(Notice::Placement::banner));
        QVERIFY(!QFile::exists(rig.cachePath()));
        QCOMPARE(rig.defaults.value(NoticeService::stateKey), before);
        QCOMPARE(rig.server.requests().size(), 0);
    }

    void performsActions_data() {
        QTest::addColumn<QByteArray>("notice");
        // What happened, in order: "open <url>", "add <kind>", "copy <text>", "settings",
        // "pane <value>", "widget <kind>", "guide", "dismissed".
        QTest::addColumn<QString>("expected");
        row("copy keeps the notice",
            QByteArray("{\"id\":\"n\",\"code\":\"XY\",\"actions\":[{\"kind\":\"copy\"}]}"),
            "copy XY");
        row("copy without a code", QByteArray("{\"id\":\"n\",\"actions\":[{\"kind\":\"copy\"}]}"),
            "");
        row("https closes, even undismissible",
            QByteArray("{\"id\":\"n\",\"dismissible\":false,\"actions\":[{\"kind\":\"url\","
                       "\"value\":\"https://example.org/news\"}]}"),
            "open https://example.org/news|dismissed");
        row("plain http does nothing",
            QByteArray("{\"id\":\"n\",\"actions\":[{\"kind\":\"url\","
                       "\"value\":\"http://example.org\"}]}"),
            "");
        row("url without value", QByteArray("{\"id\":\"n\",\"actions\":[{\"kind\":\"url\"}]}"), "");
        row("known kind added",
            QByteArray("{\"id\":\"n\",\"actions\":[{\"kind\":\"addWidget\",\"value\":\"clock\"}]}"),
            "add clock|dismissed");
        row("unknown kind does nothing",
            QByteArray("{\"id\":\"n\",\"actions\":[{\"kind\":\"addWidget\",\"value\":\"yacht\"}]}"),
            "");
        row("pane after the window exists",
            QByteArray("{\"id\":\"n\",\"actions\":[{\"kind\":\"pane\",\"value\":\"layouts\"}]}"),
            "settings|dismissed|pane layouts");
        row("widget pane",
            QByteArray("{\"id\":\"n\",\"actions\":[{\"kind\":\"pane\","
                       "\"value\":\"widget:appusage\"}]}"),
            "settings|dismissed|widget appusage");
        row("guide", QByteArray("{\"id\":\"n\",\"actions\":[{\"kind\":\"guide\"}]}"),
            "settings|guide|dismissed");
        row("dismiss on an undismissible notice",
            QByteArray("{\"id\":\"n\",\"dismissible\":false,\"actions\":[{\"kind\":\"dismiss\"}]}"),
            "");
        row("dismiss", QByteArray("{\"id\":\"n\",\"actions\":[{\"kind\":\"dismiss\"}]}"),
            "dismissed");
    }
    void performsActions() {
        QFETCH(QByteArray, notice);
        QFETCH(QString, expected);
        Rig rig;
        auto service = rig.served();
        service->apply("{\"notices\":[" + notice + "]}", rig.clock.now());
        QStringList happened;
        service->addWidgetHandler = [&](const QString& kind) { happened << u"add "_qs + kind; };
        service->copyToClipboard = [&](const QString& text) { happened << u"copy "_qs + text; };
        service->openSettings = [&] { happened << u"settings"_qs; };
        connect(service.get(), &NoticeService::openPane, this,
                [&](const QString& pane) { happened << u"pane "_qs + pane; });
        connect(service.get(), &NoticeService::selectWidget, this,
                [&](const QString& kind) { happened << u"widget "_qs + kind; });
        connect(service.get(), &NoticeService::openGuide, this, [&] { happened << u"guide"_qs; });
        connect(service.get(), &NoticeService::changed, this, [&] { happened << u"dismissed"_qs; });
        const Notice n = service->feed().first();
        service->perform(n.actions.first(), n);
        rig.scheduler.advance(NoticeService::navigateDelay);
        happened = rig.workspace.requests() + happened;
        QCOMPARE(happened.join(QLatin1Char('|')), expected);
        QCOMPARE(service->state().record(u"n"_qs).dismissed, expected.contains(u"dismissed"));
    }

    void labelsFallBackToTheKind() {
        Rig rig;
        auto service = rig.served();
        Notice::Action action{.kind = Notice::Action::Kind::addWidget, .label = {}, .value = {}};
        QCOMPARE(service->label(action), u"Add to Desktop"_qs);
        action.label = {{u"en"_qs, u"Try it"_qs}};
        QCOMPARE(service->label(action), u"Try it"_qs);
    }

    void gathersTheContext() {
        Rig rig;
        rig.defaults.setValue(NoticeService::firstSeenKey, u"2026-05-01T12:00:00Z"_qs);
        auto service = rig.served();
        service->factsProvider = [] {
            return NoticeService::Facts{.widgetKinds = {u"clock"_qs}, .widgetCount = 2};
        };
        const NoticeContext c = service->context(rig.clock.now());
        QCOMPARE(c.channel, u"direct"_qs);
        QCOMPARE(c.version, u"0.1.0"_qs);
        QCOMPARE(c.widgetCount, 2);
        QCOMPARE(c.widgetKinds, QSet<QString>{u"clock"_qs});
        QCOMPARE(c.daysInstalled, 9);
        // A first-seen date in the future (a clock set wrong) counts as today.
        rig.defaults.setValue(NoticeService::firstSeenKey, u"2027-01-01T00:00:00Z"_qs);
        QCOMPARE(service->context(rig.clock.now()).daysInstalled, 0);
    }

    void feedURLs_data() {
        QTest::addColumn<QString>("variable");
        QTest::addColumn<QString>("expected");
        row("unset", "", "http://127.0.0.1:1/notices/campaign.json");
        row("http", "http://127.0.0.1:5/feed.json", "http://127.0.0.1:5/feed.json");
        row("file url", "file:///tmp/feed.json", "file:///tmp/feed.json");
        row("absolute path", "/tmp/feed.json", "file:///tmp/feed.json");
        row("blank", "  ", "http://127.0.0.1:1/notices/campaign.json");
    }
    void feedURLs() {
        QFETCH(QString, variable);
        QFETCH(QString, expected);
        const Endpoints endpoints = Endpoints::under(u"http://127.0.0.1:1"_qs);
        QCOMPARE(NoticeService::feedURL(endpoints, variable).toString(), expected);
    }
};

QTEST_GUILESS_MAIN(TestNoticeService)
#include "tst_noticeservice.moc"
