#include "weather/IPLookup.h"

#include "net/Endpoints.h"
#include "net/HttpClient.h"
#include "weather/WeatherLog.h"

#include <array>
#include <memory>

namespace tw {

namespace {

struct Provider {
    Endpoints::Service service;
    QStringView path;
};

constexpr std::array<Provider, 3> providers{{
    {Endpoints::Service::IpApi, u"/json/"},
    {Endpoints::Service::IpWho, u"/"},
    {Endpoints::Service::IpInfo, u"/json"},
}};

struct Search {
    HttpClient& http;
    Endpoints endpoints;
    const QObject* requester;
    std::function<void(const IPLookup&)> done;
    IPLookup lookup;
};

void ask(const std::shared_ptr<Search>& search, std::size_t next) {
    if (next == providers.size()) {
        search->done(search->lookup);
        return;
    }
    const Provider& provider = providers.at(next);
    HttpRequest request;
    request.url = search->endpoints.url(provider.service, provider.path.toString());
    request.timeout = IPLookup::timeout;
    request.maxBytes = IPLookup::maxBytes;
    search->http.get(request, search->requester, [search, next](const HttpResponse& response) {
        const QString name = Endpoints::name(providers.at(next).service);
        const std::optional<IPLocation> location =
            response.isSuccess() ? parseIPLocation(response.body) : std::nullopt;
        if (!location) {
            const QString why = !response.message.isEmpty() ? response.message
                                : response.isSuccess()
                                    ? QStringLiteral("no place in answer")
                                    : QStringLiteral("HTTP %1").arg(response.status);
            qCInfo(lcWeather, "IP provider unavailable (%s: %s) — trying next",
                   qUtf8Printable(name), qUtf8Printable(why));
            ask(search, next + 1);
            return;
        }
        if (looksLikeProxy(location->organisation)) {
            qCInfo(lcWeather, "IP provider %s names a proxy network — not used",
                   qUtf8Printable(name));
            search->lookup.unreliable = true;
            ask(search, next + 1);
            return;
        }
        search->lookup.location = location;
        search->done(search->lookup);
    });
}

} // namespace

void fetchIPLocation(HttpClient& http, const Endpoints& endpoints, const QObject* requester,
                     std::function<void(const IPLookup&)> done) {
    ask(std::make_shared<Search>(Search{http, endpoints, requester, std::move(done), {}}), 0);
}

} // namespace tw
