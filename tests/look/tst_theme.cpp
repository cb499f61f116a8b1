#include "GoldenFile.h"
#include "look/CatalogCounts.h"
#include "look/Theme.h"
#include "look/WallpaperPalette.h"
#include "model/WidgetAction.h"
#include "model/WidgetRegistry.h"

#include <QJsonDocument>
#include <QSet>
#include <QTest>

using namespace tw;
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

} // namespace

// The whole catalogue (sizes, categories, kinds, themes) against a reviewed copy, the rules around
// the themes, and the theme made of a picture's palette: which pixels count, which hue wins.
class TestTheme : public QObject {
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
        QTest::newRow("with #") << "#0A84FF" << 1.0 << blue;
        QTest::newRow("without #, lower case") << "0a84ff" << 1.0 << blue;
        QTest::newRow("blanks, opacity") << "  #FFFFFF \n" << 0.5 << ThemeColor{1, 1, 1, 0.5};
        QTest::newRow("not hex") << "#GGGGGG" << 1.0 << ThemeColor{};
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
        QTest::newRow("saturation exactly 0.22") << 0.5 << 0.22 << 0.9 << -1;
        QTest::newRow("brightness exactly 0.3") << 0.5 << 0.8 << 0.3 << -1;
        QTest::newRow("just above both") << 0.5 << 0.2201 << 0.3001 << 6;
        QTest::newRow("just below a twelfth") << 0.083 << 0.8 << 0.9 << 0;
        QTest::newRow("a twelfth") << 1.0 / 12 << 0.8 << 0.9 << 1;
        QTest::newRow("1") << 1.0 << 0.8 << 0.9 << 11;
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
        QTest::newRow("all grey") << grey << 0.6 << 0.8;
        QList<RGB> sunset = grey;
        sunset += QList<RGB>(30, RGB{1.0, 0.5, 0.0}); // orange, hue 1/12
        sunset += QList<RGB>(10, RGB{0.0, 0.0, 1.0}); // a little vivid blue
        QTest::newRow("orange outweighs blue") << sunset << 1.0 / 12 << 0.68;
        // Equal weights: the first bin wins.
        QList<RGB> tie(20, RGB{1.0, 0.0, 0.0});
        tie += QList<RGB>(20, RGB{0.0, 1.0, 0.0});
        QTest::newRow("a tie goes to the first") << tie << 0.0 << 0.68;
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
};

QTEST_GUILESS_MAIN(TestTheme)
#include "tst_theme.moc"
