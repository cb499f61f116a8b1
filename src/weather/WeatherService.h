// Finds out where the machine is and keeps the forecast for that place, or for one fixed city:
// a precise fix is the goal, the place of the internet address bridges until it comes, and a
// tile is never left empty while either can still answer.
#pragma once

#include "net/Endpoints.h"
#include "platform/LocationSource.h"
#include "platform/ScheduledTask.h"
#include "weather/FixedLocation.h"
#include "weather/IPLookup.h"
#include "weather/WeatherState.h"
#include "weather/WxFetchError.h"

#include <QDateTime>
#include <QObject>
#include <QUrl>

#include <chrono>
#include <optional>

namespace tw {

class Clock;
class Defaults;
class HttpClient;
class Scheduler;

class WeatherService final : public QObject {
    Q_OBJECT
public:
    // All must outlive the service; `location` may be null, which reads as restricted.
    struct Services {
        HttpClient& http;
        const Endpoints& endpoints;
        const Clock& clock;
        Scheduler& scheduler;
        const Defaults& defaults;
        LocationSource* location = nullptr;
    };

    static constexpr std::chrono::seconds goodFor{1800};
    static constexpr std::chrono::seconds retryAfter{180};
    static constexpr std::chrono::seconds hungAfter{120};
    // How long a precise fix may take before the internet address bridges.
    static constexpr std::chrono::seconds quickApproximateAfter{4};
    static constexpr std::chrono::milliseconds fetchTimeout{10'000};
    // The place of the internet address names a precise fix within this distance.
    static constexpr double sameCityKm = 50;
    static inline const QString userPlacedKey = QStringLiteral("tarnwick.weather.userPlaced");

    // The shared service for where the machine is, or, with `fixed`, a city's.
    explicit WeatherService(const Services& services,
                            std::optional<FixedLocation> fixed = std::nullopt,
                            QObject* parent = nullptr);

    const WeatherState& state() const { return m_state; }
    const std::optional<WxLive>& lastGood() const { return m_lastGood; }
    const std::optional<FixedLocation>& fixedLocation() const { return m_fixed; }
    // Where the last forecast was for, or the fixed city's place before any.
    std::optional<QPair<double, double>> lastCoordinate() const;
    bool isRefreshing() const { return m_refreshing; }
    // `lastGood` is for a real fix or a fixed city, not the internet address.
    bool lastGoodIsPrecise() const { return m_lastGoodIsPrecise; }

    // What tiles in view ask on each tick: begins a refresh when the data is old or missing, and
    // gives up an attempt hung for longer than `hungAfter`.
    void refreshIfStale(const QDateTime& now);
    // The person asked to try again.
    void retryLocation();
    // The person asked for the precise place: asks the system, or, when it was refused, says so.
    void requestPreciseLocation();

    static QUrl forecastURL(const Endpoints& endpoints, double latitude, double longitude);
    static QUrl airQualityURL(const Endpoints& endpoints, double latitude, double longitude);

Q_SIGNALS:
    // The state, the last good forecast or the coordinates changed.
    void changed();
    // The precise place was refused; the person can allow it only in the system's settings.
    void preciseLocationRefused();

private:
    struct Fetch {
        double latitude = 0;
        double longitude = 0;
        std::optional<QString> city;
        std::optional<QString> country;
        bool approximate = false;
        // A bridge while a precise fix is awaited: it keeps the attempt open, and its failure
        // changes nothing.
        bool keepInFlight = false;
    };
    enum class OnFailure { noLocation, permissionDenied };

    void beginRefresh();
    void startRefreshing();
    void startLocationRequest();
    void beginIPFallback(OnFailure onFailure);
    void runIPFetch(int generation, bool keepInFlight, OnFailure onFailure);
    void completeFetch(const Fetch& fetch, int generation);
    void finishFetch(const Fetch& fetch, int generation, std::optional<WxLive> live,
                     const std::optional<WxFetchError>& error);
    void onLocationResolved(double latitude, double longitude);
    void onLocationFailed(LocationSource::Failure failure, const QString& detail);
    void onAuthorizationChanged(LocationSource::Authorization authorization);
    void rememberIPPlace(const IPLookup& lookup);
    LocationSource::Authorization authorization() const;
    bool showsGood() const { return m_state.kind == WeatherState::Kind::ready; }
    void setState(WeatherState state);

    Services m_services;
    std::optional<FixedLocation> m_fixed;
    WeatherState m_state;
    std::optional<WxLive> m_lastGood;
    bool m_lastGoodIsPrecise = false;
    std::optional<QPair<double, double>> m_lastCoordinate;
    std::optional<QDateTime> m_lastFetch;
    std::optional<QDateTime> m_refreshStarted;
    bool m_refreshing = false;
    bool m_hasPromptedThisSession = false;
    bool m_updatingLocation = false;
    // Every new attempt takes the next number; an answer for an older one is thrown away.
    int m_generation = 0;
    ScheduledTask m_quickApproximate;
    // The last lookup of the internet address, to name a precise fix near it.
    std::optional<IPLocation> m_lastIPPlace;
    QDateTime m_lastIPPlaceAt;
};

} // namespace tw
