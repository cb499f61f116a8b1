// The faces of the sky and the air: the air-quality scale and figures, which forecast a weather
// face draws through failures, the world map's sun and night and its land, and every size drawn
// inside its tile from a full board and from boards of honest absences.
#include "FaceSpill.h"
#include "TestRows.h"
#include "faces/AirQualityFace.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "faces/LandMask.h"
#include "faces/MoonFace.h"
#include "faces/WeatherNotice.h"
#include "faces/WorldMapFace.h"
#include "look/Theme.h"
#include "model/WidgetRegistry.h"
#include "platform/null/NullSymbolProvider.h"

#include <QImage>
#include <QLocale>
#include <QTest>
#include <QTimeZone>

#include <cmath>
#include <numbers>

using namespace tw;
using tw::test::row;
using tw::test::spillOf;

namespace {

WxLive forecast(std::optional<WxAirQuality> air) {
    WxLive live;
    live.city = QStringLiteral("Llanfairpwllgwyngyll on a long day");
    live.air = air;
    return live;
}

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

// The boards the drawing rows use, by name.
WeatherBoard namedBoard(const QString& name) {
    const WxAirQuality extreme{.index = 412, .pm25 = 1234.5, .pm10 = 0.04};
    if (name == QLatin1String("full")) {
        return boardOf(placeIn(WeatherState::ready(forecast(extreme)), forecast(extreme)));
    }
    if (name == QLatin1String("polar night")) {
        WeatherPlace north = placeIn(WeatherState::ready(forecast(extreme)), std::nullopt);
        north.latitude = 78.22; // the moon circles without setting
        return boardOf(north);
    }
    if (name == QLatin1String("no air")) {
        return boardOf(placeIn(WeatherState::ready(forecast(std::nullopt)), std::nullopt));
    }
    if (name == QLatin1String("failed, last good")) {
        return boardOf(placeIn(WeatherState::error(QStringLiteral("You\u2019re offline")),
                               forecast(WxAirQuality{.index = 0, .pm25 = 0, .pm10 = 0})));
    }
    return boardOf(placeIn({WeatherState::Kind::permissionDenied, {}, {}}, std::nullopt));
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

const NullSymbolProvider kSymbols;

} // namespace

class TestSkyFaces : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }

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

    // What a weather face draws: the forecast while there is one, the last good one through a
    // failure, else the words of the state.
    void notices_data() {
        QTest::addColumn<WeatherBoard>("board");
        QTest::addColumn<QString>("drawn"); // the city of the forecast drawn, else the title
        const WxLive now = forecast(std::nullopt);
        WxLive before = now;
        before.city = QStringLiteral("Before");
        using Kind = WeatherState::Kind;
        row("nothing known yet", WeatherBoard(), "Loading Weather");
        row("ready", boardOf(placeIn(WeatherState::ready(now), before)), now.city);
        row("failed with a last good", boardOf(placeIn(WeatherState::error({}), before)), "Before");
        row("reloading with a last good", boardOf(placeIn({Kind::loading, {}, {}}, before)),
            "Before");
        row("failed with nothing", boardOf(placeIn(WeatherState::error({}), std::nullopt)),
            "Weather Unavailable");
        row("idle", boardOf(placeIn({}, std::nullopt)), "Loading Weather");
        row("denied", boardOf(placeIn({Kind::permissionDenied, {}, {}}, std::nullopt)),
            "Location Off");
        row("nowhere", boardOf(placeIn({Kind::noLocation, {}, {}}, std::nullopt)),
            "Location not found");
    }
    void notices() {
        QFETCH(WeatherBoard, board);
        const WeatherPlace* place = board.place({});
        const WxLive* live = WeatherNotice::forecast(place);
        QTEST(live != nullptr ? live->city : WeatherNotice::of(place).title, "drawn");
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

    // Every size on either glass inside its padded tile; a null board is drawn by the
    // renderer's own test of every kind.
    void staysInside_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<WidgetSize>("size");
        QTest::addColumn<QString>("board");
        for (const char* kind : {"airquality", "moon", "worldmap"}) {
            const WidgetMetadata metadata =
                WidgetRegistry::builtInDefinition(QLatin1String(kind))->metadata;
            for (WidgetSize size : metadata.allowedSizes) {
                for (const char* board :
                     {"full", "no air", "failed, last good", "denied", "polar night"}) {
                    const QByteArray tag =
                        QByteArray(kind) + '/' + rawValue(size).toUtf8() + '/' + board;
                    row(tag.constData(), kind, size, board);
                }
            }
        }
    }
    void staysInside() {
        QFETCH(QString, kind);
        QFETCH(WidgetSize, size);
        QFETCH(QString, board);
        const WeatherBoard weather = namedBoard(board);
        const FaceRegistry faces;
        for (GlassLook::Shade shade : {GlassLook::Shade::Dark, GlassLook::Shade::Light}) {
            FaceContext context =
                FaceContext::forKind(WidgetRegistry::builtInDefinition(kind)->metadata, size);
            context.theme = Theme::defaultTheme();
            context.glass.shade = shade;
            context.surface = SurfaceFlags::snapshot();
            context.symbols = &kSymbols;
            context.weather = &weather;
            context.now = QDateTime(QDate(2026, 12, 21), QTime(23, 59), QTimeZone::utc());
            const QString spill = spillOf(faces.face(kind), context);
            QVERIFY2(spill.isEmpty(), qPrintable(spill));
        }
    }
};

QTEST_MAIN(TestSkyFaces)
#include "tst_skyfaces.moc"
