// The calendar and reminders services of the host and the board faces draw from: told which
// tiles are in view, it keeps their filters fresh and nothing else.
#pragma once

#include "desk/CalendarBoard.h"
#include "desk/CalendarService.h"
#include "desk/CalendarSubscriptions.h"
#include "desk/RemindersService.h"

#include <QObject>

namespace tw {

class CalendarHub final : public QObject {
    Q_OBJECT
public:
    // `subscriptions`, when given, are fetched while calendar tiles are in view.
    CalendarHub(CalendarStore& store, SampleRunner& runner, const QTimeZone& zone,
                CalendarSubscriptions* subscriptions = nullptr, QObject* parent = nullptr);

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

    CalendarService m_calendar;
    RemindersService m_reminders;
    CalendarBoard m_board;
    CalendarSubscriptions* m_subscriptions;
    QDateTime m_lastNow;
};

} // namespace tw
