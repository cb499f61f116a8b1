#include "desk/RemindersService.h"

#include "platform/CalendarStore.h"
#include "readings/SampleRunner.h"
#include "text/L.h"

#include <QLoggingCategory>

namespace tw {
namespace {

Q_LOGGING_CATEGORY(lcReminders, "Reminders")

struct Fetch {
    QList<CalendarList> lists;
    CalendarStore::Fetched<ReminderItem> reminders;
};

} // namespace

RemindersService::RemindersService(CalendarStore& store, SampleRunner& runner,
                                   const QTimeZone& zone, QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_runner(runner)
    , m_zone(zone) {}

CalendarState RemindersService::state(const RemindersFilter& filter) const {
    return m_book.reading(filter).state;
}

std::optional<QList<ReminderItem>> RemindersService::lastGood(const RemindersFilter& filter) const {
    return m_book.reading(filter).lastGood;
}

void RemindersService::refreshIfStale(const RemindersFilter& filter, const QDateTime& now) {
    const qsizetype before = m_book.readings().size();
    if (m_book.wantsFetch(filter, now)) {
        beginFetch(filter, now);
    } else if (m_book.readings().size() != before) {
        Q_EMIT readingsChanged();
    }
}

void RemindersService::refreshShowing(const QString& id, const QDateTime& now) {
    refreshWhere(
        [&id](const RemindersFilter& filter) { return !filter.listID || *filter.listID == id; },
        now);
}

void RemindersService::forceRefreshAll(const QDateTime& now) {
    refreshWhere([](const RemindersFilter&) { return true; }, now);
}

void RemindersService::refreshWhere(const std::function<bool(const RemindersFilter&)>& which,
                                    const QDateTime& now) {
    m_book.markStale(which);
    for (const RemindersFilter& filter : m_book.filters()) {
        if (which(filter) && m_book.wantsFetch(filter, now)) {
            beginFetch(filter, now);
        }
    }
}

void RemindersService::toggleCompletion(const ReminderItem& item, const QDateTime& now) {
    CalendarStore* store = &m_store;
    runSample(
        m_runner, this,
        [store, id = item.id, completed = !item.isCompleted, now] {
            return store->setCompleted(id, completed, now);
        },
        [this, now](const QString& error) {
            if (error.isEmpty()) {
                m_saveProblem.clear();
            } else {
                qCWarning(lcReminders, "save failed: %s", qUtf8Printable(error));
                m_saveProblem = L("reminders.err.save", QStringLiteral("Couldn’t update reminder"));
                m_saveProblemAt = now;
                Q_EMIT saveFailed(m_saveProblem);
            }
            forceRefreshAll(now);
        });
}

void RemindersService::beginFetch(const RemindersFilter& filter, const QDateTime& now) {
    const quint64 generation = m_book.begin(filter);
    Q_EMIT readingsChanged();
    const std::optional<QDateTime> since =
        filter.includeCompleted ? std::optional<QDateTime>(now.addDays(-completedDays))
                                : std::nullopt;
    CalendarStore* store = &m_store;
    const QTimeZone zone = m_zone;
    runSample(
        m_runner, this,
        [store, filter, since, zone] {
            return Fetch{store->reminderLists(), store->reminders(filter.listID, since, zone)};
        },
        [this, filter, generation, now](const Fetch& fetched) {
            if (fetched.lists != m_lists) {
                m_lists = fetched.lists;
                Q_EMIT listsChanged();
            }
            if (m_book.apply(filter, generation, fetched.reminders.items, fetched.reminders.error,
                             now)) {
                Q_EMIT readingsChanged();
            }
        });
}

} // namespace tw
