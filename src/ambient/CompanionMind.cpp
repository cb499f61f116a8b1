#include "ambient/CompanionMind.h"

#include <QLineF>

#include <cmath>

namespace tw {

CompanionMind::Hours CompanionMind::Hours::from(const WidgetSettings& settings) {
    Hours hours;
    bool ok = false;
    const QString bedtime =
        settings.value(QStringLiteral("bedtime"), QStringLiteral("23")).trimmed();
    const int evening = bedtime.toInt(&ok);
    // Anything unreadable keeps the default.
    if (bedtime == QLatin1String("never")) {
        hours.bedtime.reset();
    } else if (ok && evening >= 0 && evening < 24) {
        hours.bedtime = evening;
    }
    const int morning = settings.value(QStringLiteral("wakes")).trimmed().toInt(&ok);
    if (ok && morning >= 0 && morning < 24) {
        hours.wakes = morning;
    }
    return hours;
}

bool CompanionMind::Hours::isNight(const QTime& time) const {
    if (!bedtime || *bedtime == wakes || !time.isValid()) {
        return false;
    }
    const int hour = time.hour();
    // A night that runs past midnight, or one that falls within the day's hours.
    return *bedtime > wakes ? (hour >= *bedtime || hour < wakes)
                            : (hour >= *bedtime && hour < wakes);
}

CompanionMind::CompanionMind(Time now)
    : m_since(now)
    , m_pointerMoved(now)
    , m_lastNear(now) {}

void CompanionMind::seePointer(QPointF offset, Time at) {
    if (m_pointer && QLineF(*m_pointer, offset).length() < 2) {
        return;
    }
    m_pointer = offset;
    m_pointerMoved = at;
    if (QLineF(QPointF(), offset).length() <= watchDistance) {
        m_lastNear = at;
    }
}

void CompanionMind::poke(Time at) {
    m_poked = at;
    m_lastNear = at;
}

void CompanionMind::become(Mood mood, Time at) {
    m_mood = mood;
    m_since = at;
}

bool CompanionMind::update(Time at, const QTime& clock, const Hours& hours) {
    const Mood before = m_mood;
    const bool wasNight = m_night;
    m_night = hours.isNight(clock);
    if (wasNight && !m_night) {
        // Morning: the night's stillness is no reason for a nap.
        m_lastNear = at;
    }
    const bool pokedLately = m_poked && at - *m_poked < happyFor;
    const bool upAtNight = m_poked && at - *m_poked < upAtNightFor;
    const bool pointerNear = m_pointer && QLineF(QPointF(), *m_pointer).length() <= watchDistance &&
                             at - m_pointerMoved < watchFor;
    const bool wantsSleep = m_night ? !upAtNight : at - m_lastNear >= napAfter;

    switch (m_mood) {
    case Mood::sleeping:
        // At night only a poke wakes it; from a nap a pointer coming near does too.
        if (!wantsSleep || pokedLately || (!m_night && pointerNear)) {
            become(Mood::waking, at);
        }
        break;
    case Mood::waking:
        if (at - m_since >= wakingFor) {
            become(pokedLately ? Mood::happy : (pointerNear ? Mood::watching : Mood::idle), at);
        }
        break;
    case Mood::idle:
    case Mood::watching:
    case Mood::happy:
        if (wantsSleep && !pokedLately) {
            become(Mood::sleeping, at);
        } else if (pokedLately) {
            if (m_mood != Mood::happy) {
                become(Mood::happy, at);
            }
        } else if (pointerNear) {
            if (m_mood != Mood::watching) {
                become(Mood::watching, at);
            }
        } else if (m_mood != Mood::idle) {
            become(Mood::idle, at);
        }
        break;
    }
    return m_mood != before;
}

QPointF CompanionMind::gaze() const {
    if ((m_mood != Mood::watching && m_mood != Mood::happy) || !m_pointer) {
        return {};
    }
    // Saturates smoothly: a pointer far away is looked at with the eyes at their corners.
    const double length = QLineF(QPointF(), *m_pointer).length();
    return *m_pointer / (length + 90);
}

} // namespace tw
