#include "LoopbackHttpServer.h"
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "TestRows.h"
#include "connected/GitHubBehaviour.h"
#include "connected/GitHubService.h"
#include "net/Endpoints.h"
#include "net/QtHttpClient.h"
#include "platform/null/MemorySecretStore.h"

#include <QLoggingCategory>
#include <QSignalSpy>
#include <QTest>
#include <QTimeZone>

using namespace tw;
using namespace tw::test;
using namespace std::chrono_literals;
using Answer = LoopbackHttpServer::Answer;
using Status = GitHubStatus;

Q_DECLARE_METATYPE(tw::test::LoopbackHttpServer::Answer)

namespace {

const QByteArray repoPath = "/github/repos/kde/kate";

const QByteArray repoBody = R"({"full_name":"kde/kate","description":"An editor",
    "stargazers_count":1234,"forks_count":"many","open_issues_count":7})";
const QByteArray releaseBody = R"({"tag_name":"v24.08","name":"Kate 24.08",
    "published_at":"2026-11-20T10:00:00Z","html_url":"https://github.com/kde/kate/releases/v24.08"})";
const QByteArray pullsBody = R"([
    {"title":"Faster search","number":12,"draft":false,"state":"open","user":{"login":"ada"},
     "html_url":"https://github.com/kde/kate/pull/12","base":{"repo":{"full_name":"kde/kate"}}},
    {"title":"Work in progress","number":13,"draft":true,"state":"open"},
    {"title":"Tabs","number":14,"state":"open","html_url":"javascript:void"}])";
const QByteArray notificationsBody = R"([
    {"unread":true,"reason":"review_requested","updated_at":"2026-11-24T09:00:00Z",
     "subject":{"title":"Faster search","url":"https://api.github.com/repos/kde/kate/pulls/12"},
     "repository":{"full_name":"kde/kate"}},
    {"unread":false,"reason":"mention","subject":{"title":"Old"}}])";

Answer withHeaders(Answer answer, QList<LoopbackHttpServer::Header> headers) {
    answer.headers = std::move(headers);
    return answer;
}

struct Rig {
    LoopbackHttpServer server;
    ManualClock clock{QDateTime(QDate(2026, 11, 24), QTime(12, 0), QTimeZone::utc())};
    ManualScheduler scheduler{&clock};
    QtHttpClient http{scheduler};
    Endpoints endpoints = Endpoints::under(server.url(QString()).toString());
    GitHubService github{{.http = http, .endpoints = endpoints, .clock = clock}};
    QSignalSpy changed{&github, &GitHubService::stateChanged};

    Rig() {
        server.route(repoPath, withHeaders(LoopbackHttpServer::ok(repoBody), {{"ETag", "\"r1\""}}));
        server.route(repoPath + "/releases/latest", LoopbackHttpServer::ok(releaseBody));
        server.route(repoPath + "/pulls", LoopbackHttpServer::ok(pullsBody));
        server.route(repoPath + "/notifications", LoopbackHttpServer::ok(notificationsBody));
        server.route("/github/users/ada",
                     LoopbackHttpServer::ok(R"({"login":"Ada","name":"Ada L","followers":9})"));
        server.route("/github/users/ada/repos",
                     LoopbackHttpServer::ok(R"([{"stargazers_count":3},{"stargazers_count":4}])"));
        server.route("/github/search/issues",
                     LoopbackHttpServer::ok(R"({"total_count":31,"items":[{"title":"Docs",
                         "number":2,"repository_url":"https://api.github.com/repos/a/b"}]})"));
        server.route("/github/user", LoopbackHttpServer::ok(R"({"login":"ada"})"));
        server.route("/github/notifications", LoopbackHttpServer::ok(notificationsBody));
    }
    GitHubState refreshed(const QString& target,
                          GitHubService::Refresh when = GitHubService::Refresh::ifDue) {
        const qsizetype before = changed.size();
        github.refresh(*GitHubTarget::parse(target), when);
        static_cast<void>(QTest::qWaitFor([&] { return changed.size() > before; }, 10'000));
        return github.state(GitHubTarget::parse(target)->key());
    }
    int requests() const { return static_cast<int>(server.requests().size()); }
};

} // namespace

class TestGitHubService : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { QLoggingCategory::setFilterRules(u"GitHub.info=false"_qs); }

    void parseTarget_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("key");
        row("person", "octocat", "octocat");
        row("at a person", " @octo-cat ", "octo-cat");
        row("repository", "kde/kate", "kde/kate");
        row("address", "https://github.com/kde/kate.git", "kde/kate");
        row("address without scheme", "github.com/qt/qtbase/", "qt/qtbase");
        row("other host", "https://gitlab.com/kde/kate", "");
        row("double hyphen", "a--b", "");
        row("too deep", "a/b/c", "");
        row("dot dot", "a/..", "");
        row("empty", "", "");
        row("query", "kde/kate?x=1", "");
    }
    void parseTarget() {
        QFETCH(QString, text);
        QFETCH(QString, key);
        const std::optional<GitHubTarget> target = GitHubTarget::parse(text);
        QCOMPARE(target ? target->key() : QString(), key);
    }

    // A repository: its counts, release and the pull requests that wait (no drafts, no link that
    // is not GitHub's); nothing secret or conditional sent the first time; notifications need a
    // token.
    void repositoryActivity() {
        Rig rig;
        const GitHubState state = rig.refreshed(u"kde/kate"_qs);
        QCOMPARE(state.status, Status::live);
        QCOMPARE(state.activity.title, u"kde/kate"_qs);
        QCOMPARE(state.activity.stars, 1234);
        QCOMPARE(state.activity.forks, std::nullopt);
        QCOMPARE(state.activity.release->tag, u"v24.08"_qs);
        QCOMPARE(state.activity.reviewCount, 2);
        QCOMPARE(state.activity.reviews[0].url, u"https://github.com/kde/kate/pull/12"_qs);
        QCOMPARE(state.activity.reviews[1].url, QString());
        QCOMPARE(state.notifications, GitHubNotifications::needsToken);
        QCOMPARE(rig.requests(), 3);
        for (const auto& request : rig.server.requests()) {
            QVERIFY(request.header("Authorization").isEmpty());
            QVERIFY(request.header("If-None-Match").isEmpty());
        }
    }

    // Within the pace nothing is asked; after it, the ETag goes along and a 304 keeps the values.
    void paceAndETag() {
        Rig rig;
        rig.refreshed(u"kde/kate"_qs);
        rig.clock.advance(GitHubService::pace - 1s);
        rig.github.refresh(*GitHubTarget::parse(u"kde/kate"_qs));
        QTest::qWait(50);
        QCOMPARE(rig.requests(), 3);

        rig.clock.advance(1s);
        rig.server.route(repoPath, LoopbackHttpServer::status(304));
        const GitHubState state = rig.refreshed(u"kde/kate"_qs);
        QCOMPARE(rig.requests(), 6);
        QCOMPARE(rig.server.requests()[3].header("If-None-Match"), QByteArray("\"r1\""));
        QCOMPARE(state.status, Status::live);
        QCOMPARE(state.activity.stars, 1234);
        QCOMPARE(state.updated, rig.clock.now());
    }

    // Whatever the repository's own answer, the state says why and the last values stay, except
    // for a repository that is gone; a rate limit holds every request back until it lifts.
    void failures_data() {
        QTest::addColumn<Answer>("answer");
        QTest::addColumn<Status>("status");
        QTest::addColumn<bool>("keepsValues");
        QTest::addColumn<int>("heldSeconds");
        const auto limited = [](int code, QList<LoopbackHttpServer::Header> headers) {
            return withHeaders(LoopbackHttpServer::status(code, "{\"message\":\"limit\"}"),
                               std::move(headers));
        };
        const QByteArray reset = QByteArray::number(
            QDateTime(QDate(2026, 11, 24), QTime(12, 20), QTimeZone::utc()).toSecsSinceEpoch());
        row("expired token", LoopbackHttpServer::status(401), Status::tokenRefused, true, 0);
        row("rate limit spent",
            limited(403, {{"X-RateLimit-Remaining", "0"}, {"X-RateLimit-Reset", reset}}),
            Status::rateLimited, true, 15 * 60);
        row("reset long past",
            limited(403, {{"X-RateLimit-Remaining", "0"}, {"X-RateLimit-Reset", "1"}}),
            Status::rateLimited, true, 1);
        row("secondary limit", limited(429, {{"Retry-After", "90"}}), Status::rateLimited, true,
            90);
        row("forbidden, no limit", limited(403, {}), Status::failed, true, 0);
        row("gone", LoopbackHttpServer::status(404), Status::notFound, false, 0);
        row("server error", LoopbackHttpServer::status(502), Status::failed, true, 0);
        row("wrong shape", LoopbackHttpServer::ok("[1,2]"), Status::failed, true, 0);
        row("garbage", LoopbackHttpServer::garbage(), Status::offline, true, 0);
        row("dropped", LoopbackHttpServer::drop(repoBody), Status::offline, true, 0);
        row("too large", LoopbackHttpServer::huge(GitHubService::maxBytes + 1), Status::failed,
            true, 0);
    }
    void failures() {
        QFETCH(Answer, answer);
        QFETCH(Status, status);
        QFETCH(bool, keepsValues);
        QFETCH(int, heldSeconds);
        Rig rig;
        rig.refreshed(u"kde/kate"_qs);
        rig.clock.advance(5min);
        const QDateTime failedAt = rig.clock.now();
        rig.server.route(repoPath, answer);
        const GitHubState state = rig.refreshed(u"kde/kate"_qs);
        QCOMPARE(state.status, status);
        QVERIFY(!state.message.isEmpty());
        QCOMPARE(state.activity.stars.has_value(), keepsValues);
        QCOMPARE(state.hasValues(), keepsValues);
        if (heldSeconds > 0) {
            QCOMPARE(failedAt.secsTo(rig.github.heldUntil()), heldSeconds);
            const int asked = rig.requests();
            rig.clock.advance(std::chrono::seconds(heldSeconds) - 1s);
            rig.github.refresh(*GitHubTarget::parse(u"ada"_qs), GitHubService::Refresh::now);
            QTest::qWait(50);
            QCOMPARE(rig.requests(), asked);
        }
    }

    // With a token: sent as a bearer, notifications of one's own account (unread only), "not
    // yours" for someone else's, "refused" where the token may not read them; a new token
    // forgets the old one's.
    void token() {
        Rig rig;
        rig.github.setToken(u" ghp_secret "_qs);
        GitHubState state = rig.refreshed(u"ada"_qs);
        QCOMPARE(state.status, Status::live);
        QCOMPARE(state.activity.stars, 7);
        QCOMPARE(state.activity.reviewCount, 31);
        QCOMPARE(state.activity.reviews[0].repository, u"a/b"_qs);
        QCOMPARE(state.notifications, GitHubNotifications::shown);
        QCOMPARE(state.activity.notificationCount, 1);
        QCOMPARE(state.activity.notifications[0].url, u"https://github.com/kde/kate/pull/12"_qs);
        QCOMPARE(rig.server.requests().last().header("Authorization"),
                 QByteArray("Bearer ghp_secret"));

        rig.server.route("/github/user", LoopbackHttpServer::ok(R"({"login":"grace"})"));
        state = rig.refreshed(u"ada"_qs, GitHubService::Refresh::now);
        QCOMPARE(state.notifications, GitHubNotifications::notYours);
        QCOMPARE(state.activity.notificationCount, std::nullopt);

        rig.server.route(repoPath + "/notifications", LoopbackHttpServer::status(403));
        state = rig.refreshed(u"kde/kate"_qs);
        QCOMPARE(state.notifications, GitHubNotifications::refused);
        QCOMPARE(state.status, Status::live);

        rig.github.setToken(QString());
        QCOMPARE(rig.github.state(u"kde/kate"_qs).notifications, GitHubNotifications::needsToken);
    }

    // The tiles: only targets in view are fetched, again as the checks come round; the token
    // comes from the keychain and a new one goes back there; "Refresh Now" skips the pace.
    void behaviour() {
        Rig rig;
        MemorySecretStore secrets;
        secrets.write(QString(GitHubBehaviour::tokenKey), u"ghp_kept"_qs);
        GitHubBehaviour tiles(rig.github, rig.scheduler, secrets);
        QSignalSpy repaint(&tiles, &TileBehaviour::changed);
        WidgetInstance tile;
        tile.settings = WidgetSettings{{u"target"_qs, u"kde/kate"_qs}};
        tiles.setTiles({{tile, false}});
        rig.scheduler.advance(GitHubService::pace * 2);
        QTest::qWait(50);
        QCOMPARE(rig.requests(), 0);

        tiles.setTiles({{tile, true}});
        QTRY_COMPARE(rig.requests(), 4);
        QTRY_VERIFY(!repaint.isEmpty());
        QCOMPARE(rig.server.requests()[0].header("Authorization"), QByteArray("Bearer ghp_kept"));
        rig.scheduler.advance(GitHubService::pace);
        QTRY_COMPARE(rig.requests(), 8);
        // A fetch under way is never doubled: the next one waits for its answers.
        QTRY_COMPARE(repaint.size(), 2);

        QCOMPARE(tiles.menuItems(tile).size(), 1);
        QVERIFY(tiles.press(tile, tiles.menuItems(tile)[0].command));
        QTRY_COMPARE(rig.requests(), 12);
        QVERIFY(!tiles.press(tile, QString()));

        tiles.setToken(QString());
        QVERIFY(secrets.values().isEmpty());
        QTRY_COMPARE(rig.requests(), 15);
        QVERIFY(rig.server.requests().last().header("Authorization").isEmpty());
        tiles.setTiles({});
        rig.scheduler.advance(GitHubService::pace * 2);
        QTest::qWait(50);
        QCOMPARE(rig.requests(), 15);
    }
};

QTEST_GUILESS_MAIN(TestGitHubService)
#include "tst_githubservice.moc"
