#include "tick/Cadence.h"

#include <QTimeZone>

namespace tw {

QDateTime Cadence::startOfMinute(const QDateTime& date) {
    if (!date.isValid()) {
        return {};
    }
    const QTime time = date.time();
    return date.addMSecs(-(qint64(time.second()) * 1000 + time.msec()));
}

QDateTime Cadence::startOfDay(const QDateTime& date) {
    if (!date.isValid()) {
        return {};
    }
    switch (date.timeSpec()) {
    case Qt::TimeZone:
        return date.date().startOfDay(date.timeZone());
    case Qt::OffsetFromUTC:
        return date.date().startOfDay(Qt::OffsetFromUTC, date.offsetFromUtc());
    case Qt::UTC:
    case Qt::LocalTime:
        break;
    }
    return date.date().startOfDay(date.timeSpec());
}

void Cadence::seed(const QDateTime& date) {
    const QDateTime minute = startOfMinute(date);
    m_lastMinute = minute.isValid() ? std::optional(minute) : std::nullopt;
    const QDateTime day = startOfDay(date);
    m_lastDay = day.isValid() ? std::optional(day) : std::nullopt;
}

void Cadence::advance(const QDateTime& date) {
    if (!date.isValid()) {
        return;
    }
    if (date.toSecsSinceEpoch() % 2 == 0) {
        Q_EMIT twoSeconds(date);
    }
    // Instants are compared, so a change of time zone that moves the day's start counts as a new
    // day, and an hour asleep is one new minute, not sixty.
    const QDateTime minute = startOfMinute(date);
    if (minute.isValid() && (!m_lastMinute || *m_lastMinute != minute)) {
        m_lastMinute = minute;
        Q_EMIT minutes(date);
    }
    const QDateTime day = startOfDay(date);
    if (day.isValid() && (!m_lastDay || *m_lastDay != day)) {
        m_lastDay = day;
        Q_EMIT days(date);
    }
}

} // namespace tw
