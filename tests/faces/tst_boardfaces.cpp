// The faces that draw a board. The weather, the sky and the air: what the weather face shows of
// its place's state, its units, its scene's pace and its curve's labels; the air-quality scale and
// figures; which forecast is drawn through failures; the world map's night and land; the moon's
// bright limb. The machine's readings: their texts, what they choose to show and the feeds they ask
// for. And every size of each drawn inside its tile from every state of its board.
#include "FaceSpill.h"
#include "TestRows.h"
#include "faces/ActivityFace.h"
#include "faces/AirQualityFace.h"
#include "faces/BatteryFace.h"
#include "faces/BluetoothFace.h"
#include "faces/DiskFace.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "faces/LandMask.h"
#include "faces/MoonFace.h"
#include "faces/NetworkFace.h"
#include "faces/ReadingText.h"
#include "faces/SensorsFace.h"
#include "faces/SystemFace.h"
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

SystemSnapshot systemAt(double cpu, std::optional<double> gpu) {
    SystemSnapshot s;
    s.cpu = cpu;
    s.gpu = gpu;
    s.ramUsed = 6e9;
    s.ramTotal = 16e9;
    s.diskFree = 120e9;
    s.diskTotal = 500e9;
    return s;
}

BatterySnapshot battery(int percent, bool charging, bool plugged, int toEmpty, int toFull) {
    return {.percent = percent,
            .isCharging = charging,
            .isPluggedIn = plugged,
            .hasBattery = true,
            .timeToEmpty = toEmpty,
            .timeToFull = toFull};
}

// Every reading at its extremes: loads at the top, many cores, programs, fans, volumes and
// devices, long names, a memory split larger than the memory.
ReadingsBoard fullBoard() {
    ReadingsBoard b;
    for (int i = 0; i < ReadingsBoard::historyLength; ++i) {
        b.systemHistory << systemAt(0.5 + 0.5 * std::sin(i), 0.3);
        b.activityHistory << 0.4;
        SensorSnapshot s;
        s.temperatures = {{SensorKind::soc, 60.0 + i % 7, 2}, {SensorKind::storage, 40, 1}};
        b.sensorHistory << s;
        NetworkSnapshot n;
        n.interfaces = {InterfaceRate{QStringLiteral("wlan0"), true, true,
                                      2e5 + 9e5 * std::pow(std::sin(i / 6.0), 2), 3e4 + i * 1e3,
                                      1'234'000'000, 345'000'000},
                        InterfaceRate{QStringLiteral("enp3s0"), false, true, 1200, 300, 5, 1}};
        b.networkHistory << n;
    }
    b.system = b.systemHistory.last();
    ActivitySnapshot a;
    a.cores = QList<double>(64, 0.97);
    a.memTotal = 64e9;
    a.memApp = 30e9;
    a.memWired = 20e9;
    a.memCompressed = 10e9;
    a.memCached = 10e9;
    a.pressure = ActivitySnapshot::Pressure::critical;
    a.byCPU = QList<ActivityProcess>(6, {1, QString(80, QLatin1Char('w')), 12.5, 999'000'000'000});
    a.byMemory = a.byCPU;
    b.activity = a;
    b.sensors = b.sensorHistory.last();
    b.sensors->temperatures << SensorReading{SensorKind::battery, 149, 1};
    b.sensors->others = QList<SensorValue>(12, {QString(60, QLatin1Char('x')), std::nullopt, 99});
    b.sensors->fans = QList<double>(8, 65535);
    b.sensors->hasFans = true;
    b.battery = battery(76, false, false, 130, -1);
    b.network = b.networkHistory.last();
    b.volumes = QList<Volume>{
        {QStringLiteral("/home"), QStringLiteral("Home"), 120'000'000'000, 900'000'000'000, false},
        {QStringLiteral("/"), QStringLiteral("System"), 41'000'000'000, 256'000'000'000, false},
        {QStringLiteral("/media/usb"), QStringLiteral("A removable drive with a long name"),
         15'000'000'000, 128'000'000'000, true},
        {QStringLiteral("/mnt/data"), QStringLiteral("Data"), 1'900'000'000'000, 4'000'000'000'000,
         false},
        {QStringLiteral("/mnt/old"), QStringLiteral("Old"), 1, 500'000'000'000, false}};
    b.bluetoothAvailable = true;
    b.bluetooth = {
        {QStringLiteral("AA"), QStringLiteral("MX Master 3"), QStringLiteral("input-mouse"), true,
         84},
        {QStringLiteral("BB"), QStringLiteral("Headphones with a very long name indeed"),
         QStringLiteral("audio-headset"), true, 15},
        {QStringLiteral("CC"), QStringLiteral("Keyboard"), QStringLiteral("input-keyboard"), false,
         52},
        {QStringLiteral("DD"), QStringLiteral("Phone"), QStringLiteral("phone"), false, {}},
        {QStringLiteral("EE"), QString(), QString(), false, 100},
        {QStringLiteral("FF"), QStringLiteral("Speaker"), QStringLiteral("audio-card"), false, 0}};
    return b;
}

// What a desktop computer without Bluetooth reads: no battery, no interface, no volume; a virtual
// machine's graphics load, memory and disk unknown, its sensors absent.
ReadingsBoard honestBoard() {
    ReadingsBoard b;
    b.system = systemAt(0, std::nullopt);
    b.system->ramTotal = 0;
    b.system->diskTotal = 0;
    b.systemHistory = {*b.system};
    b.activity = ActivitySnapshot();
    b.sensors = SensorSnapshot();
    b.sensors->missing = {QStringLiteral("No hwmon sensors found in /sys/class/hwmon.")};
    b.battery = BatterySnapshot{};
    b.network = NetworkSnapshot{};
    b.volumes = QList<Volume>{};
    b.bluetoothAvailable = false;
    return b;
}

// Single entries, zeros and a history shorter than the chart.
ReadingsBoard edgeBoard() {
    ReadingsBoard b;
    b.system = systemAt(1, 1);
    b.systemHistory = {*b.system};
    b.activity = ActivitySnapshot();
    b.activity->cores = {1.0};
    b.activityHistory = {1.0};
    // No processor figure: the battery leads; fans said present but none read.
    b.sensors = SensorSnapshot();
    b.sensors->temperatures = {{SensorKind::battery, -40, 1}};
    b.sensors->hasFans = true;
    b.sensorHistory = {*b.sensors};
    b.battery = battery(5, true, true, -1, 6000);
    NetworkSnapshot s;
    s.interfaces = {InterfaceRate{QStringLiteral("enp0s31f6-with-a-long-name"), false, true,
                                  999'999'999'999, 0, 0, 0}};
    b.networkHistory = {s, s};
    b.network = s;
    b.volumes = QList<Volume>{{QStringLiteral("/"), QString(), 0, 0, false}};
    b.bluetoothAvailable = true;
    b.bluetooth = {
        {QStringLiteral("AA"), QStringLiteral("Phone"), QStringLiteral("phone"), true, {}}};
    return b;
}

QStringList words(const char* text) {
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}

QStringList paths(const QList<Volume>& volumes) {
    QStringList out;
    for (const Volume& v : volumes) {
        out << v.path;
    }
    return out;
}
} // namespace

class TestBoardFaces : public QObject {
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

    void texts_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("expected");
        row("nothing", "rate", 0.0, "0\u00a0B/s");
        row("bytes stay whole", "rate", 999.0, "999\u00a0B/s");
        row("one kilobyte", "rate", 1000.0, "1.0\u00a0KB/s");
        row("one decimal below ten", "rate", 1540.0, "1.5\u00a0KB/s");
        row("rounds up to ten without a decimal", "rate", 9960.0, "10\u00a0KB/s");
        row("rounds up into the next unit", "rate", 999'600.0, "1.0\u00a0MB/s");
        row("negative", "rate", -1.0, "\u2014");
        row("not a number", "bytes", std::nan(""), "\u2014");
        row("terabytes", "bytes", 4e12, "4.0\u00a0TB");
        row("beyond the largest unit", "bytes", 2e18, "2,000\u00a0PB");
        row("minutes", "duration", 40.0, "40 min");
        row("whole hours", "duration", 180.0, "3 h");
        row("hours and minutes", "duration", 130.0, "2 h 10 min");
        row("unknown span", "duration", -1.0, "\u2014");
    }
    void texts() {
        QFETCH(QString, kind);
        QFETCH(double, value);
        QFETCH(QString, expected);
        const QString text = kind == QLatin1String("rate") ? ReadingText::rate(value)
                             : kind == QLatin1String("bytes")
                                 ? ReadingText::bytes(value)
                                 : ReadingText::duration(static_cast<int>(value));
        QCOMPARE(text, expected);
    }

    void batteryTexts_data() {
        QTest::addColumn<BatterySnapshot>("battery");
        QTest::addColumn<QString>("state");
        QTest::addColumn<QString>("time");
        row("on battery", battery(76, false, false, 130, -1), "On battery", "2 h 10 min left");
        row("on battery, time unknown", battery(76, false, false, -1, -1), "On battery", "");
        row("charging", battery(40, true, true, -1, 40), "Charging", "Full in 40 min");
        row("charging, time unknown", battery(40, true, true, 90, -1), "Charging", "");
        row("plugged in, full", battery(100, false, true, -1, -1), "Fully charged", "");
        row("plugged in, held below full", battery(80, false, true, 300, -1), "Not charging", "");
        row("no battery", BatterySnapshot{}, "No battery", "On mains power");
    }
    void batteryTexts() {
        QFETCH(BatterySnapshot, battery);
        QFETCH(QString, state);
        QFETCH(QString, time);
        QCOMPARE(BatteryFace::stateText(battery), state);
        QCOMPARE(BatteryFace::timeText(battery), time);
    }

    // Which interface, volume order and devices each face picks from a reading.
    void choices() {
        const ReadingsBoard full = fullBoard();
        const NetworkSnapshot& network = *full.network;
        QCOMPARE(NetworkFace::chosen(network, QString())->interface, QStringLiteral("wlan0"));
        QCOMPARE(NetworkFace::chosen(network, QStringLiteral("enp3s0"))->interface,
                 QStringLiteral("enp3s0"));
        QVERIFY(NetworkFace::chosen(network, QStringLiteral("eth9")) == nullptr);
        NetworkSnapshot down = network;
        for (InterfaceRate& rate : down.interfaces) {
            rate.up = false;
        }
        QVERIFY(NetworkFace::chosen(down, QString()) == nullptr);
        // A reading without the interface counts as no traffic, so the chart keeps its place.
        QList<NetworkSnapshot> readings{network, NetworkSnapshot{}, network};
        QCOMPARE(
            NetworkFace::history(readings, QStringLiteral("enp3s0"), NetworkFace::Direction::up),
            (QList<double>{300, 0, 300}));

        const QList<Volume>& volumes = *full.volumes;
        QCOMPARE(paths(DiskFace::ordered(volumes, QString())),
                 words("/ /home /media/usb /mnt/data /mnt/old"));
        QCOMPARE(paths(DiskFace::ordered(volumes, QStringLiteral("/mnt/data"))),
                 words("/mnt/data /home / /media/usb /mnt/old"));
        QCOMPARE(paths(DiskFace::ordered(volumes, QStringLiteral("/absent"))), paths(volumes));
        QCOMPARE(DiskFace::usedFraction(volumes.at(4)), 1.0 - 1 / 5e11);
        QCOMPARE(DiskFace::usedFraction(Volume{}), 0.0);
        QCOMPARE(DiskFace::usedFraction(
                     Volume{.path = {}, .name = {}, .free = 10, .total = 5, .removable = false}),
                 0.0);

        QStringList names;
        for (const BluetoothDevice& device : BluetoothFace::withBattery(full.bluetooth)) {
            names << device.address;
        }
        QCOMPARE(names, words("AA BB CC EE FF"));
        BluetoothDevice late = full.bluetooth.at(2);
        late.connected = true;
        QCOMPARE(BluetoothFace::withBattery({full.bluetooth.at(4), late}).first().address,
                 QStringLiteral("CC"));
    }

    // Percentages, shares of a core, degrees and fan speeds as the faces print them.
    void figures_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        const QString dash = QStringLiteral("\u2014");
        row("percent: none", ReadingText::percent(std::nullopt), dash);
        row("percent: not a number", ReadingText::percent(std::nan("")), dash);
        row("percent: rounds", ReadingText::percent(0.235), "24%");
        row("percent: clamps", ReadingText::percent(1.7), "100%");
        row("core share: several cores", ActivityFace::coreShare(1.434), "143%");
        row("core share: negative", ActivityFace::coreShare(-0.1), dash);
        row("list: cpu to memory", ActivityFace::toggledList(QString()), "memory");
        row("list: memory to cpu", ActivityFace::toggledList(QStringLiteral("memory")), "cpu");
        row("degrees: celsius", SensorsFace::degrees(54.4, false), "54°C");
        row("degrees: fahrenheit", SensorsFace::degrees(100, true), "212°F");
        row("degrees: none", SensorsFace::degrees(std::nullopt, true), dash);
        row("degrees: infinite", SensorsFace::degrees(INFINITY, false), dash);
        row("rpm", SensorsFace::rpm(1850.4), "1,850 rpm");
    }
    void figures() {
        QFETCH(QString, text);
        QTEST(text, "expected");
    }

    // The metrics setting, read leniently: the digits are the metrics in the order shown.
    void metrics_data() {
        QTest::addColumn<QString>("setting");
        QTest::addColumn<QString>("expected");
        row("empty is all", QString(), "0123");
        row("order kept", "disk, CPU", "30");
        row("repeats and unknowns dropped", "ram,ram,fan,", "2");
        row("nothing known is all", "fan", "0123");
    }
    void metrics() {
        QFETCH(QString, setting);
        QString read;
        for (const SysMetric metric : SystemFace::metrics(setting)) {
            read += QString::number(static_cast<int>(metric));
        }
        QTEST(read, "expected");
    }

    // Which histories a size draws, and what goes into them.
    void histories() {
        const ReadingsBoard board = fullBoard();
        const QList<SysMetric> shown{SysMetric::ram, SysMetric::gpu};
        QCOMPARE(SystemFace::historyMetrics(WidgetSize::small, shown), QList<SysMetric>());
        QCOMPARE(SystemFace::historyMetrics(WidgetSize::large, shown), {SysMetric::ram});
        QCOMPARE(SystemFace::historyMetrics(WidgetSize::grand, shown), shown);
        const QList<double> cpu = SystemFace::history(&board, SysMetric::cpu);
        QCOMPARE(cpu.size(), SystemFace::historyLength);
        QCOMPARE(cpu.last(), board.systemHistory.last().cpu);
        // Readings without a graphics load leave no zero behind.
        ReadingsBoard mixed;
        mixed.systemHistory = {systemAt(0.1, 0.5), systemAt(0.1, std::nullopt)};
        QCOMPARE(SystemFace::history(&mixed, SysMetric::gpu), QList<double>{0.5});
        QCOMPARE(SystemFace::history(nullptr, SysMetric::cpu), QList<double>());
        // The processor's temperature leads; without it, the first there is.
        SensorSnapshot sensors;
        sensors.temperatures = {{SensorKind::battery, 30, 1}, {SensorKind::storage, 40, 1}};
        QCOMPARE(SensorsFace::hero(sensors)->kind, SensorKind::battery);
        sensors.temperatures << SensorReading{SensorKind::soc, 70, 3};
        QCOMPARE(SensorsFace::hero(sensors)->kind, SensorKind::soc);
        QCOMPARE(SensorsFace::history(&board, SensorKind::storage).size(),
                 ReadingsBoard::historyLength);
    }

    void deviceSymbols_data() {
        QTest::addColumn<QString>("icon");
        QTest::addColumn<QString>("symbol");
        row("mouse", "input-mouse", "computermouse");
        row("headset", "audio-headset", "headphones");
        row("phone by prefix", "phone-apple-iphone", "iphone");
        row("unknown kind", "printer", "wave.3.right.circle.fill");
        row("no icon", "", "wave.3.right.circle.fill");
    }
    void deviceSymbols() {
        QFETCH(QString, icon);
        QFETCH(QString, symbol);
        QCOMPARE(BluetoothFace::symbolFor(icon), symbol);
    }

    void feeds() {
        const FaceRegistry faces;
        const QList<std::pair<QString, ReadingFeed>> kinds{
            {QStringLiteral("battery"), ReadingFeed::battery},
            {QStringLiteral("network"), ReadingFeed::network},
            {QStringLiteral("disk"), ReadingFeed::disks},
            {QStringLiteral("btdevices"), ReadingFeed::bluetooth},
            {QStringLiteral("system"), ReadingFeed::system},
            {QStringLiteral("activity"), ReadingFeed::activity},
            {QStringLiteral("sensors"), ReadingFeed::sensors}};
        for (const auto& [kind, feed] : kinds) {
            QVERIFY2(faces.hasOwnFace(kind), qPrintable(kind));
            const auto definition = WidgetRegistry::builtInDefinition(kind);
            for (WidgetSize size : definition->metadata.allowedSizes) {
                QCOMPARE(faces.face(kind).feeds(size, {}), ReadingFeeds(feed));
                QVERIFY(!faces.face(kind).grain(size, {}).has_value());
            }
        }
    }

    // Every size of every kind, from every state of its board, on either glass, at two moments of
    // the scene (and the weather's two levels, the battery's two styles), inside its padded tile; a
    // null board is drawn by the renderer's own test of every kind.
    void staysInside_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<WidgetSize>("size");
        QTest::addColumn<QString>("board");
        QTest::addColumn<QString>("setting"); // key=value, or nothing
        const QList<const char*> weatherStates{"ready",  "approximate", "no air", "polar",
                                               "empty",  "extreme",     "stale",  "failed",
                                               "denied", "nolocation",  "loading"};
        for (const char* kind : {"weather", "airquality", "moon", "worldmap", "battery", "network",
                                 "disk", "btdevices", "system", "activity", "sensors"}) {
            const bool weather = qstrcmp(kind, "weather") == 0;
            const bool sky = weather || qstrcmp(kind, "airquality") == 0 ||
                             qstrcmp(kind, "moon") == 0 || qstrcmp(kind, "worldmap") == 0;
            QList<const char*> settings{sky ? "sceneLevel=full" : ""};
            if (weather) {
                settings.prepend("sceneLevel=subtle");
            } else if (qstrcmp(kind, "battery") == 0) {
                settings.append("style=ring");
            }
            const WidgetMetadata metadata =
                WidgetRegistry::builtInDefinition(QLatin1String(kind))->metadata;
            for (WidgetSize size : metadata.allowedSizes) {
                for (const char* state :
                     sky ? weatherStates : QList<const char*>{"full", "honest", "edge"}) {
                    for (const char* setting : settings) {
                        const QByteArray tag = QByteArray(kind) + '/' + rawValue(size).toUtf8() +
                                               '/' + state + '/' + setting;
                        row(tag.constData(), kind, size, state, setting);
                    }
                }
            }
        }
    }
    void staysInside() {
        QFETCH(QString, kind);
        QFETCH(WidgetSize, size);
        QFETCH(QString, board);
        QFETCH(QString, setting);
        const bool readingsBoard =
            QStringList{QStringLiteral("full"), QStringLiteral("honest"), QStringLiteral("edge")}
                .contains(board);
        const WeatherBoard weather = ::board(readingsBoard ? QStringLiteral("ready") : board);
        const ReadingsBoard readings = board == QLatin1String("full")     ? fullBoard()
                                       : board == QLatin1String("honest") ? honestBoard()
                                                                          : edgeBoard();
        const FaceRegistry faces;
        for (GlassLook::Shade shade : {GlassLook::Shade::Dark, GlassLook::Shade::Light}) {
            // The readings draw no scene.
            for (double sceneTime : readingsBoard ? QList<double>{0} : QList<double>{0, 4321.25}) {
                FaceContext context = contextFor(size, kind);
                context.glass.shade = shade;
                context.sceneTime = sceneTime;
                if (readingsBoard) {
                    context.readings = &readings;
                } else {
                    context.weather = &weather;
                }
                if (!setting.isEmpty()) {
                    context.settings.insert(setting.section(QLatin1Char('='), 0, 0),
                                            setting.section(QLatin1Char('='), 1));
                }
                if (kind != QLatin1String("weather")) {
                    context.now = QDateTime(QDate(2026, 12, 21), QTime(23, 59), QTimeZone::utc());
                }
                const QString spill = spillOf(faces.face(kind), context);
                QVERIFY2(spill.isEmpty(), qPrintable(spill));
            }
        }
    }
};

QTEST_MAIN(TestBoardFaces)
#include "tst_boardfaces.moc"
