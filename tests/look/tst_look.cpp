// The whole catalogue (sizes, categories, kinds, themes) against a reviewed copy, the rules around
// the themes, and the theme made of a picture's palette: which pixels count, which hue wins; then
// the theme store: its file, the glass preferences, per-display themes and the uniform tint.
#include "Files.h"
#include "GoldenFile.h"
#include "ManualClock.h"
#include "TestRows.h"
#include "look/CatalogCounts.h"
#include "look/Theme.h"
#include "look/ThemeStore.h"
#include "look/WallpaperPalette.h"
#include "model/WidgetAction.h"
#include "model/WidgetRegistry.h"
#include "platform/null/MemoryDefaults.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QMetaEnum>
#include <QSet>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;
using tw::test::readFile;
using tw::test::row;
using tw::test::writeFile;
using GlassStyle = ThemeStore::GlassStyle;
using GlassTint = ThemeStore::GlassTint;
using RGB = WallpaperPalette::RGB;

Q_DECLARE_METATYPE(tw::ThemeColor)

namespace {

QString colour(const ThemeColor& c) {
    const auto byte = [](double fraction) {
        return QStringLiteral("%1").arg(qRound(fraction * 255.0), 2, 16, QLatin1Char('0'));
    };
    return QLatin1Char('#') + (byte(c.red) + byte(c.green) + byte(c.blue)).toUpper() +
           QLatin1Char('/') + QString::number(c.opacity);
}

QString themeLine(const char* what, const Theme& t) {
    return QStringList{QLatin1String(what),
                       t.id,
                       QLatin1Char('"') + t.name + QLatin1Char('"'),
                       colour(t.accent),
                       colour(t.surface),
                       colour(t.surfaceElevated),
                       colour(t.textPrimary),
                       colour(t.textSecondary),
                       colour(t.separator)}
        .join(QLatin1Char(' '));
}

QString orDash(const QStringList& words) {
    return words.isEmpty() ? QStringLiteral("-") : words.join(QLatin1Char(','));
}

QString kindLine(const WidgetMetadata& m) {
    QStringList sizes;
    for (const WidgetSize size : m.allowedSizes) {
        sizes << rawValue(size);
    }
    QStringList permissions;
    for (const WidgetPermission permission : m.permissions) {
        permissions << rawValue(permission);
    }
    QStringList traits;
    const std::pair<bool, const char*> flags[]{{!m.hasSettings, "noSettings"},
                                               {m.fullBleed, "fullBleed"},
                                               {m.chromeless, "chromeless"},
                                               {m.typedInto, "typedInto"}};
    for (const auto& [set, name] : flags) {
        if (set) {
            traits << QLatin1String(name);
        }
    }
    const QSet<QString> keys = WidgetRegistry::contentKeys(m.kind);
    QStringList content(keys.cbegin(), keys.cend());
    content.sort();
    const auto role = WidgetAction::defaultRole(m.kind);
    const QString refresh = m.refresh.isNever() ? QStringLiteral("never")
                                                : QString::number(m.refresh.interval()->count());
    return QStringLiteral("kind %1 \"%2\" %3 sizes=%4 default=%5 refresh=%6 %7 max=%8 "
                          "permissions=%9 traits=%10 content=%11 click=%12")
        .arg(m.kind, m.displayName, m.symbol, sizes.join(QLatin1Char(',')), rawValue(m.defaultSize),
             refresh, rawValue(widgetCategoryOf(m.kind)))
        .arg(WidgetRegistry::maxInstances(m.kind))
        .arg(orDash(permissions), orDash(traits), orDash(content),
             role ? rawValue(*role) : QStringLiteral("-"));
}

struct Rig {
    QTemporaryDir dir;
    MemoryDefaults defaults;
    tw::test::ManualClock clock;
    QString path() const { return dir.filePath(QStringLiteral("theme.json")); }
};

Theme custom() {
    Theme theme = *Theme::builtIn(QStringLiteral("ocean"));
    theme.id = QStringLiteral("mine");
    theme.name = QStringLiteral("Mine");
    theme.accent = ThemeColor{0.25, 0.5, 0.75, 1.0};
    theme.separator = ThemeColor{1, 1, 1, 0.2};
    return theme;
}

// Four significant digits, so that a failure reads as the fractions it came from.
QString fractions(const ThemeColor& c) {
    QStringList parts;
    for (const double v : {c.red, c.green, c.blue, c.opacity}) {
        parts << QString::number(v, 'g', 4);
    }
    return parts.join(QLatin1Char(' '));
}

} // namespace

class TestLook : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The catalogue written out as text and compared with a reviewed copy under golden/: a changed
    // cell shows as a readable difference.
    void catalogueMatchesTheReviewedCopy() {
        QStringList lines{CatalogCounts::line()};
        for (const WidgetSize size : allWidgetSizes) {
            const QSizeF points = nominalPixelSize(size);
            lines << QStringLiteral("size %1 %2 \"%3\" %4x%5")
                         .arg(rawValue(size), spanHint(size), label(size))
                         .arg(points.width())
                         .arg(points.height());
        }
        for (const WidgetCategory category : allWidgetCategories) {
            lines << QStringLiteral("category %1 \"%2\" %3")
                         .arg(rawValue(category), title(category), symbol(category));
        }
        for (const WidgetDefinition& definition : WidgetRegistry::all()) {
            lines << kindLine(definition.metadata);
        }
        // Themes are found by their own ids and names, and read back as written.
        QSet<QString> ids;
        QSet<QString> names;
        for (const Theme& theme : Theme::builtIns()) {
            lines << themeLine("theme", theme);
            ids.insert(theme.id);
            names.insert(theme.name);
            QCOMPARE(Theme::builtIn(theme.id), theme);
            QCOMPARE(Theme::fromJson(theme.toJson()), theme);
        }
        QCOMPARE(ids.size(), Theme::builtIns().size());
        QCOMPARE(names.size(), Theme::builtIns().size());
        QCOMPARE(Theme::defaultTheme(), Theme::builtIns().first());
        lines << themeLine("chrome", Theme::appChrome())
              << themeLine("chrome", Theme::appChromeDark());

        // The counts line cites what the rest of the dump lists.
        const auto count = [&lines](const QString& prefix) {
            return QString::number(lines.filter(QRegularExpression(u'^' + prefix + u' ')).size());
        };
        QCOMPARE(lines.first(),
                 QStringLiteral("widgets=%1 sizes=%2 themes=%3")
                     .arg(count(QStringLiteral("kind")), count(QStringLiteral("size")),
                          count(QStringLiteral("theme"))));

        tw::test::compareWithGolden(QStringLiteral(TW_GOLDEN_DIR "/catalogue.txt"), lines);
    }

    void hexScanning_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("opacity");
        QTest::addColumn<ThemeColor>("expected");
        const ThemeColor blue{10 / 255.0, 132 / 255.0, 1.0, 1.0};
        row("with #", "#0A84FF", 1.0, blue);
        row("without #, lower case", "0a84ff", 1.0, blue);
        row("blanks, opacity", " #FFFFFF \n", 0.5, ThemeColor{1, 1, 1, 0.5});
        row("not hex", "#GGGGGG", 1.0, ThemeColor{});
    }
    void hexScanning() {
        QFETCH(QString, text);
        QFETCH(double, opacity);
        QTEST(ThemeColor::hex(text, opacity), "expected");
    }

    void lenientDecodingAndLookUp() {
        const auto decode = [](const char* text) {
            return Theme::fromJson(QJsonDocument::fromJson(QByteArray(text)).object());
        };
        QCOMPARE(decode(R"({"name":"No id"})"), std::nullopt);
        QCOMPARE(decode(R"({"id":7})"), std::nullopt);

        const auto partial =
            decode(R"({"id":"mine","accent":{"red":2,"green":-1,"blue":"x"},"surface":[1,2]})");
        QVERIFY(partial);
        QCOMPARE(partial->name, QStringLiteral("mine"));
        QCOMPARE(partial->accent, (ThemeColor{1.0, 0.0, 0.0, 1.0}));
        QCOMPARE(partial->surface, Theme::defaultTheme().surface);
        QCOMPARE(partial->separator, Theme::defaultTheme().separator);
        QCOMPARE(Theme::defaultTheme().toJson().value(QStringLiteral("accent")).toObject().keys(),
                 (QStringList{QStringLiteral("blue"), QStringLiteral("green"),
                              QStringLiteral("opacity"), QStringLiteral("red")}));
        // The application's own chrome is no theme one can pick, and ids match exactly.
        for (const char* id : {"app-chrome", "app-chrome-dark", "Midnight", ""}) {
            QCOMPARE(Theme::builtIn(QLatin1String(id)), std::nullopt);
        }
    }

    // Which pixels count (saturation above 0.22, brightness above 0.3) and the twelfth of the hue
    // circle they fall in; -1 for a pixel that does not count.
    void bins_data() {
        QTest::addColumn<double>("h");
        QTest::addColumn<double>("s");
        QTest::addColumn<double>("b");
        QTest::addColumn<int>("bin");
        row("saturation exactly 0.22", 0.5, 0.22, 0.9, -1);
        row("brightness exactly 0.3", 0.5, 0.8, 0.3, -1);
        row("just above both", 0.5, 0.2201, 0.3001, 6);
        row("just below a twelfth", 0.083, 0.8, 0.9, 0);
        row("a twelfth", 1.0 / 12, 0.8, 0.9, 1);
        row("1", 1.0, 0.8, 0.9, 11);
    }
    void bins() {
        QFETCH(double, h);
        QFETCH(double, s);
        QFETCH(double, b);
        QTEST(WallpaperPalette::counts({h, s, b}) ? WallpaperPalette::bin(h) : -1, "bin");
    }

    // From hue, saturation and brightness to red, green and blue and back, one hue per sector.
    void hsbAndBack() {
        const std::pair<double, RGB> sectors[]{{0.0, {1, 0.5, 0.5}},     {1.0 / 6, {1, 1, 0.5}},
                                               {2.0 / 6, {0.5, 1, 0.5}}, {3.0 / 6, {0.5, 1, 1}},
                                               {4.0 / 6, {0.5, 0.5, 1}}, {5.0 / 6, {1, 0.5, 1}}};
        for (const auto& [h, rgb] : sectors) {
            const RGB made = WallpaperPalette::rgb(h, 0.5, 1.0);
            QVERIFY2(qFuzzyCompare(made.r, rgb.r) && qFuzzyCompare(made.g, rgb.g) &&
                         qFuzzyCompare(made.b, rgb.b),
                     qPrintable(QString::number(h)));
            const auto back = WallpaperPalette::hsb(rgb);
            QVERIFY(std::abs(back.h - h) < 1e-9);
            QVERIFY(qFuzzyCompare(back.s, 0.5) && qFuzzyCompare(back.b, 1.0));
        }
    }

    // The accent's hue is the mean colour of the heaviest bin; grey and dark pictures fall back.
    void theme_data() {
        QTest::addColumn<QList<RGB>>("pixels");
        QTest::addColumn<double>("hue");
        QTest::addColumn<double>("accentSaturation");
        const QList<RGB> grey(100, RGB{0.5, 0.5, 0.5});
        const QList<RGB> night(100, RGB{0.1, 0.05, 0.3});
        row("all grey", grey, 0.6, 0.8);
        QList<RGB> sunset = grey;
        sunset += QList<RGB>(30, RGB{1.0, 0.5, 0.0}); // orange, hue 1/12
        sunset += QList<RGB>(10, RGB{0.0, 0.0, 1.0}); // a little vivid blue
        row("orange outweighs blue", sunset, 1.0 / 12, 0.68);
        // Equal weights: the first bin wins.
        QList<RGB> tie(20, RGB{1.0, 0.0, 0.0});
        tie += QList<RGB>(20, RGB{0.0, 1.0, 0.0});
        row("a tie goes to the first", tie, 0.0, 0.68);
    }
    void theme() {
        QFETCH(QList<RGB>, pixels);
        QFETCH(double, hue);
        QFETCH(double, accentSaturation);
        const Theme theme = WallpaperPalette::theme(pixels);
        const RGB accent{theme.accent.red, theme.accent.green, theme.accent.blue};
        const auto hsb = WallpaperPalette::hsb(accent);
        QVERIFY2(std::abs(hsb.h - hue) < 1e-9, qPrintable(QString::number(hsb.h)));
        QVERIFY(std::abs(hsb.s - accentSaturation) < 1e-9);
        QVERIFY(std::abs(hsb.b - 0.95) < 1e-9);
        QCOMPARE(theme.id, QStringLiteral("wallpaper"));
        QCOMPARE(
            WallpaperPalette::hsb({theme.surface.red, theme.surface.green, theme.surface.blue}).b,
            0.1);
        QCOMPARE(theme.surface.opacity, Theme::defaultTheme().surface.opacity);
    }

    // What the store starts with from "theme.json": nothing written on a fresh start, a stored
    // built-in re-read from today's table, an unreadable file set aside with its bytes.
    void startsFromTheFile_data() {
        QTest::addColumn<QByteArray>("bytes"); // null: no file
        QTest::addColumn<QString>("expected"); // the theme's id; "!" for one set aside
        Theme stale = *Theme::builtIn(QStringLiteral("ocean"));
        stale.accent = ThemeColor{1, 0, 0, 1};
        stale.name = QStringLiteral("Old Ocean");
        const auto json = [](const Theme& theme) { return QJsonDocument(theme.toJson()).toJson(); };
        row("fresh start", QByteArray(), "midnight");
        row("a theme of one's own", json(custom()), "mine");
        row("a stored built-in takes today's colours", json(stale), "ocean");
        row("not json", QByteArray("{\"id\": \"ocean\", "), "!");
        row("no id", QByteArray("{\"name\": \"Ocean\"}"), "!");
        row("bad utf-8, and no id once mended", QByteArray("{\"name\": \"Oc\xff\"}"), "!");
    }
    void startsFromTheFile() {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, expected);
        Rig rig;
        QVERIFY(bytes.isNull() || writeFile(rig.path(), bytes));
        ThemeStore store(rig.defaults, rig.clock, rig.path());
        const bool setAside = expected == QLatin1String("!");
        const Theme theme = setAside                            ? Theme::defaultTheme()
                            : expected == QLatin1String("mine") ? custom()
                                                                : *Theme::builtIn(expected);
        QCOMPARE(store.current(), theme);
        QCOMPARE(QFile::exists(rig.path()), !bytes.isNull() && !setAside);
        const QStringList aside =
            QDir(rig.dir.path()).entryList({QStringLiteral("*.corrupt")}, QDir::Files);
        QCOMPARE(aside.size(), setAside ? 1 : 0);
        if (setAside) {
            // Named by the store's clock, not the wall's.
            QCOMPARE(aside.front(),
                     QStringLiteral("theme.") +
                         rig.clock.now().toString(QStringLiteral("yyyy-MM-dd-HHmmss")) +
                         QStringLiteral(".corrupt"));
            QCOMPARE(readFile(rig.dir.filePath(aside.front())), bytes);
        }
    }

    void aFailedSaveKeepsTheThemeInMemory() {
        Rig rig;
        // A regular file where the directory should be makes every write fail.
        const QString blocker = rig.dir.filePath(QStringLiteral("blocker"));
        QVERIFY(writeFile(blocker, {}));
        ThemeStore store(rig.defaults, rig.clock, blocker + QStringLiteral("/theme.json"));
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(QStringLiteral("^Failed to save theme: ")));
        store.selectPalette(QStringLiteral("forest"));
        QCOMPARE(store.current().id, QStringLiteral("forest"));
    }

    void selectingAndResetting() {
        Rig rig;
        ThemeStore store(rig.defaults, rig.clock, rig.path());
        QSignalSpy current(&store, &ThemeStore::currentChanged);
        QSignalSpy themed(&store, &ThemeStore::themedChanged);
        store.selectPalette(QStringLiteral("no-such-theme"));
        QCOMPARE(current.size(), 0);
        QVERIFY(!QFile::exists(rig.path()));
        store.selectPalette(QStringLiteral("tokyo_drift"));
        QCOMPARE(store.current().name, QStringLiteral("Tokyo Drift"));
        store.update([](Theme& theme) { theme.textPrimary = ThemeColor{1, 0, 0, 1}; });
        QCOMPARE(store.current().textPrimary, (ThemeColor{1, 0, 0, 1}));
        QCOMPARE(current.size(), 2);
        store.setAccentOverride(ThemeColor{0, 1, 0, 1});
        QCOMPARE(store.themed().accent, (ThemeColor{0, 1, 0, 1}));
        QCOMPARE(store.current().accent, Theme::builtIn(QStringLiteral("tokyo_drift"))->accent);
        QCOMPARE(themed.size(), 3);
        store.select(custom());
        QCOMPARE(ThemeStore(rig.defaults, rig.clock, rig.path()).current(), custom());
        store.resetToDefault();
        QCOMPARE(store.current(), Theme::defaultTheme());
        QVERIFY(!store.accentOverride());
        QCOMPARE(ThemeStore(rig.defaults, rig.clock, rig.path()).current(), Theme::defaultTheme());
    }

    // The glass preferences as stored under "tarnwick.glass…": words and flags of the right kind
    // win, anything else reads as dark, frosted, strength 0.
    void glassFromDefaults_data() {
        QTest::addColumn<QVariantMap>("stored");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* name,
                            std::initializer_list<std::pair<const char*, QVariant>> stored,
                            const char* expected) {
            QVariantMap map;
            for (const auto& [key, value] : stored) {
                map.insert(QStringLiteral("tarnwick.glass") + QLatin1String(key), value);
            }
            QTest::newRow(name) << map << QString::fromLatin1(expected);
        };
        const auto word = [](const char* text) { return QVariant(QString::fromLatin1(text)); };
        row("nothing stored", {}, "Dark Frosted 0");
        row("tint light", {{"Tint", word("light")}}, "Light Frosted 0");
        row("tint in another case", {{"Tint", word("Light")}}, "Dark Frosted 0");
        row("clear", {{"Liquid", false}, {"Clear", true}}, "Dark Clear 0");
        row("liquid", {{"Liquid", true}, {"Clear", false}}, "Dark Liquid 0");
        row("both: liquid wins", {{"Liquid", true}, {"Clear", true}}, "Dark Liquid 0");
        row("text in capitals, with spaces", {{"Liquid", word(" TRUE ")}}, "Dark Liquid 0");
        row("strength a number", {{"Strength", 0.6}}, "Dark Frosted 0.6");
        row("strength not finite", {{"Strength", qQNaN()}}, "Dark Frosted 0");
        row("a bool is no strength", {{"Strength", true}}, "Dark Frosted 0");
    }
    void glassFromDefaults() {
        QFETCH(QVariantMap, stored);
        Rig rig;
        for (auto it = stored.cbegin(); it != stored.cend(); ++it) {
            rig.defaults.setValue(it.key(), it.value());
        }
        const ThemeStore store(rig.defaults, rig.clock, rig.path());
        QTEST(QStringLiteral("%1 %2 %3")
                  .arg(QLatin1String(
                           QMetaEnum::fromType<GlassTint>().valueToKey(int(store.glassTint()))),
                       QLatin1String(
                           QMetaEnum::fromType<GlassStyle>().valueToKey(int(store.glassStyle()))))
                  .arg(store.glassStrength()),
              "expected");
    }

    // A style writes both flags and is said once; the dark frosted reset comes once a release.
    void glassChoicesAreStored() {
        Rig rig;
        rig.defaults.setValue(ThemeStore::glassClearKey, true);
        ThemeStore store(rig.defaults, rig.clock, rig.path());
        QSignalSpy style(&store, &ThemeStore::glassStyleChanged);
        const auto flags = [&rig]() -> QString {
            return rig.defaults.value(ThemeStore::glassLiquidKey).toString() + QLatin1Char(' ') +
                   rig.defaults.value(ThemeStore::glassClearKey).toString();
        };
        store.setGlassStyle(GlassStyle::Liquid);
        store.setGlassStyle(GlassStyle::Liquid);
        QCOMPARE(style.size(), 1);
        QCOMPARE(flags(), QStringLiteral("true false"));
        store.setGlassStyle(GlassStyle::Frosted);
        QCOMPARE(style.size(), 2);
        QCOMPARE(flags(), QStringLiteral("false false"));

        store.setGlassStyle(GlassStyle::Liquid);
        store.setGlassTint(GlassTint::Light);
        store.applyDarkFrostedOnce(QStringLiteral("1.4"));
        QCOMPARE(store.glassStyle(), GlassStyle::Frosted);
        QCOMPARE(store.glassTint(), GlassTint::Dark);
        QCOMPARE(rig.defaults.value(ThemeStore::glassTintKey), QVariant(QStringLiteral("dark")));
        store.setGlassStyle(GlassStyle::Clear);
        // The next run, same release: the choice stands.
        ThemeStore next(rig.defaults, rig.clock, rig.path());
        next.applyDarkFrostedOnce(QStringLiteral("1.4"));
        QCOMPARE(next.glassStyle(), GlassStyle::Clear);
        next.applyDarkFrostedOnce(QStringLiteral("1.5"));
        QCOMPARE(next.glassStyle(), GlassStyle::Frosted);
    }

    void suppressedPersistenceLeavesNoTrace() {
        Rig rig;
        ThemeStore store(rig.defaults, rig.clock, rig.path());
        store.suppressPersistence();
        QSignalSpy written(&rig.defaults, &Defaults::valueChanged);
        store.selectPalette(QStringLiteral("sakura"));
        store.setGlassStyle(GlassStyle::Liquid);
        store.setGlassTint(GlassTint::Light);
        store.setGlassStrength(0.8);
        store.setUniformColors(true);
        store.setTheme(QStringLiteral("ocean"), QStringLiteral("DISPLAY-1"));
        store.applyDarkFrostedOnce(QStringLiteral("2.0"));
        QCOMPARE(store.current().id, QStringLiteral("sakura"));
        QCOMPARE(store.glassStyle(), GlassStyle::Liquid);
        QCOMPARE(written.size(), 0);
        QVERIFY(!QFile::exists(rig.path()));
    }

    void perDisplayThemes() {
        Rig rig;
        rig.defaults.setValue(ThemeStore::perDisplayKey,
                              QVariantMap{{QStringLiteral("OLD"), QStringLiteral("retired_theme")},
                                          {QStringLiteral("ODD"), 42}});
        ThemeStore store(rig.defaults, rig.clock, rig.path());
        QVERIFY(!store.themeForDisplay(QStringLiteral("OLD")));
        QVERIFY(!store.perDisplay().contains(QStringLiteral("ODD")));
        QVERIFY(!store.themeForDisplay(QStringLiteral("NONE")));
        QVERIFY(!store.themeForDisplay(std::nullopt));

        const QString dell = QStringLiteral("DELL-1");
        store.setTheme(QStringLiteral("forest"), dell);
        QCOMPARE(store.themeForDisplay(dell), Theme::builtIn(QStringLiteral("forest")));
        store.setAccentOverride(ThemeColor{1, 1, 0, 1});
        QCOMPARE(store.themeForDisplay(dell)->accent, (ThemeColor{1, 1, 0, 1}));
        const ThemeStore next(rig.defaults, rig.clock, rig.path());
        QCOMPARE(next.perDisplay().value(dell), QStringLiteral("forest"));

        store.setTheme(QStringLiteral("no-such-theme"), dell);
        QVERIFY(!store.perDisplay().contains(dell));
        store.setTheme(QStringLiteral("rose"), dell);
        store.setTheme(std::nullopt, dell);
        QVERIFY(!store.perDisplay().contains(dell));

        store.setTheme(QStringLiteral("rose"), QStringLiteral("DELL-2"));
        store.clearPerDisplayThemes();
        QVERIFY(store.perDisplay().isEmpty());
        QVERIFY(ThemeStore(rig.defaults, rig.clock, rig.path()).perDisplay().isEmpty());
    }

    void uniformTint_data() {
        QTest::addColumn<int>("shade");
        QTest::addColumn<QString>("expected");
        // Accent 0.5, 0.25, 0 at full opacity.
        row("0: the accent", 0, "0.5 0.25 0 1");
        row("1: lighter by .16", 1, "0.58 0.37 0.16 1");
        row("-1: as 1", -1, "0.58 0.37 0.16 1");
        row("2: fainter by .16", 2, "0.5 0.25 0 0.84");
        row("5: lighter by at most .45", 5, "0.725 0.5875 0.45 1");
        row("8: no fainter than .55", 8, "0.5 0.25 0 0.55");
    }
    void uniformTint() {
        QFETCH(int, shade);
        Rig rig;
        ThemeStore store(rig.defaults, rig.clock, rig.path());
        const ThemeColor given{0.1, 0.9, 0.3, 0.7};
        store.setAccentOverride(ThemeColor{0.5, 0.25, 0, 1});
        QCOMPARE(store.tint(given, shade), given);
        store.setUniformColors(true);
        QTEST(fractions(store.tint(given, shade)), "expected");
    }
};

QTEST_GUILESS_MAIN(TestLook)
#include "tst_look.moc"
