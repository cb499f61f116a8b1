#include "TestRows.h"
#include "live/WebMessage.h"
#include "live/WebTileSettings.h"

#include <QTest>

using namespace tw;
using namespace tw::test;

Q_DECLARE_METATYPE(tw::WebCommand)
Q_DECLARE_METATYPE(tw::WebEvent)

namespace {

// JSON written with single quotes, for tables that read one row to a line.
QByteArray json(const char* text) {
    return QByteArray(text).replace('\'', '"');
}

} // namespace

class WebMessageTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyMessageSurvivesTheLine() {
        WebCommand load;
        load.url = QUrl(QStringLiteral("https://example.org/a?b=c#d"));
        load.pixels = QSize(1200, 800);
        load.zoom = 2.0;
        load.scroll = 340;
        WebCommand click;
        click.kind = WebCommand::Kind::click;
        click.point = QPointF(12.5, 300);
        WebCommand reload;
        reload.kind = WebCommand::Kind::reload;
        WebCommand scroll;
        scroll.kind = WebCommand::Kind::scroll;
        scroll.scroll = 90;
        for (const WebCommand& command : {load, click, reload, scroll}) {
            const QByteArray line = WebMessage::encode(command);
            QVERIFY(line.endsWith('\n') && line.count('\n') == 1);
            QCOMPARE(WebMessage::decodeCommand(line), command);
        }
        const WebEvent frame{WebEvent::Kind::frame,
                             QStringLiteral("Title"),
                             QUrl(QStringLiteral("http://127.0.0.1:8/x")),
                             {}};
        const WebEvent failed{WebEvent::Kind::failed, {}, {}, QStringLiteral("Host not found")};
        for (const WebEvent& event : {frame, failed, WebEvent{}}) {
            QCOMPARE(WebMessage::decodeEvent(WebMessage::encode(event)), event);
        }
    }

    void hostileCommandsAreDropped_data() {
        QTest::addColumn<QByteArray>("line");
        const auto load = [](const char* rest) {
            return QByteArray(json("{'load':") + json(rest) + "}");
        };
        row("empty", QByteArray());
        row("not json", QByteArray("load http://x"));
        row("array", QByteArray("[1,2]"));
        row("unknown", json("{'format':'c:'}"));
        row("file page", load("'file:///etc/passwd','width':9,'height':9"));
        row("script page", load("'javascript:alert(1)','width':9,'height':9"));
        row("no host", load("'http://','width':9,'height':9"));
        row("no size", load("'http://a.b'"));
        row("zero width", load("'http://a.b','width':0,'height':9"));
        row("larger than a display", load("'http://a.b','width':9,'height':100000"));
        row("size as text", load("'http://a.b','width':'9','height':9"));
        row("click outside", json("{'click':[-1,4]}"));
        row("click far away", json("{'click':[4,1e300]}"));
        row("click one number", json("{'click':[4]}"));
        row("reload false", json("{'reload':false}"));
        row("overlong", QByteArray(json("{'reload':true,'pad':'") +
                                   QByteArray(WebMessage::maxLine, 'x') + "'}"));
    }
    void hostileCommandsAreDropped() {
        QFETCH(QByteArray, line);
        QCOMPARE(WebMessage::decodeCommand(line), std::nullopt);
    }

    void loadsAreHeldToSaneValues() {
        const std::optional<WebCommand> command = WebMessage::decodeCommand(
            json("{'load':'https://a.b','width':10,'height':20,'zoom':1e300,'scroll':-40}"));
        QVERIFY(command);
        QCOMPARE(command->zoom, WebMessage::maxZoom);
        QCOMPARE(command->scroll, 0);
        // An address as a page may write it reads back the same once sent on.
        const std::optional<WebCommand> raw =
            WebMessage::decodeCommand(json("{'load':'https://a.b/p#x##y','width':1,'height':1}"));
        QVERIFY(raw);
        QCOMPARE(WebMessage::decodeCommand(WebMessage::encode(*raw)), raw);
    }

    void eventsTakeOnlyWhatTheyMay_data() {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<bool>("read");
        QTest::addColumn<WebEvent>("expected");
        const WebEvent noUrl{WebEvent::Kind::frame, QStringLiteral("a b"), {}, {}};
        row("script address dropped",
            json("{'event':'frame','title':'a\\nb','url':'javascript:x'}"), true, noUrl);
        row("unknown event", json("{'event':'explode'}"), false, WebEvent{});
        row("no event", json("{'title':'x'}"), false, WebEvent{});
        row("number event", json("{'event':3}"), false, WebEvent{});
        row("truncated", json("{'event':'fra"), false, WebEvent{});
    }
    void eventsTakeOnlyWhatTheyMay() {
        QFETCH(QByteArray, line);
        QFETCH(bool, read);
        QFETCH(WebEvent, expected);
        const std::optional<WebEvent> event = WebMessage::decodeEvent(line);
        QCOMPARE(event.has_value(), read);
        if (read) {
            QCOMPARE(*event, expected);
        }
    }

    void typedAddresses_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("address");
        row("bare host", "example.org", "https://example.org");
        row("host and port", "localhost:8080/x", "https://localhost:8080/x");
        row("http kept", "  http://example.org/a b  ", "http://example.org/a%20b");
        row("upper scheme", "HTTPS://Example.org", "https://example.org");
        row("file", "file:///etc/passwd", "");
        row("script", "javascript:alert(1)", "");
        row("data", "data:text/html,hi", "");
        row("ftp", "ftp://example.org", "");
        row("blank", "   ", "");
    }
    void typedAddresses() {
        QFETCH(QString, typed);
        QFETCH(QString, address);
        const std::optional<QUrl> url = webPageAddress(typed);
        QCOMPARE(url ? url->toString(QUrl::FullyEncoded) : QString(), address);
    }

    void settingsAreHeldToTheirRanges_data() {
        QTest::addColumn<WidgetSettings>("settings");
        QTest::addColumn<int>("refresh");
        QTest::addColumn<int>("scroll");
        QTest::addColumn<double>("zoom");
        const auto s = [](const char* refresh, const char* scroll, const char* zoom) {
            return WidgetSettings{{QStringLiteral("refresh"), QLatin1String(refresh)},
                                  {QStringLiteral("scroll"), QLatin1String(scroll)},
                                  {QStringLiteral("zoom"), QLatin1String(zoom)}};
        };
        row("defaults", WidgetSettings{}, 15, 0, 1.0);
        row("as chosen", s("15", "400", "150"), 15, 400, 1.5);
        row("negative", s("-5", "-1", "-100"), 0, 0, WebMessage::minZoom);
        row("too much", s("100000", "99999999", "100000"), 24 * 60, 100000, WebMessage::maxZoom);
        row("words", s("often", "down", "big"), 0, 0, 1.0);
    }
    void settingsAreHeldToTheirRanges() {
        QFETCH(WidgetSettings, settings);
        QFETCH(int, refresh);
        QFETCH(int, scroll);
        QFETCH(double, zoom);
        const WebTileSettings read = WebTileSettings::from(settings);
        QCOMPARE(read.refresh.count(), refresh);
        QCOMPARE(read.scroll, scroll);
        QCOMPARE(read.zoom, zoom);
    }
};

QTEST_GUILESS_MAIN(WebMessageTest)
#include "tst_webmessage.moc"
