// Ties profiles and rules to the desktop: the active profile follows every change of the grid,
// rules switch profiles as time, the foreground application and the displays change, and a
// switch by hand pauses the rules for a while. The one way profiles are switched.
#pragma once

#include "displays/LayoutProfile.h"
#include "displays/SmartLayoutRule.h"
#include "platform/ScheduledTask.h"

#include <QDateTime>
#include <QList>
#include <QMetaObject>
#include <QObject>
#include <QString>
#include <QUuid>

#include <chrono>
#include <optional>

namespace tw {

class Clock;
class Displays;
class ForegroundApplication;
class GridStore;
class LayoutProfileStore;
class Scheduler;
class ScreenTopologyWatcher;
class SmartLayoutRuleStore;
struct ForegroundApp;

class SmartLayoutCoordinator final : public QObject {
    Q_OBJECT
public:
    struct Status {
        enum class Kind { idle, applied, manualPause };
        Kind kind = Kind::idle;
        QDateTime until;     // manualPause
        QString ruleName;    // applied
        QString profileName; // applied

        static Status manualPause(const QDateTime& until) {
            return {Kind::manualPause, until, {}, {}};
        }
        static Status applied(const QString& ruleName, const QString& profileName) {
            return {Kind::applied, {}, ruleName, profileName};
        }

        friend bool operator==(const Status&, const Status&) = default;
    };

    // All must outlive the coordinator; without `foreground` application rules never hold.
    struct Services {
        LayoutProfileStore& profiles;
        SmartLayoutRuleStore& rules;
        GridStore& grid;
        ScreenTopologyWatcher& watcher;
        const Displays& displays;
        const Clock& clock;
        Scheduler& scheduler;
        ForegroundApplication* foreground = nullptr;
    };

    // What a deletion took away, so that it can be put back.
    struct Deleted {
        LayoutProfile profile;
        qsizetype index = 0;
        QList<std::pair<qsizetype, SmartLayoutRule>> rules;
    };

    enum class Switch { automatic, manual };
    enum class Pause { respect, ignore };

    static constexpr std::chrono::milliseconds evaluationInterval{30'000};
    static constexpr std::chrono::milliseconds evaluationTolerance{5'000};
    static constexpr std::chrono::milliseconds gridCaptureDelay{750};
    static constexpr std::chrono::milliseconds rulesDelay{250};
    static constexpr std::chrono::seconds manualPauseLength{900};

    explicit SmartLayoutCoordinator(const Services& services, QObject* parent = nullptr);
    ~SmartLayoutCoordinator() override;

    // Idempotent; `stop` undoes it.
    void start();
    void stop();
    bool isStarted() const { return m_started; }

    void evaluateNow(Pause pause);
    void activateProfile(const QUuid& id, Switch how);
    LayoutProfile createProfile(const QString& named);
    std::optional<LayoutProfile> duplicateProfile(const QUuid& id);
    // Also removes the rules that pointed to it; nothing for the default or an unknown id.
    std::optional<Deleted> deleteProfile(const QUuid& id);
    // Puts a deleted profile and its rules back, without switching to it.
    void restoreDeleted(const Deleted& deleted);
    void saveCurrentProfile();
    void resumeAutomation();

    LayoutProfileStore& profiles() const { return m_services.profiles; }
    SmartLayoutRuleStore& rules() const { return m_services.rules; }
    const Status& status() const { return m_status; }
    std::optional<QString> lastExternalApplicationBundleID() const { return m_lastExternal; }

Q_SIGNALS:
    void statusChanged();

private:
    void rememberFrontmostExternalApplication();
    void adoptLiveGridIfNewerThanProfile();
    void applicationActivated(const ForegroundApp& app);
    void displaysSettled(const QList<LayoutDisplay>& displays, bool topologyChanged);
    void pauseAutomation();
    void setStatus(Status status);
    QList<LayoutDisplay> currentDisplays() const;

    Services m_services;
    Status m_status;
    std::optional<QString> m_lastExternal;
    std::optional<QDateTime> m_manualPauseUntil;
    std::optional<QUuid> m_profileBeforeRules;
    bool m_started = false;
    QList<QMetaObject::Connection> m_connections;
    ScheduledTask m_timer;
    ScheduledTask m_gridCapture;
    ScheduledTask m_rulesChanged;
};

} // namespace tw
