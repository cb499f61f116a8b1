#include "net/QtHttpClient.h"

#include "net/BodyInflater.h"
#include "platform/Scheduler.h"

#include <QNetworkCookie>
#include <QNetworkCookieJar>
#include <QNetworkReply>
#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <memory>

namespace tw {

namespace {

constexpr int maxRedirects = 5;
// Small, so that a compressed body is inflated a piece at a time as we read, never all at once.
constexpr qint64 readBufferBytes = qint64{64} * 1024;

// Cookies are never kept: a service cannot tie one request to the next.
class NoCookieJar final : public QNetworkCookieJar {
public:
    using QNetworkCookieJar::QNetworkCookieJar;
    bool setCookiesFromUrl(const QList<QNetworkCookie>& /*cookies*/, const QUrl& /*url*/) override {
        return false;
    }
    QList<QNetworkCookie> cookiesForUrl(const QUrl& /*url*/) const override { return {}; }
};

bool hasHeader(const QList<HttpHeader>& headers, const QByteArray& name) {
    return std::any_of(headers.begin(), headers.end(), [&](const HttpHeader& header) {
        return header.first.compare(name, Qt::CaseInsensitive) == 0;
    });
}

bool isHttp(const QUrl& url) {
    const QString scheme = url.scheme().toLower();
    return url.isValid() && !url.host().isEmpty() &&
           (scheme == QLatin1String("http") || scheme == QLatin1String("https"));
}

bool isRedirect(int status) {
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

// Errors QNAM raises for an answer that did arrive, only with a status outside 2xx.
bool isStatusError(QNetworkReply::NetworkError error) {
    return (error >= QNetworkReply::ContentAccessDenied &&
            error <= QNetworkReply::UnknownContentError) ||
           (error >= QNetworkReply::InternalServerError &&
            error <= QNetworkReply::UnknownServerError) ||
           error == QNetworkReply::ProtocolInvalidOperationError;
}

HttpError errorKind(QNetworkReply::NetworkError error) {
    switch (error) {
    case QNetworkReply::NoError:
        return HttpError::None;
    case QNetworkReply::OperationCanceledError:
        return HttpError::Cancelled;
    case QNetworkReply::TimeoutError:
        return HttpError::Timeout;
    case QNetworkReply::HostNotFoundError:
    case QNetworkReply::RemoteHostClosedError:
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::NetworkSessionFailedError:
        return HttpError::Offline;
    default:
        return HttpError::Network;
    }
}

} // namespace

// One request from start to answer, across its redirects; the context of its connections, so
// nothing reaches it once it is gone.
class QtHttpClient::Transfer final : public QObject {
public:
    using QObject::QObject;

    HttpRequest request;
    QPointer<const QObject> requester;
    Completion done;
    AddressClass origin = AddressClass::Public;
    QUrl current;
    int hops = 0;
    QNetworkReply* reply = nullptr;
    QByteArray body;
    // Of the current hop, before any inflating.
    qint64 received = 0;
    std::unique_ptr<BodyInflater> inflater;
    ScheduledTask deadline;
};

QtHttpClient::QtHttpClient(Scheduler& scheduler, HostClassifier classify, QObject* parent)
    : QObject(parent)
    , m_scheduler(scheduler)
    , m_classify(std::move(classify)) {
    m_manager.setCookieJar(new NoCookieJar(&m_manager));
}

QtHttpClient::~QtHttpClient() {
    while (!m_transfers.empty()) {
        Transfer& transfer = *m_transfers.front();
        finish(transfer, HttpError::Cancelled,
               tr("The request to %1 was cancelled").arg(transfer.current.host()));
    }
}

void QtHttpClient::get(const HttpRequest& request, const QObject* requester, Completion done) {
    Q_ASSERT_X(requester != nullptr, "QtHttpClient::get", "a request needs a requester");
    if (!isHttp(request.url)) {
        HttpResponse response;
        response.error = HttpError::Network;
        response.message = tr("Not a web address: %1").arg(request.url.toDisplayString());
        response.url = request.url;
        QTimer::singleShot(0, requester, [done = std::move(done), response] { done(response); });
        return;
    }

    auto* transfer = new Transfer(this);
    m_transfers.push_back(transfer);
    transfer->request = request;
    transfer->requester = requester;
    transfer->done = std::move(done);
    transfer->origin = m_classify(request.url.host());
    transfer->current = request.url;
    // One deadline for the whole transfer, redirects included.
    transfer->deadline =
        m_scheduler.singleShot(request.timeout, Scheduler::Duration(0), transfer, [this, transfer] {
            finish(*transfer, HttpError::Timeout,
                   tr("No answer from %1 within %2 s")
                       .arg(transfer->current.host())
                       .arg(double(transfer->request.timeout.count()) / 1000.0));
        });
    // A requester that is gone wants nothing: stop the transfer without a word.
    connect(requester, &QObject::destroyed, transfer, [this, transfer] {
        transfer->done = nullptr;
        finish(*transfer, HttpError::Cancelled, {});
    });
    send(*transfer);
}

void QtHttpClient::send(Transfer& transfer) {
    QNetworkRequest wire(transfer.current);
    for (const HttpHeader& header : transfer.request.headers) {
        wire.setRawHeader(header.first, header.second);
    }
    if (!hasHeader(transfer.request.headers, "User-Agent")) {
        wire.setRawHeader("User-Agent", "Tarnwick");
    }
    if (!hasHeader(transfer.request.headers, "Accept")) {
        wire.setRawHeader("Accept", "application/json");
    }
    // Set here, QNAM leaves the body compressed: it would inflate a whole network packet at once,
    // however large the result, where ours stops at the cap.
    if (!hasHeader(transfer.request.headers, "Accept-Encoding")) {
        wire.setRawHeader("Accept-Encoding", "gzip, deflate");
    }
    // Redirects are followed here, one new request per hop, so that every hop meets the policy.
    wire.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                      QNetworkRequest::ManualRedirectPolicy);
    wire.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    wire.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    wire.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    wire.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);

    Transfer* owner = &transfer;
    transfer.body.clear();
    transfer.received = 0;
    transfer.inflater.reset();
    transfer.reply = m_manager.get(wire);
    transfer.reply->setReadBufferSize(readBufferBytes);
    connect(transfer.reply, &QNetworkReply::readyRead, owner,
            [this, owner] { onReadyRead(*owner); });
    connect(transfer.reply, &QNetworkReply::finished, owner, [this, owner] { onFinished(*owner); });
}

void QtHttpClient::onReadyRead(Transfer& transfer) {
    QNetworkReply* reply = transfer.reply;
    const qint64 cap = transfer.request.maxBytes;
    while (reply->bytesAvailable() > 0) {
        if (transfer.received == 0) {
            const QByteArray encoding = reply->rawHeader("Content-Encoding").trimmed().toLower();
            if (encoding == "gzip" || encoding == "x-gzip" || encoding == "deflate") {
                transfer.inflater = std::make_unique<BodyInflater>(cap);
            } else if (!encoding.isEmpty() && encoding != "identity") {
                finish(transfer, HttpError::Network,
                       tr("The answer from %1 comes in an unknown encoding (%2)")
                           .arg(transfer.current.host(), QString::fromLatin1(encoding)));
                return;
            }
        }
        // Read no more than one byte past the cap: that byte is proof enough.
        const QByteArray chunk =
            reply->read(std::min(cap + 1 - transfer.received, readBufferBytes));
        transfer.received += chunk.size();
        if (transfer.inflater &&
            transfer.inflater->feed(chunk, transfer.body) == BodyInflater::Status::Corrupt) {
            finish(transfer, HttpError::Network,
                   tr("The compressed answer from %1 is damaged").arg(transfer.current.host()));
            return;
        }
        if (!transfer.inflater) {
            transfer.body.append(chunk);
        }
        if (transfer.received > cap || transfer.body.size() > cap) {
            finish(transfer, HttpError::TooLarge,
                   tr("The answer from %1 is larger than %2 KiB")
                       .arg(transfer.current.host())
                       .arg(cap / 1024));
            return;
        }
    }
}

void QtHttpClient::onFinished(Transfer& transfer) {
    QNetworkReply* reply = transfer.reply;
    onReadyRead(transfer);
    if (std::find(m_transfers.begin(), m_transfers.end(), &transfer) == m_transfers.end()) {
        return;
    }
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QByteArray location = reply->rawHeader("Location");
    if (isRedirect(status) && !location.isEmpty()) {
        const QUrl from = transfer.current;
        const QUrl to = from.resolved(QUrl::fromEncoded(location));
        QString refusal = redirectRefusal(from, to, transfer.origin, m_classify(to.host()));
        if (refusal.isEmpty() && transfer.hops == maxRedirects) {
            refusal = tr("more than %1 redirects").arg(maxRedirects);
        }
        if (!refusal.isEmpty()) {
            finish(transfer, HttpError::RedirectRefused,
                   tr("Refused the redirect from %1 to %2: %3")
                       .arg(from.host(), to.toDisplayString(), refusal));
            return;
        }
        ++transfer.hops;
        reply->disconnect(&transfer);
        reply->deleteLater();
        transfer.current = to;
        send(transfer);
        return;
    }
    const QNetworkReply::NetworkError error = reply->error();
    if (error == QNetworkReply::NoError || (status > 0 && isStatusError(error))) {
        if (transfer.inflater && transfer.inflater->status() != BodyInflater::Status::Done) {
            finish(transfer, HttpError::Network,
                   tr("The compressed answer from %1 is cut short").arg(transfer.current.host()));
            return;
        }
        finish(transfer, HttpError::None, {});
        return;
    }
    // QNAM closes the connection itself on an answer that is not HTTP and says no more than that;
    // only a connection lost once an answer had begun is likely the network going away.
    const HttpError kind = error == QNetworkReply::RemoteHostClosedError && status == 0
                               ? HttpError::Network
                               : errorKind(error);
    finish(transfer, kind, tr("%1: %2").arg(transfer.current.host(), reply->errorString()));
}

void QtHttpClient::finish(Transfer& transfer, HttpError error, const QString& message) {
    const auto found = std::find(m_transfers.begin(), m_transfers.end(), &transfer);
    if (found == m_transfers.end()) {
        return;
    }
    m_transfers.erase(found);
    transfer.deadline.cancel();
    QNetworkReply* reply = transfer.reply;
    reply->disconnect(&transfer);

    HttpResponse response;
    response.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    for (const auto& [name, value] : reply->rawHeaderPairs()) {
        response.headers.append({name.toLower(), value});
    }
    if (error == HttpError::None) {
        response.body = transfer.body;
    }
    response.error = error;
    response.message = message;
    response.url = transfer.current;

    if (reply->isRunning()) {
        reply->abort();
    }
    reply->deleteLater();
    const Completion done = std::move(transfer.done);
    const bool waited = !transfer.requester.isNull();
    transfer.deleteLater();
    if (done && waited) {
        done(response);
    }
}

} // namespace tw
