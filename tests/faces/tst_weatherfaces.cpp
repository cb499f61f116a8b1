// The faces of the weather, the sky and the air: what the weather face shows of its place's state,
// its units, its scene's pace and its curve's labels; the air-quality scale and figures; which
// forecast is drawn through failures; the world map's night and land; the moon's bright limb; and
// every size of each drawn inside its tile from every state of its place.
#include "FaceSpill.h"
#include "TestRows.h"
#include "faces/AirQualityFace.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "faces/LandMask.h"
#include "faces/MoonFace.h"
#include "faces/WeatherFace.h"
#include "faces/WeatherNotice.h"
#include "faces/WorldMapFace.h"
#include "look/Theme.h"
#include "model/WidgetRegistry.h"
#include "platform/null/NullSymbolProvider.h"
#include "weather/MockForecast.h"

#include <QImage>
#include <QLocale>
#include <QTest>
#include <QTimeZone>

#include <cmath>
#include <numbers>

using namespace tw;
using namespace tw::test;
using Kind = WeatherFace::Shown::Kind;
using Region = WeatherUnits::SystemRegion;

namespace {

const NullSymbolProvider kSymbols;
const QDateTime kNoon(QDate(2026, 6, 3), QTime(12, 30));

WeatherPlace placeIn(WeatherState state, std::optional<WxLive> lastGood) {
    WeatherPlace place;
    place.state = std::move(state);
    place.lastGood = std::move(lastGood);
    place.latitude = -33.87;
    place.longitude = 151.21;
    return place;
}

WeatherBoard boardOf(const WeatherPlace& place) {
    WeatherBoard board;
    board.places.insert(WeatherBoard::currentPlace, place);
    return board;
}

// One place, the current one, in the state the row names: in the south, with the worst air.
WeatherBoard board(const QString& state) {
    const auto is = [&state](const char* name) { return state == QLatin1String(name); };
    WxLive live = mockLive(WxScene::thunder, kNoon);
    live.city = QString(60, QLatin1Char('W'));
    live.air = WxAirQuality{.index = 412, .pm25 = 1234.5, .pm10 = 0.04};
    live.approximate = is("approximate");
    WxLive before = live;
    before.city = QString(60, QLatin1Char('M'));
    before.air = WxAirQuality{.index = 0, .pm25 = 0, .pm10 = 0};
    WeatherPlace place = placeIn(WeatherState::ready(live), before);
    if (is("polar")) {
        place.latitude = 78.22; // the moon circles without setting
    } else if (is("no air")) {
        live.air.reset();
        place.state = WeatherState::ready(live);
    } else if (is("empty")) {
        live.hourly.clear();
        live.daily.clear();
        live.sunrise.reset();
        place.state = WeatherState::ready(live);
    } else if (is("extreme")) {
        // The mapping's bounds, swinging from hour to hour and day to day.
        for (qsizetype i = 0; i < live.hourly.size(); ++i) {
            live.hourly[i].temp = i % 2 == 0 ? 1'000'000 : -1'000'000;
        }
        for (WxLiveDay& day : live.daily) {
            day.lo = -1'000'000;
            day.hi = 1'000'000;
        }
        live.temp = live.hi = 1'000'000;
        live.lo = live.feels = -1'000'000;
        live.city.clear();
        place.state = WeatherState::ready(live);
    } else if (is("failed") || is("stale")) {
        place.state = WeatherState::error(QStringLiteral("You\u2019re offline"));
    } else if (is("denied") || is("deniedWithForecast")) {
        place.state = {WeatherState::Kind::permissionDenied, {}, {}};
    } else if (is("nolocation")) {
        place.state = {WeatherState::Kind::noLocation, {}, {}};
    } else if (is("loading") || is("reloading")) {
        place.state = {WeatherState::Kind::loading, {}, {}};
    } else if (is("idle")) {
        place.state = {};
    }
    if (is("failed") || is("denied") || is("nolocation") || is("loading") || is("idle")) {
        place.lastGood.reset();
    }
    return boardOf(place);
}

WidgetSettings settings(std::initializer_list<std::pair<const char*, const char*>> pairs) {
    WidgetSettings s;
    for (const auto& [key, value] : pairs) {
        s.insert(QString::fromLatin1(key), QString::fromLatin1(value));
    }
    return s;
}

FaceContext contextFor(WidgetSize size, const QString& kind = QStringLiteral("weather")) {
    FaceContext context =
        FaceContext::forKind(WidgetRegistry::builtInDefinition(kind)->metadata, size);
    context.theme = Theme::defaultTheme();
    context.surface = SurfaceFlags::snapshot();
    context.symbols = &kSymbols;
    context.now = kNoon;
    return context;
}

// The sun's altitude in degrees over a place, straight from the spherical triangle.
double altitudeOver(WorldMapFace::SunPoint sun, double latitude, double longitude) {
    const double r = std::numbers::pi / 180;
    return std::asin(std::sin(latitude * r) * std::sin(sun.latitude * r) +
                     std::cos(latitude * r) * std::cos(sun.latitude * r) *
                         std::cos((longitude - sun.longitude) * r)) /
           r;
}

bool inside(const QPolygonF& outline, double longitude, double latitude) {
    for (const double shift : {-360.0, 0.0, 360.0}) {
        if (outline.containsPoint(QPointF(longitude + shift, latitude), Qt::WindingFill)) {
            return true;
        }
    }
    return false;
}

} // namespace

class TestWeatherFaces : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }

    // The forecast while there is one, the last good one through a failure, else the words of
    // the state: the city of the forecast drawn, else the notice's title.
    void showsThePlacesState_data() {
        QTest::addColumn<QString>("state");
        QTest::addColumn<bool>("boardKnown");
        QTest::addColumn<WeatherFace::Shown::Kind>("kind");
        QTest::addColumn<bool>("stale");
        QTest::addColumn<bool>("opensSettings");
        QTest::addColumn<QString>("drawn");
        const QString now(60, QLatin1Char('W'));
        const QString before(60, QLatin1Char('M'));
        row("no board yet", "ready", false, Kind::loading, false, false, "Loading Weather");
        row("idle", "idle", true, Kind::loading, false, false, "Loading Weather");
        row("loading", "loading", true, Kind::loading, false, false, "Loading Weather");
        row("reloading over an older forecast", "reloading", true, Kind::forecast, false, false,
            before);
        row("ready, an older one kept", "ready", true, Kind::forecast, false, false, now);
        row("failed with nothing to show", "failed", true, Kind::failed, false, false,
            "Weather Unavailable");
        row("failed over an older forecast", "stale", true, Kind::forecast, true, false, before);
        row("location off", "denied", true, Kind::denied, false, true, "Location Off");
        row("location off, approximate forecast", "deniedWithForecast", true, Kind::forecast, false,
            false, before);
        row("no location", "nolocation", true, Kind::noLocation, false, true, "Location not found");
    }
    void showsThePlacesState() {
        QFETCH(QString, state);
        QFETCH(bool, boardKnown);
        QFETCH(WeatherFace::Shown::Kind, kind);
        const WeatherBoard b = board(state);
        FaceContext context = contextFor(WidgetSize::wide);
        context.weather = boardKnown ? &b : nullptr;
        const WeatherFace::Shown shown = WeatherFace::shown(context);
        QCOMPARE(shown.kind, kind);
        QTEST(shown.stale, "stale");
        QCOMPARE(shown.live.has_value(), kind == Kind::forecast);
        QTEST(WeatherFace().opensSettingsOnClick(context), "opensSettings");
        const WeatherPlace* place = boardKnown ? b.place({}) : nullptr;
        QTEST(shown.live ? shown.live->city : WeatherNotice::of(place).title, "drawn");
    }

    void manualModeNeedsNoService() {
        FaceContext context = contextFor(WidgetSize::wide);
        context.settings = settings({{"mode", "manual"}, {"condition", "snow"}});
        QVERIFY(!WeatherFace().showsWeather(context.settings));
        QVERIFY(WeatherFace().showsWeather(settings({{"mode", "auto"}})));
        const WeatherFace::Shown shown = WeatherFace::shown(context);
        QCOMPARE(shown.kind, Kind::forecast);
        QCOMPARE(shown.live->condition, WxCondition::snow);
    }

    void sceneFps_data() {
        QTest::addColumn<WidgetSettings>("values");
        QTest::addColumn<QString>("state");
        QTest::addColumn<double>("fps");
        row("still when told", settings({{"animate", "false"}}), "ready", 0.0);
        row("a manual clear sky drifts slowly", settings({{"mode", "manual"}}), "loading", 8.0);
        row("manual rain, full",
            settings({{"mode", "manual"}, {"condition", "rain"}, {"sceneLevel", "full"}}),
            "loading", 30.0);
        row("the forecast's storm", WidgetSettings(), "ready", 20.0);
        row("no sky behind a notice", WidgetSettings(), "loading", 0.0);
    }
    void sceneFps() {
        QFETCH(WidgetSettings, values);
        QFETCH(QString, state);
        const WeatherBoard b = board(state);
        FaceContext context = contextFor(WidgetSize::wide);
        context.settings = values;
        context.weather = &b;
        QTEST(WeatherFace().sceneFps(context), "fps");
    }

    void units_data() {
        QTest::addColumn<QString>("units");
        QTest::addColumn<std::optional<QString>>("country");
        QTest::addColumn<QString>("language");
        QTest::addColumn<Region>("region");
        QTest::addColumn<bool>("fahrenheit");
        const std::optional<QString> none;
        row("celsius wins over the country", "c", std::optional<QString>(QStringLiteral("US")),
            "en", Region::us, false);
        row("fahrenheit wins over the country", "f", std::optional<QString>(QStringLiteral("DE")),
            "de", Region::elsewhere, true);
        row("auto: the place's country", "auto", std::optional<QString>(QStringLiteral("us")), "de",
            Region::elsewhere, true);
        row("auto: Puerto Rico", "auto", std::optional<QString>(QStringLiteral("PR")), "es",
            Region::elsewhere, true);
        row("auto: a known country decides", "auto", std::optional<QString>(QStringLiteral("DE")),
            "en", Region::us, false);
        row("auto without a country: English in the US", "auto", none, "en", Region::us, true);
        row("auto: an empty country is none", "auto", std::optional<QString>(QString()), "en",
            Region::us, true);
        row("auto without a country: English elsewhere", "auto", none, "en", Region::elsewhere,
            false);
        row("an unknown setting reads as auto", "kelvin", none, "de", Region::us, false);
    }
    void units() {
        QFETCH(QString, units);
        QFETCH(std::optional<QString>, country);
        QFETCH(QString, language);
        QFETCH(Region, region);
        QTEST(WeatherFace::usesFahrenheit(units, country, language, region), "fahrenheit");
    }

    void curveLabels_data() {
        QTest::addColumn<qsizetype>("hours");
        QTest::addColumn<qreal>("width");
        QTest::addColumn<int>("stride");
        row("every hour on a grand curve", qsizetype(12), qreal(384), 1);
        row("every third on a large one", qsizetype(12), qreal(160), 3);
        row("a single hour", qsizetype(1), qreal(100), 1);
        row("no room at all", qsizetype(12), qreal(0), 1);
    }
    void curveLabels() {
        QFETCH(qsizetype, hours);
        QFETCH(qreal, width);
        QTEST(WeatherFace::labelStride(hours, width), "stride");
    }

    void extremes_data() {
        QTest::addColumn<QList<int>>("temps");
        QTest::addColumn<QList<qsizetype>>("marked");
        row("peak and trough", QList<int>{3, 5, 9, 4, 1, 2}, QList<qsizetype>{2, 4});
        row("the first of equal peaks", QList<int>{7, 2, 7}, QList<qsizetype>{0, 1});
        row("flat: nothing to mark", QList<int>{4, 4, 4}, QList<qsizetype>{});
        row("empty", QList<int>{}, QList<qsizetype>{});
    }
    void extremes() {
        QFETCH(QList<int>, temps);
        QList<WxHourEntry> hours;
        for (int t : temps) {
            hours.append({static_cast<int>(hours.size()), {}, {}, t});
        }
        QTEST(WeatherFace::extremes(hours), "marked");
    }

    void scale_data() {
        QTest::addColumn<int>("index");
        QTest::addColumn<double>("position");
        row("clean air at the start", 0, 0.0);
        row("below nothing", -5, 0.0);
        row("last of good", 19, 19 / 120.0);
        row("fair starts a sixth in", 20, 1 / 6.0);
        row("extreme starts five sixths in", 100, 5 / 6.0);
        row("far beyond held at the end", 412, 1.0);
    }
    void scale() {
        QFETCH(int, index);
        QTEST(AirQualityFace::scalePosition(index), "position");
    }

    void particles_data() {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("text");
        row("one decimal below ten", 8.44, "8.4");
        row("rounding up to ten drops it", 9.96, "10");
        row("whole above", 23.6, "24");
        row("thousands grouped", 1234.5, "1,235");
        row("not a number", std::nan(""), "\u2014");
        row("negative", -1.0, "\u2014");
    }
    void particles() {
        QFETCH(double, value);
        QTEST(AirQualityFace::particles(value), "text");
    }

    void failureWords() {
        const WeatherPlace failed = placeIn(WeatherState::error(QStringLiteral("Offline")), {});
        QCOMPARE(WeatherNotice::of(&failed).detail, QStringLiteral("Offline"));
        const WeatherPlace unexplained = placeIn(WeatherState::error({}), {});
        QCOMPARE(WeatherNotice::of(&unexplained).detail,
                 QStringLiteral("Weather data unavailable"));
    }

    // Every corner of the outline has the sun at the asked altitude; the point opposite the sun
    // lies inside and the sun's own point outside, across the date line and around either pole.
    void nightOutline_data() {
        QTest::addColumn<double>("sunLatitude");
        QTest::addColumn<double>("sunLongitude");
        QTest::addColumn<double>("altitude");
        row("northern summer night", 23.44, 0.0, 0.0);
        row("southern summer, deep twilight", -23.0, 52.0, -12.0);
        row("equinox, sun on the equator", 0.0, -100.0, 0.0);
        row("date line", 10.0, 179.0, -6.0);
        row("astronomical twilight, its cap clear of the poles", 5.0, 30.0, -18.0);
    }
    void nightOutline() {
        QFETCH(double, sunLatitude);
        QFETCH(double, sunLongitude);
        QFETCH(double, altitude);
        const WorldMapFace::SunPoint sun{sunLatitude, sunLongitude};
        const QPolygonF outline = WorldMapFace::nightOutline(sun, altitude);
        QVERIFY(outline.size() > 100);
        for (const QPointF& corner : outline) {
            if (std::abs(corner.y()) == 90) {
                continue; // the closing run along a pole
            }
            QVERIFY2(std::abs(altitudeOver(sun, corner.y(), corner.x()) - altitude) < 0.2,
                     qPrintable(QStringLiteral("%1,%2").arg(corner.x()).arg(corner.y())));
        }
        QVERIFY(inside(outline, sunLongitude + 180, -sunLatitude));
        QVERIFY(!inside(outline, sunLongitude, sunLatitude));
    }

    // North up and east to the left in the north; the south sees the sky turned half round.
    void brightLimb_data() {
        QTest::addColumn<double>("positionAngle");
        QTest::addColumn<bool>("southern");
        QTest::addColumn<double>("direction");
        const double pi = std::numbers::pi;
        row("evening crescent, west limb, north: right", 1.5 * pi, false, 0.0);
        row("evening crescent, west limb, south: left", 1.5 * pi, true, pi);
        row("morning crescent, east limb, north: left", 0.5 * pi, false, pi);
        row("north limb, north: up", 0.0, false, 0.5 * pi);
        row("north limb, south: down", 0.0, true, -0.5 * pi);
        row("south-west limb, north: down and right", 1.25 * pi, false, -0.25 * pi);
    }
    void brightLimb() {
        QFETCH(double, positionAngle);
        QFETCH(bool, southern);
        QFETCH(double, direction);
        const double found = MoonFace::brightLimbDirection(positionAngle, southern);
        QVERIFY2(std::abs(std::remainder(found - direction, 2 * std::numbers::pi)) < 1e-9,
                 qPrintable(QString::number(found)));
    }

    void land_data() {
        QTest::addColumn<double>("latitude");
        QTest::addColumn<double>("longitude");
        QTest::addColumn<bool>("isLand");
        row("Paris", 48.86, 2.35, true);
        row("the Sahara", 23.0, 12.0, true);
        row("inland Australia", -25.0, 134.0, true);
        row("the middle of the Atlantic", 30.0, -40.0, false);
        row("the Pacific off Peru", -10.0, -100.0, false);
        row("the north pole's sea", 89.5, 0.0, false);
        row("Antarctica", -85.0, 45.0, true);
    }
    void land() {
        QFETCH(double, latitude);
        QFETCH(double, longitude);
        const LandMask mask = LandMask::builtIn();
        QTEST(mask.share(longitude - 0.5, longitude + 0.5, latitude - 0.5, latitude + 0.5) > 0.5,
              "isLand");
        const double world = mask.share(-180, 180, -90, 90);
        QVERIFY2(world > 0.25 && world < 0.4, qPrintable(QString::number(world)));
        QCOMPARE(LandMask(QImage()).share(-180, 180, -90, 90), 0.0);
    }

    // Every size of every kind, from every state, on either glass, at two moments of the scene
    // and the weather's two levels, inside its padded tile.
    void staysInside_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<WidgetSize>("size");
        QTest::addColumn<QString>("state");
        QTest::addColumn<QString>("level");
        for (const char* kind : {"weather", "airquality", "moon", "worldmap"}) {
            const WidgetMetadata metadata =
                WidgetRegistry::builtInDefinition(QLatin1String(kind))->metadata;
            for (WidgetSize size : metadata.allowedSizes) {
                for (const char* state :
                     {"ready", "approximate", "no air", "polar", "empty", "extreme", "stale",
                      "failed", "denied", "nolocation", "loading"}) {
                    // The level is the weather's own.
                    const QList<const char*> levels = qstrcmp(kind, "weather") == 0
                                                          ? QList<const char*>{"subtle", "full"}
                                                          : QList<const char*>{"full"};
                    for (const char* level : levels) {
                        const QByteArray tag = QByteArray(kind) + '/' + rawValue(size).toUtf8() +
                                               '/' + state + '/' + level;
                        row(tag.constData(), kind, size, state, level);
                    }
                }
            }
        }
    }
    void staysInside() {
        QFETCH(QString, kind);
        QFETCH(WidgetSize, size);
        QFETCH(QString, state);
        QFETCH(QString, level);
        const WeatherBoard b = board(state);
        const FaceRegistry faces;
        for (GlassLook::Shade shade : {GlassLook::Shade::Dark, GlassLook::Shade::Light}) {
            for (double sceneTime : {0.0, 4321.25}) {
                FaceContext context = contextFor(size, kind);
                context.glass.shade = shade;
                context.weather = &b;
                context.sceneTime = sceneTime;
                context.settings = settings({{"sceneLevel", qPrintable(level)}});
                if (kind != QLatin1String("weather")) {
                    context.now = QDateTime(QDate(2026, 12, 21), QTime(23, 59), QTimeZone::utc());
                }
                const QString spill = spillOf(faces.face(kind), context);
                QVERIFY2(spill.isEmpty(), qPrintable(spill));
            }
        }
    }
};

QTEST_MAIN(TestWeatherFaces)
#include "tst_weatherfaces.moc"
