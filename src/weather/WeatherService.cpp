#include "weather/WeatherService.h"

#include "net/HttpClient.h"
#include "platform/Clock.h"
#include "platform/Defaults.h"
#include "platform/Scheduler.h"
#include "text/L.h"
#include "weather/ForecastMapping.h"
#include "weather/OMResponse.h"
#include "weather/WeatherLog.h"

#include <QUrlQuery>

#include <memory>

namespace tw {

namespace {

using namespace std::chrono_literals;

QString degrees(double value) {
    return QString::asprintf("%.4f", value);
}

HttpRequest weatherRequest(QUrl url) {
    HttpRequest request;
    request.url = std::move(url);
    request.timeout = WeatherService::fetchTimeout;
    return request;
}

QString currentLocationName() {
    return L("weather.currentLocation", QStringLiteral("Current Location"));
}

} // namespace

WeatherService::WeatherService(const Services& services, std::optional<FixedLocation> fixed,
                               QObject* parent)
    : QObject(parent)
    , m_services(services)
    , m_fixed(std::move(fixed)) {
    LocationSource* location = m_services.location;
    if (m_fixed || location == nullptr) {
        return;
    }
    connect(location, &LocationSource::locationResolved, this, &WeatherService::onLocationResolved);
    connect(location, &LocationSource::locationFailed, this, &WeatherService::onLocationFailed);
    connect(location, &LocationSource::authorizationChanged, this,
            &WeatherService::onAuthorizationChanged);
}

std::optional<QPair<double, double>> WeatherService::lastCoordinate() const {
    if (m_lastCoordinate) {
        return m_lastCoordinate;
    }
    if (m_fixed) {
        return QPair<double, double>(m_fixed->latitude, m_fixed->longitude);
    }
    return std::nullopt;
}

QUrl WeatherService::forecastURL(const Endpoints& endpoints, double latitude, double longitude) {
    QUrl url = endpoints.url(Endpoints::Service::Forecast, QStringLiteral("/v1/forecast"));
    QUrlQuery query;
    query.addQueryItem(QStringLiteral("latitude"), degrees(latitude));
    query.addQueryItem(QStringLiteral("longitude"), degrees(longitude));
    query.addQueryItem(QStringLiteral("current"),
                       QStringLiteral("temperature_2m,apparent_temperature,weather_code,is_day"));
    query.addQueryItem(QStringLiteral("hourly"), QStringLiteral("temperature_2m,weather_code"));
    query.addQueryItem(
        QStringLiteral("daily"),
        QStringLiteral("temperature_2m_max,temperature_2m_min,weather_code,sunrise,sunset"));
    query.addQueryItem(QStringLiteral("forecast_days"), QStringLiteral("8"));
    query.addQueryItem(QStringLiteral("timezone"), QStringLiteral("auto"));
    url.setQuery(query);
    return url;
}

QUrl WeatherService::airQualityURL(const Endpoints& endpoints, double latitude, double longitude) {
    QUrl url = endpoints.url(Endpoints::Service::AirQuality, QStringLiteral("/v1/air-quality"));
    QUrlQuery query;
    query.addQueryItem(QStringLiteral("latitude"), degrees(latitude));
    query.addQueryItem(QStringLiteral("longitude"), degrees(longitude));
    query.addQueryItem(QStringLiteral("current"), QStringLiteral("european_aqi,pm2_5,pm10"));
    url.setQuery(query);
    return url;
}

void WeatherService::refreshIfStale(const QDateTime& now) {
    if (m_refreshing) {
        const qint64 hung = m_refreshStarted ? m_refreshStarted->secsTo(now) : 0;
        if (hung <= hungAfter.count()) {
            return;
        }
        if (m_fixed) {
            qCInfo(lcWeather, "fixed-city fetch timed out after %llds — will retry",
                   static_cast<long long>(hung));
            m_refreshing = false;
            if (!m_lastGood) {
                setState(WeatherState::error(
                    L("weather.err.timeout", QStringLiteral("Request timed out"))));
            }
        } else {
            qCInfo(lcWeather,
                   "in-flight refresh timed out after %llds — using approximate IP location",
                   static_cast<long long>(hung));
            // A new attempt, with its own start: the next tick must not give it up at once.
            m_refreshing = false;
            beginIPFallback(OnFailure::noLocation);
        }
        return;
    }
    if (!m_lastFetch) {
        beginRefresh();
        return;
    }
    const bool deniedWithNothing =
        m_state.kind == WeatherState::Kind::permissionDenied && !m_lastGood;
    const bool failed = m_state.kind == WeatherState::Kind::error ||
                        m_state.kind == WeatherState::Kind::noLocation || deniedWithNothing;
    const std::chrono::seconds limit = failed ? retryAfter : goodFor;
    if (m_lastFetch->secsTo(now) >= limit.count()) {
        beginRefresh();
    }
}

void WeatherService::retryLocation() {
    beginRefresh();
}

void WeatherService::requestPreciseLocation() {
    const LocationSource::Authorization status = authorization();
    if (status == LocationSource::Authorization::authorized) {
        startLocationRequest();
        return;
    }
    if (status == LocationSource::Authorization::notDetermined) {
        qCInfo(lcWeather, "user requested precise location — prompting");
        m_hasPromptedThisSession = true;
        m_services.location->requestAuthorization();
        return;
    }
    qCInfo(lcWeather, "precise location denied — opening System Settings");
    Q_EMIT preciseLocationRefused();
}

void WeatherService::startRefreshing() {
    if (!m_refreshing) {
        m_refreshing = true;
        m_refreshStarted = m_services.clock.now();
    }
    if (m_state.kind == WeatherState::Kind::idle) {
        setState({WeatherState::Kind::loading, {}, {}});
    }
}

void WeatherService::beginRefresh() {
    startRefreshing();
    if (m_fixed) {
        completeFetch({.latitude = m_fixed->latitude,
                       .longitude = m_fixed->longitude,
                       .city = m_fixed->name.isEmpty() ? std::optional<QString>()
                                                       : std::optional(m_fixed->name),
                       .country = m_fixed->countryCode,
                       .approximate = false,
                       .keepInFlight = false},
                      ++m_generation);
        return;
    }
    switch (authorization()) {
    case LocationSource::Authorization::restricted:
    case LocationSource::Authorization::denied:
        qCInfo(lcWeather, "authorization denied/restricted — using approximate IP location");
        beginIPFallback(OnFailure::permissionDenied);
        return;
    case LocationSource::Authorization::authorized:
        startLocationRequest();
        return;
    case LocationSource::Authorization::notDetermined:
        // Only a person who put a weather tile on the desktop is asked; the prompt would be a
        // riddle to anyone else. The address serves the tile meanwhile.
        if (!m_hasPromptedThisSession && m_services.defaults.value(userPlacedKey, false).toBool()) {
            m_hasPromptedThisSession = true;
            m_services.location->requestAuthorization();
        }
        beginIPFallback(OnFailure::noLocation);
        return;
    }
}

void WeatherService::startLocationRequest() {
    startRefreshing();
    qCInfo(lcWeather, "requesting one-shot location fix");
    const int generation = ++m_generation;
    m_services.location->requestLocation();
    m_quickApproximate.cancel();
    m_quickApproximate =
        m_services.scheduler.singleShot(quickApproximateAfter, 0ms, this, [this, generation] {
            if (generation != m_generation || showsGood()) {
                return;
            }
            qCInfo(lcWeather,
                   "precise fix still pending after %lld s — bridging with approximate IP location",
                   static_cast<long long>(quickApproximateAfter.count()));
            runIPFetch(generation, true, OnFailure::noLocation);
        });
}

void WeatherService::beginIPFallback(OnFailure onFailure) {
    startRefreshing();
    m_quickApproximate.cancel();
    runIPFetch(++m_generation, false, onFailure);
}

void WeatherService::runIPFetch(int generation, bool keepInFlight, OnFailure onFailure) {
    fetchIPLocation(
        m_services.http, m_services.endpoints, this,
        [this, generation, keepInFlight, onFailure](const IPLookup& lookup) {
            rememberIPPlace(lookup);
            if (generation != m_generation) {
                return;
            }
            if (const std::optional<IPLocation>& place = lookup.location) {
                qCInfo(lcWeather, "IP fallback → %s",
                       qUtf8Printable(place->city.value_or(degrees(place->latitude) + u',' +
                                                           degrees(place->longitude))));
                completeFetch({.latitude = place->latitude,
                               .longitude = place->longitude,
                               .city = place->city,
                               .country = place->country,
                               .approximate = true,
                               .keepInFlight = keepInFlight},
                              generation);
                return;
            }
            qCInfo(lcWeather, "IP fallback failed — no approximate location%s",
                   lookup.unreliable ? " (the address looks like a VPN, relay or hosting network)"
                                     : "");
            // A bridge that finds nothing still waits for the fix it bridges.
            if (!keepInFlight) {
                m_lastFetch = m_services.clock.now();
                m_refreshing = false;
            }
            setState({onFailure == OnFailure::permissionDenied
                          ? WeatherState::Kind::permissionDenied
                          : WeatherState::Kind::noLocation,
                      {},
                      {}});
        });
}

void WeatherService::completeFetch(const Fetch& fetch, int generation) {
    struct Join {
        Fetch fetch;
        int generation = 0;
        std::optional<HttpResponse> forecast;
        std::optional<HttpResponse> air;
        std::optional<IPLookup> place;
        bool needsPlace = false;
    };
    auto join = std::make_shared<Join>();
    join->fetch = fetch;
    join->generation = generation;
    // A precise fix has no name of its own here; the address lookup's city names it when near.
    join->needsPlace =
        !fetch.city && !m_fixed &&
        (!m_lastIPPlace || m_lastIPPlaceAt.secsTo(m_services.clock.now()) >= goodFor.count());
    auto settle = [this, join] {
        if (!join->forecast || !join->air || (join->needsPlace && !join->place)) {
            return;
        }
        Fetch& named = join->fetch;
        if (!named.city) {
            const std::optional<IPLocation>& near = m_lastIPPlace;
            if (near && near->city &&
                distanceKm(near->latitude, near->longitude, named.latitude, named.longitude) <=
                    sameCityKm) {
                named.city = near->city;
                named.country = named.country ? named.country : near->country;
            }
        }
        std::optional<WxFetchError> error = WxFetchError::from(*join->forecast);
        std::optional<WxLive> live;
        if (!error) {
            const std::optional<OMResponse> response = OMResponse::fromAnswer(join->forecast->body);
            live = response ? mapResponse(*response, m_services.clock.now()) : std::nullopt;
            if (!live) {
                error = WxFetchError{WxFetchError::Kind::malformed, HttpError::None,
                                     QStringLiteral("malformed forecast")};
            }
        }
        if (live) {
            live->city = named.city.value_or(currentLocationName());
            live->countryCode = named.country;
            live->approximate = named.approximate;
            if (join->air->isSuccess()) {
                live->air = WxAirQuality::fromAnswer(join->air->body);
            }
        }
        finishFetch(named, join->generation, std::move(live), error);
    };
    m_services.http.get(
        weatherRequest(forecastURL(m_services.endpoints, fetch.latitude, fetch.longitude)), this,
        [join, settle](const HttpResponse& response) {
            join->forecast = response;
            settle();
        });
    m_services.http.get(
        weatherRequest(airQualityURL(m_services.endpoints, fetch.latitude, fetch.longitude)), this,
        [join, settle](const HttpResponse& response) {
            join->air = response;
            settle();
        });
    if (join->needsPlace) {
        fetchIPLocation(m_services.http, m_services.endpoints, this,
                        [this, join, settle](const IPLookup& lookup) {
                            rememberIPPlace(lookup);
                            join->place = lookup;
                            settle();
                        });
    }
}

void WeatherService::finishFetch(const Fetch& fetch, int generation, std::optional<WxLive> live,
                                 const std::optional<WxFetchError>& error) {
    if (generation != m_generation) {
        return;
    }
    const QDateTime now = m_services.clock.now();
    if (!live) {
        const QString detail = error ? error->detail : QString();
        if (fetch.keepInFlight) {
            qCInfo(lcWeather, "approximate bridge fetch failed: %s", qUtf8Printable(detail));
            return;
        }
        qCInfo(lcWeather, "forecast fetch failed: %s", qUtf8Printable(detail));
        m_lastFetch = now;
        m_refreshing = false;
        setState(WeatherState::error(error ? message(*error) : message(WxFetchError{})));
        return;
    }
    qCInfo(lcWeather, "forecast ready for %s: %d°C, %s%s", qUtf8Printable(live->city), live->temp,
           qUtf8Printable(rawValue(live->condition)), fetch.approximate ? " (approximate)" : "");
    m_lastGood = live;
    m_lastGoodIsPrecise = !fetch.approximate;
    m_lastCoordinate = QPair<double, double>(fetch.latitude, fetch.longitude);
    m_lastFetch = now;
    if (!fetch.keepInFlight) {
        m_refreshing = false;
    }
    setState(WeatherState::ready(*std::move(live)));
}

void WeatherService::onLocationResolved(double latitude, double longitude) {
    qCInfo(lcWeather, "location fix acquired");
    m_quickApproximate.cancel();
    if (m_updatingLocation) {
        m_updatingLocation = false;
        m_services.location->stopUpdatingLocation();
    }
    startRefreshing();
    completeFetch({.latitude = latitude,
                   .longitude = longitude,
                   .city = {},
                   .country = {},
                   .approximate = false,
                   .keepInFlight = false},
                  ++m_generation);
}

void WeatherService::onLocationFailed(LocationSource::Failure failure, const QString& detail) {
    switch (failure) {
    case LocationSource::Failure::locationUnknown:
        qCInfo(lcWeather,
               "one-shot fix failed (locationUnknown) — falling back to continuous updates");
        m_updatingLocation = true;
        m_services.location->startUpdatingLocation();
        return;
    case LocationSource::Failure::denied:
        qCInfo(lcWeather, "location denied mid-request — using approximate IP location");
        beginIPFallback(OnFailure::permissionDenied);
        return;
    case LocationSource::Failure::other:
        qCInfo(lcWeather, "location failed (%s) — using approximate IP location",
               qUtf8Printable(detail));
        beginIPFallback(OnFailure::noLocation);
        return;
    }
}

void WeatherService::onAuthorizationChanged(LocationSource::Authorization authorization) {
    qCInfo(lcWeather, "authorization changed → %d", static_cast<int>(authorization));
    switch (authorization) {
    case LocationSource::Authorization::authorized:
        startLocationRequest();
        return;
    case LocationSource::Authorization::denied:
    case LocationSource::Authorization::restricted:
        if (m_updatingLocation) {
            m_updatingLocation = false;
            m_services.location->stopUpdatingLocation();
        }
        beginIPFallback(OnFailure::permissionDenied);
        return;
    case LocationSource::Authorization::notDetermined:
        return;
    }
}

void WeatherService::rememberIPPlace(const IPLookup& lookup) {
    if (lookup.location) {
        m_lastIPPlace = lookup.location;
        m_lastIPPlaceAt = m_services.clock.now();
    }
}

LocationSource::Authorization WeatherService::authorization() const {
    return m_services.location ? m_services.location->authorization()
                               : LocationSource::Authorization::restricted;
}

void WeatherService::setState(WeatherState state) {
    m_state = std::move(state);
    Q_EMIT changed();
}

} // namespace tw
