// Where the calendar and reminders tiles read from beyond the usual places, as the person sets it
// up in a tile's settings: folders of their own ("tarnwick.calendar.folders") and calendars
// subscribed to by address ("tarnwick.calendar.subscriptions"). A change reaches the store and
// the subscriptions at once.
#pragma once

#include <QDateTime>
#include <QObject>
#include <QStringList>

#include <functional>

namespace tw {

class CalendarStore;
class CalendarSubscriptions;
class Defaults;

class CalendarSetup final : public QObject {
    Q_OBJECT
public:
    static constexpr qsizetype mostEntries = 50;

    CalendarSetup(Defaults& defaults, CalendarStore& store, CalendarSubscriptions& subscriptions,
                  QObject* parent = nullptr);

    QStringList folders() const;
    QStringList subscriptions() const;

    // Empty once added; otherwise why not, in words for the person.
    QString addFolder(const QString& path);
    void removeFolder(const QString& path);
    // Fetches the address first: only one that gives a calendar is kept. `done` gets why not, or
    // nothing once it is listed.
    void subscribe(const QString& address, const QDateTime& now,
                   std::function<void(const QString& problem)> done);
    void unsubscribe(const QString& address);

Q_SIGNALS:
    // The folders or subscriptions changed: what the store lists may have too.
    void changed();

private:
    QStringList list(const char* key) const;
    void store(const char* key, const QStringList& values);

    Defaults& m_defaults;
    CalendarStore& m_store;
    CalendarSubscriptions& m_subscriptions;
};

} // namespace tw
