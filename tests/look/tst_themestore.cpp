#include "Files.h"
#include "ManualClock.h"
#include "TestRows.h"
#include "look/ThemeStore.h"
#include "platform/null/MemoryDefaults.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QMetaEnum>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;
using tw::test::readFile;
using tw::test::row;
using tw::test::writeFile;
using GlassStyle = ThemeStore::GlassStyle;
using GlassTint = ThemeStore::GlassTint;

namespace {

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

class TestThemeStore : public QObject {
    Q_OBJECT
private Q_SLOTS:
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

QTEST_GUILESS_MAIN(TestThemeStore)
#include "tst_themestore.moc"
