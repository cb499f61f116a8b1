// Keeps the timer tiles honest while the program runs: wakes once at the next end of a running
// timer or pomodoro phase (nothing ticks for them), rings its alarm, moves a pomodoro on, tells
// the person through a notification when the tile is not in view, and applies the presses on the
// tiles' controls. An end that passed while the program was away rings nothing: the timer reads
// finished and a pomodoro stands ready at its next phase.
#pragma once

#include "desk/DeskAction.h"
#include "desk/DeskBoard.h"
#include "model/WidgetInstance.h"
#include "platform/ScheduledTask.h"

#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QUuid>

#include <chrono>
#include <functional>
#include <map>
#include <memory>

namespace tw {

class Alarm;
class Clock;
class GridStore;
class Notifications;
class Scheduler;
class SoundPlayer;

class DeskTimers final : public QObject {
    Q_OBJECT
public:
    struct Services {
        GridStore& grid;
        const Clock& clock;
        Scheduler& scheduler;
        SoundPlayer& sounds;
        Notifications* notifications = nullptr;
    };

    // The longest single wait: a stored end years away never overflows a timer.
    static constexpr std::chrono::hours longestWait{1};

    explicit DeskTimers(const Services& services, QObject* parent = nullptr);
    ~DeskTimers() override;

    // The kinds this keeps: "timer", "pomodoro", "stopwatch".
    static bool isDeskKind(const QString& kind);

    // Whether a person can see the tile now; without it every tile counts as seen.
    void setInView(std::function<bool(const QUuid&)> inView);

    // A press on the tile, on one of its controls or beside them. Any press on a ringing tile
    // only stops its alarm.
    void press(const QUuid& id, const std::optional<DeskAction>& control);

    const DeskBoard& board() const { return m_board; }

Q_SIGNALS:
    // Which tiles ring changed.
    void boardChanged();

private:
    enum class Heard { no, yes };

    void follow();
    void settle();
    void arm();
    void finishTimer(const WidgetInstance& instance, Heard heard);
    void finishPhase(const WidgetInstance& instance, Heard heard);
    void write(const QUuid& id, const WidgetSettings& settings);
    void tell(const QUuid& id, const QString& title, const QString& body);
    Alarm& alarm(const QUuid& id);
    void stopAlarm(const QUuid& id);

    Services m_services;
    std::function<bool(const QUuid&)> m_inView;
    // The ends still to come, as last seen: only these ring when they pass.
    QHash<QUuid, QDateTime> m_coming;
    std::map<QUuid, std::unique_ptr<Alarm>> m_alarms;
    ScheduledTask m_wake;
    DeskBoard m_board;
    bool m_writing = false;
};

} // namespace tw
