// The base addresses of the outside services, one place to point them all elsewhere.
#pragma once

#include <QString>
#include <QUrl>

#include <array>

namespace tw {

class Endpoints {
public:
    enum class Service {
        Forecast,
        Geocoding,
        AirQuality,
        IpApi,
        IpWho,
        IpInfo,
        Stocks,
        Crypto,
        Currency,
        SpeedTest,
        Notices,
        // The release list the update check reads.
        Releases,
        // The code host's REST API: activity of people and repositories.
        GitHub,
    };
    static constexpr std::array allServices{
        Service::Forecast, Service::Geocoding, Service::AirQuality, Service::IpApi,
        Service::IpWho,    Service::IpInfo,    Service::Stocks,     Service::Crypto,
        Service::Currency, Service::SpeedTest, Service::Notices,    Service::Releases,
        Service::GitHub};

    // The public HTTPS addresses.
    Endpoints() = default;
    // Every service at `<base>/<name>`, so that one local server can stand in for all of them;
    // a base that is not an http or https URL leaves the public addresses.
    static Endpoints under(const QString& base);
    // `under` the value of TKW_ENDPOINT_BASE when it is set, the public addresses otherwise.
    static Endpoints fromEnvironment();

    // The path segment a service gets under a common base: "forecast", "ipapi", ...
    static QString name(Service service);
    QUrl base(Service service) const;
    // `path` ("/v1/forecast") appended to the service's base, which may have a path of its own.
    QUrl url(Service service, const QString& path) const;
    // Any other address a widget names: itself, or under a common base at
    // `<base>/web/<host>[:port]<path>?<query>`, so that a test serves every web address too.
    QUrl web(const QUrl& address) const;

    bool operator==(const Endpoints&) const = default;

private:
    QUrl m_commonBase;
};

} // namespace tw
