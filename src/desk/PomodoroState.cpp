#include "desk/PomodoroState.h"

#include "desk/DeskSettings.h"
#include "platform/RawValues.h"
#include "text/L.h"

#include <algorithm>

namespace tw {

namespace {

constexpr RawValues<PomodoroPhase, 3> raws({"work", "shortBreak", "longBreak"});

const QString phaseKey = QStringLiteral("pomoPhase");
const QString doneKey = QStringLiteral("pomoDone");
const QString endsKey = QStringLiteral("pomoEnds");
const QString leftKey = QStringLiteral("pomoLeft");

} // namespace

QString rawValue(PomodoroPhase phase) {
    return raws.of(phase);
}

QString title(PomodoroPhase phase) {
    switch (phase) {
    case PomodoroPhase::work:
        return L("pomodoro.work", QStringLiteral("Focus"));
    case PomodoroPhase::shortBreak:
        return L("pomodoro.short", QStringLiteral("Short break"));
    case PomodoroPhase::longBreak:
        return L("pomodoro.long", QStringLiteral("Long break"));
    }
    return {};
}

PomodoroPlan PomodoroPlan::from(const WidgetSettings& settings) {
    using DeskSettings::read;
    return {.work = read(settings, QStringLiteral("work"), 25, 1, 120),
            .shortBreak = read(settings, QStringLiteral("short"), 5, 1, 120),
            .longBreak = read(settings, QStringLiteral("long"), 15, 1, 120),
            .rounds = read(settings, QStringLiteral("rounds"), 4, 2, 8)};
}

double PomodoroPlan::seconds(PomodoroPhase phase) const {
    switch (phase) {
    case PomodoroPhase::work:
        return work * 60.0;
    case PomodoroPhase::shortBreak:
        return shortBreak * 60.0;
    case PomodoroPhase::longBreak:
        return longBreak * 60.0;
    }
    return work * 60.0;
}

PomodoroState PomodoroState::from(const WidgetSettings& settings) {
    PomodoroState state;
    state.phase = raws.parse(settings.value(phaseKey).trimmed()).value_or(PomodoroPhase::work);
    state.completed = DeskSettings::read(settings, doneKey, 0, 0, 100000);
    state.endsAt = DeskSettings::moment(settings, endsKey);
    if (!state.endsAt) {
        if (const auto left = DeskSettings::seconds(settings, leftKey)) {
            state.remainingWhenPaused =
                std::clamp(*left, 0.0, PomodoroPlan::from(settings).seconds(state.phase));
        }
    }
    return state;
}

WidgetSettings PomodoroState::appliedTo(WidgetSettings settings) const {
    for (const QString& key : {phaseKey, doneKey, endsKey, leftKey}) {
        settings.remove(key);
    }
    if (phase != PomodoroPhase::work) {
        settings.insert(phaseKey, rawValue(phase));
    }
    if (completed > 0) {
        settings.insert(doneKey, QString::number(completed));
    }
    if (endsAt) {
        settings.insert(endsKey, DeskSettings::fromMoment(*endsAt));
    } else if (remainingWhenPaused) {
        settings.insert(leftKey, DeskSettings::fromSeconds(*remainingWhenPaused));
    }
    return settings;
}

double PomodoroState::remaining(const PomodoroPlan& plan, const QDateTime& now) const {
    if (endsAt) {
        return std::max(0.0, static_cast<double>(now.msecsTo(*endsAt)) / 1000);
    }
    return remainingWhenPaused.value_or(plan.seconds(phase));
}

int PomodoroState::roundsInSet(const PomodoroPlan& plan) const {
    if (phase == PomodoroPhase::longBreak && completed > 0) {
        return plan.rounds;
    }
    return completed % plan.rounds;
}

PomodoroState PomodoroState::advanced(const PomodoroPlan& plan, const QDateTime& now,
                                      bool autoContinues, ByHand byHand) const {
    PomodoroState next;
    next.completed = completed;
    if (phase == PomodoroPhase::work) {
        next.completed += 1;
        next.phase = next.completed % plan.rounds == 0 ? PomodoroPhase::longBreak
                                                       : PomodoroPhase::shortBreak;
    } else {
        next.phase = PomodoroPhase::work;
    }
    if (autoContinues && byHand == ByHand::no) {
        next.endsAt = now.addMSecs(static_cast<qint64>(plan.seconds(next.phase) * 1000));
    }
    return next;
}

PomodoroState PomodoroState::started(const PomodoroPlan& plan, const QDateTime& now) const {
    PomodoroState next = *this;
    next.endsAt = now.addMSecs(static_cast<qint64>(remaining(plan, now) * 1000));
    next.remainingWhenPaused.reset();
    return next;
}

PomodoroState PomodoroState::paused(const PomodoroPlan& plan, const QDateTime& now) const {
    PomodoroState next = *this;
    next.remainingWhenPaused = remaining(plan, now);
    next.endsAt.reset();
    return next;
}

} // namespace tw
