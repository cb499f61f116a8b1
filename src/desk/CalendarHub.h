// The calendar and reminders services of the host and the board faces draw from: told which
// tiles are in view, it keeps their filters fresh and nothing else.
#pragma once

#include "desk/CalendarBoard.h"
#include "desk/CalendarService.h"
#include "desk/CalendarSubscriptions.h"
#include "desk/CalendarWatcher.h"
#include "desk/RemindersService.h"

#include <QObject>

namespace tw {

class CalendarHub final : public QObject {
    Q_OBJECT
public:
    // `subscriptions`, when given, are fetched while calendar tiles are in view; `watcher`, when
    // given, watches the folders of the calendars and lists read, and a change in one reads again
    // the filters that show it.
    CalendarHub(CalendarStore& store, SampleRunner& runner, const QTimeZone& zone,
                CalendarSubscriptions* subscriptions = nullptr, CalendarWatcher* watcher = nullptr,
                QObject* parent = nullptr);

    const CalendarBoard& board() const { return m_board; }
    CalendarService& calendar() { return m_calendar; }
    RemindersService& reminders() { return m_reminders; }

    // The settings of the calendar and reminders tiles in view at `now`.
    void refresh(const QDateTime& now, const QList<WidgetSettings>& calendarTiles,
                 const QList<WidgetSettings>& reminderTiles);

Q_SIGNALS:
    void boardChanged();

private:
    void rebuild();
    void watchFolders();
    void folderChanged(const QString& folder);

    CalendarService m_calendar;
    RemindersService m_reminders;
    CalendarBoard m_board;
    CalendarSubscriptions* m_subscriptions;
    CalendarWatcher* m_watcher;
    QDateTime m_lastNow;
};

} // namespace tw
