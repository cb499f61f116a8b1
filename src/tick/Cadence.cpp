#include "tick/Cadence.h"

#include <QTimeZone>

namespace tw {

namespace {

// The instant the calendar day of `date` began, asked of the calendar (daylight saving and the
// date's own zone included). Costly for local time, so asked only when the day may have moved.
std::optional<qint64> calendarStartOfDay(const QDateTime& date) {
    QDateTime start;
    switch (date.timeSpec()) {
    case Qt::TimeZone:
        start = date.date().startOfDay(date.timeZone());
        break;
    case Qt::OffsetFromUTC:
        start = date.date().startOfDay(Qt::OffsetFromUTC, date.offsetFromUtc());
        break;
    case Qt::UTC:
    case Qt::LocalTime:
        start = date.date().startOfDay(date.timeSpec());
        break;
    }
    if (!start.isValid()) {
        return std::nullopt;
    }
    return start.toMSecsSinceEpoch();
}

} // namespace

void Cadence::seed(const QDateTime& date) {
    m_lastMinute.reset();
    m_lastDay.reset();
    m_dayEstimate.reset();
    if (!date.isValid()) {
        return;
    }
    const qint64 msecs = date.toMSecsSinceEpoch();
    const QTime time = date.time();
    m_lastMinute = msecs - (time.second() * 1000 + time.msec());
    m_dayEstimate = msecs - time.msecsSinceStartOfDay();
    m_lastDay = calendarStartOfDay(date);
}

void Cadence::advance(const QDateTime& date) {
    if (!date.isValid()) {
        return;
    }
    // Every comparison is between instants, so a change of time zone that moves the day's start
    // counts as a new day, and an hour asleep is one new minute, not sixty.
    const qint64 msecs = date.toMSecsSinceEpoch();
    // Whole seconds truncated toward zero, as a plain conversion does.
    if ((msecs / 1000) % 2 == 0) {
        Q_EMIT twoSeconds(date);
    }
    const QTime time = date.time();
    const qint64 minute = msecs - (time.second() * 1000 + time.msec());
    if (m_lastMinute != minute) {
        m_lastMinute = minute;
        Q_EMIT minutes(date);
    }
    // Midnight estimated from the time of day is exact unless the offset moved since midnight
    // (daylight saving, a new zone); it changes whenever the day or the offset does, and only then
    // is the calendar asked.
    const qint64 estimate = msecs - time.msecsSinceStartOfDay();
    if (m_dayEstimate == estimate) {
        return;
    }
    m_dayEstimate = estimate;
    const std::optional<qint64> day = calendarStartOfDay(date);
    if (day && day != m_lastDay) {
        m_lastDay = day;
        Q_EMIT days(date);
    }
}

} // namespace tw
