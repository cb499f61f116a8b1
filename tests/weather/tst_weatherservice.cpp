#include "TestRows.h"
#include "WeatherRig.h"
#include "weather/WeatherServices.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace std::chrono_literals;
using Auth = LocationSource::Authorization;
using Kind = WeatherState::Kind;

Q_DECLARE_METATYPE(tw::LocationSource::Authorization)
Q_DECLARE_METATYPE(tw::WeatherState::Kind)
Q_DECLARE_METATYPE(tw::LocationSource::Failure)
Q_DECLARE_METATYPE(tw::test::LoopbackHttpServer::Answer)

namespace {

const FixedLocation berlin{.latitude = 52.52,
                           .longitude = 13.405,
                           .name = QStringLiteral("Berlin"),
                           .countryCode = QStringLiteral("DE")};

bool becomes(const WeatherService& service, Kind kind, bool approximate) {
    return QTest::qWaitFor(
        [&] {
            return service.state().kind == kind &&
                   (kind != Kind::ready || service.state().live->approximate == approximate);
        },
        10'000);
}

WidgetSettings city(const char* latitude) {
    return {{QStringLiteral("location"), QStringLiteral("custom")},
            {QStringLiteral("locName"), QStringLiteral("Berlin")},
            {QStringLiteral("locLat"), QString::fromLatin1(latitude)},
            {QStringLiteral("locLon"), QStringLiteral("13.405")}};
}

} // namespace

class TestWeatherService : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Where the current place comes from: the permission, the prompt, and the address services
    // in their order; an empty answer stands for a provider that is down.
    void chain_data() {
        QTest::addColumn<Auth>("authorization");
        QTest::addColumn<bool>("hasSource");
        QTest::addColumn<bool>("userPlaced");
        QTest::addColumn<QByteArray>("ipapi");
        QTest::addColumn<QByteArray>("ipwho");
        QTest::addColumn<QByteArray>("ipinfo");
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<QString>("latitude");
        QTest::addColumn<int>("prompts");
        QTest::addColumn<QString>("log");
        const QByteArray down;
        const QByteArray loc = R"({"city":"Munich","country":"DE","loc":"48.13,11.58"})";
        row("denied uses the address", Auth::denied, true, false, munich, down, down, Kind::ready,
            "48.1374", 0, "authorization denied/restricted");
        row("no location service", Auth::restricted, false, false, munich, down, down, Kind::ready,
            "48.1374", 0, "");
        row("undetermined, no tile placed", Auth::notDetermined, true, false, munich, down, down,
            Kind::ready, "48.1374", 0, "");
        row("undetermined, a tile placed", Auth::notDetermined, true, true, munich, down, down,
            Kind::ready, "48.1374", 1, "");
        row("down, VPN, then loc", Auth::denied, true, false, down, viaVpn, loc, Kind::ready,
            "48.1300", 0, "IP provider ipwho names a proxy network");
        row("VPN everywhere", Auth::notDetermined, true, false, viaVpn, viaVpn, viaVpn,
            Kind::noLocation, "", 0, "VPN, relay or hosting network");
        row("VPN everywhere, denied", Auth::denied, true, false, viaVpn, viaVpn, viaVpn,
            Kind::permissionDenied, "", 0, "VPN, relay or hosting network");
        row("null island refused", Auth::notDetermined, true, false,
            QByteArray(R"({"latitude":0,"longitude":0})"), down, down, Kind::noLocation, "", 0,
            "no approximate location$");
    }
    void chain() {
        QFETCH(Auth, authorization);
        QFETCH(bool, hasSource);
        QFETCH(bool, userPlaced);
        QFETCH(QByteArray, ipapi);
        QFETCH(QByteArray, ipwho);
        QFETCH(QByteArray, ipinfo);
        QFETCH(Kind, kind);
        QFETCH(QString, latitude);
        QFETCH(QString, log);
        WeatherRig rig;
        const auto answer = [](const QByteArray& body) {
            return body.isEmpty() ? LoopbackHttpServer::status(503) : LoopbackHttpServer::ok(body);
        };
        rig.server.route("/ipapi/json/", answer(ipapi));
        rig.server.route("/ipwho/", answer(ipwho));
        rig.server.route("/ipinfo/json", answer(ipinfo));
        rig.defaults.setValue(WeatherService::userPlacedKey, userPlaced);
        rig.location.setAuthorization(authorization);
        if (!log.isEmpty()) {
            QTest::ignoreMessage(QtInfoMsg, QRegularExpression(log));
        }
        WeatherService service(rig.services(hasSource ? &rig.location : nullptr));
        service.refreshIfStale(rig.clock.now());
        QCOMPARE(service.state().kind, Kind::loading);
        QVERIFY(settles(service));

        QCOMPARE(service.state().kind, kind);
        QCOMPARE(rig.forecastLatitudes(),
                 latitude.isEmpty() ? QStringList() : QStringList{latitude});
        QTEST(rig.location.authorizationRequests, "prompts");
        QCOMPARE(rig.location.locationRequests, 0);
        if (kind == Kind::ready) {
            const WxLive& live = *service.state().live;
            QVERIFY(live.approximate);
            QCOMPARE(live.city, QStringLiteral("Munich"));
            QCOMPARE(live.countryCode, QStringLiteral("DE"));
            QCOMPARE(live.air->index, 23);
            QCOMPARE(service.lastGood(), service.state().live);
        }
    }

    // Authorized with no fix after four seconds: the address bridges, then the fix replaces it,
    // named after the address's city only when that lies near.
    void fixReplacesBridge_data() {
        QTest::addColumn<double>("latitude");
        QTest::addColumn<double>("longitude");
        QTest::addColumn<QString>("city");
        QTest::addColumn<bool>("addressFound");
        row("near the address", 48.2, 11.6, "Munich", true);
        row("far from it", 52.52, 13.405, "Current Location", true);
        row("no address to bridge with", 52.52, 13.405, "Current Location", false);
    }
    void fixReplacesBridge() {
        QFETCH(double, latitude);
        QFETCH(double, longitude);
        QFETCH(QString, city);
        QFETCH(bool, addressFound);
        WeatherRig rig;
        if (!addressFound) {
            rig.server.route("/ipapi/json/", LoopbackHttpServer::status(500));
        }
        rig.location.setAuthorization(Auth::authorized);
        WeatherService service(rig.services(&rig.location));
        service.refreshIfStale(rig.clock.now());
        QCOMPARE(rig.location.locationRequests, 1);
        rig.scheduler.advance(3900ms);
        QTest::qWait(50);
        QVERIFY(rig.server.requests().isEmpty());

        rig.scheduler.advance(100ms);
        QVERIFY(becomes(service, addressFound ? Kind::ready : Kind::noLocation, true));
        QVERIFY(service.isRefreshing());
        QVERIFY(!service.lastGoodIsPrecise());

        rig.location.resolve(latitude, longitude);
        QVERIFY(becomes(service, Kind::ready, false));
        QVERIFY(!service.isRefreshing());
        QVERIFY(service.lastGoodIsPrecise());
        QCOMPARE(service.state().live->city, city);
        QStringList fetched{QString::asprintf("%.4f", latitude)};
        if (addressFound) {
            fetched.prepend(QStringLiteral("48.1374"));
        }
        QCOMPARE(rig.forecastLatitudes(), fetched);
        QCOMPARE(service.lastCoordinate(), (QPair<double, double>(latitude, longitude)));
    }

    // The fix arrives while the bridge's address lookup is still under way: the late lookup
    // belongs to an older attempt and fetches nothing.
    void staleAnswerDropped() {
        WeatherRig rig;
        rig.server.route("/ipapi/json/", LoopbackHttpServer::trickle(munich));
        rig.location.setAuthorization(Auth::authorized);
        WeatherService service(rig.services(&rig.location));
        service.refreshIfStale(rig.clock.now());
        rig.scheduler.advance(4s);
        QVERIFY(QTest::qWaitFor([&] { return rig.requestsTo("/ipapi/") == 1; }, 5000));
        rig.location.resolve(52.52, 13.405);
        QVERIFY(becomes(service, Kind::ready, false));
        QVERIFY(QTest::qWaitFor([&] { return rig.requestsTo("/ipapi/") == 2; }, 5000));
        QTest::qWait(300);
        QCOMPARE(rig.forecastLatitudes(), QStringList{QStringLiteral("52.5200")});
        QCOMPARE(service.state().live->city, QStringLiteral("Current Location"));
    }

    // What a failed fix falls back to.
    void fixFails_data() {
        QTest::addColumn<LocationSource::Failure>("failure");
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<bool>("updating");
        row("unknown: keep listening", LocationSource::Failure::locationUnknown, Kind::loading,
            true);
        row("denied mid-request", LocationSource::Failure::denied, Kind::ready, false);
    }
    void fixFails() {
        QFETCH(LocationSource::Failure, failure);
        QFETCH(Kind, kind);
        QFETCH(bool, updating);
        WeatherRig rig;
        rig.location.setAuthorization(Auth::authorized);
        WeatherService service(rig.services(&rig.location));
        service.refreshIfStale(rig.clock.now());
        rig.location.fail(failure);
        QCOMPARE(rig.location.updating, updating);
        if (kind == Kind::ready) {
            QVERIFY(becomes(service, Kind::ready, true));
        } else {
            QTest::qWait(100);
            QCOMPARE(service.state().kind, kind);
            rig.location.resolve(52.52, 13.405);
            QVERIFY(!rig.location.updating);
            QVERIFY(becomes(service, Kind::ready, false));
        }
    }

    // The person asks for the precise place: the system is asked, or the refusal is told.
    void preciseLocation_data() {
        QTest::addColumn<Auth>("authorization");
        QTest::addColumn<QString>("log");
        QTest::addColumn<int>("prompts");
        QTest::addColumn<int>("fixes");
        row("undetermined", Auth::notDetermined, "user requested precise location — prompting", 1,
            0);
        row("refused", Auth::denied, "precise location denied — opening System Settings", 0, 0);
        row("allowed", Auth::authorized, "requesting one-shot location fix", 0, 1);
    }
    void preciseLocation() {
        QFETCH(Auth, authorization);
        QFETCH(QString, log);
        WeatherRig rig;
        rig.location.setAuthorization(authorization);
        WeatherService service(rig.services(&rig.location));
        QSignalSpy refused(&service, &WeatherService::preciseLocationRefused);
        QTest::ignoreMessage(QtInfoMsg, qPrintable(log));
        service.requestPreciseLocation();
        QTEST(rig.location.authorizationRequests, "prompts");
        QTEST(rig.location.locationRequests, "fixes");
        QCOMPARE(refused.size(), authorization == Auth::denied ? 1 : 0);
    }

    // A good forecast is asked for again after 30 minutes, a failed one after 3.
    void pace_data() {
        QTest::addColumn<bool>("good");
        QTest::addColumn<int>("seconds");
        QTest::addColumn<bool>("again");
        row("good, not yet", true, 1799, false);
        row("good, due", true, 1800, true);
        row("failed, not yet", false, 179, false);
        row("failed, due", false, 180, true);
    }
    void pace() {
        QFETCH(bool, good);
        QFETCH(int, seconds);
        QFETCH(bool, again);
        WeatherRig rig;
        if (!good) {
            rig.server.route("/forecast/v1/forecast", LoopbackHttpServer::status(500));
        }
        // Without air quality the forecast still stands.
        rig.server.route("/air-quality/v1/air-quality", LoopbackHttpServer::status(500));
        WeatherService service(rig.services(nullptr), berlin);
        service.refreshIfStale(rig.clock.now());
        QVERIFY(settles(service));
        QCOMPARE(service.state().kind, good ? Kind::ready : Kind::error);
        if (good) {
            QCOMPARE(service.state().live->city, QStringLiteral("Berlin"));
            QVERIFY(!service.state().live->air);
        }
        rig.clock.advance(std::chrono::seconds(seconds));
        service.refreshIfStale(rig.clock.now());
        QCOMPARE(service.isRefreshing(), again);
        QVERIFY(settles(service));
        QCOMPARE(rig.requestsTo("/forecast/"), again ? 2 : 1);
    }

    // An attempt that hangs longer than 120 seconds is given up.
    void hung_data() {
        QTest::addColumn<bool>("fixed");
        QTest::addColumn<QString>("log");
        row("fixed city", true, "fixed-city fetch timed out after 121s — will retry");
        row("current place", false,
            "in-flight refresh timed out after 121s — using approximate IP location");
    }
    void hung() {
        QFETCH(bool, fixed);
        QFETCH(QString, log);
        WeatherRig rig;
        rig.server.route(fixed ? "/forecast/v1/forecast" : "/ipapi/json/",
                         LoopbackHttpServer::stall());
        rig.location.setAuthorization(Auth::denied);
        WeatherService service(rig.services(&rig.location),
                               fixed ? std::optional(berlin) : std::nullopt);
        service.refreshIfStale(rig.clock.now());
        rig.clock.advance(120s);
        service.refreshIfStale(rig.clock.now());
        QVERIFY(
            QTest::qWaitFor([&] { return rig.server.requests().size() == (fixed ? 2 : 1); }, 5000));

        rig.clock.advance(1s);
        QTest::ignoreMessage(QtInfoMsg, qPrintable(log));
        service.refreshIfStale(rig.clock.now());
        if (fixed) {
            QVERIFY(!service.isRefreshing());
            QCOMPARE(service.state(), WeatherState::error(QStringLiteral("Request timed out")));
        } else {
            QVERIFY(service.isRefreshing());
            QVERIFY(QTest::qWaitFor([&] { return rig.requestsTo("/ipapi/") == 2; }, 5000));
            // The fallback is an attempt of its own, not given up on the next tick.
            rig.clock.advance(1s);
            service.refreshIfStale(rig.clock.now());
            QTest::qWait(50);
            QCOMPARE(rig.requestsTo("/ipapi/"), 2);
        }
    }

    // Every failure shows its words and keeps the last good forecast.
    void failures_data() {
        QTest::addColumn<LoopbackHttpServer::Answer>("answer");
        QTest::addColumn<QString>("message");
        row("timeout", LoopbackHttpServer::stall(), "Request timed out");
        row("connection lost", LoopbackHttpServer::drop(forecastAnswer()), "You’re offline");
        row("server error", LoopbackHttpServer::status(500, forecastAnswer()),
            "Weather data unavailable");
        row("garbage", LoopbackHttpServer::garbage(), "Network error");
        row("huge", LoopbackHttpServer::huge(8 * 1024 * 1024), "Weather data unavailable");
        row("no forecast in it", LoopbackHttpServer::ok(R"({"current":{}})"),
            "Weather data unavailable");
    }
    void failures() {
        QFETCH(LoopbackHttpServer::Answer, answer);
        QFETCH(QString, message);
        WeatherRig rig;
        WeatherService service(rig.services(nullptr), berlin);
        service.refreshIfStale(rig.clock.now());
        QVERIFY(settles(service));
        const std::optional<WxLive> good = service.lastGood();
        QVERIFY(good);

        rig.server.route("/forecast/v1/forecast", answer);
        rig.clock.advance(WeatherService::goodFor);
        service.refreshIfStale(rig.clock.now());
        QVERIFY(QTest::qWaitFor([&] { return rig.requestsTo("/forecast/") == 2; }, 5000));
        if (answer.kind == LoopbackHttpServer::Answer::Kind::Stall) {
            rig.scheduler.advance(WeatherService::fetchTimeout);
        }
        QVERIFY(settles(service));
        QCOMPARE(service.state(), WeatherState::error(message));
        QCOMPARE(service.lastGood(), good);
    }

    // Tiles of one place, to four decimals, cost one fetch; only places in view are fetched.
    void placesShareOneFetch() {
        WeatherRig rig;
        WeatherServices services(rig.services(nullptr));
        QSignalSpy changed(&services, &WeatherServices::boardChanged);
        services.refresh(rig.clock.now(), {});
        QTest::qWait(50);
        QVERIFY(rig.server.requests().isEmpty());

        const QList<WidgetSettings> inView{
            city("52.5200"), city("52.52004"), city("52.5201"), {}, {}, city("52.5200")};
        services.refresh(rig.clock.now(), inView);
        const auto allReady = [&] {
            for (const WidgetSettings& settings : inView) {
                const WeatherPlace* place = services.board().place(settings);
                if (place == nullptr || place->state.kind != WeatherState::Kind::ready) {
                    return false;
                }
            }
            return true;
        };
        QVERIFY(QTest::qWaitFor(allReady, 10'000));
        QCOMPARE(services.board().places.size(), 3);
        QCOMPARE(&services.service(city("52.52004")), &services.service(city("52.5200")));
        QCOMPARE(&services.service({}), &services.shared());
        QStringList latitudes = rig.forecastLatitudes();
        latitudes.sort();
        QCOMPARE(latitudes, (QStringList{QStringLiteral("48.1374"), QStringLiteral("52.5200"),
                                         QStringLiteral("52.5201")}));
        const WeatherPlace* berlin = services.board().place(city("52.5201"));
        QCOMPARE(berlin->latitude, 52.5201);
        QCOMPARE(berlin->lastGood, berlin->state.live);
        QVERIFY(changed.size() >= 3);

        // Fresh data: ticks ask nothing more.
        services.refresh(rig.clock.now(), inView);
        QTest::qWait(50);
        QCOMPARE(rig.forecastLatitudes().size(), 3);
    }

    void forecastQuery() {
        const Endpoints endpoints = Endpoints::under(QStringLiteral("http://127.0.0.1:9"));
        QCOMPARE(WeatherService::forecastURL(endpoints, 52.52004, -0.12).toString(),
                 QStringLiteral("http://127.0.0.1:9/forecast/v1/forecast?latitude=52.5200&"
                                "longitude=-0.1200&current=temperature_2m,apparent_temperature,"
                                "weather_code,is_day&hourly=temperature_2m,weather_code&daily="
                                "temperature_2m_max,temperature_2m_min,weather_code,sunrise,"
                                "sunset&forecast_days=8&timezone=auto"));
        QCOMPARE(WeatherService::airQualityURL(endpoints, 48.13744, 11.5755).query(),
                 QStringLiteral("latitude=48.1374&longitude=11.5755&current=european_aqi,pm2_5,"
                                "pm10"));
    }

    // The name is sent trimmed and escaped; what comes back is read and shown by the settings
    // page's test.
    void searchCities() {
        WeatherRig rig;
        rig.server.route("/geocoding/v1/search", LoopbackHttpServer::ok(R"({"results":[]})"));
        WeatherServices services(rig.services(nullptr));
        QObject requester;
        bool answered = false;
        services.searchCities(QStringLiteral(" Ried & Co+ "), &requester,
                              [&](const QList<GeoSuggestion>&, const QString& failure) {
                                  QVERIFY(failure.isEmpty());
                                  answered = true;
                              });
        QVERIFY(QTest::qWaitFor([&] { return answered; }, 10'000));
        QCOMPARE(rig.server.requests().last().target,
                 QByteArray("/geocoding/v1/search?name=Ried%20%26%20Co%2B&count=6&format=json"));
    }
};

QTEST_GUILESS_MAIN(TestWeatherService)
#include "tst_weatherservice.moc"
