#include "speed/SpeedTransfers.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

namespace tw {

namespace {

// What a download keeps between reads; the manager holds back the line beyond it.
constexpr qint64 readBuffer = 256 * 1024;

} // namespace

SpeedTransfers::SpeedTransfers(QNetworkAccessManager& network, Job job, QObject* parent)
    : QObject(parent)
    , m_network(network)
    , m_job(std::move(job)) {}

SpeedTransfers::~SpeedTransfers() {
    stop();
}

QNetworkReply* SpeedTransfers::send(QNetworkAccessManager& network, const QUrl& url,
                                    const QByteArray* upload, std::chrono::milliseconds timeout) {
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    request.setHeader(QNetworkRequest::UserAgentHeader, QByteArrayLiteral("Tarnwick"));
    request.setTransferTimeout(static_cast<int>(timeout.count()));
    if (upload == nullptr) {
        return network.get(request);
    }
    request.setHeader(QNetworkRequest::ContentTypeHeader,
                      QByteArrayLiteral("application/octet-stream"));
    return network.post(request, *upload);
}

void SpeedTransfers::start() {
    m_stopped = false;
    for (int i = 0; i < m_job.parallel; ++i) {
        launch();
    }
}

void SpeedTransfers::stop() {
    m_stopped = true;
    const QList<QNetworkReply*> replies = std::exchange(m_replies, {});
    for (QNetworkReply* reply : replies) {
        reply->disconnect(this);
        reply->abort();
        reply->deleteLater();
    }
}

void SpeedTransfers::launch() {
    const bool uploading = !m_job.upload.isEmpty();
    QNetworkReply* reply =
        send(m_network, m_job.url, uploading ? &m_job.upload : nullptr, m_job.timeout);
    m_replies.append(reply);
    if (uploading) {
        // Counts what left for the line; each reply reports its own running total.
        auto sent = std::make_shared<qint64>(0);
        connect(reply, &QNetworkReply::uploadProgress, this, [this, sent](qint64 done, qint64) {
            if (done > *sent) {
                m_counter.bytes += done - *sent;
                *sent = done;
            }
        });
    } else {
        reply->setReadBufferSize(readBuffer);
        connect(reply, &QNetworkReply::readyRead, this, [this, reply] { drain(reply); });
    }
    connect(reply, &QNetworkReply::finished, this, [this, reply] { finished(reply); });
}

void SpeedTransfers::drain(QNetworkReply* reply) {
    // An error page is no measure of the line.
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const bool counts = status >= 200 && status < 300;
    char buffer[64 * 1024];
    for (qint64 read = reply->read(buffer, sizeof buffer); read > 0;
         read = reply->read(buffer, sizeof buffer)) {
        m_counter.bytes += counts ? read : 0;
    }
}

void SpeedTransfers::finished(QNetworkReply* reply) {
    if (m_job.upload.isEmpty()) {
        drain(reply);
    }
    m_replies.removeOne(reply);
    reply->deleteLater();
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const bool whole = reply->error() == QNetworkReply::NoError && status >= 200 && status < 300;
    (whole ? m_counter.confirmed : m_counter.failed) += 1;
    if (!m_stopped && m_counter.failed < m_job.failureLimit) {
        launch();
    }
}

} // namespace tw
