#include "desk/CalendarHub.h"

namespace tw {

CalendarHub::CalendarHub(CalendarStore& store, SampleRunner& runner, const QTimeZone& zone,
                         CalendarSubscriptions* subscriptions, CalendarWatcher* watcher,
                         QObject* parent)
    : QObject(parent)
    , m_calendar(store, runner, zone)
    , m_reminders(store, runner, zone)
    , m_subscriptions(subscriptions)
    , m_watcher(watcher) {
    if (m_watcher != nullptr) {
        connect(m_watcher, &CalendarWatcher::folderChanged, this, &CalendarHub::folderChanged);
    }
    if (m_subscriptions != nullptr) {
        connect(m_subscriptions, &CalendarSubscriptions::updated, this,
                [this] { m_calendar.forceRefreshAll(m_lastNow); });
    }
    connect(&m_calendar, &CalendarService::readingsChanged, this, &CalendarHub::rebuild);
    connect(&m_reminders, &RemindersService::readingsChanged, this, &CalendarHub::rebuild);
    connect(&m_reminders, &RemindersService::saveFailed, this, &CalendarHub::rebuild);
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

void CalendarHub::watchFolders() {
    if (m_watcher == nullptr) {
        return;
    }
    QStringList folders;
    const auto add = [&folders](const std::optional<QString>& id,
                                const QList<CalendarList>& lists) {
        for (const CalendarList& list : lists) {
            if (!list.folder.isEmpty() && (!id || *id == list.id)) {
                folders << list.folder;
            }
        }
    };
    for (auto it = m_calendar.readings().cbegin(); it != m_calendar.readings().cend(); ++it) {
        add(it.key().calendarID, m_calendar.calendars());
    }
    for (auto it = m_reminders.readings().cbegin(); it != m_reminders.readings().cend(); ++it) {
        add(it.key().listID, m_reminders.lists());
    }
    folders.removeDuplicates();
    m_watcher->setFolders(folders);
}

void CalendarHub::folderChanged(const QString& folder) {
    for (const CalendarList& calendar : m_calendar.calendars()) {
        if (calendar.folder == folder) {
            m_calendar.refreshShowing(calendar.id, m_lastNow);
        }
    }
    for (const CalendarList& list : m_reminders.lists()) {
        if (list.folder == folder) {
            m_reminders.refreshShowing(list.id, m_lastNow);
        }
    }
}

void CalendarHub::rebuild() {
    watchFolders();
    CalendarBoard next{m_calendar.readings(), m_reminders.readings(), m_reminders.saveProblem(),
                       m_reminders.saveProblemAt()};
    if (next != m_board) {
        m_board = std::move(next);
        Q_EMIT boardChanged();
    }
}

} // namespace tw
