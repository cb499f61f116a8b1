#include "net/Endpoints.h"

namespace tw {

namespace {

const char* publicBase(Endpoints::Service service) {
    switch (service) {
    case Endpoints::Service::Forecast:
        return "https://api.open-meteo.com";
    case Endpoints::Service::Geocoding:
        return "https://geocoding-api.open-meteo.com";
    case Endpoints::Service::AirQuality:
        return "https://air-quality-api.open-meteo.com";
    case Endpoints::Service::IpApi:
        return "https://ipapi.co";
    case Endpoints::Service::IpWho:
        return "https://ipwho.is";
    case Endpoints::Service::IpInfo:
        return "https://ipinfo.io";
    case Endpoints::Service::Stocks:
        return "https://query1.finance.yahoo.com";
    case Endpoints::Service::Crypto:
        return "https://api.coingecko.com";
    case Endpoints::Service::Currency:
        return "https://api.frankfurter.dev";
    case Endpoints::Service::SpeedTest:
        return "https://speed.cloudflare.com";
    case Endpoints::Service::Notices:
        return "https://notices.tarnwick.app";
    case Endpoints::Service::Releases:
        return "https://tarnwick.com";
    case Endpoints::Service::GitHub:
        return "https://api.github.com";
    }
    return "";
}

QString withoutTrailingSlashes(QString path) {
    while (path.endsWith(QLatin1Char('/'))) {
        path.chop(1);
    }
    return path;
}

} // namespace

Endpoints Endpoints::under(const QString& base) {
    const QUrl url(base.trimmed(), QUrl::StrictMode);
    const QString scheme = url.scheme().toLower();
    Endpoints endpoints;
    if (url.isValid() && !url.host().isEmpty() &&
        (scheme == QLatin1String("http") || scheme == QLatin1String("https"))) {
        endpoints.m_commonBase = url.adjusted(QUrl::RemoveQuery | QUrl::RemoveFragment);
    }
    return endpoints;
}

Endpoints Endpoints::fromEnvironment() {
    if (!qEnvironmentVariableIsSet("TKW_ENDPOINT_BASE")) {
        return {};
    }
    return under(qEnvironmentVariable("TKW_ENDPOINT_BASE"));
}

QString Endpoints::name(Service service) {
    switch (service) {
    case Service::Forecast:
        return QStringLiteral("forecast");
    case Service::Geocoding:
        return QStringLiteral("geocoding");
    case Service::AirQuality:
        return QStringLiteral("air-quality");
    case Service::IpApi:
        return QStringLiteral("ipapi");
    case Service::IpWho:
        return QStringLiteral("ipwho");
    case Service::IpInfo:
        return QStringLiteral("ipinfo");
    case Service::Stocks:
        return QStringLiteral("stocks");
    case Service::Crypto:
        return QStringLiteral("crypto");
    case Service::Currency:
        return QStringLiteral("currency");
    case Service::SpeedTest:
        return QStringLiteral("speedtest");
    case Service::Notices:
        return QStringLiteral("notices");
    case Service::Releases:
        return QStringLiteral("releases");
    case Service::GitHub:
        return QStringLiteral("github");
    }
    return {};
}

QUrl Endpoints::base(Service service) const {
    if (m_commonBase.isEmpty()) {
        return QUrl(QString::fromLatin1(publicBase(service)));
    }
    QUrl url = m_commonBase;
    url.setPath(withoutTrailingSlashes(url.path()) + QLatin1Char('/') + name(service));
    return url;
}

QUrl Endpoints::url(Service service, const QString& path) const {
    QUrl url = base(service);
    const QString tail = path.startsWith(QLatin1Char('/')) ? path : QLatin1Char('/') + path;
    url.setPath(withoutTrailingSlashes(url.path()) + tail);
    return url;
}

QUrl Endpoints::web(const QUrl& address) const {
    if (m_commonBase.isEmpty()) {
        return address;
    }
    QString authority = address.host(QUrl::FullyEncoded);
    if (address.port() >= 0) {
        authority += QLatin1Char(':') + QString::number(address.port());
    }
    QUrl url = m_commonBase;
    // Already encoded pieces: tolerant mode keeps their escapes as they are.
    url.setPath(withoutTrailingSlashes(url.path(QUrl::FullyEncoded)) + QLatin1String("/web/") +
                    authority + address.path(QUrl::FullyEncoded),
                QUrl::TolerantMode);
    if (address.hasQuery()) {
        url.setQuery(address.query(QUrl::FullyEncoded), QUrl::TolerantMode);
    }
    return url;
}

} // namespace tw
