#include "desk/CalendarSubscriptions.h"

#include "net/HttpClient.h"
#include "platform/AtomicFile.h"
#include "text/L.h"

#include <QCryptographicHash>
#include <QDir>
#include <QLoggingCategory>
#include <QRegularExpression>

namespace tw {
namespace {

Q_LOGGING_CATEGORY(lcSubscriptions, "Calendar")

QString folderFor(const QString& root, const QString& address) {
    return root + QLatin1Char('/') +
           QString::fromLatin1(
               QCryptographicHash::hash(address.toUtf8(), QCryptographicHash::Sha1).toHex());
}

} // namespace

CalendarSubscriptions::CalendarSubscriptions(HttpClient& http, QString folder, QObject* parent)
    : QObject(parent)
    , m_http(http)
    , m_folder(std::move(folder)) {}

void CalendarSubscriptions::setAddresses(const QStringList& addresses) {
    m_addresses = addresses;
}

std::optional<QUrl> CalendarSubscriptions::fetchable(const QString& address) {
    QUrl url(address.trimmed());
    if (url.scheme() == QLatin1String("webcal") || url.scheme() == QLatin1String("webcals")) {
        url.setScheme(QStringLiteral("https"));
    }
    if ((url.scheme() != QLatin1String("https") && url.scheme() != QLatin1String("http")) ||
        url.host().isEmpty()) {
        return std::nullopt;
    }
    return url;
}

void CalendarSubscriptions::refreshIfStale(const QDateTime& now) {
    for (const QString& address : m_addresses) {
        const std::optional<QUrl> url = fetchable(address);
        const auto last = m_lastFetch.constFind(address);
        const bool fresh = last != m_lastFetch.constEnd() && *last <= now &&
                           last->secsTo(now) < std::chrono::seconds(freshFor).count();
        if (url && !fresh && !m_inFlight.contains(address)) {
            fetch(address, *url, now, [](const QString& problem) {
                if (!problem.isEmpty()) {
                    qCWarning(lcSubscriptions, "subscription not updated: %s",
                              qUtf8Printable(problem));
                }
            });
        }
    }
}

void CalendarSubscriptions::fetchNow(const QString& address, const QDateTime& now,
                                     std::function<void(const QString& problem)> done) {
    const std::optional<QUrl> url = fetchable(address);
    if (!url) {
        done(L("calendar.subscribe.badAddress",
               QStringLiteral("Use an address that begins with webcal:// or https://.")));
        return;
    }
    fetch(address, *url, now, std::move(done));
}

void CalendarSubscriptions::forget(const QString& address) {
    m_lastFetch.remove(address);
    QDir(folderFor(m_folder, address)).removeRecursively();
}

void CalendarSubscriptions::fetch(const QString& address, const QUrl& url, const QDateTime& now,
                                  std::function<void(const QString& problem)> done) {
    m_inFlight.insert(address);
    m_lastFetch.insert(address, now);
    HttpRequest request;
    request.url = url;
    request.maxBytes = mostBytes;
    request.timeout = std::chrono::seconds(30);
    m_http.get(
        request, this, [this, address, done = std::move(done)](const HttpResponse& response) {
            m_inFlight.remove(address);
            if (!response.isSuccess()) {
                done(L("calendar.subscribe.failed", QStringLiteral("The calendar could not be "
                                                                   "fetched: %1"))
                         .arg(response.message));
            } else if (!response.body.contains("BEGIN:VCALENDAR")) {
                done(L("calendar.subscribe.notCalendar",
                       QStringLiteral("That address gives no calendar.")));
            } else {
                done(take(address, response.body));
            }
        });
}

QString CalendarSubscriptions::take(const QString& address, const QByteArray& body) {
    const QString folder = folderFor(m_folder, address);
    if (!QDir().mkpath(folder)) {
        qCWarning(lcSubscriptions, "cannot make %s", qUtf8Printable(folder));
        return L("calendar.subscribe.notKept", QStringLiteral("The calendar could not be kept."));
    }
    // The calendar's own name when it gives one, else where it comes from.
    static const QRegularExpression named(QStringLiteral("X-WR-CALNAME:([^\\r\\n]+)"));
    const QRegularExpressionMatch match = named.match(QString::fromUtf8(body.left(64 * 1024)));
    const QString title =
        match.hasMatch() ? match.captured(1).trimmed() : fetchable(address)->host();
    const AtomicFile::Result written =
        AtomicFile::write(folder + QStringLiteral("/calendar.ics"), body);
    AtomicFile::write(folder + QStringLiteral("/displayname"), title.toUtf8());
    if (!written) {
        qCWarning(lcSubscriptions, "subscription not kept: %s", qUtf8Printable(written.error));
        return L("calendar.subscribe.notKept", QStringLiteral("The calendar could not be kept."));
    }
    Q_EMIT updated();
    return {};
}

} // namespace tw
