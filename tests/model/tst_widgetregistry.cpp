#include "model/CustomWidgetDefinitions.h"
#include "model/WidgetRegistry.h"

#include <QRegularExpression>
#include <QTest>

using tw::WidgetCategory;
using tw::WidgetDefinition;
using tw::WidgetRegistry;
using tw::WidgetSize;

namespace {

QStringList kindsOf(const QList<WidgetDefinition>& definitions) {
    QStringList kinds;
    for (const WidgetDefinition& definition : definitions) {
        kinds.append(definition.metadata.kind);
    }
    return kinds;
}

QString sizesOf(const tw::WidgetMetadata& metadata) {
    QStringList sizes;
    for (const WidgetSize size : metadata.allowedSizes) {
        sizes.append(tw::rawValue(size));
    }
    return sizes.join(QLatin1Char(','));
}

class OneCustomWidget final : public tw::CustomWidgetDefinitions {
public:
    std::optional<WidgetDefinition> widgetDefinition(const QString& kind) const override {
        asked.append(kind);
        if (kind != QLatin1String("custom.E621E1F8-C36C-495A-93FC-0C247A3E6E5F")) {
            return std::nullopt;
        }
        WidgetDefinition definition;
        definition.metadata.kind = kind;
        definition.metadata.displayName = QStringLiteral("Tides");
        definition.metadata.allowedSizes = {WidgetSize::small};
        definition.metadata.defaultSize = WidgetSize::small;
        return definition;
    }
    mutable QStringList asked;
};

} // namespace

class TestWidgetRegistry : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void everyKindIsWellFormed() {
        const QList<WidgetDefinition>& all = WidgetRegistry::all();
        QCOMPARE(all.size(), 51);
        static const QRegularExpression lowerCaseLetters(QStringLiteral("^[a-z]+$"));
        QSet<QString> seen;
        int slots = 0;
        for (const WidgetDefinition& definition : all) {
            const tw::WidgetMetadata& m = definition.metadata;
            QVERIFY2(lowerCaseLetters.match(m.kind).hasMatch(), qPrintable(m.kind));
            QVERIFY2(!seen.contains(m.kind), qPrintable(m.kind));
            seen.insert(m.kind);
            QVERIFY2(!m.allowedSizes.isEmpty(), qPrintable(m.kind));
            QVERIFY2(m.allowedSizes.contains(m.defaultSize), qPrintable(m.kind));
            QCOMPARE(QSet<WidgetSize>(m.allowedSizes.cbegin(), m.allowedSizes.cend()).size(),
                     m.allowedSizes.size());
            QVERIFY2(!m.displayName.isEmpty() && !m.symbol.isEmpty(), qPrintable(m.kind));
            slots += static_cast<int>(m.allowedSizes.size());
        }
        QCOMPARE(slots, 249);
    }

    // Totals over columns of the table, so that one wrong cell anywhere shows.
    void columnTotals() {
        int maxSum = 0;
        int never = 0;
        double refreshSum = 0;
        QStringList noSettings;
        QStringList fullBleed;
        QStringList chromeless;
        QStringList permissions;
        for (const WidgetDefinition& definition : WidgetRegistry::all()) {
            const tw::WidgetMetadata& m = definition.metadata;
            maxSum += WidgetRegistry::maxInstances(m.kind);
            if (m.refresh.isNever()) {
                ++never;
            } else {
                refreshSum += m.refresh.interval()->count();
            }
            if (!m.hasSettings) {
                noSettings.append(m.kind);
            }
            if (m.fullBleed) {
                fullBleed.append(m.kind);
            }
            if (m.chromeless) {
                chromeless.append(m.kind);
            }
            for (const tw::WidgetPermission permission : m.permissions) {
                permissions.append(m.kind + QLatin1Char('=') + tw::rawValue(permission));
            }
        }
        QCOMPARE(maxSum, 106);
        QCOMPARE(never, 23);
        QCOMPARE(refreshSum, 1266.0);
        QCOMPARE(noSettings.join(QLatin1Char(',')),
                 QStringLiteral("worldclock,trash,unitconverter,worldmap"));
        QCOMPARE(fullBleed.join(QLatin1Char(',')),
                 QStringLiteral("stickynote,photos,ambientsound,mirror"));
        QCOMPARE(chromeless, QStringList{QStringLiteral("companion")});
        QCOMPARE(permissions.join(QLatin1Char(',')),
                 QStringLiteral("weather=weather,calendar=calendar,reminders=reminders,"
                                "mirror=camera"));
    }

    void sampleRows_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("symbol");
        QTest::addColumn<QString>("sizes");
        QTest::addColumn<QString>("defaultSize");
        QTest::addColumn<double>("refresh");
        QTest::newRow("first") << "clock"
                               << "Clock"
                               << "clock"
                               << "small,wide,large,banner,wideTall"
                               << "wide" << 1.0;
        QTest::newRow("every size") << "apps"
                                    << "Apps"
                                    << "square.grid.2x2.fill"
                                    << "small,tall,wide,large,banner,wideTall,panorama,huge,grand"
                                    << "large" << 0.0;
        QTest::newRow("order as the picker shows it")
            << "network"
            << "Network"
            << "network"
            << "small,wide,banner,large,wideTall,panorama,huge,grand"
            << "wide" << 1.0;
        QTest::newRow("name differs from kind") << "nowplaying"
                                                << "Music"
                                                << "music.note"
                                                << "small,wide,large,wideTall"
                                                << "wide" << 1.0;
        QTest::newRow("long symbol") << "currency"
                                     << "Currencies"
                                     << "eurosign.arrow.trianglehead.counterclockwise.rotate.90"
                                     << "small,wide,large"
                                     << "wide" << 60.0;
        QTest::newRow("default is not first") << "worldmap"
                                              << "World Map"
                                              << "globe.europe.africa.fill"
                                              << "wide,large,banner,wideTall,huge,panorama,grand"
                                              << "panorama" << 300.0;
        QTest::newRow("last") << "mirror"
                              << "Mirror"
                              << "person.crop.square"
                              << "small,tall,wide,large,wideTall,huge"
                              << "large" << 0.0;
    }
    void sampleRows() {
        QFETCH(QString, kind);
        const auto definition = WidgetRegistry::builtInDefinition(kind);
        QVERIFY(definition);
        const tw::WidgetMetadata& m = definition->metadata;
        QTEST(m.displayName, "name");
        QTEST(m.symbol, "symbol");
        QTEST(sizesOf(m), "sizes");
        QTEST(tw::rawValue(m.defaultSize), "defaultSize");
        QTEST(m.refresh.interval().value_or(tw::RefreshCadence::Seconds(0)).count(), "refresh");
        QCOMPARE(kindsOf(WidgetRegistry::all()).first(), QStringLiteral("clock"));
        QCOMPARE(kindsOf(WidgetRegistry::all()).last(), QStringLiteral("mirror"));
    }

    void definitionLookUp() {
        OneCustomWidget custom;
        const WidgetRegistry registry(&custom);
        QCOMPARE(registry.definition(QStringLiteral("analogclock")),
                 registry.definition(QStringLiteral("clock")));
        QCOMPARE(registry.definition(QStringLiteral("Clock")), std::nullopt);
        QCOMPARE(registry.definition(QStringLiteral("clock ")), std::nullopt);
        QCOMPARE(registry.definition(QStringLiteral("nosuchkind")), std::nullopt);
        QVERIFY(custom.asked.isEmpty());

        const QString tides = QStringLiteral("custom.E621E1F8-C36C-495A-93FC-0C247A3E6E5F");
        QCOMPARE(registry.definition(tides)->metadata.displayName, QStringLiteral("Tides"));
        QCOMPARE(registry.definition(QStringLiteral("custom.gone")), std::nullopt);
        QCOMPARE(custom.asked, (QStringList{tides, QStringLiteral("custom.gone")}));
        // Without custom definitions, and for built-ins only, a custom kind is unknown.
        QCOMPARE(WidgetRegistry().definition(tides), std::nullopt);
        QCOMPARE(WidgetRegistry::builtInDefinition(tides), std::nullopt);
    }

    void maxInstances_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("max");
        QTest::newRow("clipboard") << "clipboard" << 1;
        QTest::newRow("moon") << "moon" << 1;
        QTest::newRow("stocks") << "stocks" << 6;
        QTest::newRow("companion") << "companion" << 6;
        QTest::newRow("stickynote") << "stickynote" << 5;
        QTest::newRow("yearprogress") << "yearprogress" << 4;
        QTest::newRow("custom") << "custom.E621E1F8-C36C-495A-93FC-0C247A3E6E5F" << 5;
        QTest::newRow("unknown") << "nosuchkind" << 1;
        // The alias finds a view, not a limit: analog clocks are counted as their own kind.
        QTest::newRow("analogclock") << "analogclock" << 1;
    }
    void maxInstances() {
        QFETCH(QString, kind);
        QTEST(WidgetRegistry::maxInstances(kind), "max");
    }

    void contentKeys_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("keys");
        QTest::newRow("stickynote")
            << "stickynote"
            << "activeNote,note0,note1,note2,note3,note4,note5,noteCount,text";
        QTest::newRow("pomodoro") << "pomodoro"
                                  << "pomoDone,pomoEnds,pomoLeft,pomoPhase";
        QTest::newRow("stopwatch") << "stopwatch"
                                   << "swAcc,swAnchor,swDropped,swLaps";
        QTest::newRow("countdown") << "countdown"
                                   << "created,target,title";
        QTest::newRow("timer") << "timer"
                               << "endsAt,paused";
        QTest::newRow("photos") << "photos"
                                << "caption,folder";
        QTest::newRow("web") << "web"
                             << "url";
        QTest::newRow("unlisted") << "clock"
                                  << "";
    }
    void contentKeys() {
        QFETCH(QString, kind);
        const QSet<QString> keys = WidgetRegistry::contentKeys(kind);
        QStringList sorted(keys.cbegin(), keys.cend());
        sorted.sort();
        QTEST(sorted.join(QLatin1Char(',')), "keys");
    }

    void copyLabel_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("label");
        QTest::newRow("folder path") << "folder"
                                     << "path"
                                     << "/home/ada/Projects/"
                                     << "Projects";
        QTest::newRow("folder unset") << "folder"
                                      << ""
                                      << ""
                                      << "Desktop";
        QTest::newRow("folder root") << "folder"
                                     << "path"
                                     << "/"
                                     << "/";
        QTest::newRow("photos") << "photos"
                                << "folder"
                                << "~/Pictures/Trips"
                                << "Trips";
        QTest::newRow("photos unset") << "photos"
                                      << ""
                                      << ""
                                      << "";
        QTest::newRow("shortcut") << "shortcut"
                                  << "name"
                                  << "Focus"
                                  << "Focus";
        QTest::newRow("countdown empty title") << "countdown"
                                               << "title"
                                               << ""
                                               << "";
        QTest::newRow("web host") << "web"
                                  << "url"
                                  << "https://news.example.org/today"
                                  << "news.example.org";
        QTest::newRow("web no host") << "web"
                                     << "url"
                                     << "not a url"
                                     << "";
        QTest::newRow("clock zone") << "clock"
                                    << "zone"
                                    << "Europe/Paris"
                                    << "Paris";
        QTest::newRow("worldclock zone") << "worldclock"
                                         << "zone"
                                         << "America/Argentina/Buenos_Aires"
                                         << "Buenos_Aires";
        QTest::newRow("stocks") << "stocks"
                                << "symbol"
                                << "AAPL"
                                << "AAPL";
        QTest::newRow("crypto") << "crypto"
                                << "coin"
                                << "bitcoin"
                                << "bitcoin";
        QTest::newRow("currency") << "currency"
                                  << "to"
                                  << "JPY"
                                  << "JPY";
        QTest::newRow("unlisted kind") << "moon"
                                       << "name"
                                       << "Luna"
                                       << "";
        QTest::newRow("wrong key") << "stocks"
                                   << "coin"
                                   << "AAPL"
                                   << "";
    }
    void copyLabel() {
        QFETCH(QString, kind);
        QFETCH(QString, key);
        QFETCH(QString, value);
        tw::WidgetInstance instance;
        instance.kind = kind;
        if (!key.isEmpty()) {
            instance.settings = tw::WidgetSettings{{key, value}};
        }
        const std::optional<QString> label = WidgetRegistry::copyLabel(instance);
        QVERIFY(!label || !label->isEmpty());
        QTEST(label.value_or(QString()), "label");
    }

    void search_data() {
        QTest::addColumn<QString>("query");
        QTest::addColumn<QString>("kinds");
        QTest::newRow("name") << "music"
                              << "nowplaying";
        QTest::newRow("kind, any case") << "  CLOCK\n"
                                        << "clock,simpleclock,flipclock,wordclock,worldclock";
        QTest::newRow("category title finds all of it")
            << "ambient"
            << "worldmap,moon,companion,ambientsound,starfield,mirror";
        QTest::newRow("name and category") << "time"
                                           << "simpleclock,appusage,flipclock,wordclock,"
                                              "worldclock,timer,stopwatch,pomodoro,countdown,"
                                              "yearprogress,dayprogress";
        QTest::newRow("nothing") << "zzz"
                                 << "";
    }
    void search() {
        QFETCH(QString, query);
        QTEST(kindsOf(WidgetRegistry::search(query)).join(QLatin1Char(',')), "kinds");
    }

    void blankSearchGivesEverything() {
        QCOMPARE(WidgetRegistry::search(QStringLiteral(" \t ")), WidgetRegistry::all());
        QCOMPARE(WidgetRegistry::search(QString()), WidgetRegistry::all());
    }

    void groupedFollowsCategories() {
        const QList<WidgetRegistry::CategoryGroup> groups = WidgetRegistry::grouped();
        QStringList summary;
        QStringList flattened;
        for (const WidgetRegistry::CategoryGroup& group : groups) {
            summary.append(tw::rawValue(group.category) + QLatin1Char('=') +
                           QString::number(group.widgets.size()));
            QCOMPARE(kindsOf(group.widgets), tw::widgetCategoryMembers(group.category));
            flattened += kindsOf(group.widgets);
        }
        QCOMPARE(summary.join(QLatin1Char(',')),
                 QStringLiteral("essentials=6,system=10,workspace=10,time=10,tools=9,ambient=6"));
        QCOMPARE(flattened.size(), 51);
        QCOMPARE(tw::widgetCategoryOf(QStringLiteral("passwordgenerator")), WidgetCategory::tools);
        QVERIFY(tw::widgetCategoryMembers(WidgetCategory::tools)
                    .contains(QStringLiteral("passwordgenerator")));
    }

    void categories() {
        QStringList described;
        for (const WidgetCategory category : tw::allWidgetCategories) {
            described.append(tw::rawValue(category) + QLatin1Char(':') + tw::title(category) +
                             QLatin1Char(':') + tw::symbol(category));
            QCOMPARE(tw::widgetCategoryFromRawValue(tw::rawValue(category)), category);
        }
        QCOMPARE(described.join(QLatin1Char(' ')),
                 QStringLiteral("essentials:Essentials:star system:System:cpu "
                                "workspace:Workspace:tray.full time:Time:clock "
                                "tools:Tools:wrench.and.screwdriver ambient:Ambient:sparkles"));
        QCOMPARE(tw::widgetCategoryOf(QStringLiteral("custom.X")), WidgetCategory::tools);
        QCOMPARE(tw::widgetCategoryOf(QStringLiteral("analogclock")), WidgetCategory::tools);
        QCOMPARE(tw::widgetCategoryOf(QStringLiteral("dropzone")), WidgetCategory::workspace);
        QCOMPARE(tw::widgetCategoryOf(QStringLiteral("clipboard")), WidgetCategory::tools);
    }
};

QTEST_GUILESS_MAIN(TestWidgetRegistry)
#include "tst_widgetregistry.moc"
