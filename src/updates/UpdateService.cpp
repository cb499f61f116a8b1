#include "updates/UpdateService.h"

#include "net/HttpClient.h"
#include "platform/Clock.h"
#include "platform/Defaults.h"
#include "platform/RawValues.h"
#include "platform/Scheduler.h"
#include "text/L.h"
#include "updates/ReleaseFeed.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QLoggingCategory>

namespace tw {

Q_LOGGING_CATEGORY(lcUpdates, "Updates")

namespace {

using Outcome = UpdateStatus::Outcome;

constexpr RawValues<Outcome, 4> outcomeWords{{"never", "upToDate", "available", "failed"}};

QString failureOf(const HttpResponse& response) {
    switch (response.error) {
    case HttpError::Timeout:
        return L("updates.error.timeout",
                 QStringLiteral("The release list did not answer in time."));
    case HttpError::TooLarge:
        return L("updates.error.tooLarge",
                 QStringLiteral("The release list was larger than a release list can be."));
    case HttpError::Offline:
        return L("updates.error.offline",
                 QStringLiteral("The release list could not be reached. Are you online?"));
    case HttpError::None:
        return L("updates.error.status", QStringLiteral("The release list answered %1."))
            .arg(response.status);
    case HttpError::Network:
    case HttpError::RedirectRefused:
    case HttpError::Cancelled:
        break;
    }
    return L("updates.error.network", QStringLiteral("The release list could not be fetched: %1"))
        .arg(response.message);
}

} // namespace

QUrl UpdateService::feedUrl(const Endpoints& endpoints) {
    return endpoints.url(Endpoints::Service::Releases, QStringLiteral("/releases.json"));
}

UpdateService::UpdateService(Services services, QObject* parent)
    : QObject(parent)
    , m_services(std::move(services))
    , m_running(SemanticVersion::parse(m_services.runningVersion).value_or(SemanticVersion{})) {
    Defaults& defaults = m_services.defaults;
    const QDateTime last =
        QDateTime::fromString(defaults.value(lastCheckKey).toString(), Qt::ISODate);
    if (last.isValid()) {
        m_status.lastCheck = last;
    }
    m_status.outcome =
        outcomeWords.parse(defaults.value(outcomeKey).toString()).value_or(Outcome::never);
    for (const QJsonValue& member :
         QJsonDocument::fromJson(defaults.value(newerKey).toString().toUtf8()).array()) {
        const std::optional<Release> release = Release::fromJson(member.toObject(), QString());
        // Installed meanwhile: what was newer then is not now.
        if (release && release->version > m_running) {
            m_status.newer.append(*release);
        }
    }
    if (m_status.outcome == Outcome::available && m_status.newer.isEmpty()) {
        m_status.outcome = Outcome::upToDate;
    }
}

UpdateService::~UpdateService() = default;

void UpdateService::start() {
    m_started = true;
    if (automatic()) {
        checkNow();
    }
}

bool UpdateService::automatic() const {
    return m_services.defaults.value(automaticKey, true).toBool();
}

void UpdateService::setAutomatic(bool on) {
    if (on == automatic()) {
        return;
    }
    m_services.defaults.setValue(automaticKey, on);
    if (!on) {
        m_next.cancel();
    } else if (m_started) {
        checkNow();
    }
    Q_EMIT automaticChanged(on);
}

void UpdateService::checkNow() {
    if (m_status.checking) {
        return;
    }
    m_next.cancel();
    m_status.checking = true;
    Q_EMIT statusChanged();
    HttpRequest request;
    request.url = feedUrl(m_services.endpoints);
    request.timeout = timeout;
    request.maxBytes = ReleaseFeed::maxBytes;
    qCInfo(lcUpdates, "checking %s", qUtf8Printable(request.url.toString()));
    m_services.http.get(request, this, [this](const HttpResponse& response) { finish(response); });
}

void UpdateService::finish(const HttpResponse& response) {
    m_status.checking = false;
    m_status.lastCheck = m_services.clock.now();
    const std::optional<ReleaseFeed> feed =
        response.isSuccess() ? ReleaseFeed::fromAnswer(response.body, m_services.language)
                             : std::nullopt;
    if (!feed) {
        // What was found before stands: a list that cannot be read says nothing new.
        m_status.outcome = Outcome::failed;
        m_status.failure = response.isSuccess()
                               ? L("updates.error.unreadable",
                                   QStringLiteral("The release list could not be read."))
                               : failureOf(response);
        qCWarning(lcUpdates, "check failed: %s", qUtf8Printable(m_status.failure));
    } else {
        const std::optional<Release> newest = feed->newest(m_running);
        m_status.failure.clear();
        m_status.newer = newest && newest->version > m_running
                             ? feed->between(m_running, newest->version)
                             : QList<Release>{};
        m_status.outcome = m_status.newer.isEmpty() ? Outcome::upToDate : Outcome::available;
        qCInfo(lcUpdates, "running %s, newest %s", qUtf8Printable(m_running.toString()),
               newest ? qUtf8Printable(newest->version.toString()) : "none");
    }
    save();
    scheduleNext();
    Q_EMIT statusChanged();
    announce();
}

void UpdateService::announce() {
    const Release* newest = m_status.available();
    const auto announced =
        SemanticVersion::parse(m_services.defaults.value(announcedKey).toString());
    if (newest == nullptr || (announced && newest->version <= *announced)) {
        return;
    }
    m_services.defaults.setValue(announcedKey, newest->version.toString());
    Q_EMIT newVersionFound(*newest);
}

void UpdateService::scheduleNext() {
    if (!m_started || !automatic()) {
        return;
    }
    m_next = m_services.scheduler.singleShot(interval, std::chrono::minutes(30), this,
                                             [this] { checkNow(); });
}

void UpdateService::save() {
    Defaults& defaults = m_services.defaults;
    defaults.setValue(lastCheckKey, m_status.lastCheck->toString(Qt::ISODateWithMs));
    defaults.setValue(outcomeKey, outcomeWords.of(m_status.outcome));
    QJsonArray newer;
    for (const Release& release : std::as_const(m_status.newer)) {
        newer.append(release.toJson());
    }
    defaults.setValue(newerKey,
                      QString::fromUtf8(QJsonDocument(newer).toJson(QJsonDocument::Compact)));
}

} // namespace tw
