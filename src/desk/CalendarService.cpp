#include "desk/CalendarService.h"

#include "platform/CalendarStore.h"
#include "readings/SampleRunner.h"

#include <QLoggingCategory>

namespace tw {
namespace {

Q_LOGGING_CATEGORY(lcCalendarService, "Calendar")

struct Fetch {
    QList<CalendarList> calendars;
    CalendarStore::Fetched<CalendarEventItem> events;
};

} // namespace

CalendarService::CalendarService(CalendarStore& store, SampleRunner& runner, const QTimeZone& zone,
                                 QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_runner(runner)
    , m_zone(zone) {}

CalendarState CalendarService::state(const CalendarFilter& filter) const {
    return m_book.reading(filter).state;
}

std::optional<QList<CalendarEventItem>>
CalendarService::lastGood(const CalendarFilter& filter) const {
    return m_book.reading(filter).lastGood;
}

void CalendarService::refreshIfStale(const CalendarFilter& filter, const QDateTime& now) {
    const qsizetype before = m_book.readings().size();
    if (m_book.wantsFetch(filter, now)) {
        beginFetch(filter, now);
    } else if (m_book.readings().size() != before) {
        Q_EMIT readingsChanged();
    }
}

void CalendarService::refreshShowing(const QString& id, const QDateTime& now) {
    refreshWhere(
        [&id](const CalendarFilter& filter) {
            return !filter.calendarID || *filter.calendarID == id;
        },
        now);
}

void CalendarService::forceRefreshAll(const QDateTime& now) {
    refreshWhere([](const CalendarFilter&) { return true; }, now);
}

void CalendarService::refreshWhere(const std::function<bool(const CalendarFilter&)>& which,
                                   const QDateTime& now) {
    m_book.markStale(which);
    for (const CalendarFilter& filter : m_book.filters()) {
        if (which(filter) && m_book.wantsFetch(filter, now)) {
            beginFetch(filter, now);
        }
    }
}

void CalendarService::beginFetch(const CalendarFilter& filter, const QDateTime& now) {
    const quint64 generation = m_book.begin(filter);
    Q_EMIT readingsChanged();
    const QDateTime from = now.addDays(-daysBefore);
    const QDateTime to = now.addDays(daysAfter);
    CalendarStore* store = &m_store;
    const QTimeZone zone = m_zone;
    runSample(
        m_runner, this,
        [store, filter, from, to, zone] {
            return Fetch{store->calendars(), store->events(from, to, filter.calendarID, zone)};
        },
        [this, filter, generation, now](const Fetch& fetched) {
            if (fetched.calendars != m_calendars) {
                m_calendars = fetched.calendars;
                Q_EMIT calendarsChanged();
            }
            if (!m_book.apply(filter, generation, fetched.events.items, fetched.events.error,
                              now)) {
                return;
            }
            if (fetched.events.error.isEmpty()) {
                qCInfo(lcCalendarService, "events ready: %lld item(s)",
                       static_cast<long long>(fetched.events.items.size()));
            }
            Q_EMIT readingsChanged();
        });
}

} // namespace tw
