// The weather answers: whatever bytes arrive, each decoder keeps to its caps, the place search
// and the address lookup offer only places on the globe, and the forecast's mapping gives at most
// 12 hours starting with "Now" and at most 7 dated days, or calls the answer malformed; the scene
// of its current code agrees with its condition.
#include "Require.h"
#include "weather/ForecastMapping.h"
#include "weather/GeoSuggestion.h"
#include "weather/IPLocation.h"
#include "weather/OMResponse.h"
#include "weather/WxAirQuality.h"
#include "weather/WxScene.h"

#include <QByteArray>
#include <QTimeZone>

#include <cstdint>

using tw::fuzz::require;

namespace {

void checkMapping(const tw::OMResponse& response, const QDateTime& now) {
    const std::optional<tw::WxLive> live = tw::mapResponse(response, now);
    if (!live) {
        return;
    }
    require(!live->hourly.isEmpty() && live->hourly.size() <= 12, "hours out of bounds");
    require(live->hourly.first().label == QLatin1String("Now"), "the first hour is not now");
    require(live->daily.size() <= 7, "more than a week of days");
    for (const tw::WxLiveDay& day : live->daily) {
        require(day.date.isValid(), "a day without a date");
    }
    require(!live->sunrise || live->sunrise->isValid(), "an invalid sunrise");
    // The scene behind a tile refines the condition, never contradicts it.
    const tw::WxScene scene = tw::sceneFor(live->condition, live->code);
    require(scene != tw::WxScene::fog || live->condition == tw::WxCondition::clouds,
            "fog that is not cloudy");
    require(scene != tw::WxScene::thunder || live->condition == tw::WxCondition::rain,
            "thunder without rain");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));

    if (const std::optional<tw::OMResponse> response = tw::OMResponse::fromAnswer(bytes)) {
        require(response->hourly.time.size() <= tw::OMResponse::maxHours, "hours past the cap");
        require(response->daily.time.size() <= tw::OMResponse::maxDays, "days past the cap");
        checkMapping(*response, QDateTime(QDate(2026, 11, 24), QTime(12, 0), QTimeZone::utc()));
        // Now at one of the answer's own hours, so the search for the current hour finds one.
        if (!response->hourly.time.isEmpty()) {
            const QString hour = response->hourly.time.at(response->hourly.time.size() / 2);
            checkMapping(*response,
                         QDateTime::fromString(hour.left(13), QStringLiteral("yyyy-MM-dd'T'HH")));
        }
    }

    if (const std::optional<tw::WxAirQuality> air = tw::WxAirQuality::fromAnswer(bytes)) {
        require(air->index >= 0, "a negative index");
        tw::WxAirQuality::title(air->band());
    }

    const QList<tw::GeoSuggestion> places = tw::GeoSuggestion::fromAnswer(bytes);
    require(places.size() <= tw::GeoSuggestion::maxResults, "places past the cap");
    for (const tw::GeoSuggestion& place : places) {
        require(!place.name.isEmpty(), "a place without a name");
        require(place.latitude >= -90 && place.latitude <= 90 && place.longitude >= -180 &&
                    place.longitude <= 180,
                "a place off the globe");
    }

    if (const std::optional<tw::IPLocation> place = tw::parseIPLocation(bytes)) {
        require(place->latitude >= -90 && place->latitude <= 90 && place->longitude >= -180 &&
                    place->longitude <= 180 && !(place->latitude == 0 && place->longitude == 0),
                "an address placed off the globe");
        tw::looksLikeProxy(place->organisation);
    }
    return 0;
}
