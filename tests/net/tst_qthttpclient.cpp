#include "LoopbackHttpServer.h"
#include "ManualScheduler.h"
#include "TestRows.h"
#include "net/QtHttpClient.h"

#include <QSignalSpy>
#include <QTest>

#include <optional>

using namespace tw;
using namespace std::chrono_literals;
using tw::test::LoopbackHttpServer;
using tw::test::row;

namespace {

constexpr qint64 MiB = 1024 * 1024;

// Offline there is no public server to start from, so the loopback server's 127.0.0.1 stands in
// for a public host; every other host, "localhost" included, keeps its real class. That leaves the
// client's use of the policy honest: a redirect to localhost is a hop from "public" into loopback.
AddressClass loopbackCountsAsPublic(QStringView host) {
    return host == u"127.0.0.1" ? AddressClass::Public : classifyHost(host);
}

} // namespace

class TestQtHttpClient : public QObject {
    Q_OBJECT
private:
    LoopbackHttpServer m_server;

    // The request through a fresh client; advances the deadline clock by `wait` once the server has
    // the request, then waits for the answer.
    std::optional<HttpResponse> fetch(const HttpRequest& request,
                                      std::chrono::milliseconds wait = 0ms) {
        test::ManualScheduler scheduler;
        QtHttpClient client(scheduler, loopbackCountsAsPublic);
        QObject requester;
        std::optional<HttpResponse> response;
        const qsizetype before = m_server.requests().size();
        client.get(request, &requester, [&](const HttpResponse& r) { response = r; });
        if (wait > 0ms) {
            if (!QTest::qWaitFor([&] { return m_server.requests().size() > before || response; },
                                 5000)) {
                return std::nullopt;
            }
            scheduler.advance(wait);
        }
        if (!QTest::qWaitFor([&] { return response.has_value(); }, 10000)) {
            return std::nullopt;
        }
        return response;
    }

    HttpRequest at(const QString& path) const {
        HttpRequest request;
        request.url = m_server.url(path);
        return request;
    }

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(m_server.isListening());
        const QUrl local = m_server.url(QStringLiteral("/ok"));
        QUrl byName = local;
        byName.setHost(QStringLiteral("localhost"));
        m_server.route("/ok", LoopbackHttpServer::ok("hello"));
        m_server.route("/slow", LoopbackHttpServer::trickle("tick-tock"));
        m_server.route("/stall", LoopbackHttpServer::stall());
        m_server.route("/drop", LoopbackHttpServer::drop(QByteArray(4096, 'd')));
        m_server.route("/garbage", LoopbackHttpServer::garbage());
        m_server.route("/huge", LoopbackHttpServer::huge(8 * MiB));
        m_server.route("/bomb", LoopbackHttpServer::gzipBomb(64 * MiB));
        m_server.route("/zipped", LoopbackHttpServer::gzipBomb(MiB));
        m_server.route("/to-localhost", LoopbackHttpServer::redirect(byName));
        m_server.route("/to-file",
                       LoopbackHttpServer::redirect(QUrl(QStringLiteral("file:///etc/hostname"))));
        for (int hop = 1; hop <= 6; ++hop) {
            m_server.route(
                "/hop" + QByteArray::number(hop),
                LoopbackHttpServer::redirect(QUrl(QStringLiteral("/hop%1").arg(hop - 1))));
        }
        m_server.route("/hop0", LoopbackHttpServer::ok("landed"));
        auto cookie = LoopbackHttpServer::ok("{}");
        cookie.headers.append(LoopbackHttpServer::Header("Set-Cookie", "session=abc; Path=/"));
        m_server.route("/cookie", cookie);
    }

    void get_data() {
        QTest::addColumn<QString>("target"); // a path on the server, or a whole URL
        QTest::addColumn<qint64>("maxBytes");
        QTest::addColumn<int>("timeoutMs");
        QTest::addColumn<int>("advanceMs");
        QTest::addColumn<HttpError>("error");
        QTest::addColumn<int>("status");
        QTest::addColumn<qint64>("bodySize");
        const qint64 cap = HttpRequest::defaultMaxBytes;
        const int t = int(HttpRequest::defaultTimeout.count());
        row("ok", "/ok", cap, t, 0, HttpError::None, 200, qint64(5));
        row("404 is an answer", "/missing", cap, t, 0, HttpError::None, 404, qint64(8));
        row("slow, well within the deadline", "/slow", cap, t, t - 1000, HttpError::None, 200,
            qint64(9));
        row("stall, default deadline", "/stall", cap, t, t, HttpError::Timeout, 0, qint64(0));
        row("stall, the request's own deadline", "/stall", cap, 500, 500, HttpError::Timeout, 0,
            qint64(0));
        row("drop mid-body", "/drop", cap, t, 0, HttpError::Offline, 200, qint64(0));
        row("garbage", "/garbage", cap, t, 0, HttpError::Network, 0, qint64(0));
        row("huge", "/huge", cap, t, 0, HttpError::TooLarge, 200, qint64(0));
        row("huge under a raised cap", "/huge", 8 * MiB, t, 0, HttpError::None, 200, 8 * MiB);
        row("gzip bomb counts inflated bytes", "/bomb", cap, t, 0, HttpError::TooLarge, 200,
            qint64(0));
        row("gzip within the cap is inflated", "/zipped", cap, t, 0, HttpError::None, 200, MiB);
        row("five hops", "/hop5", cap, t, 0, HttpError::None, 200, qint64(6));
        row("six hops", "/hop6", cap, t, 0, HttpError::RedirectRefused, 302, qint64(0));
        row("public into loopback", "/to-localhost", cap, t, 0, HttpError::RedirectRefused, 302,
            qint64(0));
        row("loopback start may stay in loopback", "localhost:/to-localhost", cap, t, 0,
            HttpError::None, 200, qint64(5));
        row("redirect to a file", "/to-file", cap, t, 0, HttpError::RedirectRefused, 302,
            qint64(0));
        row("not a web address", "file:///etc/hostname", cap, t, 0, HttpError::Network, 0,
            qint64(0));
    }
    void get() {
        QFETCH(QString, target);
        QFETCH(qint64, maxBytes);
        QFETCH(int, timeoutMs);
        QFETCH(int, advanceMs);
        QFETCH(HttpError, error);
        QFETCH(int, status);
        QFETCH(qint64, bodySize);

        HttpRequest request;
        if (target.startsWith(QLatin1String("localhost:"))) {
            request.url = m_server.url(target.mid(10));
            request.url.setHost(QStringLiteral("localhost"));
        } else {
            request.url = target.startsWith(QLatin1Char('/')) ? m_server.url(target) : QUrl(target);
        }
        request.maxBytes = maxBytes;
        request.timeout = std::chrono::milliseconds(timeoutMs);
        const std::optional<HttpResponse> response =
            fetch(request, std::chrono::milliseconds(advanceMs));
        QVERIFY(response);
        QCOMPARE(response->error, error);
        QCOMPARE(response->status, status);
        QCOMPARE(response->body.size(), bodySize);
        QCOMPARE(response->message.isEmpty(), error == HttpError::None);
        QVERIFY(!response->message.contains(QLatin1Char('\n')));
    }

    void houseHeadersUnlessSet_data() {
        QTest::addColumn<QList<HttpHeader>>("headers");
        QTest::addColumn<QByteArray>("agent");
        QTest::addColumn<QByteArray>("accept");
        row("house values", QList<HttpHeader>{}, QByteArray("Tarnwick"),
            QByteArray("application/json"));
        row("own accept, any case", QList<HttpHeader>{{"accept", "text/plain"}},
            QByteArray("Tarnwick"), QByteArray("text/plain"));
        row("own agent", QList<HttpHeader>{{"User-Agent", "probe"}}, QByteArray("probe"),
            QByteArray("application/json"));
    }
    void houseHeadersUnlessSet() {
        QFETCH(QList<HttpHeader>, headers);
        QFETCH(QByteArray, agent);
        QFETCH(QByteArray, accept);
        HttpRequest request = at(QStringLiteral("/ok"));
        request.headers = headers;
        QVERIFY(fetch(request));
        const LoopbackHttpServer::Request& seen = m_server.requests().constLast();
        QCOMPARE(seen.header("User-Agent"), agent);
        QCOMPARE(seen.header("Accept"), accept);
    }

    void keepsNoCookies() {
        test::ManualScheduler scheduler;
        QtHttpClient client(scheduler);
        QObject requester;
        int answers = 0;
        const auto count = [&](const HttpResponse& response) {
            answers += response.isSuccess() ? 1 : 0;
        };
        client.get(at(QStringLiteral("/cookie")), &requester, count);
        QTRY_COMPARE(answers, 1);
        client.get(at(QStringLiteral("/ok")), &requester, count);
        QTRY_COMPARE(answers, 2);
        QCOMPARE(m_server.requests().constLast().header("Cookie"), QByteArray());
    }

    void requesterGoneAbortsSilently() {
        test::ManualScheduler scheduler;
        QtHttpClient client(scheduler);
        auto requester = std::make_unique<QObject>();
        bool called = false;
        const qsizetype before = m_server.requests().size();
        client.get(at(QStringLiteral("/stall")), requester.get(),
                   [&](const HttpResponse&) { called = true; });
        QTRY_COMPARE(m_server.requests().size(), before + 1);
        QTRY_COMPARE(m_server.openConnections(), 1);
        requester.reset();
        QTRY_COMPARE(m_server.openConnections(), 0);
        QVERIFY(scheduler.pending().empty());
        scheduler.advance(HttpRequest::defaultTimeout);
        QVERIFY(!called);
    }

    void clientGoneCancels() {
        test::ManualScheduler scheduler;
        auto client = std::make_unique<QtHttpClient>(scheduler);
        QObject requester;
        std::optional<HttpResponse> response;
        client->get(at(QStringLiteral("/stall")), &requester,
                    [&](const HttpResponse& r) { response = r; });
        client.reset();
        QVERIFY(response);
        QCOMPARE(response->error, HttpError::Cancelled);
        QTRY_COMPARE(m_server.openConnections(), 0);
    }
};

QTEST_GUILESS_MAIN(TestQtHttpClient)
#include "tst_qthttpclient.moc"
