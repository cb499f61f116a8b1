// The services' answers, read leniently: the forecast and how it maps to a tile's forecast, the
// air quality, the city search and the address services; then the tile's forecast itself:
// conditions and scenes from the service's codes, the reading a face draws, Fahrenheit and night;
// and the sky's mathematics: the moon's phases and light, the subsolar point, rises and sets of
// both bodies against an independent reference, and the sky report's reading of its arguments.
#include "SkyReference.h"
#include "TarnwickProcess.h"
#include "TestRows.h"
#include "WeatherAnswers.h"
#include "settings/Localization.h"
#include "weather/ForecastMapping.h"
#include "weather/GeoSuggestion.h"
#include "weather/IPLocation.h"
#include "weather/MockForecast.h"
#include "weather/MoonMath.h"
#include "weather/SkyReport.h"
#include "weather/SunGeometry.h"
#include "weather/WxAirQuality.h"
#include "weather/WxCondition.h"
#include "weather/WxReading.h"
#include "weather/WxScene.h"

#include <QTest>
#include <QTimeZone>

#include <ctime>
#include <numbers>

using namespace tw;
using namespace tw::test;
using namespace Qt::StringLiterals;

using Band = WxAirQuality::Band;

namespace {

// An ISO 8601 moment, in UTC when it names no offset.
QDateTime utc(const char* text) {
    QDateTime at = QDateTime::fromString(QString::fromLatin1(text), Qt::ISODate);
    if (at.timeSpec() == Qt::LocalTime) {
        at.setTimeZone(QTimeZone::utc());
    }
    return at.toUTC();
}

std::optional<WxLive> mapped(const QString& path, const QByteArray& value, const QDateTime& now) {
    const std::optional<OMResponse> response =
        OMResponse::fromAnswer(answerWith(forecastAnswer(), path, value));
    return response ? mapResponse(*response, now) : std::nullopt;
}

QString labels(const WxLive& live) {
    QStringList all;
    for (const WxLiveHour& hour : live.hourly) {
        all.append(hour.label);
    }
    return all.join(u',');
}

const QByteArray airQuality =
    R"({"latitude":52.52,"longitude":13.42,"current_units":{"pm10":"μg/m³"},
    "current":{"time":"2026-11-24T12:00","interval":3600,"european_aqi":37,"pm2_5":9.4,"pm10":14.1}})";

const QByteArray cities = R"({"results":[
    {"id":2950159,"name":"Berlin","latitude":52.52437,"longitude":13.41053,"country_code":"DE",
     "admin1":"Land Berlin","country":"Deutschland","population":3426354},
    {"id":5083330,"name":"Berlin","latitude":44.46867,"longitude":-71.18508,"country_code":"US",
     "admin1":"New Hampshire","country":"United States"}],"generationtime_ms":0.9})";

QString summary(const QList<GeoSuggestion>& suggestions) {
    QStringList lines;
    for (const GeoSuggestion& s : suggestions) {
        lines.append(u"%1 %2 (%3) %4 %5,%6"_s.arg(s.id)
                         .arg(s.name, s.detail(), s.countryCode.value_or(u"-"_s))
                         .arg(s.latitude)
                         .arg(s.longitude));
    }
    return lines.join(u'|');
}

// A forecast with the figures the conversions care about.
WxLive sampleLive() {
    WxLive live;
    live.temp = -18;
    live.feels = -40;
    live.hi = 37;
    live.lo = -1;
    live.hourly = {{u"Now"_s, WxCondition::clear, 20}, {u"01"_s, WxCondition::rain, -18}};
    live.daily = {{QDate(2026, 11, 25), WxCondition::snow, -3, 2},
                  {QDate(2026, 11, 26), WxCondition::clouds, 0, 100}};
    live.air = WxAirQuality{42, 8.5, 12};
    return live;
}

constexpr double degree = std::numbers::pi / 180;

// The bounds below are the worst distances from the reference measured over whole years, not
// what a tile would like: the moon's series are short, the sun's longitude stays in the frame of
// the year 2000 while the moon's moves on (the phases come most of an hour early, and more each
// year), the moon's horizon counts no parallax, and the subsolar point is a calendar
// approximation without the equation of time. src/weather/README.md keeps the figures.
constexpr double phaseMinutes = 78;
constexpr double sunRiseSetSeconds = 60;
constexpr double subsolarLatitudeDegrees = 1.36;
constexpr double subsolarLongitudeDegrees = 4.12;

} // namespace

class TestForecast : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        // The machine nine hours ahead, so that its hour is never the place's by accident.
        qputenv("TZ", "Asia/Tokyo");
        tzset();
    }

    void mapsTheWholeAnswer() {
        const std::optional<WxLive> live = mapped({}, {}, utc("2026-11-24T12:10:00Z"));
        QVERIFY(live);
        QCOMPARE(live->city, u"Current Location"_s);
        QCOMPARE(live->temp, 0);
        QCOMPARE(live->feels, -4);
        QCOMPARE(live->hi, 6);
        QCOMPARE(live->lo, -1);
        QCOMPARE(live->condition, WxCondition::snow);
        QCOMPARE(live->code, std::optional<int>(71));
        QCOMPARE(live->isDay, false);
        QCOMPARE(live->sunrise.value_or(QDateTime()), utc("2026-11-24T06:45:00Z"));
        QCOMPARE(live->sunset.value_or(QDateTime()), utc("2026-11-24T15:30:00Z"));
        QCOMPARE(live->hourly.first(), (WxLiveHour{u"Now"_s, WxCondition::rain, 7}));
        QCOMPARE(live->daily.size(), 7);
        QCOMPARE(live->daily.first(), (WxLiveDay{QDate(2026, 11, 25), WxCondition::clear, -2, 7}));
        QCOMPARE(live->daily.last().date, QDate(2026, 12, 1));
        QVERIFY(!live->air);
        QCOMPARE(live->approximate, false);
    }

    // The hours start at the place's current hour, go at most 12 and never past the shortest list.
    void picksTheHours_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<QDateTime>("now");
        QTest::addColumn<QString>("labels");
        QTest::addColumn<int>("firstTemp");
        const QDateTime lateEvening = utc("2026-11-24T22:40:00Z");
        row("23:40 goes on into the next day", u""_s, QByteArray(), lateEvening,
            u"Now,00,01,02,03,04,05,06,07,08,09,10"_s, 12);
        row("the place's hour, not the machine's", u"utc_offset_seconds"_s, QByteArray("-18000"),
            utc("2026-11-24T15:10:00Z"), u"Now,11,12,13,14,15,16,17,18,19,20,21"_s, 5);
        const QDateTime morning = utc("2026-11-24T00:30:00Z");
        const QString fromNine = u"Now,10,11,12,13,14,15,16,17,18,19,20"_s;
        row("no offset: the machine's", u"utc_offset_seconds"_s, QByteArray(), morning, fromNine,
            5);
        row("an offset as text is none", u"utc_offset_seconds"_s, QByteArray("\"3600\""), morning,
            fromNine, 5);
        row("an offset no zone has", u"utc_offset_seconds"_s, QByteArray("999999"), morning,
            fromNine, 5);
        row("an hour not in the list starts at the first", u""_s, QByteArray(),
            utc("2026-12-30T10:00:00Z"), u"Now,01,02,03,04,05,06,07,08,09,10,11"_s, 0);
        row("near the end of the list", u""_s, QByteArray(), utc("2026-11-25T15:05:00Z"),
            u"Now,17,18,19,20,21,22,23"_s, 20);
        const QDateTime firstHour = utc("2026-11-23T23:10:00Z");
        row("the shortest list decides, half away from zero", u"hourly.temperature_2m"_s,
            QByteArray("[-2.5,2.5,1]"), firstHour, u"Now,01,02"_s, -3);
        row("a null ends the list", u"hourly.temperature_2m"_s, QByteArray("[1,2,null,4]"),
            firstHour, u"Now,01"_s, 1);
        row("a code with a fraction ends the list", u"hourly.weather_code"_s,
            QByteArray("[0,61.5]"), firstHour, u"Now"_s, 0);
        row("a short time text", u"hourly.time"_s, QByteArray(R"(["2026","2026-11-24T1"])"),
            firstHour, u"Now,1"_s, 0);
    }
    void picksTheHours() {
        QFETCH(QString, path);
        QFETCH(QByteArray, value);
        QFETCH(QDateTime, now);
        const std::optional<WxLive> live = mapped(path, value, now);
        QVERIFY(live);
        QTEST(labels(*live), "labels");
        QTEST(live->hourly.first().temp, "firstTemp");
    }

    void picksTheDays_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<int>("count");
        QTest::addColumn<QDate>("first");
        row("an unparsable date is skipped", u"daily.time"_s,
            QByteArray(R"(["2026-11-24","25.11.2026","2026-11-26"])"), 1, QDate(2026, 11, 26));
        row("fewer than two codes: none", u"daily.weather_code"_s, QByteArray("[1]"), 0, QDate());
        row("a minimum as text ends its list", u"daily.temperature_2m_min"_s,
            QByteArray(R"([1,2,"3",4])"), 1, QDate(2026, 11, 25));
        row("more than the service sends", u"daily.time"_s,
            QByteArray(R"(["2026-11-24","2026-11-25","2026-11-26","2026-11-27","2026-11-28",)"
                       R"("2026-11-29","2026-11-30","2026-12-01","2026-12-02","2026-12-03"])"),
            7, QDate(2026, 11, 25));
    }
    void picksTheDays() {
        QFETCH(QString, path);
        QFETCH(QByteArray, value);
        const std::optional<WxLive> live = mapped(path, value, utc("2026-11-24T12:00:00Z"));
        QVERIFY(live);
        QTEST(int(live->daily.size()), "count");
        QTEST(live->daily.value(0).date, "first");
    }

    void readsMissingAndOddFieldsLeniently_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<int>("feels");
        QTest::addColumn<bool>("isDay");
        QTest::addColumn<bool>("hasSunrise");
        row("no apparent temperature: the temperature", u"current.apparent_temperature"_s,
            QByteArray(), 0, false, true);
        row("is_day as text: day", u"current.is_day"_s, QByteArray("\"no\""), -4, true, true);
        row("sunrise without a date", u"daily.sunrise"_s, QByteArray(R"(["07:45"])"), -4, false,
            false);
        row("sunrise not a list", u"daily.sunrise"_s, QByteArray("\"2026-11-24T07:45\""), -4, false,
            false);
        row("sunrise a minute too many", u"daily.sunrise"_s, QByteArray(R"(["2026-11-24T07:61"])"),
            -4, false, false);
    }
    void readsMissingAndOddFieldsLeniently() {
        QFETCH(QString, path);
        QFETCH(QByteArray, value);
        const std::optional<WxLive> live = mapped(path, value, utc("2026-11-24T12:00:00Z"));
        QVERIFY(live);
        QTEST(live->feels, "feels");
        QTEST(live->isDay, "isDay");
        QTEST(live->sunrise.has_value(), "hasSunrise");
    }

    void refusesMalformedAnswers_data() {
        QTest::addColumn<QByteArray>("body");
        const auto with = [](const QString& path, const QByteArray& value) {
            return answerWith(forecastAnswer(), path, value);
        };
        row("no daily maxima", with(u"daily.temperature_2m_max"_s, "[]"));
        row("no daily minima", with(u"daily.temperature_2m_min"_s, {}));
        row("no current block", with(u"current"_s, {}));
        row("a current temperature as text", with(u"current.temperature_2m"_s, "\"3\""));
        row("no hours", with(u"hourly.time"_s, "[]"));
        row("hourly codes as text", with(u"hourly.weather_code"_s, R"(["0"])"));
        row("an array", QByteArray("[{}]"));
        row("cut short", forecastAnswer().left(200));
    }
    void refusesMalformedAnswers() {
        QFETCH(QByteArray, body);
        const std::optional<OMResponse> response = OMResponse::fromAnswer(body);
        QVERIFY(!response || !mapResponse(*response, utc("2026-11-24T12:00:00Z")));
    }

    void airQualityBands_data() {
        QTest::addColumn<QList<int>>("indices");
        QTest::addColumn<Band>("band");
        row("good", QList<int>{-3, 0, 19}, Band::good);
        row("fair", QList<int>{20, 39}, Band::fair);
        row("moderate", QList<int>{40, 59}, Band::moderate);
        row("poor", QList<int>{60, 79}, Band::poor);
        row("very poor", QList<int>{80, 99}, Band::veryPoor);
        row("extreme", QList<int>{100, 500}, Band::extreme);
    }
    void airQualityBands() {
        QFETCH(QList<int>, indices);
        QFETCH(Band, band);
        for (int index : indices) {
            QVERIFY2((WxAirQuality{index, 0, 0}.band() == band),
                     qPrintable(QString::number(index)));
        }
    }

    void decodesAirQuality_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<std::optional<WxAirQuality>>("air");
        row("as sent", u""_s, QByteArray(), std::optional(WxAirQuality{37, 9.4, 14.1}));
        row("no particles", u"current.pm2_5"_s, QByteArray(),
            std::optional(WxAirQuality{37, 0, 14.1}));
        row("particles as text", u"current.pm10"_s, QByteArray("\"14\""),
            std::optional(WxAirQuality{37, 9.4, 0}));
        row("no index", u"current.european_aqi"_s, QByteArray(), std::optional<WxAirQuality>());
        row("index with a fraction", u"current.european_aqi"_s, QByteArray("37.5"),
            std::optional<WxAirQuality>());
        row("index below zero", u"current.european_aqi"_s, QByteArray("-1"),
            std::optional<WxAirQuality>());
        row("current not an object", u"current"_s, QByteArray("[37]"),
            std::optional<WxAirQuality>());
    }
    void decodesAirQuality() {
        QFETCH(QString, path);
        QFETCH(QByteArray, value);
        QFETCH(std::optional<WxAirQuality>, air);
        QVERIFY(WxAirQuality::fromAnswer(answerWith(airQuality, path, value)) == air);
    }

    void decodesCities_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<QString>("summary");
        const QString second =
            u"5083330 Berlin (New Hampshire, United States) US 44.4687,-71.1851"_s;
        row("as sent", u""_s, QByteArray(),
            u"2950159 Berlin (Land Berlin, Deutschland) DE 52.5244,13.4105|"_s + second);
        row("no id, no region, code as a number", u"results"_s,
            QByteArray(R"([{"name":"Oslo","latitude":59.9,"longitude":10.7,"country":"Norge",)"
                       R"("country_code":47}])"),
            u"0 Oslo (Norge) - 59.9,10.7"_s);
        row("left out: no name, coordinates as text or off the globe", u"results"_s,
            QByteArray(R"([{"latitude":1,"longitude":1},{"name":"A","latitude":"1","longitude":1},)"
                       R"({"name":"B","latitude":90.5,"longitude":1},"Berlin",)"
                       R"({"id":7,"name":"C","latitude":-90,"longitude":180}])"),
            u"7 C () - -90,180"_s);
        row("no results", u"results"_s, QByteArray(), u""_s);
        row("results not a list", u"results"_s, QByteArray(R"({"name":"Berlin"})"), u""_s);
    }
    void decodesCities() {
        QFETCH(QString, path);
        QFETCH(QByteArray, value);
        QTEST(summary(GeoSuggestion::fromAnswer(answerWith(cities, path, value))), "summary");
    }

    void keepsAtMostSixCities() {
        QByteArray many = R"({"results":[)";
        for (int i = 0; i < 50; ++i) {
            many += (i > 0 ? "," : "") + QByteArray(R"({"name":"P","latitude":1,"longitude":2})");
        }
        const QList<GeoSuggestion> suggestions = GeoSuggestion::fromAnswer(many + "]}");
        QCOMPARE(suggestions.size(), GeoSuggestion::maxResults);
        QCOMPARE(suggestions.last().id, 5);
    }

    // Expected "lat,lon|city|country|organisation", or "" for no location.
    void decodesAnAddress_data() {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("expected");
        row("ipapi", QByteArray(R"({"city":"Munich","country":"DE","country_code":"DE",
            "latitude":48.1374,"longitude":11.5755,"org":"Deutsche Telekom AG"})"),
            "48.1374,11.5755|Munich|DE|Deutsche Telekom AG");
        row("ipwho", QByteArray(R"({"success":true,"city":"Lyon","country":"France",
            "country_code":"FR","latitude":"45.76","longitude":"4.84",
            "connection":{"isp":"Orange S.A."}})"),
            "45.76,4.84|Lyon|FR|Orange S.A.");
        row("ipinfo loc", QByteArray(R"({"city":"Munich","country":"DE","loc":"48.13,11.58",
            "org":"AS3320 Deutsche Telekom AG"})"),
            "48.13,11.58|Munich|DE|AS3320 Deutsche Telekom AG");
        row("countryCode key, isp last", QByteArray(R"({"lat":1,"latitude":10,"longitude":20,
            "countryCode":"NL","country":"Netherlands","isp":"KPN","city":""})"),
            "10,20||NL|KPN");
        row("country of three letters", QByteArray(R"({"latitude":10,"longitude":20,
            "country":"DEU"})"),
            "10,20|||");
        row("success false", QByteArray(R"({"success":false,"latitude":10,"longitude":20})"), "");
        row("zero zero", QByteArray(R"({"latitude":0,"longitude":0,"city":"Null Island"})"), "");
        row("latitude off the globe", QByteArray(R"({"latitude":90.5,"longitude":20})"), "");
        row("longitude off the globe", QByteArray(R"({"loc":"10,-180.1"})"), "");
        row("words for numbers", QByteArray(R"({"latitude":"north","longitude":"east"})"), "");
        row("no object", QByteArray("[48.13,11.58]"), "");
    }
    void decodesAnAddress() {
        QFETCH(QByteArray, answer);
        const std::optional<IPLocation> place = parseIPLocation(answer);
        const QString got = place
                                ? QStringLiteral("%1,%2|%3|%4|%5")
                                      .arg(place->latitude)
                                      .arg(place->longitude)
                                      .arg(place->city.value_or(QString()),
                                           place->country.value_or(QString()), place->organisation)
                                : QString();
        QTEST(got, "expected");
    }

    void tellsAProxy_data() {
        QTest::addColumn<QString>("organisation");
        QTest::addColumn<bool>("proxy");
        row("a VPN by its word", "Acme VPN Ltd", true);
        row("upper case relay", "iCloud Private Relay", true);
        row("hosting", "Some Hosting GmbH", true);
        row("tor with its space", "Tor Exit Relays", true);
        row("tor inside a word", "Motorola Mobility", false);
        row("a home provider", "Deutsche Telekom AG", false);
        row("none", "", false);
    }
    void tellsAProxy() {
        QFETCH(QString, organisation);
        QTEST(looksLikeProxy(organisation), "proxy");
    }

    void measuresDistances() {
        // Munich to Berlin is about 504 km; a degree of latitude about 111 km.
        QVERIFY(qAbs(distanceKm(48.137, 11.575, 52.520, 13.405) - 504) < 5);
        QVERIFY(qAbs(distanceKm(10, 20, 11, 20) - 111.2) < 0.5);
        QCOMPARE(distanceKm(10, 20, 10, 20), 0.0);
    }

    void mapsWmoCodes_data() {
        QTest::addColumn<QList<int>>("codes");
        QTest::addColumn<WxCondition>("condition");
        row("clear sky", QList<int>{0, 1}, WxCondition::clear);
        row("cloud and fog", QList<int>{2, 3, 45, 48}, WxCondition::clouds);
        row("drizzle and rain", QList<int>{51, 55, 61, 66, 67}, WxCondition::rain);
        row("snow", QList<int>{71, 75, 77, 85, 86}, WxCondition::snow);
        row("showers and storms", QList<int>{80, 81, 82, 95, 96, 99}, WxCondition::rain);
        row("codes between", QList<int>{4, 44, 49, 50, 68, 70, 78, 79, 83, 84, 87, 90, 94},
            WxCondition::clouds);
        row("codes outside", QList<int>{-1, 100, 2147483647}, WxCondition::clouds);
    }
    void mapsWmoCodes() {
        QFETCH(QList<int>, codes);
        QFETCH(WxCondition, condition);
        for (int code : codes) {
            QVERIFY2(conditionForWmoCode(code) == condition, qPrintable(QString::number(code)));
        }
    }

    void showsTheMoonOnlyForAClearNight_data() {
        QTest::addColumn<WxCondition>("condition");
        QTest::addColumn<bool>("night");
        QTest::addColumn<QString>("symbol");
        row("clear day", WxCondition::clear, false, u"sun.max.fill"_s);
        row("clear night", WxCondition::clear, true, u"moon.stars.fill"_s);
        row("cloudy night", WxCondition::clouds, true, u"cloud.sun.fill"_s);
    }
    void showsTheMoonOnlyForAClearNight() {
        QFETCH(WxCondition, condition);
        QFETCH(bool, night);
        QTEST(conditionSymbol(condition, night), "symbol");
    }

    void scenes_data() {
        QTest::addColumn<WxCondition>("condition");
        QTest::addColumn<std::optional<int>>("code");
        QTest::addColumn<WxScene>("scene");
        const std::optional<int> none;
        row("fog is more than clouds", WxCondition::clouds, std::optional(45), WxScene::fog);
        row("rime fog", WxCondition::clouds, std::optional(48), WxScene::fog);
        row("thunder is more than rain", WxCondition::rain, std::optional(95), WxScene::thunder);
        row("thunder with hail", WxCondition::rain, std::optional(99), WxScene::thunder);
        row("showers stay rain", WxCondition::rain, std::optional(82), WxScene::rain);
        row("overcast stays clouds", WxCondition::clouds, std::optional(3), WxScene::clouds);
        row("no code: the condition alone", WxCondition::snow, none, WxScene::snow);
    }
    void scenes() {
        QFETCH(WxCondition, condition);
        QFETCH(std::optional<int>, code);
        QFETCH(WxScene, scene);
        QCOMPARE(sceneFor(condition, code), scene);
        QCOMPARE(wxSceneFromRawValue(rawValue(scene)), std::optional(scene));
    }

    // A made-up forecast keeps to what a real one guarantees, and shows the scene it was made for.
    void mockForecastsLookReal() {
        const QDateTime evening(QDate(2026, 1, 10), QTime(23, 40));
        for (WxScene scene : allWxScenes) {
            const WxLive live = mockLive(scene, evening);
            QCOMPARE(sceneFor(live.condition, live.code), scene);
            QCOMPARE(live.hourly.size(), 12);
            QCOMPARE(live.hourly.first().label, u"Now"_s);
            QCOMPARE(live.hourly.at(1).label, u"00"_s);
            QCOMPARE(live.daily.size(), 7);
            QCOMPARE(live.daily.first().date, evening.date().addDays(1));
            QVERIFY(live.lo <= live.temp && live.temp <= live.hi);
            QVERIFY(*live.sunrise < *live.sunset);
            QVERIFY(!live.isDay);
            for (const WxLiveDay& day : live.daily) {
                QVERIFY(day.lo <= day.hi);
            }
        }
    }

    void readsTheLiveForecast() {
        const WxReading r = reading(sampleLive());
        const QLocale locale = Localization::locale();
        QCOMPARE(r.hourly, (QList<WxHourEntry>{{0, u"Now"_s, u"sun.max.fill"_s, 20},
                                               {1, u"01"_s, u"cloud.rain.fill"_s, -18}}));
        QCOMPARE(r.daily,
                 (QList<WxDayEntry>{
                     {0, locale.dayName(3, QLocale::ShortFormat), u"cloud.snow.fill"_s, -3, 2},
                     {1, locale.dayName(4, QLocale::ShortFormat), u"cloud.sun.fill"_s, 0, 100}}));
        QCOMPARE(r.air, sampleLive().air);

        const WxReading rainy = reskin(r, WxCondition::rain);
        QCOMPARE(rainy.hourly.first().symbol, u"cloud.rain.fill"_s);
        QCOMPARE(rainy.daily.last().symbol, u"cloud.rain.fill"_s);
        QCOMPARE(rainy.daily.last().hi, 100);
    }

    void convertsEveryTemperatureToFahrenheit() {
        const WxReading f = inFahrenheit(reading(sampleLive()));
        QCOMPARE((QList<int>{f.temp, f.feels, f.hi, f.lo}), (QList<int>{0, -40, 99, 30}));
        QCOMPARE(f.hourly.last().temp, 0);
        QCOMPARE((QList<int>{f.daily.first().lo, f.daily.first().hi}), (QList<int>{27, 36}));
        QCOMPARE(f.daily.last().hi, 212);
    }

    void tellsNight_data() {
        QTest::addColumn<WxMode>("mode");
        QTest::addColumn<bool>("hasData");
        QTest::addColumn<QString>("sunrise");
        QTest::addColumn<QString>("sunset");
        QTest::addColumn<QString>("now");
        QTest::addColumn<bool>("night");
        const auto a = WxMode::automatic;
        row("before sunrise", a, true, u"07:00"_s, u"17:00"_s, u"06:59"_s, true);
        row("at sunrise", a, true, u"07:00"_s, u"17:00"_s, u"07:00"_s, false);
        row("at sunset", a, true, u"07:00"_s, u"17:00"_s, u"17:00"_s, true);
        row("manual mode", WxMode::manual, true, u"07:00"_s, u"17:00"_s, u"23:00"_s, false);
        row("no data", a, false, u"07:00"_s, u"17:00"_s, u"23:00"_s, false);
        row("no sunset", a, true, u"07:00"_s, u""_s, u"23:00"_s, false);
    }
    void tellsNight() {
        QFETCH(WxMode, mode);
        QFETCH(bool, hasData);
        QFETCH(QString, sunrise);
        QFETCH(QString, sunset);
        QFETCH(QString, now);
        const auto at = [](const QString& time) -> std::optional<QDateTime> {
            if (time.isEmpty()) {
                return std::nullopt;
            }
            return QDateTime(QDate(2026, 11, 24), QTime::fromString(time), QTimeZone::utc());
        };
        std::optional<WxReading> data;
        if (hasData) {
            data = WxReading{};
            data->sunrise = at(sunrise);
            data->sunset = at(sunset);
        }
        QTEST(isNight(data, *at(now), mode), "night");
    }

    // Each name from its lower bound to just below the next.
    void namesThePhase_data() {
        QTest::addColumn<QList<double>>("phases");
        QTest::addColumn<QString>("name");
        row("new", QList<double>{0, 0.0299, 0.97, 0.9999}, "New moon");
        row("waxing crescent", QList<double>{0.03}, "Waxing crescent");
        row("first quarter", QList<double>{0.22, 0.2799}, "First quarter");
        row("waxing gibbous", QList<double>{0.28}, "Waxing gibbous");
        row("full", QList<double>{0.47}, "Full moon");
        row("waning gibbous", QList<double>{0.53}, "Waning gibbous");
        row("last quarter", QList<double>{0.72}, "Last quarter");
        row("waning crescent", QList<double>{0.78, 0.9699}, "Waning crescent");
    }
    void namesThePhase() {
        QFETCH(QList<double>, phases);
        for (double phase : phases) {
            QTEST(MoonMath::nameForPhase(phase), "name");
        }
    }

    // Both sides of a new moon are "New moon"; the next one is a month on, not the one just passed.
    void newMoonWrapsAndComesBackAMonthLater() {
        const QDateTime newMoon =
            MoonMath::next(MoonMath::Phase::newMoon, utc("2024-02-29T06:00:00"));
        const MoonMath::Illumination before = MoonMath::illumination(newMoon.addSecs(-600));
        const MoonMath::Illumination after = MoonMath::illumination(newMoon.addSecs(600));
        QVERIFY2(before.phase > 0.999 && before.phase < 1,
                 qPrintable(QString::number(before.phase)));
        QVERIFY2(after.phase >= 0 && after.phase < 0.001, qPrintable(QString::number(after.phase)));
        QVERIFY(before.fraction < 0.01 && after.fraction < 0.01);
        QCOMPARE(MoonMath::nameForPhase(before.phase), MoonMath::nameForPhase(after.phase));

        const QDateTime following = MoonMath::next(MoonMath::Phase::newMoon, newMoon.addSecs(60));
        const double days = double(newMoon.secsTo(following)) / 86400;
        QVERIFY2(days > 29.2 && days < 29.9, qPrintable(QString::number(days)));
    }

    // Every hour of a year.
    void lightsLikeTheReference_data() {
        QTest::addColumn<int>("year");
        QTest::addColumn<double>("worstPoints");
        row("leap year", 2024, 0.5);
        row("two years on", 2026, 0.55);
    }
    void lightsLikeTheReference() {
        QFETCH(int, year);
        QFETCH(double, worstPoints);
        double worst = 0;
        const QDateTime first(QDate(year, 1, 1), QTime(0, 0), QTimeZone::utc());
        for (qint64 t = first.toMSecsSinceEpoch(); t < first.addYears(1).toMSecsSinceEpoch();
             t += 3600000) {
            const QDateTime at = QDateTime::fromMSecsSinceEpoch(t, QTimeZone::utc());
            worst = std::max(worst, std::abs(MoonMath::illumination(at).fraction -
                                             sky::moonIlluminatedFraction(t)) *
                                        100);
        }
        qInfo("lit fraction: worst %.3f percentage points", worst);
        QVERIFY(worst <= worstPoints);
    }

    void reachesThePhasesWithTheReference() {
        double worst = 0;
        for (const MoonMath::Phase phase : {MoonMath::Phase::newMoon, MoonMath::Phase::firstQuarter,
                                            MoonMath::Phase::full, MoonMath::Phase::lastQuarter}) {
            for (QDateTime at = utc("2026-01-01T00:00:00"); at.date().year() == 2026;) {
                const QDateTime ours = MoonMath::next(phase, at);
                const qint64 reference =
                    sky::nextElongation(at.toMSecsSinceEpoch(), int(phase) * 90.0);
                worst =
                    std::max(worst, double(std::abs(ours.toMSecsSinceEpoch() - reference)) / 60000);
                at = ours.addSecs(86400);
            }
        }
        qInfo("principal phases: worst %.1f min", worst);
        QVERIFY(worst <= phaseMinutes);
    }

    void placesTheSubsolarPoint_data() {
        QTest::addColumn<QDateTime>("at");
        QTest::addColumn<double>("latitude");
        QTest::addColumn<double>("longitude");
        const auto at = [](int y, int m, int d, int h) {
            return QDateTime(QDate(y, m, d), QTime(h, 0), QTimeZone::utc());
        };
        // The formula's own zero falls on the 81st day, a day or two off the true equinox.
        row("March equinox", at(2026, 3, 22, 12), 0.0, 0.0);
        row("June 21", at(2026, 6, 21, 12), 23.44, 0.0);
        row("June 21 of a leap year", at(2024, 6, 21, 12), 23.44, 0.0);
        row("evening in UTC", at(2026, 3, 22, 18), 0.0, -90.0);
        row("morning in UTC", at(2026, 3, 22, 6), 0.0, 90.0);
        row("midnight", at(2026, 3, 22, 0), 0.0, 180.0);
        row("noon in another offset",
            QDateTime(QDate(2026, 3, 22), QTime(14, 30), QTimeZone(2 * 3600)), 0.0, -7.5);
        row("no date", QDateTime(), -23.0015, 180.0);
    }
    void placesTheSubsolarPoint() {
        QFETCH(QDateTime, at);
        QFETCH(double, latitude);
        QFETCH(double, longitude);
        const SunGeometry::Subsolar point = SunGeometry::subsolar(at);
        QVERIFY2(std::abs(point.lat / degree - latitude) < 0.01,
                 qPrintable(QString::number(point.lat / degree)));
        QVERIFY2(std::abs(point.lon / degree - longitude) < 1e-9,
                 qPrintable(QString::number(point.lon / degree)));
    }

    void countsEveryYearAs365Days() {
        const QTime noon(12, 0);
        QCOMPARE(SunGeometry::subsolar(QDateTime(QDate(2024, 12, 31), noon, QTimeZone::utc())).lat,
                 SunGeometry::subsolar(QDateTime(QDate(2025, 1, 1), noon, QTimeZone::utc())).lat);
    }

    void followsTheSunOverALeapYear() {
        double latitude = 0;
        double longitude = 0;
        const qint64 start =
            QDateTime(QDate(2024, 1, 1), QTime(0, 0), QTimeZone::utc()).toMSecsSinceEpoch();
        for (qint64 t = start; t < start + 366LL * 86400000; t += 3600000) {
            const SunGeometry::Subsolar ours =
                SunGeometry::subsolar(QDateTime::fromMSecsSinceEpoch(t, QTimeZone::utc()));
            const sky::GroundPoint reference = sky::subsolarPoint(t);
            latitude = std::max(latitude, std::abs(ours.lat / degree - reference.latitude));
            longitude = std::max(
                longitude, std::abs(sky::signedDegrees(ours.lon / degree - reference.longitude)));
        }
        qInfo("subsolar point: worst %.3f° in latitude, %.3f° in longitude", latitude, longitude);
        QVERIFY(latitude <= subsolarLatitudeDegrees);
        QVERIFY(longitude <= subsolarLongitudeDegrees);
    }

    // A year in the place's own time, on both sides of the equator and the date line: the sun
    // every day, the moon every second day.
    void risesAndSetsWithTheReference_data() {
        QTest::addColumn<double>("latitude");
        QTest::addColumn<double>("longitude");
        QTest::addColumn<int>("offsetHours");
        QTest::addColumn<int>("year");
        QTest::addColumn<double>("moonSeconds");
        row("Quito", -0.18, -78.47, -5, 2026, 320.0);
        row("Berlin", 52.52, 13.40, 1, 2026, 495.0);
        row("Sydney", -33.87, 151.21, 10, 2026, 365.0);
        row("New York, leap year", 40.71, -74.01, -5, 2024, 370.0);
        row("59° north, leap year", 59.0, 10.75, 1, 2024, 755.0);
        row("Cape Town", -33.92, 18.42, 2, 2026, 355.0);
        row("west of the date line", -17.7, 179.99, 12, 2026, 310.0);
        row("east of the date line", 51.88, -179.99, -12, 2026, 460.0);
    }
    void risesAndSetsWithTheReference() {
        QFETCH(double, latitude);
        QFETCH(double, longitude);
        QFETCH(int, offsetHours);
        QFETCH(int, year);
        QFETCH(double, moonSeconds);
        const QTimeZone zone(offsetHours * 3600);
        sky::Deviation sun;
        sky::Deviation moon;
        moon.edge = 20 * 60000;
        for (QDate day(year, 1, 1); day.year() == year; day = day.addDays(1)) {
            const qint64 start = day.startOfDay(zone).toMSecsSinceEpoch();
            const HorizonTimes ours = SunGeometry::times(day, latitude, longitude, zone);
            const sky::RiseSet reference = sky::sunRiseSet(start, latitude, longitude);
            sun.add("sunrise", start, ours.rise, reference.rise);
            sun.add("sunset", start, ours.set, reference.set);
            if (day.dayOfYear() % 2 == 1) {
                const HorizonTimes moonOurs = MoonMath::times(day, latitude, longitude, zone);
                const sky::RiseSet moonReference = sky::moonRiseSet(start, latitude, longitude);
                moon.add("moonrise", start, moonOurs.rise, moonReference.rise);
                moon.add("moonset", start, moonOurs.set, moonReference.set);
            }
        }
        qInfo("worst: sun %.0f s, moon %.0f s", sun.worstSeconds, moon.worstSeconds);
        const QStringList disagreements = sun.disagreements + moon.disagreements;
        QVERIFY2(disagreements.isEmpty(), qPrintable(disagreements.join(u',')));
        QVERIFY(sun.worstSeconds <= sunRiseSetSeconds);
        QVERIFY(moon.worstSeconds <= moonSeconds);
    }

    // At 78° north either body may stay up or down all day, as the reference has it.
    void staysUpOrDownAllDayNearThePole_data() {
        QTest::addColumn<bool>("isSun");
        QTest::addColumn<QDate>("day");
        QTest::addColumn<bool>("alwaysUp");
        row("polar day", true, QDate(2026, 6, 21), true);
        row("polar night", true, QDate(2026, 12, 21), false);
        row("moon at high declination", false, QDate(2026, 1, 1), true);
        row("moon at low declination", false, QDate(2026, 1, 12), false);
    }
    void staysUpOrDownAllDayNearThePole() {
        QFETCH(bool, isSun);
        QFETCH(QDate, day);
        QFETCH(bool, alwaysUp);
        const QTimeZone zone(3600);
        const HorizonTimes times =
            (isSun ? SunGeometry::times : MoonMath::times)(day, 78.2, 15.6, zone);
        QVERIFY(!times.rise && !times.set);
        QCOMPARE(times.alwaysUp, alwaysUp);
        QCOMPARE(times.alwaysDown, !alwaysUp);
        const qint64 start = day.startOfDay(zone).toMSecsSinceEpoch();
        const sky::RiseSet reference =
            (isSun ? sky::sunRiseSet : sky::moonRiseSet)(start, 78.2, 15.6);
        QVERIFY(!reference.rise && !reference.set);
        QCOMPARE((isSun ? sky::sunAboveHorizon : sky::moonAboveHorizon)(start, 78.2, 15.6) > 0,
                 alwaysUp);
    }
    // "" where the text is read; otherwise the start of the refusal.
    void readsOnlyAPlaceOnTheGlobeAndAMomentWithItsOffset_data() {
        QTest::addColumn<QString>("latitude");
        QTest::addColumn<QString>("longitude");
        QTest::addColumn<QString>("time");
        QTest::addColumn<QString>("refusal");
        const char* when = "2026-03-20T12:00:00Z";
        row("the poles and the date line", "-90", "180", when, "");
        row("an offset and milliseconds", "90", "-180", "2026-03-20T12:00:00.250+05:45", "");
        row("latitude beyond a pole", "90.01", "0", when, "the latitude");
        row("latitude no number", "north", "0", when, "the latitude");
        row("latitude not a number", "nan", "0", when, "the latitude");
        row("latitude with a comma", "52,5", "0", when, "the latitude");
        row("longitude beyond the date line", "0", "-180.5", when, "the longitude");
        row("longitude infinite", "0", "inf", when, "the longitude");
        row("no offset", "0", "0", "2026-03-20T12:00:00", "the time");
        row("a date alone", "0", "0", "2026-03-20", "the time");
        row("no such day", "0", "0", "2026-02-30T12:00:00Z", "the time");
        row("empty", "0", "0", "", "the time");
    }
    void readsOnlyAPlaceOnTheGlobeAndAMomentWithItsOffset() {
        QFETCH(QString, latitude);
        QFETCH(QString, longitude);
        QFETCH(QString, time);
        QFETCH(QString, refusal);
        const std::variant<SkyReport::Query, QString> read =
            SkyReport::read(latitude, longitude, time);
        const QString* problem = std::get_if<QString>(&read);
        QCOMPARE(problem ? problem->left(refusal.size()) : QString(), refusal);
        if (problem) {
            QVERIFY2(problem->endsWith(QLatin1Char('"') + time + QLatin1Char('"')) ||
                         problem->contains(latitude) || problem->contains(longitude),
                     qPrintable(*problem));
        }
    }

    // Times on the moment's own day, told in its offset; none where the body neither rises nor
    // sets.
    void tellsTheSkyOnTheMomentsDay_data() {
        QTest::addColumn<QString>("latitude");
        QTest::addColumn<QString>("longitude");
        QTest::addColumn<QString>("time");
        QTest::addColumn<QString>("expected");
        row("Berlin at the equinox", "52.52", "13.40", "2026-03-20T18:30:00+01:00",
            "sunrise=2026-03-20T06:…+01:00\nsunset=2026-03-20T18:…+01:00\n");
        row("polar day", "78.2", "15.6", "2026-06-21T23:30:00+02:00",
            "sunrise=none\nsunset=none\n");
        row("just west of the date line, late", "-17.7", "179.99", "2026-12-21T23:59:59+12:00",
            "sunrise=2026-12-21T05:…+12:00\nsunset=2026-12-21T18:…+12:00\n");
        row("east of the date line in UTC: the set before the rise", "51.88", "-179.99",
            "2026-12-21T00:00:00Z",
            "sunrise=2026-12-21T20:…+00:00\nsunset=2026-12-21T03:…+00:00\n");
    }
    void tellsTheSkyOnTheMomentsDay() {
        QFETCH(QString, latitude);
        QFETCH(QString, longitude);
        QFETCH(QString, time);
        QFETCH(QString, expected);
        const std::variant<SkyReport::Query, QString> read =
            SkyReport::read(latitude, longitude, time);
        QVERIFY(std::holds_alternative<SkyReport::Query>(read));
        const QString lines = SkyReport::lines(std::get<SkyReport::Query>(read));
        QVERIFY2(matches(lines, QStringLiteral("phase=…\nillumination=…\n") + expected +
                                    QStringLiteral("moonrise=…\nmoonset=…\nsubsolar_lat=…\n"
                                                   "subsolar_lon=…\n")),
                 qPrintable(lines));
    }
};

QTEST_GUILESS_MAIN(TestForecast)
#include "tst_forecast.moc"
