#include "speed/SpeedTestService.h"

#include "platform/Clock.h"
#include "platform/Defaults.h"
#include "platform/Scheduler.h"
#include "speed/SpeedTransfers.h"
#include "text/L.h"

#include <QLoggingCategory>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QRandomGenerator>
#include <QUrlQuery>

#include <algorithm>

namespace tw {

Q_LOGGING_CATEGORY(lcSpeedTest, "com.tarnwick.app.SpeedTest")

namespace {

using namespace std::chrono_literals;

QUrl downUrl(const Endpoints& endpoints, qint64 bytes) {
    QUrl url = endpoints.url(Endpoints::Service::SpeedTest, QStringLiteral("/__down"));
    url.setQuery(QStringLiteral("bytes=%1").arg(bytes));
    return url;
}

// Random, so that nothing on the way can compress it.
QByteArray randomBody(qint64 size) {
    QByteArray body(size, Qt::Uninitialized);
    QRandomGenerator::global()->fillRange(reinterpret_cast<quint32*>(body.data()),
                                          static_cast<qsizetype>(size / 4));
    return body;
}

double median(QList<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

struct SpeedTestService::Run {
    // Made for one run and thrown away with it: no connection, cookie or cache outlives it.
    std::unique_ptr<QNetworkAccessManager> network = std::make_unique<QNetworkAccessManager>();
    QList<double> pings;
    QNetworkReply* pingReply = nullptr;
    ScheduledTask deadline;
    std::unique_ptr<SpeedTransfers> transfers;
    SpeedMeter meter;
    std::chrono::nanoseconds started{};
    std::chrono::milliseconds length{};
    ScheduledTask poller;

    ~Run() {
        transfers.reset();
        if (pingReply != nullptr) {
            pingReply->disconnect();
            pingReply->abort();
        }
        // Later: the run may end inside one of its replies' signals.
        network.release()->deleteLater();
    }
};

SpeedTestService::SpeedTestService(const Services& services, QObject* parent)
    : QObject(parent)
    , m_services(services) {
    const QVariant stored = m_services.defaults.value(historyKey());
    m_board.history = Result::decodeHistory(stored.toByteArray());
    endRun();
}

SpeedTestService::~SpeedTestService() = default;

void SpeedTestService::start() {
    if (m_run) {
        return;
    }
    m_run = std::make_unique<Run>();
    m_board.phase = {Phase::Kind::ping, {}};
    m_board.progress = 0;
    m_board.liveMbps = 0;
    m_board.pingMs.reset();
    m_board.downMbps.reset();
    m_board.upMbps.reset();
    publish();
    ping();
}

void SpeedTestService::cancel() {
    if (!m_run) {
        return;
    }
    endRun();
    m_board.phase = {Phase::Kind::idle, {}};
    publish();
}

void SpeedTestService::runIfDue(std::chrono::seconds every, const QDateTime& now) {
    if (m_board.phase.isRunning()) {
        return;
    }
    if (const auto last = m_board.last(); last && last->date.secsTo(now) < every.count()) {
        return;
    }
    start();
}

void SpeedTestService::ping() {
    const std::chrono::nanoseconds sent = m_services.clock.uptime();
    QNetworkReply* reply = SpeedTransfers::send(*m_run->network, downUrl(m_services.endpoints, 0),
                                                nullptr, m_services.plan.requestTimeout);
    m_run->pingReply = reply;
    connect(reply, &QNetworkReply::finished, this,
            [this, reply, sent] { pingAnswered(reply, sent); });
    m_run->deadline = m_services.scheduler.singleShot(m_services.plan.requestTimeout, 0ms, this,
                                                      [this] { fail(); });
}

void SpeedTestService::pingAnswered(QNetworkReply* reply, std::chrono::nanoseconds sent) {
    const double ms =
        std::chrono::duration<double, std::milli>(m_services.clock.uptime() - sent).count();
    m_run->pingReply = nullptr;
    m_run->deadline.cancel();
    reply->deleteLater();
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (reply->error() != QNetworkReply::NoError || status < 200 || status >= 300) {
        qCInfo(lcSpeedTest, "ping failed: %s", qUtf8Printable(reply->errorString()));
        fail();
        return;
    }
    m_run->pings.append(ms);
    if (m_run->pings.size() < m_services.plan.pings) {
        ping();
        return;
    }
    m_board.pingMs = median(m_run->pings);
    m_board.progress = pingShare;
    measure(Phase::Kind::download);
}

void SpeedTestService::measure(Phase::Kind direction) {
    const SpeedTestPlan& plan = m_services.plan;
    const bool upload = direction == Phase::Kind::upload;
    SpeedTransfers::Job job{
        .url = upload ? m_services.endpoints.url(Endpoints::Service::SpeedTest,
                                                 QStringLiteral("/__up"))
                      : downUrl(m_services.endpoints, plan.downloadBytes),
        .upload = upload ? randomBody(plan.uploadBytes) : QByteArray(),
        .parallel = plan.parallel,
        .timeout = upload ? plan.uploadTimeout : plan.requestTimeout,
        .failureLimit = plan.failureLimit,
    };
    m_run->transfers = std::make_unique<SpeedTransfers>(*m_run->network, std::move(job));
    m_run->meter = SpeedMeter();
    m_run->length = upload ? plan.uploadTime : plan.downloadTime;
    m_run->started = m_services.clock.uptime();
    m_board.phase = {direction, {}};
    m_board.liveMbps = 0;
    publish();
    m_run->transfers->start();
    m_run->poller = m_services.scheduler.repeating(plan.poll, 0ms, this, [this] { poll(); });
}

double SpeedTestService::seconds() const {
    return std::chrono::duration<double>(m_services.clock.uptime() - m_run->started).count();
}

void SpeedTestService::poll() {
    const double t = seconds();
    const ByteCounter& counter = m_run->transfers->counter();
    SpeedMeter& meter = m_run->meter;
    meter.poll(t, counter.bytes);
    const double share =
        std::clamp(t / std::chrono::duration<double>(m_run->length).count(), 0.0, 1.0);
    const bool upload = m_board.phase.kind == Phase::Kind::upload;
    m_board.liveMbps = meter.liveMbps();
    m_board.progress = upload
                           ? pingShare + downloadShare + (1.0 - pingShare - downloadShare) * share
                           : pingShare + downloadShare * share;
    (upload ? m_board.upMbps : m_board.downMbps) = meter.result();
    if (counter.failed >= m_services.plan.failureLimit) {
        qCInfo(lcSpeedTest, "%d transfers failed", counter.failed);
        fail();
        return;
    }
    if (share < 1.0) {
        publish();
        return;
    }
    m_run->poller.cancel();
    m_run->transfers->stop();
    if (!meter.result()) {
        qCInfo(lcSpeedTest, "nothing measured in %.1f s", t);
        fail();
        return;
    }
    if (upload) {
        finish();
    } else {
        measure(Phase::Kind::upload);
    }
}

void SpeedTestService::finish() {
    const Result result{m_services.clock.now(), m_board.downMbps.value_or(0),
                        m_board.upMbps.value_or(0), m_board.pingMs.value_or(0)};
    m_run.reset();
    m_board.history.append(result);
    m_board.history.remove(0,
                           std::max<qsizetype>(0, m_board.history.size() - Result::historyLimit));
    m_services.defaults.setValue(historyKey(),
                                 QString::fromUtf8(Result::encodeHistory(m_board.history)));
    m_board.phase = {Phase::Kind::done, {}};
    m_board.progress = 1.0;
    m_board.liveMbps = 0;
    publish();
}

void SpeedTestService::fail() {
    endRun();
    m_board.phase = {Phase::Kind::failed,
                     L("speedtest.error", QStringLiteral("No connection to the test server"))};
    publish();
}

void SpeedTestService::endRun() {
    m_run.reset();
    m_board.progress = 0;
    m_board.liveMbps = 0;
    const std::optional<Result> last = m_board.last();
    m_board.pingMs = last ? std::optional(last->pingMs) : std::nullopt;
    m_board.downMbps = last ? std::optional(last->downMbps) : std::nullopt;
    m_board.upMbps = last ? std::optional(last->upMbps) : std::nullopt;
}

void SpeedTestService::publish() {
    Q_EMIT boardChanged();
}

} // namespace tw
