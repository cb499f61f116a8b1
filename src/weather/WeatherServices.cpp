#include "weather/WeatherServices.h"

#include "net/HttpClient.h"
#include "weather/WxFetchError.h"

#include <QSet>

namespace tw {

WeatherServices::WeatherServices(const Services& services, QObject* parent)
    : QObject(parent)
    , m_services(services)
    , m_shared(make(std::nullopt)) {
    publish(WeatherBoard::currentPlace, *m_shared);
}

WeatherServices::~WeatherServices() = default;

std::unique_ptr<WeatherService> WeatherServices::make(std::optional<FixedLocation> fixed) {
    const QString key = fixed ? fixed->key() : WeatherBoard::currentPlace;
    auto service = std::make_unique<WeatherService>(m_services, std::move(fixed));
    const WeatherService* raw = service.get();
    connect(raw, &WeatherService::changed, this, [this, key, raw] { publish(key, *raw); });
    return service;
}

WeatherService& WeatherServices::service(const WidgetSettings& settings) {
    const std::optional<FixedLocation> fixed = FixedLocation::fromSettings(settings);
    if (!fixed) {
        return *m_shared;
    }
    const QString key = fixed->key();
    auto found = m_fixed.find(key);
    if (found == m_fixed.end()) {
        found = m_fixed.insert(key, make(fixed));
        publish(key, **found);
    }
    return **found;
}

void WeatherServices::refresh(const QDateTime& now, const QList<WidgetSettings>& placesInView) {
    QSet<QString> asked;
    for (const WidgetSettings& settings : placesInView) {
        WeatherService& place = service(settings);
        const QString key = WeatherBoard::placeKey(settings);
        if (!asked.contains(key)) {
            asked.insert(key);
            place.refreshIfStale(now);
        }
    }
}

void WeatherServices::publish(const QString& key, const WeatherService& service) {
    WeatherPlace place{
        .state = service.state(), .lastGood = service.lastGood(), .latitude = {}, .longitude = {}};
    if (const auto coordinate = service.lastCoordinate()) {
        place.latitude = coordinate->first;
        place.longitude = coordinate->second;
    }
    const auto found = m_board.places.constFind(key);
    if (found != m_board.places.cend() && *found == place) {
        return;
    }
    m_board.places.insert(key, std::move(place));
    Q_EMIT boardChanged();
}

void WeatherServices::searchCities(const QString& text, const QObject* requester, SearchDone done) {
    const QString name = text.trimmed();
    if (name.isEmpty()) {
        done({}, {});
        return;
    }
    HttpRequest request;
    request.url =
        m_services.endpoints.url(Endpoints::Service::Geocoding, QStringLiteral("/v1/search"));
    // Encoded by hand: QUrlQuery would send a "+" in the name as is, which servers read as a space.
    const QByteArray query = "name=" + QUrl::toPercentEncoding(name) + "&count=6&format=json";
    request.url.setQuery(QString::fromLatin1(query), QUrl::StrictMode);
    request.timeout = searchTimeout;
    m_services.http.get(request, requester, [done = std::move(done)](const HttpResponse& response) {
        if (const std::optional<WxFetchError> error = WxFetchError::from(response)) {
            done({}, message(*error));
            return;
        }
        done(GeoSuggestion::fromAnswer(response.body), {});
    });
}

} // namespace tw
