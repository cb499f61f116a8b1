#include "displays/SmartLayoutCoordinator.h"

#include "displays/LayoutProfileResolver.h"
#include "displays/LayoutProfileStore.h"
#include "displays/ScreenTopologyWatcher.h"
#include "displays/SmartLayoutRuleResolver.h"
#include "displays/SmartLayoutRuleStore.h"
#include "grid/GridStore.h"
#include "platform/Clock.h"
#include "platform/ForegroundApplication.h"
#include "platform/Scheduler.h"

#include <QLoggingCategory>
#include <QSet>

namespace tw {

namespace {

Q_LOGGING_CATEGORY(lcSmart, "SmartLayouts")

constexpr std::chrono::milliseconds noTolerance{0};

QSet<QUuid> idsOf(const QList<LayoutProfile>& profiles) {
    QSet<QUuid> ids;
    for (const LayoutProfile& profile : profiles) {
        ids.insert(profile.id);
    }
    return ids;
}

} // namespace

SmartLayoutCoordinator::SmartLayoutCoordinator(const Services& services, QObject* parent)
    : QObject(parent)
    , m_services(services) {}

SmartLayoutCoordinator::~SmartLayoutCoordinator() {
    stop();
}

void SmartLayoutCoordinator::start() {
    if (m_started) {
        return;
    }
    m_started = true;
    rememberFrontmostExternalApplication();
    adoptLiveGridIfNewerThanProfile();

    // The active profile follows the desktop, except while the displays are in flux.
    m_connections << connect(&m_services.grid, &GridStore::layoutChanged, this, [this] {
        m_gridCapture =
            m_services.scheduler.singleShot(gridCaptureDelay, noTolerance, this, [this] {
                if (!m_services.watcher.isSettling()) {
                    m_services.profiles.captureActive(m_services.grid.layout(), currentDisplays());
                }
            });
    });
    m_connections << connect(&m_services.rules, &SmartLayoutRuleStore::rulesChanged, this, [this] {
        m_rulesChanged = m_services.scheduler.singleShot(rulesDelay, noTolerance, this,
                                                         [this] { evaluateNow(Pause::respect); });
    });
    m_connections << connect(
        &m_services.profiles, &LayoutProfileStore::profilesChanged, this,
        [this] { m_services.rules.prune(idsOf(m_services.profiles.profiles())); });
    if (m_services.foreground != nullptr) {
        m_connections << connect(m_services.foreground, &ForegroundApplication::activated, this,
                                 &SmartLayoutCoordinator::applicationActivated);
    }
    m_connections << connect(&m_services.watcher, &ScreenTopologyWatcher::settled, this,
                             [this](const ScreenTopologyWatcher::Change& change) {
                                 displaysSettled(change.displays, change.topologyChanged);
                             });
    // What makes schedule rules start and end.
    m_timer = m_services.scheduler.repeating(evaluationInterval, evaluationTolerance, this,
                                             [this] { evaluateNow(Pause::respect); });
    evaluateNow(Pause::respect);
}

void SmartLayoutCoordinator::stop() {
    for (const QMetaObject::Connection& connection : std::as_const(m_connections)) {
        disconnect(connection);
    }
    m_connections.clear();
    m_timer.cancel();
    m_gridCapture.cancel();
    m_rulesChanged.cancel();
    m_started = false;
}

void SmartLayoutCoordinator::evaluateNow(Pause pause) {
    const QDateTime now = m_services.clock.now();
    if (pause == Pause::respect && m_manualPauseUntil) {
        if (*m_manualPauseUntil > now) {
            setStatus(Status::manualPause(*m_manualPauseUntil));
            return;
        }
        m_manualPauseUntil.reset();
    }
    const SmartLayoutContext context{
        .date = now,
        .activeApplicationBundleID = m_lastExternal,
        .displays = currentDisplays(),
    };
    LayoutProfileStore& profiles = m_services.profiles;
    const auto rule = SmartLayoutRuleResolver::matchingRule(m_services.rules.rules(),
                                                            idsOf(profiles.profiles()), context);
    if (rule) {
        if (rule->profileID != profiles.activeProfileID()) {
            if (!m_profileBeforeRules) {
                m_profileBeforeRules = profiles.activeProfileID();
            }
            activateProfile(rule->profileID, Switch::automatic);
        }
        const QString profileName = profiles.profile(rule->profileID)->displayName();
        const Status applied = Status::applied(rule->name, profileName);
        // Every evaluation finds the rule again; only a change is worth a line.
        if (m_status != applied) {
            qCInfo(lcSmart, "Applied smart rule %s → %s", qUtf8Printable(rule->name),
                   qUtf8Printable(profileName));
        }
        setStatus(applied);
        return;
    }
    if (const auto before = std::exchange(m_profileBeforeRules, std::nullopt)) {
        if (profiles.profile(*before) && profiles.activeProfileID() != *before) {
            activateProfile(*before, Switch::automatic);
            qCInfo(lcSmart, "No smart rule matches any more — back to the previous profile");
        }
    }
    setStatus({});
}

void SmartLayoutCoordinator::activateProfile(const QUuid& id, Switch how) {
    LayoutProfileStore& profiles = m_services.profiles;
    if (id == profiles.activeProfileID()) {
        profiles.captureActive(m_services.grid.layout(), currentDisplays());
        return;
    }
    const auto target = profiles.profile(id);
    if (!target) {
        return;
    }
    if (const auto layout =
            profiles.activateProfile(id, m_services.grid.layout(), currentDisplays())) {
        m_services.grid.replaceLayout(*layout);
    }
    if (how == Switch::manual) {
        m_profileBeforeRules.reset();
        pauseAutomation();
    } else {
        setStatus(Status::applied(QStringLiteral("Smart rule"), target->displayName()));
    }
}

LayoutProfile SmartLayoutCoordinator::createProfile(const QString& named) {
    const LayoutProfile created = m_services.profiles.createProfile(
        named, m_services.grid.layout(), currentDisplays(), LayoutProfileStore::Activate::yes);
    pauseAutomation();
    return created;
}

std::optional<LayoutProfile> SmartLayoutCoordinator::duplicateProfile(const QUuid& id) {
    LayoutProfileStore& profiles = m_services.profiles;
    const QList<LayoutDisplay> displays = currentDisplays();
    // The desktop's latest state belongs to the profile being left, which may be the source.
    profiles.capture(m_services.grid.layout(), profiles.activeProfileID(), displays,
                     LayoutProfileStore::Save::no);
    const auto copy = profiles.duplicateProfile(id, {}, LayoutProfileStore::Activate::yes);
    if (!copy) {
        return std::nullopt;
    }
    if (const auto layout = profiles.layoutFor(copy->id, displays);
        layout && *layout != m_services.grid.layout()) {
        m_services.grid.replaceLayout(*layout);
    }
    pauseAutomation();
    return copy;
}

std::optional<SmartLayoutCoordinator::Deleted>
SmartLayoutCoordinator::deleteProfile(const QUuid& id) {
    LayoutProfileStore& profiles = m_services.profiles;
    const auto doomed = profiles.profile(id);
    if (!doomed || doomed->isDefault) {
        return std::nullopt;
    }
    Deleted deleted{.profile = *doomed, .index = 0, .rules = {}};
    deleted.index = profiles.profiles().indexOf(*doomed);
    const QList<SmartLayoutRule>& rules = m_services.rules.rules();
    for (qsizetype i = 0; i < rules.size(); ++i) {
        if (rules[i].profileID == id) {
            deleted.rules.append({i, rules[i]});
        }
    }
    const QUuid activeBefore = profiles.activeProfileID();
    profiles.deleteProfile(id);
    m_services.rules.prune(idsOf(profiles.profiles()));
    if (profiles.activeProfileID() != activeBefore) {
        if (const auto layout = profiles.layoutForActiveProfile(currentDisplays())) {
            m_services.grid.replaceLayout(*layout);
        }
    }
    return deleted;
}

void SmartLayoutCoordinator::restoreDeleted(const Deleted& deleted) {
    if (!m_services.profiles.restoreProfile(deleted.profile, deleted.index)) {
        return;
    }
    // In ascending order, so that each goes back to its own place.
    for (const auto& [index, rule] : deleted.rules) {
        m_services.rules.insert(rule, index);
    }
}

void SmartLayoutCoordinator::saveCurrentProfile() {
    m_services.profiles.captureActive(m_services.grid.layout(), currentDisplays());
}

void SmartLayoutCoordinator::resumeAutomation() {
    m_manualPauseUntil.reset();
    setStatus({});
    evaluateNow(Pause::ignore);
}

void SmartLayoutCoordinator::rememberFrontmostExternalApplication() {
    if (m_services.foreground == nullptr) {
        return;
    }
    const auto app = m_services.foreground->frontmost();
    if (app && !app->isThisProgram) {
        m_lastExternal = app->id;
    }
}

void SmartLayoutCoordinator::adoptLiveGridIfNewerThanProfile() {
    LayoutProfileStore& profiles = m_services.profiles;
    const auto active = profiles.activeProfile();
    const auto savedAt = m_services.grid.lastSavedAt();
    if (!active || !savedAt || *savedAt <= active->snapshot.capturedAt) {
        return;
    }
    const QList<LayoutDisplay> displays =
        active->snapshot.displays.isEmpty() ? currentDisplays() : active->snapshot.displays;
    profiles.captureActive(m_services.grid.layout(), displays);
    qCInfo(lcSmart, "Adopted grid.json into the active profile (newer than the last capture)");
}

void SmartLayoutCoordinator::applicationActivated(const ForegroundApp& app) {
    // Opening this program's own window keeps the application rule of the one before it.
    if (app.isThisProgram || app.id == m_lastExternal) {
        return;
    }
    m_lastExternal = app.id;
    evaluateNow(Pause::respect);
}

void SmartLayoutCoordinator::displaysSettled(const QList<LayoutDisplay>& displays,
                                             bool topologyChanged) {
    if (topologyChanged) {
        LayoutProfileStore& profiles = m_services.profiles;
        if (profiles.activeProfileIsDefault()) {
            qCInfo(lcSmart,
                   "Display topology changed — leaving the default arrangement to TopologyMemory");
        } else if (const auto active = profiles.activeProfile()) {
            m_services.grid.replaceLayout(
                LayoutProfileResolver::resolve(active->snapshot, displays));
            qCInfo(lcSmart, "Display topology changed — re-mapped the active profile");
        }
    }
    evaluateNow(Pause::respect);
}

void SmartLayoutCoordinator::pauseAutomation() {
    m_manualPauseUntil = m_services.clock.now().addSecs(manualPauseLength.count());
    setStatus(Status::manualPause(*m_manualPauseUntil));
}

void SmartLayoutCoordinator::setStatus(Status status) {
    if (status == m_status) {
        return;
    }
    m_status = std::move(status);
    Q_EMIT statusChanged();
}

QList<LayoutDisplay> SmartLayoutCoordinator::currentDisplays() const {
    return LayoutDisplay::currentDisplays(m_services.displays);
}

} // namespace tw
