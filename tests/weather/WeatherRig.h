// A weather service's surroundings for tests: a real loopback server standing in for every
// weather and address service, the real HTTP client, virtual time and a scripted location.
#pragma once

#include "LoopbackHttpServer.h"
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "ScriptedLocationSource.h"
#include "WeatherAnswers.h"
#include "net/Endpoints.h"
#include "net/QtHttpClient.h"
#include "platform/null/MemoryDefaults.h"
#include "weather/WeatherService.h"

#include <QTest>
#include <QTimeZone>
#include <QUrlQuery>

namespace tw::test {

inline const QByteArray munich = R"({"city":"Munich","country_code":"DE","latitude":48.1374,
    "longitude":11.5755,"org":"Deutsche Telekom AG"})";
inline const QByteArray viaVpn = R"({"city":"Amsterdam","country_code":"NL","latitude":52.37,
    "longitude":4.89,"org":"Acme VPN Ltd"})";
inline const QByteArray airAnswer = R"({"current":{"european_aqi":23,"pm2_5":8.1,"pm10":12.4}})";

struct WeatherRig {
    LoopbackHttpServer server;
    ManualClock clock{QDateTime(QDate(2026, 11, 24), QTime(12, 0), QTimeZone::utc())};
    ManualScheduler scheduler{&clock};
    QtHttpClient http{scheduler};
    Endpoints endpoints = Endpoints::under(server.url(QString()).toString());
    MemoryDefaults defaults;
    ScriptedLocationSource location;

    WeatherRig() {
        server.route("/forecast/v1/forecast", LoopbackHttpServer::ok(forecastAnswer()));
        server.route("/air-quality/v1/air-quality", LoopbackHttpServer::ok(airAnswer));
        server.route("/ipapi/json/", LoopbackHttpServer::ok(munich));
        server.route("/ipwho/", LoopbackHttpServer::status(500));
        server.route("/ipinfo/json", LoopbackHttpServer::status(500));
    }

    WeatherService::Services services(LocationSource* source) {
        return {.http = http,
                .endpoints = endpoints,
                .clock = clock,
                .scheduler = scheduler,
                .defaults = defaults,
                .location = source};
    }

    // The latitudes the forecast was asked for, in order.
    QStringList forecastLatitudes() const {
        QStringList latitudes;
        for (const auto& request : server.requests()) {
            if (request.target.startsWith("/forecast/v1/forecast?")) {
                const QUrl url(QString::fromLatin1(request.target));
                latitudes << QUrlQuery(url).queryItemValue(QStringLiteral("latitude"));
            }
        }
        return latitudes;
    }
    int requestsTo(const QByteArray& path) const {
        int count = 0;
        for (const auto& request : server.requests()) {
            count += request.target.startsWith(path) ? 1 : 0;
        }
        return count;
    }
};

inline bool settles(const WeatherService& service) {
    return QTest::qWaitFor([&] { return !service.isRefreshing(); }, 10'000);
}

} // namespace tw::test
