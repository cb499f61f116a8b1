#include "desk/CalendarSubscriptions.h"

#include "net/HttpClient.h"
#include "platform/AtomicFile.h"

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
        if (!url || fresh || m_inFlight.contains(address)) {
            continue;
        }
        m_inFlight.insert(address);
        m_lastFetch.insert(address, now);
        HttpRequest request;
        request.url = *url;
        request.maxBytes = mostBytes;
        request.timeout = std::chrono::seconds(30);
        m_http.get(request, this, [this, address](const HttpResponse& response) {
            m_inFlight.remove(address);
            if (!response.isSuccess() || !response.body.contains("BEGIN:VCALENDAR")) {
                qCWarning(lcSubscriptions, "subscription not updated: %s",
                          qUtf8Printable(response.message.isEmpty()
                                             ? QStringLiteral("not a calendar")
                                             : response.message));
                return;
            }
            take(address, response.body);
        });
    }
}

void CalendarSubscriptions::take(const QString& address, const QByteArray& body) {
    const QString folder = folderFor(m_folder, address);
    if (!QDir().mkpath(folder)) {
        qCWarning(lcSubscriptions, "cannot make %s", qUtf8Printable(folder));
        return;
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
        return;
    }
    Q_EMIT updated();
}

} // namespace tw
