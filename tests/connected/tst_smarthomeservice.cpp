#include "HomeAssistantServer.h"
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "TestRows.h"
#include "connected/SmartHomeBehaviour.h"
#include "connected/SmartHomeService.h"
#include "net/QtHttpClient.h"
#include "platform/null/MemorySecretStore.h"

#include <QLoggingCategory>
#include <QSignalSpy>
#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace std::chrono_literals;
using Status = SmartHomeStatus;

namespace {

struct Rig {
    HomeAssistantServer server;
    ManualClock clock;
    ManualScheduler scheduler{&clock};
    QtHttpClient http{scheduler};
    SmartHomeService service{{.http = http, .clock = clock, .scheduler = scheduler}};

    Rig() {
        server.entities.insert(u"light.kitchen"_qs, {u"off"_qs, u"Kitchen"_qs, {}});
        server.entities.insert(u"sensor.outside"_qs, {u"4.5"_qs, u"Outside"_qs, u"°C"_qs});
        server.entities.insert(u"switch.fan"_qs, {u"on"_qs, u"Fan"_qs, {}});
    }
    void start(const QString& token = u"good-token"_qs) {
        service.setAccount(server.address(), token);
        service.setActive(true);
    }
    bool reaches(Status status) {
        return QTest::qWaitFor([&] { return service.board().status == status; }, 10'000);
    }
    QString state(const QString& id) const { return service.board().entities.value(id).state; }
};

} // namespace

class TestSmartHomeService : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { QLoggingCategory::setFilterRules(u"SmartHome.info=false"_qs); }

    // States read over REST, then changes as they happen; a toggle is pending until the state
    // comes back, and only lights, switches and their kin toggle.
    void liveStatesAndToggles() {
        Rig rig;
        rig.start();
        QVERIFY(rig.reaches(Status::live));
        QCOMPARE(rig.state(u"sensor.outside"_qs), u"4.5"_qs);
        QCOMPARE(rig.service.board().entities.value(u"sensor.outside"_qs).unit, u"°C"_qs);

        rig.server.setState(u"sensor.outside"_qs, u"3.9"_qs);
        QTRY_COMPARE(rig.state(u"sensor.outside"_qs), u"3.9"_qs);

        QVERIFY(!rig.service.toggle(u"sensor.outside"_qs));
        QVERIFY(!rig.service.toggle(u"light.nowhere"_qs));
        QVERIFY(rig.service.toggle(u"light.kitchen"_qs));
        QVERIFY(rig.service.board().pending.contains(u"light.kitchen"_qs));
        QTRY_COMPARE(rig.state(u"light.kitchen"_qs), u"on"_qs);
        QVERIFY(rig.service.board().pending.isEmpty());
        const QJsonObject command = rig.server.commands().last();
        QCOMPARE(command.value(u"domain").toString(), u"light"_qs);
        QCOMPARE(command.value(u"service").toString(), u"toggle"_qs);
    }

    // A toggle Home Assistant refuses says so; one never answered stops being pending.
    void toggleRefusedOrUnanswered() {
        Rig rig;
        rig.start();
        QVERIFY(rig.reaches(Status::live));
        rig.server.entities.remove(u"switch.fan"_qs);
        QVERIFY(rig.service.toggle(u"switch.fan"_qs));
        QTRY_VERIFY(rig.service.board().refused.contains(u"switch.fan"_qs));
        QVERIFY(rig.service.board().pending.isEmpty());

        rig.server.ignoreCommands = true;
        QVERIFY(rig.service.toggle(u"light.kitchen"_qs));
        QTRY_COMPARE(rig.server.commands().size(), 2);
        rig.scheduler.advance(SmartHomeService::toggleLimit - 1ms);
        QVERIFY(rig.service.board().pending.contains(u"light.kitchen"_qs));
        rig.scheduler.advance(1ms);
        QVERIFY(rig.service.board().pending.isEmpty());
        QCOMPARE(rig.service.board().status, Status::live);
    }

    // What goes wrong before the link is live, and whether the link tries again.
    void failures_data() {
        QTest::addColumn<QString>("token");
        QTest::addColumn<bool>("refuseSocket");
        QTest::addColumn<int>("statesStatus");
        QTest::addColumn<QByteArray>("statesBody");
        QTest::addColumn<Status>("status");
        QTest::addColumn<bool>("triesAgain");
        const QByteArray none;
        row("wrong token", "expired", false, 0, none, Status::unauthorised, false);
        row("socket refuses the token", "good-token", true, 0, none, Status::unauthorised, false);
        row("server error", "good-token", false, 502, QByteArray("Bad gateway"), Status::failed,
            true);
        row("states not a list", "good-token", false, 200, QByteArray("{\"states\":1}"),
            Status::failed, true);
        row("garbage states", "good-token", false, 200, QByteArray("\xff[\x01"), Status::failed,
            true);
    }
    void failures() {
        QFETCH(QString, token);
        QFETCH(bool, refuseSocket);
        QFETCH(int, statesStatus);
        QFETCH(QByteArray, statesBody);
        QFETCH(Status, status);
        QFETCH(bool, triesAgain);
        Rig rig;
        rig.server.refuseSocketAuth = refuseSocket;
        if (statesStatus != 0) {
            rig.server.statesAnswer = HomeAssistantServer::StatesAnswer{statesStatus, statesBody};
        }
        rig.start(token);
        QVERIFY(rig.reaches(status));
        QVERIFY(!rig.service.board().message.isEmpty());
        const int asked = rig.server.statesRequests();
        rig.scheduler.advance(SmartHomeService::longestRetry);
        QTest::qWait(100);
        QCOMPARE(rig.server.statesRequests() > asked, triesAgain);
    }

    // Nobody listening, then a dropped link: each wait doubles up to a minute, the states read
    // stay through it, and a new link reads them again.
    void reconnectsWithBackOff() {
        Rig rig;
        rig.start();
        QVERIFY(rig.reaches(Status::live));
        rig.server.silentSocket = true;
        rig.server.dropAll();
        QVERIFY(rig.reaches(Status::unreachable));
        QCOMPARE(rig.state(u"switch.fan"_qs), u"on"_qs);
        const QDateTime lost = rig.clock.now();
        QCOMPARE(lost.msecsTo(rig.service.board().retryAt), 1000);

        // A socket that never says hello ends after the handshake limit, and the next wait is
        // twice the first.
        rig.scheduler.advance(1s);
        QVERIFY(rig.reaches(Status::connecting));
        QTRY_COMPARE(rig.server.socketsOpened(), 2);
        rig.scheduler.advance(SmartHomeService::handshakeLimit);
        QVERIFY(rig.reaches(Status::unreachable));
        QCOMPARE(rig.clock.now().msecsTo(rig.service.board().retryAt), 2000);

        rig.server.silentSocket = false;
        rig.server.entities[u"switch.fan"_qs].state = u"off"_qs;
        rig.scheduler.advance(2s);
        QVERIFY(rig.reaches(Status::live));
        QCOMPARE(rig.state(u"switch.fan"_qs), u"off"_qs);
    }

    // Out of view, nothing stays open and nothing is tried; the picker still reads the list.
    void inactiveHoldsNothingOpen() {
        Rig rig;
        rig.start();
        QVERIFY(rig.reaches(Status::live));
        rig.service.setActive(false);
        QCOMPARE(rig.service.board().status, Status::idle);
        QTRY_COMPARE(rig.server.subscribed(), 0);
        rig.scheduler.advance(SmartHomeService::longestRetry);
        QCOMPARE(rig.server.socketsOpened(), 1);

        rig.server.entities.insert(u"light.hall"_qs, {u"on"_qs, u"Hall"_qs, {}});
        rig.service.readStates();
        QTRY_VERIFY(rig.service.board().entities.contains(u"light.hall"_qs));
        QCOMPARE(rig.service.board().status, Status::idle);
        QCOMPARE(rig.server.socketsOpened(), 1);

        rig.service.setAccount(u"not an address at all"_qs, u"t"_qs);
        QCOMPARE(rig.service.board().status, Status::noAccount);
        QVERIFY(rig.service.board().entities.isEmpty());
    }

    // The tile: the account from the keychain, the link only while the tile is in view, a card's
    // command toggles, and "Reconnect Now" while the link is down.
    void behaviour() {
        Rig rig;
        MemorySecretStore secrets;
        secrets.write(QString(SmartHomeBehaviour::addressKey), rig.server.address());
        secrets.write(QString(SmartHomeBehaviour::tokenKey), rig.server.token);
        SmartHomeBehaviour tiles(rig.service, secrets);
        QSignalSpy repaint(&tiles, &TileBehaviour::changed);
        WidgetInstance tile;
        tiles.setTiles({{tile, false}});
        QCOMPARE(rig.service.board().status, Status::idle);
        tiles.setTiles({{tile, false}, {tile, true}});
        QVERIFY(rig.reaches(Status::live));
        QVERIFY(!repaint.isEmpty());
        QVERIFY(tiles.menuItems(tile).isEmpty());
        QVERIFY(tiles.press(tile, u"toggle:light.kitchen"_qs));
        QTRY_COMPARE(rig.state(u"light.kitchen"_qs), u"on"_qs);
        QVERIFY(!tiles.press(tile, QString()));

        rig.server.dropAll();
        QVERIFY(rig.reaches(Status::unreachable));
        QCOMPARE(tiles.menuItems(tile).size(), 1);
        QVERIFY(tiles.press(tile, tiles.menuItems(tile)[0].command));
        QCOMPARE(rig.state(u"light.kitchen"_qs), u"on"_qs);
        QVERIFY(rig.reaches(Status::live));
        tiles.setTiles({{tile, false}});
        QTRY_COMPARE(rig.server.subscribed(), 0);
    }
};

QTEST_GUILESS_MAIN(TestSmartHomeService)
#include "tst_smarthomeservice.moc"
