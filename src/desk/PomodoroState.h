// Work and breaks in turns, as the settings keep them: the plan ("work", "short", "long",
// "rounds", in minutes and rounds), and the phase, the work rounds done and the phase's end
// ("pomoEnds") while it runs or the seconds left ("pomoLeft") while paused.
#pragma once

#include "model/WidgetInstance.h"

#include <QDateTime>

#include <optional>

namespace tw {

enum class PomodoroPhase { work, shortBreak, longBreak };

QString rawValue(PomodoroPhase phase);
// "Focus", "Short break", "Long break".
QString title(PomodoroPhase phase);

struct PomodoroPlan {
    int work = 25;
    int shortBreak = 5;
    int longBreak = 15;
    int rounds = 4;

    static PomodoroPlan from(const WidgetSettings& settings);
    double seconds(PomodoroPhase phase) const;
};

struct PomodoroState {
    enum class ByHand { no, yes };

    PomodoroPhase phase = PomodoroPhase::work;
    int completed = 0;
    std::optional<QDateTime> endsAt;
    std::optional<double> remainingWhenPaused;

    // A stored remainder is held between 0 and the phase's full length.
    static PomodoroState from(const WidgetSettings& settings);
    // These four keys written over `settings`.
    WidgetSettings appliedTo(WidgetSettings settings) const;

    bool isRunning() const { return endsAt.has_value(); }
    // Whether the running phase has come to its end by `now`.
    bool isOver(const QDateTime& now) const { return endsAt && *endsAt <= now; }
    double remaining(const PomodoroPlan& plan, const QDateTime& now) const;
    // Work rounds done in the current set of `rounds`, 0 to rounds − 1 (a set just finished
    // reads as full while its long break runs).
    int roundsInSet(const PomodoroPlan& plan) const;

    // The next phase: a work phase counts, and every `rounds`-th is followed by the long break.
    // With "auto" on and not by hand the next phase starts at once at `now`, else it waits.
    PomodoroState advanced(const PomodoroPlan& plan, const QDateTime& now, bool autoContinues,
                           ByHand byHand) const;
    PomodoroState started(const PomodoroPlan& plan, const QDateTime& now) const;
    PomodoroState paused(const PomodoroPlan& plan, const QDateTime& now) const;
    // Back to work with no rounds done.
    static PomodoroState reset() { return {}; }
};

} // namespace tw
