#include "WeatherRig.h"
#include "weather/WeatherServices.h"

#include <QSignalSpy>
#include <QTest>

using namespace tw;
using namespace tw::test;

namespace {

WidgetSettings city(const char* latitude) {
    return {{QStringLiteral("location"), QStringLiteral("custom")},
            {QStringLiteral("locName"), QStringLiteral("Berlin")},
            {QStringLiteral("locLat"), QString::fromLatin1(latitude)},
            {QStringLiteral("locLon"), QStringLiteral("13.405")}};
}

} // namespace

class TestWeatherServices : public QObject {
    Q_OBJECT
private Q_SLOTS:
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

    void searchCities() {
        WeatherRig rig;
        rig.server.route("/geocoding/v1/search",
                         LoopbackHttpServer::ok(R"({"results":[{"id":2867714,"name":"Munich",
                             "latitude":48.137,"longitude":11.575,"country":"Germany",
                             "country_code":"DE","admin1":"Bavaria"}]})"));
        WeatherServices services(rig.services(nullptr));
        QObject requester;
        std::optional<QList<GeoSuggestion>> found;
        services.searchCities(QStringLiteral(" Ried & Co+ "), &requester,
                              [&](const QList<GeoSuggestion>& places, const QString& failure) {
                                  QVERIFY(failure.isEmpty());
                                  found = places;
                              });
        QVERIFY(QTest::qWaitFor([&] { return found.has_value(); }, 10'000));
        QCOMPARE(rig.server.requests().last().target,
                 QByteArray("/geocoding/v1/search?name=Ried%20%26%20Co%2B&count=6&format=json"));
        QCOMPARE(found->size(), 1);
        QCOMPARE(found->first().detail(), QStringLiteral("Bavaria, Germany"));

        rig.server.route("/geocoding/v1/search", LoopbackHttpServer::status(500));
        QString failed;
        services.searchCities(QStringLiteral("Munich"), &requester,
                              [&](const QList<GeoSuggestion>& places, const QString& failure) {
                                  QVERIFY(places.isEmpty());
                                  failed = failure;
                              });
        QVERIFY(QTest::qWaitFor([&] { return !failed.isEmpty(); }, 10'000));
        QCOMPARE(failed, QStringLiteral("Weather data unavailable"));
    }
};

QTEST_GUILESS_MAIN(TestWeatherServices)
#include "tst_weatherservices.moc"
