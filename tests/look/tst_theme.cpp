#include "look/Theme.h"

#include <QJsonDocument>
#include <QSet>
#include <QTest>

using tw::Theme;
using tw::ThemeColor;

namespace {

// Bytes, so that a failure reads as the hex it came from.
QString bytes(const ThemeColor& color) {
    const auto byte = [](double fraction) { return qRound(fraction * 255.0); };
    return QStringLiteral("%1 %2 %3 %4")
        .arg(byte(color.red))
        .arg(byte(color.green))
        .arg(byte(color.blue))
        .arg(color.opacity);
}

} // namespace

class TestTheme : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void hexScanning_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QTest::newRow("with #") << "#0A84FF"
                                << "10 132 255 1";
        QTest::newRow("without #") << "0a84ff"
                                   << "10 132 255 1";
        QTest::newRow("blanks") << "  #FFFFFF \n"
                                << "255 255 255 1";
        QTest::newRow("not hex") << "#GGGGGG"
                                 << "0 0 0 1";
        QTest::newRow("empty") << ""
                               << "0 0 0 1";
    }
    void hexScanning() {
        QFETCH(QString, text);
        QTEST(bytes(ThemeColor::hex(text)), "expected");
        QCOMPARE(ThemeColor::hex(QStringLiteral("#FF0000"), 0.5).opacity, 0.5);
        QCOMPARE(ThemeColor::hex(QStringLiteral("#FF0000")).red, 1.0);
    }

    void offeredThemes() {
        const QList<Theme>& themes = Theme::builtIns();
        QStringList ids;
        QSet<QString> names;
        for (const Theme& theme : themes) {
            ids.append(theme.id);
            names.insert(theme.name);
            QCOMPARE(theme.accent.opacity, 1.0);
        }
        QCOMPARE(ids.join(QLatin1Char(',')),
                 QStringLiteral("midnight,graphite,ocean,forest,sunset,aurora,cyber,vaporwave,"
                                "solar,sakura,tokyo_drift,arctic_haze,lava_flow,phantom,"
                                "emerald_City,moondust,infrared,deep_space,caramel,obsidian,sand,"
                                "rose,grape,slate,frosty"));
        QCOMPARE(names.size(), 25);
        QCOMPARE(Theme::defaultTheme(), *Theme::builtIn(QStringLiteral("midnight")));
        QCOMPARE(Theme::builtIn(QStringLiteral("app-chrome")), std::nullopt);
        QCOMPARE(Theme::builtIn(QStringLiteral("Midnight")), std::nullopt);
    }

    void sampleColours_data() {
        QTest::addColumn<QString>("id");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("colours");
        QTest::newRow("midnight") << "midnight"
                                  << "Midnight"
                                  << "10 132 255 1|11 11 15 0.96|255 255 255 0.08|"
                                     "255 255 255 0.92|255 255 255 0.55|255 255 255 0.1";
        QTest::newRow("tokyo drift") << "tokyo_drift"
                                     << "Tokyo Drift"
                                     << "254 67 101 1|13 2 33 0.97|10 189 198 0.1|"
                                        "234 255 255 0.95|10 189 198 0.55|254 67 101 0.16";
        QTest::newRow("frosty") << "frosty"
                                << "Glacier Blue"
                                << "0 210 255 1|10 21 33 0.96|230 244 248 0.08|"
                                   "240 248 255 0.93|165 195 214 0.6|0 210 255 0.12";
    }
    void sampleColours() {
        QFETCH(QString, id);
        const std::optional<Theme> theme = Theme::builtIn(id);
        QVERIFY(theme);
        QTEST(theme->name, "name");
        QTEST(describe(*theme), "colours");
    }

    void chromeThemes() {
        QCOMPARE(Theme::appChrome().id, QStringLiteral("app-chrome"));
        QCOMPARE(describe(Theme::appChrome()),
                 QStringLiteral("10 124 255 1|242 243 247 1|255 255 255 1|28 28 33 1|"
                                "107 107 116 1|0 0 0 0.08"));
        QCOMPARE(Theme::appChromeDark().id, QStringLiteral("app-chrome-dark"));
        QCOMPARE(Theme::appChromeDark().name, QStringLiteral("App Dark"));
        QCOMPARE(describe(Theme::appChromeDark()),
                 QStringLiteral("10 124 255 1|23 24 29 1|34 36 43 1|242 242 247 0.96|"
                                "255 255 255 0.55|255 255 255 0.09"));
    }

    void jsonRoundTrip() {
        for (const Theme& theme : Theme::builtIns()) {
            QCOMPARE(Theme::fromJson(theme.toJson()), theme);
        }
        const QJsonObject json = Theme::defaultTheme().toJson();
        QCOMPARE(json.value(QStringLiteral("accent")).toObject().keys(),
                 (QStringList{QStringLiteral("blue"), QStringLiteral("green"),
                              QStringLiteral("opacity"), QStringLiteral("red")}));
    }

    void lenientDecoding() {
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
    }

private:
    static QString describe(const Theme& theme) {
        return QStringList{bytes(theme.accent),          bytes(theme.surface),
                           bytes(theme.surfaceElevated), bytes(theme.textPrimary),
                           bytes(theme.textSecondary),   bytes(theme.separator)}
            .join(QLatin1Char('|'));
    }
};

QTEST_GUILESS_MAIN(TestTheme)
#include "tst_theme.moc"
