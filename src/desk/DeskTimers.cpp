#include "desk/DeskTimers.h"

#include "desk/Alarm.h"
#include "desk/DeskSettings.h"
#include "desk/PomodoroState.h"
#include "desk/StopwatchState.h"
#include "desk/TimerState.h"
#include "grid/GridStore.h"
#include "platform/Clock.h"
#include "platform/Notifications.h"
#include "platform/Scheduler.h"
#include "text/L.h"

#include <QScopedValueRollback>

#include <algorithm>

namespace tw {

namespace {

using namespace std::chrono_literals;

const QString timerKind = QStringLiteral("timer");
const QString pomodoroKind = QStringLiteral("pomodoro");
const QString stopwatchKind = QStringLiteral("stopwatch");

WidgetSettings settingsOf(const WidgetInstance& instance) {
    return instance.settings.value_or(WidgetSettings());
}

// The end of the running countdown of a timer or a pomodoro phase.
std::optional<QDateTime> endOf(const WidgetInstance& instance) {
    if (instance.kind == timerKind) {
        return TimerState::from(settingsOf(instance)).endsAt;
    }
    if (instance.kind == pomodoroKind) {
        return PomodoroState::from(settingsOf(instance)).endsAt;
    }
    return std::nullopt;
}

WidgetSound soundOf(const WidgetSettings& settings) {
    return resolveWidgetSound(settings.value(QStringLiteral("sound")), WidgetSound::glass);
}

} // namespace

DeskTimers::DeskTimers(const Services& services, QObject* parent)
    : QObject(parent)
    , m_services(services) {
    connect(&m_services.grid, &GridStore::layoutChanged, this, [this] {
        if (!m_writing) {
            follow();
        }
    });
    follow();
}

DeskTimers::~DeskTimers() = default;

bool DeskTimers::isDeskKind(const QString& kind) {
    return kind == timerKind || kind == pomodoroKind || kind == stopwatchKind;
}

void DeskTimers::setInView(std::function<bool(const QUuid&)> inView) {
    m_inView = std::move(inView);
}

void DeskTimers::follow() {
    const QDateTime now = m_services.clock.now();
    QHash<QUuid, QDateTime> coming;
    for (const WidgetInstance& instance : m_services.grid.layout().instances) {
        const auto end = endOf(instance);
        if (end && *end > now) {
            coming.insert(instance.id, *end);
        } else if (end && m_coming.value(instance.id) == *end) {
            // Passed since the last look without the wake having come (a late timer).
            coming.insert(instance.id, *end);
        }
    }
    m_coming = coming;
    for (auto it = m_alarms.begin(); it != m_alarms.end();) {
        if (!m_services.grid.instance(it->first)) {
            m_board.ringing.remove(it->first);
            it = m_alarms.erase(it);
        } else {
            ++it;
        }
    }
    settle();
    arm();
}

void DeskTimers::settle() {
    const QDateTime now = m_services.clock.now();
    const QList<WidgetInstance> instances = m_services.grid.layout().instances;
    for (const WidgetInstance& instance : instances) {
        const auto end = endOf(instance);
        if (!end || *end > now) {
            continue;
        }
        const auto coming = m_coming.constFind(instance.id);
        const Heard heard = coming != m_coming.cend() && *coming == *end ? Heard::yes : Heard::no;
        m_coming.remove(instance.id);
        if (instance.kind == timerKind) {
            finishTimer(instance, heard);
        } else {
            finishPhase(instance, heard);
        }
    }
}

void DeskTimers::arm() {
    m_wake.cancel();
    if (m_coming.isEmpty()) {
        return;
    }
    const QDateTime next = *std::min_element(m_coming.cbegin(), m_coming.cend());
    const auto wait = std::clamp(std::chrono::milliseconds(m_services.clock.now().msecsTo(next)),
                                 0ms, std::chrono::milliseconds(longestWait));
    // A millisecond past the end, so the end has surely come when the wake looks.
    m_wake = m_services.scheduler.singleShot(wait + 1ms, 100ms, this, [this] { follow(); });
}

void DeskTimers::finishTimer(const WidgetInstance& instance, Heard heard) {
    // The settings keep the end: the tile reads finished at it until it is started or reset.
    if (heard == Heard::no) {
        return;
    }
    const WidgetSettings settings = settingsOf(instance);
    alarm(instance.id)
        .start(soundOf(settings), resolveAlarmLength(settings.value(QStringLiteral("alarm")),
                                                     AlarmLength::tenSeconds));
    const TimerState state = TimerState::from(settings);
    tell(instance.id, L("timer.done.title", QStringLiteral("Time is up")),
         state.label.isEmpty()
             ? L("timer.done.body", QStringLiteral("%1 min are over")).arg(state.selectedMinutes)
             : state.label);
}

void DeskTimers::finishPhase(const WidgetInstance& instance, Heard heard) {
    const WidgetSettings settings = settingsOf(instance);
    const PomodoroPlan plan = PomodoroPlan::from(settings);
    const PomodoroState state = PomodoroState::from(settings);
    // One missed while away moves on quietly and waits for the person.
    const PomodoroState next = state.advanced(
        plan, m_services.clock.now(), DeskSettings::flag(settings, QStringLiteral("auto")),
        heard == Heard::yes ? PomodoroState::ByHand::no : PomodoroState::ByHand::yes);
    write(instance.id, next.appliedTo(settings));
    if (heard == Heard::no) {
        return;
    }
    alarm(instance.id).start(soundOf(settings), AlarmLength::once);
    if (next.endsAt) {
        m_coming.insert(instance.id, *next.endsAt);
    }
    tell(instance.id,
         next.phase == PomodoroPhase::work
             ? L("pomodoro.done.work", QStringLiteral("Back to work"))
             : L("pomodoro.done.break", QStringLiteral("Time for a break")),
         title(next.phase) + QStringLiteral(" · ") +
             L("pomodoro.minutes", QStringLiteral("%1 min"))
                 .arg(qRound(plan.seconds(next.phase) / 60)));
}

void DeskTimers::press(const QUuid& id, const std::optional<DeskAction>& control) {
    const auto instance = m_services.grid.instance(id);
    if (!instance || !isDeskKind(instance->kind)) {
        return;
    }
    if (m_board.isRinging(id)) {
        stopAlarm(id);
        return;
    }
    if (!control) {
        return;
    }
    const DeskAction action = *control;
    const QDateTime now = m_services.clock.now();
    const WidgetSettings settings = settingsOf(*instance);
    using Kind = DeskAction::Kind;
    WidgetSettings next = settings;
    if (instance->kind == timerKind) {
        switch (action.kind) {
        case Kind::toggle:
            next = TimerState::toggled(settings, now);
            break;
        case Kind::reset:
            next = TimerState::reset(settings);
            break;
        case Kind::minutes:
            next = TimerState::withMinutes(settings, action.minutes);
            break;
        case Kind::skip:
        case Kind::lap:
            break;
        }
    } else if (instance->kind == pomodoroKind) {
        const PomodoroPlan plan = PomodoroPlan::from(settings);
        const PomodoroState state = PomodoroState::from(settings);
        switch (action.kind) {
        case Kind::toggle:
            next = (state.isRunning() ? state.paused(plan, now) : state.started(plan, now))
                       .appliedTo(settings);
            break;
        case Kind::reset:
            next = PomodoroState::reset().appliedTo(settings);
            break;
        case Kind::skip:
            next = state.advanced(plan, now, false, PomodoroState::ByHand::yes).appliedTo(settings);
            break;
        case Kind::lap:
        case Kind::minutes:
            break;
        }
    } else {
        const StopwatchState state = StopwatchState::from(settings);
        switch (action.kind) {
        case Kind::toggle:
            next = state.toggled(now).appliedTo(settings);
            break;
        case Kind::reset:
            next = StopwatchState::reset().appliedTo(settings);
            break;
        case Kind::lap:
            if (state.isRunning()) {
                next = state.withLap(now).appliedTo(settings);
            }
            break;
        case Kind::skip:
        case Kind::minutes:
            break;
        }
    }
    write(id, next);
    follow();
}

void DeskTimers::write(const QUuid& id, const WidgetSettings& settings) {
    const QScopedValueRollback<bool> writing(m_writing, true);
    m_services.grid.replaceSettings(id, settings, GridStore::History::adopted);
}

void DeskTimers::tell(const QUuid& id, const QString& title, const QString& body) {
    if (m_services.notifications == nullptr || (m_inView && m_inView(id))) {
        return;
    }
    m_services.notifications->notify(title, body);
}

Alarm& DeskTimers::alarm(const QUuid& id) {
    auto found = m_alarms.find(id);
    if (found == m_alarms.end()) {
        auto made =
            std::make_unique<Alarm>(m_services.scheduler, m_services.clock, m_services.sounds);
        connect(made.get(), &Alarm::ringingChanged, this, [this, id](bool ringing) {
            if (ringing) {
                m_board.ringing.insert(id);
            } else {
                m_board.ringing.remove(id);
            }
            Q_EMIT boardChanged();
        });
        found = m_alarms.emplace(id, std::move(made)).first;
    }
    return *found->second;
}

void DeskTimers::stopAlarm(const QUuid& id) {
    if (const auto found = m_alarms.find(id); found != m_alarms.end()) {
        found->second->stop();
    }
}

} // namespace tw
