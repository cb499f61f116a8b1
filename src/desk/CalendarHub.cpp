#include "desk/CalendarHub.h"

namespace tw {

CalendarHub::CalendarHub(CalendarStore& store, SampleRunner& runner, const QTimeZone& zone,
                         CalendarSubscriptions* subscriptions, QObject* parent)
    : QObject(parent)
    , m_calendar(store, runner, zone)
    , m_reminders(store, runner, zone)
    , m_subscriptions(subscriptions) {
    if (m_subscriptions != nullptr) {
        connect(m_subscriptions, &CalendarSubscriptions::updated, this,
                [this] { m_calendar.forceRefreshAll(m_lastNow); });
    }
    connect(&m_calendar, &CalendarService::readingsChanged, this, &CalendarHub::rebuild);
    connect(&m_reminders, &RemindersService::readingsChanged, this, &CalendarHub::rebuild);
}

void CalendarHub::refresh(const QDateTime& now, const QList<WidgetSettings>& calendarTiles,
                          const QList<WidgetSettings>& reminderTiles) {
    m_lastNow = now;
    if (m_subscriptions != nullptr && !calendarTiles.isEmpty()) {
        m_subscriptions->refreshIfStale(now);
    }
    for (const WidgetSettings& settings : calendarTiles) {
        if (const auto filter = CalendarFilter::of(settings)) {
            m_calendar.refreshIfStale(*filter, now);
        }
    }
    for (const WidgetSettings& settings : reminderTiles) {
        if (const auto filter = RemindersFilter::of(settings)) {
            m_reminders.refreshIfStale(*filter, now);
        }
    }
}

void CalendarHub::rebuild() {
    CalendarBoard next{m_calendar.readings(), m_reminders.readings()};
    if (next != m_board) {
        m_board = std::move(next);
        Q_EMIT boardChanged();
    }
}

} // namespace tw
