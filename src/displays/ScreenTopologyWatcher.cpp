#include "displays/ScreenTopologyWatcher.h"

#include "displays/LayoutProfileResolver.h"
#include "platform/Displays.h"
#include "platform/Scheduler.h"

#include <QLoggingCategory>

namespace tw {

namespace {
Q_LOGGING_CATEGORY(lcDisplays, "Displays")
} // namespace

ScreenTopologyWatcher::ScreenTopologyWatcher(Displays& displays, Scheduler& scheduler,
                                             QObject* parent)
    : QObject(parent)
    , m_displays(displays)
    , m_scheduler(scheduler) {}

void ScreenTopologyWatcher::start() {
    if (m_started) {
        return;
    }
    m_started = true;
    m_lastSignature =
        LayoutProfileResolver::topologySignature(LayoutDisplay::currentDisplays(m_displays));
    connect(&m_displays, &Displays::screensChanged, this, &ScreenTopologyWatcher::scheduleSettle);
    connect(&m_displays, &Displays::willSleep, this, &ScreenTopologyWatcher::beginSleep);
    connect(&m_displays, &Displays::didWake, this, &ScreenTopologyWatcher::wake);
    connect(&m_displays, &Displays::screensDidSleep, this, &ScreenTopologyWatcher::beginSleep);
    connect(&m_displays, &Displays::screensDidWake, this, &ScreenTopologyWatcher::wake);
}

bool ScreenTopologyWatcher::looksLikeAChange(const QList<LayoutDisplay>& displays,
                                             const std::optional<QString>& since) {
    if (!LayoutProfileResolver::isUsableTopology(displays) || !since) {
        return true;
    }
    return LayoutProfileResolver::topologySignature(displays) != *since;
}

void ScreenTopologyWatcher::scheduleSettle() {
    setSettling(true);
    // Once a cycle looks like a real change it stays so until the cycle ends.
    if (!m_isTransitioning &&
        looksLikeAChange(LayoutDisplay::currentDisplays(m_displays), m_lastSignature)) {
        setTransitioning(true);
    }
    m_attempts = 0;
    restartTimer();
}

void ScreenTopologyWatcher::beginSleep() {
    m_asleep = true;
    setTransitioning(false);
    // Stays true for the whole sleep so that nothing is remembered from the half-dark state;
    // only the cycle that a wake starts lowers it.
    setSettling(true);
    m_settleTimer.cancel();
}

void ScreenTopologyWatcher::wake() {
    m_asleep = false;
    scheduleSettle();
}

void ScreenTopologyWatcher::restartTimer() {
    m_settleTimer =
        m_scheduler.singleShot(settleDelay, settleTolerance, this, [this] { evaluate(); });
}

void ScreenTopologyWatcher::evaluate() {
    if (m_asleep) {
        return;
    }
    const QList<LayoutDisplay> displays = LayoutDisplay::currentDisplays(m_displays);
    if (LayoutProfileResolver::isUsableTopology(displays)) {
        m_settleTimer.cancel();
        // Lowered before the event, so that a layout a subscriber saves is remembered.
        setSettling(false);
        const QString signature = LayoutProfileResolver::topologySignature(displays);
        const bool changed = !m_lastSignature || *m_lastSignature != signature;
        m_lastSignature = signature;
        qCInfo(lcDisplays, "Displays settled: %lld screen(s), changed=%s",
               static_cast<long long>(displays.size()), changed ? "true" : "false");
        Q_EMIT settled(Change{displays, changed});
        // Lowered after the event: subscribers re-arrange while the desktop is still veiled.
        setTransitioning(false);
        return;
    }
    ++m_attempts;
    if (m_attempts < maxAttempts) {
        restartTimer();
        return;
    }
    qCCritical(lcDisplays, "Display topology never became usable — giving up on this change");
    setSettling(false);
    setTransitioning(false);
}

void ScreenTopologyWatcher::setSettling(bool settling) {
    if (m_isSettling != settling) {
        m_isSettling = settling;
        Q_EMIT isSettlingChanged(settling);
    }
}

void ScreenTopologyWatcher::setTransitioning(bool transitioning) {
    if (m_isTransitioning != transitioning) {
        m_isTransitioning = transitioning;
        Q_EMIT isTransitioningChanged(transitioning);
    }
}

} // namespace tw
