#include "LoopbackHttpServer.h"
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "TestRows.h"
#include "custom/CustomTokens.h"
#include "custom/CustomWidgetRuntime.h"
#include "net/QtHttpClient.h"
#include "readings/ReadingsBoard.h"

#include <QTest>

using namespace tw;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using tw::test::LoopbackHttpServer;
using tw::test::row;

Q_DECLARE_METATYPE(LoopbackHttpServer::Answer)

namespace {

// 127.0.0.1 stands in for a public host, so that a redirect to "localhost" is one into a private
// range.
AddressClass loopbackCountsAsPublic(QStringView host) {
    return host == u"127.0.0.1" ? AddressClass::Public : classifyHost(host);
}

CustomSource sourceAt(const QUrl& url, std::optional<QString> name = std::nullopt) {
    CustomSource source;
    source.url = url.toString();
    source.refreshSeconds = 60;
    source.name = std::move(name);
    return source;
}

CustomElement element(CustomElementType type, const QString& text, const QString& path = {}) {
    CustomElement element;
    element.type = type;
    element.text = text;
    if (!path.isEmpty()) {
        element.path = path;
    }
    return element;
}

CustomWidgetDefinition definitionWith(std::optional<CustomSource> source,
                                      QList<CustomElement> elements = {},
                                      QList<CustomSource> extras = {}) {
    CustomWidgetDefinition definition;
    definition.name = QStringLiteral("Test");
    definition.source = std::move(source);
    if (!extras.isEmpty()) {
        definition.extraSources = extras;
    }
    CustomRow row;
    row.elements =
        elements.isEmpty()
            ? QList<CustomElement>{element(CustomElementType::text, QStringLiteral("{data:v}"))}
            : elements;
    definition.rows = {row};
    return definition;
}

CustomJSON doc(const char* text) {
    return *CustomJSON::parse(QByteArray(text));
}

} // namespace

class TestCustomWidgetRuntime : public QObject {
    Q_OBJECT
private:
    LoopbackHttpServer m_server;
    test::ManualClock m_clock;
    test::ManualScheduler m_scheduler;
    std::unique_ptr<QtHttpClient> m_http;
    ReadingsBoard m_readings;
    std::unique_ptr<CustomWidgetRuntime> m_runtime;
    int m_paths = 0;

    const CustomSourceState* state(const CustomSource& source) const {
        const auto found = m_runtime->board().sources.constFind(source.cacheKey());
        return found == m_runtime->board().sources.cend() ? nullptr : &found.value();
    }
    bool settled(const CustomSource& source) {
        return QTest::qWaitFor([&] { return state(source) && !state(source)->loading; }, 10000);
    }
    qsizetype requestsFor(const QByteArray& path) const {
        return std::count_if(m_server.requests().cbegin(), m_server.requests().cend(),
                             [&](const auto& request) { return request.target == path; });
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_server.isListening()); }

    void init() {
        m_http = std::make_unique<QtHttpClient>(m_scheduler, loopbackCountsAsPublic);
        m_runtime = std::make_unique<CustomWidgetRuntime>(*m_http, m_clock, &m_readings);
    }
    void cleanup() {
        m_runtime.reset();
        m_http.reset();
    }

    // Each bad answer comes after a good one: the document stays and the error says why.
    void answers_data() {
        QTest::addColumn<LoopbackHttpServer::Answer>("answer");
        QTest::addColumn<QString>("error");
        QTest::addColumn<QString>("value");
        QUrl toLocalhost = m_server.url(QStringLiteral("/doc"));
        toLocalhost.setHost(QStringLiteral("localhost"));
        auto html = LoopbackHttpServer::ok("<html>hello</html>");
        html.headers = {{"Content-Type", "text/html"}};
        auto jsonAsText = LoopbackHttpServer::ok(R"({"v": 2})");
        jsonAsText.headers = {{"Content-Type", "text/plain"}};
        row("500", LoopbackHttpServer::status(500, R"({"v": 9})"), "The server answered 500.", "1");
        row("404", LoopbackHttpServer::status(404), "The server answered 404.", "1");
        row("600 KB", LoopbackHttpServer::huge(600 * 1024), "The answer is too large to show.",
            "1");
        row("garbage", LoopbackHttpServer::garbage(), "Couldn’t reach the server.", "1");
        row("dropped", LoopbackHttpServer::drop(R"({"v": 3, "pad": "..........."})"),
            "Couldn’t reach the server.", "1");
        row("html", html, "The answer isn’t JSON.", "1");
        row("redirect to a private address", LoopbackHttpServer::redirect(toLocalhost),
            "Couldn’t reach the server.", "1");
        row("JSON as text/plain", jsonAsText, "", "2");
        row("slow", LoopbackHttpServer::trickle("42"), "", "42");
    }
    void answers() {
        QFETCH(LoopbackHttpServer::Answer, answer);
        QFETCH(QString, error);
        QFETCH(QString, value);
        const QByteArray path = "/answers/" + QByteArray::number(++m_paths);
        const CustomSource source = sourceAt(m_server.url(QString::fromLatin1(path)));
        m_server.route(path, LoopbackHttpServer::ok(R"({"v": 1})"));
        m_runtime->forceReload(source);
        QVERIFY(settled(source));
        QCOMPARE(state(source)->json, doc(R"({"v": 1})"));

        m_server.route(path, answer);
        m_clock.advance(5s);
        m_runtime->forceReload(source);
        QVERIFY(state(source)->loading);
        QVERIFY(settled(source));
        QCOMPARE(state(source)->error.value_or(QString()), error);
        const CustomJSON kept = *state(source)->json;
        QCOMPARE(kept.root.isObject() ? kept.string(QStringLiteral("v")) : kept.string({}), value);
        QCOMPARE(state(source)->fetchedAt, m_clock.now());
        QVERIFY(!state(source)->startedAt);
    }

    // Every tile and definition reading one address with the same headers shares one request,
    // paced by the source's interval whatever the answer.
    void sharedSourceFetchesOnce() {
        m_server.route("/shared", LoopbackHttpServer::ok("7"));
        CustomSource source = sourceAt(m_server.url(QStringLiteral("/shared")));
        source.headers =
            QMap<QString, QString>{{QStringLiteral("accept"), QStringLiteral("text/x")},
                                   {QStringLiteral("X-Key"), QStringLiteral("k1")}};
        const auto first = definitionWith(source);
        auto second = definitionWith(source);
        second.source->refreshSeconds = 600;
        m_runtime->setDefinitions({first, second});
        const QStringList inView{first.kind(), first.kind(), second.kind(), QStringLiteral("x")};

        m_runtime->refresh(m_clock.now(), inView);
        QVERIFY(settled(source));
        QCOMPARE(requestsFor("/shared"), 1);
        const auto& sent = m_server.requests().last();
        QCOMPARE(sent.header("Accept"), "text/x");
        QCOMPARE(sent.header("X-Key"), "k1");
        QCOMPARE(m_runtime->board().bag(second, m_clock.now(), nullptr).data, doc("7"));

        m_clock.advance(59s);
        m_runtime->refresh(m_clock.now(), inView);
        QCOMPARE(requestsFor("/shared"), 1);
        m_clock.advance(2s);
        m_runtime->refresh(m_clock.now(), inView);
        QVERIFY(settled(source));
        QCOMPARE(requestsFor("/shared"), 2);
    }

    // A request that never answers holds the source for 15 s; then another may start beside it.
    // forceReload does not wait.
    void hungRequestIsSuperseded() {
        m_server.route("/hung", LoopbackHttpServer::stall());
        const CustomSource source = sourceAt(m_server.url(QStringLiteral("/hung")));
        const auto definition = definitionWith(source);
        m_runtime->setDefinitions({definition});
        const auto arrived = [&](qsizetype count) {
            return QTest::qWaitFor([&] { return requestsFor("/hung") == count; }, 5000);
        };

        m_runtime->refresh(m_clock.now(), {definition.kind()});
        QVERIFY(arrived(1));
        m_clock.advance(15s);
        m_runtime->refresh(m_clock.now(), {definition.kind()});
        m_clock.advance(1s);
        QTest::qWait(50);
        QCOMPARE(requestsFor("/hung"), 1);
        m_runtime->refresh(m_clock.now(), {definition.kind()});
        QVERIFY(arrived(2));
        m_runtime->forceReload(source);
        QVERIFY(arrived(3));
        QVERIFY(state(source)->loading);
        QVERIFY(!state(source)->fetchedAt);
    }

    void badAddressIsTriedAfterTheInterval() {
        const CustomSource source = sourceAt(QUrl(QStringLiteral("ftp://127.0.0.1/plain")));
        m_runtime->fetchIfDue(source, m_clock.now());
        QCOMPARE(state(source)->error, QStringLiteral("The address isn’t valid."));
        QCOMPARE(state(source)->fetchedAt, m_clock.now());
        QVERIFY(!state(source)->loading);
    }

    // Under a common base (TKW_ENDPOINT_BASE) a public address is asked of the local server.
    void aCommonBaseServesEveryAddress() {
        m_server.route("/stub/web/api.example.com/v1/x", LoopbackHttpServer::ok("5"));
        CustomWidgetRuntime runtime(*m_http, m_clock, &m_readings,
                                    Endpoints::under(m_server.url(u"/stub"_s).toString()));
        const CustomSource source = sourceAt(QUrl(u"https://api.example.com/v1/x?a=1"_s));
        runtime.forceReload(source);
        QVERIFY(QTest::qWaitFor([&] { return !runtime.board().sources[source.cacheKey()].loading; },
                                10000));
        QCOMPARE(runtime.board().sources[source.cacheKey()].json, doc("5"));
        QCOMPARE(m_server.requests().last().target, "/stub/web/api.example.com/v1/x?a=1");
    }

    // One source failing among several: the rows still draw, marked stale, and the failed one's
    // tokens read as missing.
    void extraSourceFailing() {
        m_server.route("/main", LoopbackHttpServer::ok(R"({"v": "main"})"));
        m_server.route("/extra", LoopbackHttpServer::status(503));
        const CustomSource main = sourceAt(m_server.url(QStringLiteral("/main")));
        const CustomSource extra =
            sourceAt(m_server.url(QStringLiteral("/extra")), QStringLiteral("b"));
        const auto definition = definitionWith(main, {}, {extra});
        m_runtime->setDefinitions({definition});
        m_runtime->refresh(m_clock.now(), {definition.kind()});
        QVERIFY(settled(main) && settled(extra));

        const CustomValueBag bag = m_runtime->board().bag(definition, m_clock.now(), nullptr);
        QCOMPARE(bag.dataError, QStringLiteral("The server answered 503."));
        QVERIFY(!bag.named.contains(QStringLiteral("b")));
        QCOMPARE(CustomTokens::render(u"{data:v} {data.b:v}", bag), QStringLiteral("main —"));
        const auto merged = m_runtime->board().sourceState(definition);
        QVERIFY(merged && merged->json && merged->error);
    }

    // A sparkline gets a point at most every 15 s, only when it has a number, keeps the last 48,
    // and its histories go with its definition.
    void histories() {
        const auto definition = definitionWith(
            std::nullopt, {element(CustomElementType::sparkline, QStringLiteral("{cpu}")),
                           element(CustomElementType::sparkline, QStringLiteral("{data:v}"),
                                   QStringLiteral("v"))});
        QVERIFY(definition.needsSystemValues());
        m_runtime->setDefinitions({definition});
        const QString cpu = CustomBoard::historyKey(definition, 0, 0);
        const QString data = CustomBoard::historyKey(definition, 0, 1);

        m_runtime->refresh(m_clock.now(), {definition.kind()});
        QVERIFY(m_runtime->board().history(cpu).isEmpty());
        m_readings.system = SystemSnapshot{};
        for (int tick = 0; tick < 60; ++tick) {
            m_readings.system->cpu = tick / 100.0;
            m_runtime->refresh(m_clock.now(), {definition.kind()});
            m_clock.advance(tick % 2 == 0 ? 10s : 5s);
        }
        const QList<double> points = m_runtime->board().history(cpu);
        QCOMPARE(points.size(), 30);
        QCOMPARE(points.first(), 0.0);
        QCOMPARE(points.last(), 58.0);
        for (int more = 0; more < 30; ++more) {
            m_runtime->refresh(m_clock.now(), {definition.kind()});
            m_clock.advance(15s);
        }
        QCOMPARE(m_runtime->board().history(cpu).size(), CustomWidgetRuntime::historyLength);
        QVERIFY(m_runtime->board().history(data).isEmpty());

        m_runtime->discard(QUuid::createUuid());
        QVERIFY(!m_runtime->board().histories.isEmpty());
        m_runtime->discard(definition.id);
        QVERIFY(m_runtime->board().histories.isEmpty());
        m_runtime->refresh(m_clock.now(), {definition.kind()});
        QCOMPARE(m_runtime->board().history(cpu).size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestCustomWidgetRuntime)
#include "tst_customwidgetruntime.moc"
