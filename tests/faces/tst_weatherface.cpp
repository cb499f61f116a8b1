// The weather face: what it shows of its place's state, its units, its scene's pace, the curve's
// labels, and every size drawn inside its tile from every state.
#include "FaceSpill.h"
#include "TestRows.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "faces/WeatherFace.h"
#include "look/Theme.h"
#include "model/WidgetRegistry.h"
#include "platform/null/NullSymbolProvider.h"
#include "weather/MockForecast.h"

#include <QTest>

using namespace tw;
using namespace tw::test;
using Kind = WeatherFace::Shown::Kind;
using Region = WeatherUnits::SystemRegion;

namespace {

const NullSymbolProvider kSymbols;
const QDateTime kNoon(QDate(2026, 6, 3), QTime(12, 30));

// One place, the current one, in the state the row names.
WeatherBoard board(const QString& state) {
    WxLive live = mockLive(WxScene::thunder, kNoon);
    live.city = QString(60, QLatin1Char('W'));
    WeatherPlace place;
    if (state == QLatin1String("ready") || state == QLatin1String("approximate")) {
        live.approximate = state == QLatin1String("approximate");
        place.state = WeatherState::ready(live);
    } else if (state == QLatin1String("empty")) {
        live.hourly.clear();
        live.daily.clear();
        live.sunrise.reset();
        place.state = WeatherState::ready(live);
    } else if (state == QLatin1String("extreme")) {
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
    } else if (state == QLatin1String("failed")) {
        place.state = WeatherState::error(QStringLiteral("You\u2019re offline"));
    } else if (state == QLatin1String("stale")) {
        place.state = WeatherState::error(QStringLiteral("You\u2019re offline"));
        place.lastGood = live;
    } else if (state == QLatin1String("denied")) {
        place.state.kind = WeatherState::Kind::permissionDenied;
    } else if (state == QLatin1String("deniedWithForecast")) {
        place.state.kind = WeatherState::Kind::permissionDenied;
        place.lastGood = live;
    } else if (state == QLatin1String("nolocation")) {
        place.state.kind = WeatherState::Kind::noLocation;
    } else {
        place.state.kind = WeatherState::Kind::loading;
    }
    WeatherBoard b;
    b.places.insert(WeatherBoard::currentPlace, place);
    return b;
}

WidgetSettings settings(std::initializer_list<std::pair<const char*, const char*>> pairs) {
    WidgetSettings s;
    for (const auto& [key, value] : pairs) {
        s.insert(QString::fromLatin1(key), QString::fromLatin1(value));
    }
    return s;
}

FaceContext contextFor(WidgetSize size) {
    FaceContext context = FaceContext::forKind(
        WidgetRegistry::builtInDefinition(QStringLiteral("weather"))->metadata, size);
    context.theme = Theme::defaultTheme();
    context.surface = SurfaceFlags::snapshot();
    context.symbols = &kSymbols;
    context.now = kNoon;
    return context;
}

} // namespace

class TestWeatherFace : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void showsThePlacesState_data() {
        QTest::addColumn<QString>("state");
        QTest::addColumn<bool>("boardKnown");
        QTest::addColumn<WeatherFace::Shown::Kind>("kind");
        QTest::addColumn<bool>("stale");
        QTest::addColumn<bool>("opensSettings");
        row("no board yet", "ready", false, Kind::loading, false, false);
        row("loading", "loading", true, Kind::loading, false, false);
        row("ready", "ready", true, Kind::forecast, false, false);
        row("failed with nothing to show", "failed", true, Kind::failed, false, false);
        row("failed over an older forecast", "stale", true, Kind::forecast, true, false);
        row("location off", "denied", true, Kind::denied, false, true);
        row("location off, approximate forecast", "deniedWithForecast", true, Kind::forecast, false,
            false);
        row("no location", "nolocation", true, Kind::noLocation, false, true);
    }
    void showsThePlacesState() {
        QFETCH(QString, state);
        QFETCH(bool, boardKnown);
        QFETCH(WeatherFace::Shown::Kind, kind);
        QFETCH(bool, stale);
        QFETCH(bool, opensSettings);
        const WeatherBoard b = board(state);
        FaceContext context = contextFor(WidgetSize::wide);
        context.weather = boardKnown ? &b : nullptr;
        const WeatherFace::Shown shown = WeatherFace::shown(context);
        QCOMPARE(shown.kind, kind);
        QCOMPARE(shown.stale, stale);
        QCOMPARE(shown.live.has_value(), kind == Kind::forecast);
        QCOMPARE(WeatherFace().opensSettingsOnClick(context), opensSettings);
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
        QFETCH(double, fps);
        const WeatherBoard b = board(state);
        FaceContext context = contextFor(WidgetSize::wide);
        context.settings = values;
        context.weather = &b;
        QCOMPARE(WeatherFace().sceneFps(context), fps);
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
        row("auto: a country outside", "auto", std::optional<QString>(QStringLiteral("DE")), "en",
            Region::us, false);
        row("auto without a country: English in the US", "auto", none, "en", Region::us, true);
        row("an unknown setting reads as auto", "kelvin", none, "de", Region::us, false);
    }
    void units() {
        QFETCH(QString, units);
        QFETCH(std::optional<QString>, country);
        QFETCH(QString, language);
        QFETCH(Region, region);
        QFETCH(bool, fahrenheit);
        QCOMPARE(WeatherFace::usesFahrenheit(units, country, language, region), fahrenheit);
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
        QFETCH(int, stride);
        QCOMPARE(WeatherFace::labelStride(hours, width), stride);
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
        QFETCH(QList<qsizetype>, marked);
        QList<WxHourEntry> hours;
        for (int t : temps) {
            hours.append({static_cast<int>(hours.size()), {}, {}, t});
        }
        QCOMPARE(WeatherFace::extremes(hours), marked);
    }

    // Every size, from every state, on either glass and either level, inside its padded tile.
    void staysInside_data() {
        QTest::addColumn<WidgetSize>("size");
        QTest::addColumn<QString>("state");
        QTest::addColumn<QString>("level");
        for (WidgetSize size :
             WidgetRegistry::builtInDefinition(QStringLiteral("weather"))->metadata.allowedSizes) {
            for (const char* state : {"ready", "approximate", "empty", "extreme", "stale", "failed",
                                      "denied", "nolocation", "loading"}) {
                for (const char* level : {"subtle", "full"}) {
                    const QByteArray tag =
                        rawValue(size).toUtf8() + '/' + state + '/' + QByteArray(level);
                    row(tag.constData(), size, state, level);
                }
            }
        }
    }
    void staysInside() {
        QFETCH(WidgetSize, size);
        QFETCH(QString, state);
        QFETCH(QString, level);
        const WeatherBoard b = board(state);
        const FaceRegistry faces;
        for (GlassLook::Shade shade : {GlassLook::Shade::Dark, GlassLook::Shade::Light}) {
            for (double sceneTime : {0.0, 4321.25}) {
                FaceContext context = contextFor(size);
                context.glass.shade = shade;
                context.weather = &b;
                context.sceneTime = sceneTime;
                context.settings = settings({{"sceneLevel", qPrintable(level)}});
                const QString spill = spillOf(faces.face(QStringLiteral("weather")), context);
                QVERIFY2(spill.isEmpty(), qPrintable(spill));
            }
        }
    }
};

QTEST_MAIN(TestWeatherFace)
#include "tst_weatherface.moc"
