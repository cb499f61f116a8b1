// The update check: fetches the published release list at start and once a day while automatic
// checks are on, or when asked, and says whether a newer version exists. Only the list is asked
// for; nothing about the person or the machine goes with it.
#pragma once

#include "net/Endpoints.h"
#include "platform/ScheduledTask.h"
#include "updates/SemanticVersion.h"
#include "updates/UpdateStatus.h"

#include <QObject>

#include <chrono>

namespace tw {

class Clock;
class Defaults;
class HttpClient;
class Scheduler;
struct HttpResponse;

class UpdateService final : public QObject {
    Q_OBJECT
public:
    struct Services {
        HttpClient& http;
        Endpoints endpoints;
        const Clock& clock;
        Scheduler& scheduler;
        Defaults& defaults;
        // The version of this build, as the release list names versions.
        QString runningVersion;
        // For the notes, where the list has them in several languages.
        QString language;
    };

    static inline const QString automaticKey = QStringLiteral("tarnwick.updates.automatic");
    static inline const QString lastCheckKey = QStringLiteral("tarnwick.updates.lastCheck");
    static inline const QString outcomeKey = QStringLiteral("tarnwick.updates.outcome");
    static inline const QString newerKey = QStringLiteral("tarnwick.updates.newer");
    // The newest version already announced, so that each is announced once.
    static inline const QString announcedKey = QStringLiteral("tarnwick.updates.announced");
    static constexpr std::chrono::hours interval{24};
    static constexpr std::chrono::seconds timeout{20};

    // The list's address: "/releases.json" at the project's site, or under TKW_ENDPOINT_BASE.
    static QUrl feedUrl(const Endpoints& endpoints);

    // Reads what the last run found; asks nothing until start() or checkNow().
    explicit UpdateService(Services services, QObject* parent = nullptr);
    ~UpdateService() override;

    // With automatic checks on: a check now, then one a day. Off: nothing at all.
    void start();
    // A check by hand, automatic or not; joins one already running.
    void checkNow();

    bool automatic() const;
    // Off cancels the daily check; on checks at once and then daily.
    void setAutomatic(bool on);

    const UpdateStatus& status() const { return m_status; }
    const SemanticVersion& running() const { return m_running; }

Q_SIGNALS:
    void statusChanged();
    void automaticChanged(bool on);
    // A check found a newer version than any announced before: once per version, for a
    // notification.
    void newVersionFound(const tw::Release& release);

private:
    void finish(const HttpResponse& response);
    void announce();
    void scheduleNext();
    void save();

    Services m_services;
    SemanticVersion m_running;
    UpdateStatus m_status;
    ScheduledTask m_next;
    bool m_started = false;
};

} // namespace tw
