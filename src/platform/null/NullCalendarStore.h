// A system with no calendars: nothing to choose, nothing to show, nothing to write.
#pragma once

#include "platform/CalendarStore.h"

namespace tw {

class NullCalendarStore final : public CalendarStore {
public:
    QList<CalendarList> calendars() const override { return {}; }
    QList<CalendarList> reminderLists() const override { return {}; }
    Fetched<CalendarEventItem> events(const QDateTime&, const QDateTime&,
                                      const std::optional<QString>&,
                                      const QTimeZone&) const override {
        return {};
    }
    Fetched<ReminderItem> reminders(const std::optional<QString>&, const std::optional<QDateTime>&,
                                    const QTimeZone&) const override {
        return {};
    }
    QString setCompleted(const QString&, bool, const QDateTime&) override {
        return QStringLiteral("No reminders here");
    }
    void setOwnFolders(const QStringList&) override {}
};

} // namespace tw
