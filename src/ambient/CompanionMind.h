// What the desktop companion is doing: awake and idle, watching the pointer, happy after a poke,
// asleep at night (or napping when nobody has been near for a long while) and waking up. Fed the
// pointer's offset and the time, it moves from mood to mood; the face draws the mood.
#pragma once

#include "model/WidgetInstance.h"

#include <QPointF>
#include <QTime>

#include <chrono>
#include <optional>

namespace tw {

class CompanionMind {
public:
    using Time = std::chrono::nanoseconds;
    enum class Mood { idle, watching, happy, sleeping, waking };

    // The night it sleeps through, in whole hours of the local day; no bedtime, no night.
    struct Hours {
        std::optional<int> bedtime = 23;
        int wakes = 7;

        // "bedtime" (an hour, or "never") and "wakes", leniently.
        static Hours from(const WidgetSettings& settings);
        bool isNight(const QTime& time) const;
        bool operator==(const Hours&) const = default;
    };

    // A pointer nearer than this (points) and moving is watched.
    static constexpr double watchDistance = 480;
    static constexpr std::chrono::seconds watchFor{5};
    static constexpr std::chrono::seconds happyFor{3};
    static constexpr std::chrono::seconds wakingFor{3};
    // Woken by a poke at night, it stays up this long before it dozes off again.
    static constexpr std::chrono::seconds upAtNightFor{60};
    // Nobody near for this long in the day: a nap.
    static constexpr std::chrono::minutes napAfter{20};

    explicit CompanionMind(Time now = Time::zero());

    // The pointer at `offset` from the companion's middle, in points with y down.
    void seePointer(QPointF offset, Time at);
    void poke(Time at);
    // Moves on to `at`, when the local time is `clock`; true when the mood changed.
    bool update(Time at, const QTime& clock, const Hours& hours);

    Mood mood() const { return m_mood; }
    // Since when it has been in this mood.
    Time moodSince() const { return m_since; }
    // Where it looks, each axis -1 to 1 (y down); straight ahead unless watching.
    QPointF gaze() const;
    // Whether it wants the pointer's whereabouts: not while asleep for the night.
    bool wantsPointer() const { return m_mood != Mood::sleeping || !m_night; }

private:
    void become(Mood mood, Time at);

    Mood m_mood = Mood::idle;
    Time m_since;
    bool m_night = false;
    std::optional<QPointF> m_pointer;
    Time m_pointerMoved;
    Time m_lastNear;
    std::optional<Time> m_poked;
};

} // namespace tw
