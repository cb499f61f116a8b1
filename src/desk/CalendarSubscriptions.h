// Calendars the person subscribed to by a "webcal" or https address: fetched through the HTTP
// layer (size cap, time-out) at most every half hour while a calendar tile is in view, and kept
// as read-only vdir folders that the store reads beside the person's own. A failed fetch keeps
// the copy there was.
#pragma once

#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QUrl>

#include <chrono>
#include <functional>
#include <optional>

namespace tw {

class HttpClient;

class CalendarSubscriptions final : public QObject {
    Q_OBJECT
public:
    static constexpr std::chrono::minutes freshFor{30};
    static constexpr qint64 mostBytes = 8 * 1024 * 1024;

    // Copies live in folders below `folder`, one per address.
    CalendarSubscriptions(HttpClient& http, QString folder, QObject* parent = nullptr);

    void setAddresses(const QStringList& addresses);
    // What is fetched for an address: "webcal" read as https, http and https as they are,
    // anything else nothing.
    static std::optional<QUrl> fetchable(const QString& address);

    // Fetches every subscription whose copy is older than `freshFor` at `now`.
    void refreshIfStale(const QDateTime& now);
    // Fetches `address` now and keeps its copy; `done` gets why not in words for the person, or
    // nothing once the copy is kept.
    void fetchNow(const QString& address, const QDateTime& now,
                  std::function<void(const QString& problem)> done);
    // Drops the copy of an address no longer subscribed to.
    void forget(const QString& address);
    bool isFetching() const { return !m_inFlight.isEmpty(); }

Q_SIGNALS:
    // A copy on disk changed.
    void updated();

private:
    void fetch(const QString& address, const QUrl& url, const QDateTime& now,
               std::function<void(const QString& problem)> done);
    // Empty once kept.
    QString take(const QString& address, const QByteArray& body);

    HttpClient& m_http;
    QString m_folder;
    QStringList m_addresses;
    QHash<QString, QDateTime> m_lastFetch;
    QSet<QString> m_inFlight;
};

} // namespace tw
