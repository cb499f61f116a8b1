#include "LoopbackHttpServer.h"
#include "ManualScheduler.h"
#include "TestRows.h"
#include "live/WebBehaviour.h"
#include "live/WebPage.h"
#include "platform/PlatformServices.h"
#include "platform/null/NullWorkspace.h"

#include <QSignalSpy>
#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace std::chrono_literals;
using State = WebPage::State;

Q_DECLARE_METATYPE(tw::WebPage::State)

namespace {

constexpr int engineMs = 60'000;

WebPage::Helper realHelper() {
    WebPage::Helper helper{QStringLiteral(TW_WEB_HELPER), {}};
    if (PlatformServices::isAdministrator()) {
        helper.arguments.append(QStringLiteral("--no-sandbox"));
    }
    return helper;
}

LoopbackHttpServer::Answer html(const QByteArray& body) {
    return {LoopbackHttpServer::Answer::Kind::Whole,
            200,
            {{"Content-Type", "text/html; charset=utf-8"}},
            body,
            0};
}

WebTileSettings at(const QUrl& url) {
    WebTileSettings settings;
    settings.url = url;
    return settings;
}

QRgb middle(const QImage& picture) {
    return picture.pixel(picture.width() / 2, picture.height() / 2);
}

} // namespace

class WebPageTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // A page drawn at the tile's pixels, a click on its link followed, the helper ended and
    // the picture kept.
    void showsAPageAndFollowsAClick() {
        LoopbackHttpServer server;
        server.route("/", html("<title>First</title><body style='margin:0;background:#d01010'>"
                               "<a href='/two' style='display:block;height:100vh'>next</a>"));
        server.route("/two", html("<title>Second</title><body style='background:#1010d0'>"));
        ManualScheduler scheduler;
        WebPage page(realHelper(), scheduler);
        page.show(at(server.url(QStringLiteral("/"))), QSize(320, 200));
        QVERIFY(page.running());
        QCOMPARE(page.state(), State::loading);
        QTRY_COMPARE_WITH_TIMEOUT(page.state(), State::shown, engineMs);
        QCOMPARE(page.picture().size(), QSize(320, 200));
        QCOMPARE(qRed(middle(page.picture())), 0xd0);
        QCOMPARE(page.title(), QStringLiteral("First"));

        page.click(QPointF(160, 100));
        QTRY_COMPARE_WITH_TIMEOUT(qBlue(middle(page.picture())), 0xd0, engineMs);
        QCOMPARE(page.title(), QStringLiteral("Second"));
        QCOMPARE(page.shownUrl().path(), QStringLiteral("/two"));

        page.stop();
        QVERIFY(!page.running());
        QCOMPARE(page.state(), State::shown);
        QVERIFY(!page.picture().isNull());
    }

    void reloadsAtThePersonsPace() {
        LoopbackHttpServer server;
        server.route("/", html("<body>once</body>"));
        ManualScheduler scheduler;
        WebPage page(realHelper(), scheduler);
        WebTileSettings settings = at(server.url(QStringLiteral("/")));
        settings.refresh = 5min;
        page.show(settings, QSize(100, 100));
        QTRY_COMPARE_WITH_TIMEOUT(page.state(), State::shown, engineMs);
        const qsizetype first = server.requests().size();
        // The same settings again (a repaint, a tile moved) load nothing.
        page.show(settings, QSize(100, 100));
        scheduler.advance(4min);
        QCOMPARE(server.requests().size(), first);
        scheduler.advance(1min);
        QTRY_VERIFY_WITH_TIMEOUT(server.requests().size() > first, engineMs);
        QTRY_COMPARE_WITH_TIMEOUT(page.state(), State::shown, engineMs);
    }

    // A helper for a tile in view only; the menu's commands and a click reach the page.
    void behaviourRunsAHelperOnlyInView() {
        LoopbackHttpServer server;
        server.route("/", html("<body style='background:#10d010'>"));
        ManualScheduler scheduler;
        NullWorkspace workspace;
        WebBehaviour behaviour(realHelper(), scheduler, workspace, [] { return 1.0; });
        WidgetInstance tile;
        tile.kind = QStringLiteral("web");
        tile.size = WidgetSize::large;
        tile.settings =
            WidgetSettings{{QStringLiteral("url"), server.url(QStringLiteral("/")).toString()}};
        WidgetInstance blank = tile;
        blank.id = QUuid::createUuid();
        blank.settings.reset();
        behaviour.setTiles({{tile, false}, {blank, true}});
        QCOMPARE(behaviour.running(), 0);
        QVERIFY(behaviour.menuItems(blank).isEmpty());
        behaviour.setTiles({{tile, true}, {blank, true}});
        QCOMPARE(behaviour.running(), 1);
        const WebPage* page = behaviour.page(tile.id);
        QTRY_COMPARE_WITH_TIMEOUT(page->state(), State::shown, engineMs);
        QCOMPARE(page->picture().size(), WebBehaviour::pixelsFor(tile, 1.0));
        QVERIFY(behaviour.press(tile, WebBehaviour::clickCommand(QPointF(0.5, 0.5))));
        QVERIFY(!behaviour.press(tile, QStringLiteral("web.click:2,0.5")));
        QVERIFY(!behaviour.press(tile, QString()));
        QCOMPARE(behaviour.menuItems(tile).size(), 2);
        QVERIFY(behaviour.press(tile, WebBehaviour::openCommand));
        QCOMPARE(workspace.requests().value(0),
                 QStringLiteral("open ") + server.url(QStringLiteral("/")).toString());
        behaviour.setTiles({{tile, false}});
        QCOMPARE(behaviour.running(), 0);
        QCOMPARE(behaviour.page(blank.id), nullptr);
        QVERIFY(!behaviour.page(tile.id)->picture().isNull());
    }

    void saysWhatWentWrong_data() {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<State>("expected");
        row("no helper", "/nonexistent/tarnwick-web", QByteArray("page"), State::noHelper);
        row("helper quits", "/bin/true", QByteArray("page"), State::ended);
        row("refused", TW_WEB_HELPER, QByteArray("closed"), State::failed);
        row("never finishes", TW_WEB_HELPER, QByteArray("stall"), State::timedOut);
    }
    void saysWhatWentWrong() {
        QFETCH(QString, program);
        QFETCH(QByteArray, answer);
        QFETCH(State, expected);
        LoopbackHttpServer server;
        server.route("/page", html("<body>fine</body>"));
        server.route("/stall", LoopbackHttpServer::stall());
        const QUrl url = answer == "closed"
                             ? QUrl(QStringLiteral("http://127.0.0.1:9/"))
                             : server.url(QStringLiteral("/") + QString::fromLatin1(answer));
        ManualScheduler scheduler;
        WebPage::Helper helper = realHelper();
        helper.program = program;
        WebPage page(helper, scheduler);
        page.show(at(url), QSize(100, 100));
        if (expected == State::timedOut) {
            QTRY_VERIFY_WITH_TIMEOUT(!server.requests().isEmpty(), engineMs);
            scheduler.advance(WebPage::loadLimit - 1s);
            QCOMPARE(page.state(), State::loading);
            scheduler.advance(1s);
        }
        QTRY_COMPARE_WITH_TIMEOUT(page.state(), expected, engineMs);
        // A page that failed may be tried again; the helper stays for that.
        QCOMPARE(page.running(), expected == State::failed);
        QVERIFY(page.picture().isNull());
    }
};

QTEST_GUILESS_MAIN(WebPageTest)
#include "tst_webpage.moc"
