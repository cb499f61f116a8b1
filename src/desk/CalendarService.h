// The person's events for the calendar tiles: one fetch per filter shared by every tile showing
// it, read away from the main thread, fresh for a minute, never read for a tile whose person has
// not chosen a calendar yet.
#pragma once

#include "desk/CalendarBook.h"
#include "desk/CalendarFilter.h"
#include "platform/CalendarItems.h"

#include <QObject>
#include <QTimeZone>

#include <functional>

namespace tw {

class CalendarStore;
class SampleRunner;

class CalendarService final : public QObject {
    Q_OBJECT
public:
    using Reading = CalendarReading<CalendarEventItem>;

    // Events from a week before now to five weeks after.
    static constexpr int daysBefore = 7;
    static constexpr int daysAfter = 35;

    CalendarService(CalendarStore& store, SampleRunner& runner, const QTimeZone& zone,
                    QObject* parent = nullptr);

    CalendarState state(const CalendarFilter& filter) const;
    std::optional<QList<CalendarEventItem>> lastGood(const CalendarFilter& filter) const;
    const QHash<CalendarFilter, Reading>& readings() const { return m_book.readings(); }
    // The calendars found at the last fetch, for the tile's settings.
    const QList<CalendarList>& calendars() const { return m_calendars; }

    // What a tile calls as it appears and on its tick.
    void refreshIfStale(const CalendarFilter& filter, const QDateTime& now);
    // Every filter fetched again, after a change in the store.
    void forceRefreshAll(const QDateTime& now);
    // The filters that read the calendar `id` fetched again, after another program changed it.
    void refreshShowing(const QString& id, const QDateTime& now);

Q_SIGNALS:
    void readingsChanged();
    void calendarsChanged();

private:
    void refreshWhere(const std::function<bool(const CalendarFilter&)>& which,
                      const QDateTime& now);
    void beginFetch(const CalendarFilter& filter, const QDateTime& now);

    CalendarStore& m_store;
    SampleRunner& m_runner;
    QTimeZone m_zone;
    CalendarBook<CalendarFilter, CalendarEventItem> m_book;
    QList<CalendarList> m_calendars;
};

} // namespace tw
