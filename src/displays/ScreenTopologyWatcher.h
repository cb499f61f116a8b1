// Turns the noisy stream of display, sleep and wake notifications into one event: the display
// set has settled, with the displays and whether the set really changed.
#pragma once

#include "displays/LayoutDisplay.h"
#include "platform/ScheduledTask.h"

#include <QList>
#include <QObject>
#include <QString>

#include <chrono>
#include <optional>

namespace tw {

class Displays;
class Scheduler;

class ScreenTopologyWatcher final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isSettling READ isSettling NOTIFY isSettlingChanged)
    Q_PROPERTY(bool isTransitioning READ isTransitioning NOTIFY isTransitioningChanged)
public:
    struct Change {
        QList<LayoutDisplay> displays; // as read at the moment of settling
        bool topologyChanged = false;

        friend bool operator==(const Change&, const Change&) = default;
    };

    // The settle timer measures quiet: every notification restarts it.
    static constexpr std::chrono::milliseconds settleDelay{2000};
    static constexpr std::chrono::milliseconds settleTolerance{200};
    // Evaluations of an unusable set before a cycle gives up.
    static constexpr int maxAttempts = 12;

    ScreenTopologyWatcher(Displays& displays, Scheduler& scheduler, QObject* parent = nullptr);

    // Reads the current set as the baseline and starts listening. Only the first call counts.
    void start();

    // A settle cycle is under way, or the machine sleeps: readings of the screens are provisional.
    bool isSettling() const { return m_isSettling; }
    // The change in progress looks real: the desktop hides its tiles until it ends.
    bool isTransitioning() const { return m_isTransitioning; }

    // True for an empty or unusable set, for no baseline, or for a signature other than `since`.
    static bool looksLikeAChange(const QList<LayoutDisplay>& displays,
                                 const std::optional<QString>& since);

Q_SIGNALS:
    // The one output event of a display set that has settled; no replay.
    void settled(const tw::ScreenTopologyWatcher::Change& change);
    void isSettlingChanged(bool isSettling);
    void isTransitioningChanged(bool isTransitioning);

private:
    void scheduleSettle();
    void beginSleep();
    void wake();
    void restartTimer();
    void evaluate();
    void setSettling(bool settling);
    void setTransitioning(bool transitioning);

    Displays& m_displays;
    Scheduler& m_scheduler;
    ScheduledTask m_settleTimer;
    int m_attempts = 0;
    std::optional<QString> m_lastSignature;
    bool m_asleep = false;
    bool m_started = false;
    bool m_isSettling = false;
    bool m_isTransitioning = false;
};

} // namespace tw

Q_DECLARE_METATYPE(tw::ScreenTopologyWatcher::Change)
