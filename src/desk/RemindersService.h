// The person's reminders for the reminders tiles, built as CalendarService is; a reminder can be
// marked done or open again from the tile.
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

class RemindersService final : public QObject {
    Q_OBJECT
public:
    using Reading = CalendarReading<ReminderItem>;

    // How far back completed reminders are shown.
    static constexpr int completedDays = 7;

    RemindersService(CalendarStore& store, SampleRunner& runner, const QTimeZone& zone,
                     QObject* parent = nullptr);

    CalendarState state(const RemindersFilter& filter) const;
    std::optional<QList<ReminderItem>> lastGood(const RemindersFilter& filter) const;
    const QHash<RemindersFilter, Reading>& readings() const { return m_book.readings(); }
    const QList<CalendarList>& lists() const { return m_lists; }
    // Why the last toggle could not be written, and when; empty once one is written.
    const QString& saveProblem() const { return m_saveProblem; }
    const QDateTime& saveProblemAt() const { return m_saveProblemAt; }

    void refreshIfStale(const RemindersFilter& filter, const QDateTime& now);
    void forceRefreshAll(const QDateTime& now);
    // The filters that read the calendar `id` fetched again, after another program changed it.
    void refreshShowing(const QString& id, const QDateTime& now);
    // Marks `item` done, or open again, in its file; every list is read again afterwards.
    void toggleCompletion(const ReminderItem& item, const QDateTime& now);

Q_SIGNALS:
    void readingsChanged();
    void listsChanged();
    // A toggle that could not be written, in words for the person.
    void saveFailed(const QString& message);

private:
    void refreshWhere(const std::function<bool(const RemindersFilter&)>& which,
                      const QDateTime& now);
    void beginFetch(const RemindersFilter& filter, const QDateTime& now);

    CalendarStore& m_store;
    SampleRunner& m_runner;
    QTimeZone m_zone;
    CalendarBook<RemindersFilter, ReminderItem> m_book;
    QList<CalendarList> m_lists;
    QString m_saveProblem;
    QDateTime m_saveProblemAt;
};

} // namespace tw
