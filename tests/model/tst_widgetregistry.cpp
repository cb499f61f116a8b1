#include "GoldenFile.h"
#include "TestRows.h"
#include "model/CustomWidgetDefinitions.h"
#include "model/SizeReport.h"
#include "model/WidgetOption.h"
#include "model/WidgetRegistry.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QTest>
#include <QTranslator>

using tw::WidgetCategory;
using tw::WidgetDefinition;
using tw::WidgetRegistry;
using tw::WidgetSize;
using tw::test::row;

namespace {

const QString tides = QStringLiteral("custom.E621E1F8-C36C-495A-93FC-0C247A3E6E5F");

QStringList kindsOf(const QList<WidgetDefinition>& definitions) {
    QStringList kinds;
    for (const WidgetDefinition& definition : definitions) {
        kinds.append(definition.metadata.kind);
    }
    return kinds;
}

class OneCustomWidget final : public tw::CustomWidgetDefinitions {
public:
    std::optional<WidgetDefinition> widgetDefinition(const QString& kind) const override {
        asked.append(kind);
        if (kind != tides) {
            return std::nullopt;
        }
        WidgetDefinition definition;
        definition.metadata.kind = kind;
        definition.metadata.displayName = QStringLiteral("Tides");
        return definition;
    }
    mutable QStringList asked;
};

} // namespace

// The table's cells, and each size's span, words and points, are in the catalogue's golden copy
// (tests/look); here the rules they keep, the look-ups around them and the command line's two
// reports of the sizes.
class TestWidgetRegistry : public QObject {
    Q_OBJECT
    // A language table with keywords of its own for one kind.
    class Keywords final : public QTranslator {
    public:
        QString translate(const char*, const char* key, const char*, int) const override {
            return qstrcmp(key, "widget.sensors.keywords") == 0
                       ? QStringLiteral("L\u00fcfter, W\u00e4rme")
                       : QString();
        }
        bool isEmpty() const override { return false; }
    } m_keywords;

private:
    // A kind's options: only where it has settings, each key once, a default the control can show.
    static void checkOptions(const tw::WidgetMetadata& m) {
        QSet<QString> keys;
        for (const tw::WidgetOption& option : tw::WidgetOption::of(m.kind)) {
            const QString where = m.kind + QLatin1Char('.') + option.key;
            QVERIFY2(m.hasSettings, qPrintable(where));
            QVERIFY2(!option.key.isEmpty() && !option.title.isEmpty(), qPrintable(where));
            QVERIFY2(!keys.contains(option.key), qPrintable(where));
            keys.insert(option.key);
            QSet<QString> values;
            for (const tw::WidgetOption::Choice& choice : option.choices) {
                QVERIFY2(!values.contains(choice.value) && !choice.title.isEmpty(),
                         qPrintable(where));
                values.insert(choice.value);
            }
            switch (option.type) {
            case tw::WidgetOption::Type::choice:
            case tw::WidgetOption::Type::place:
                QVERIFY2(values.contains(option.defaultValue), qPrintable(where));
                break;
            case tw::WidgetOption::Type::toggle:
                QVERIFY2(values.isEmpty() && (option.defaultValue == QLatin1String("true") ||
                                              option.defaultValue == QLatin1String("false")),
                         qPrintable(where));
                break;
            case tw::WidgetOption::Type::text:
            case tw::WidgetOption::Type::date:
                QVERIFY2(values.isEmpty(), qPrintable(where));
                break;
            }
        }
    }

private Q_SLOTS:
    // Before the catalogue is first built, as the language is chosen before launch.
    void initTestCase() { QCoreApplication::installTranslator(&m_keywords); }

    void everyKindIsWellFormed() {
        static const QRegularExpression lowerCaseLetters(QStringLiteral("^[a-z]+$"));
        QSet<QString> seen;
        for (const WidgetDefinition& definition : WidgetRegistry::all()) {
            const tw::WidgetMetadata& m = definition.metadata;
            QVERIFY2(lowerCaseLetters.match(m.kind).hasMatch(), qPrintable(m.kind));
            QVERIFY2(!seen.contains(m.kind), qPrintable(m.kind));
            seen.insert(m.kind);
            QVERIFY2(m.allowedSizes.contains(m.defaultSize), qPrintable(m.kind));
            QCOMPARE(QSet<WidgetSize>(m.allowedSizes.cbegin(), m.allowedSizes.cend()).size(),
                     m.allowedSizes.size());
            QVERIFY2(!m.displayName.isEmpty() && !m.symbol.isEmpty(), qPrintable(m.kind));
            QVERIFY2(m.refresh.isNever() || m.refresh.interval()->count() > 0, qPrintable(m.kind));
            QVERIFY2(WidgetRegistry::maxInstances(m.kind) >= 1, qPrintable(m.kind));
            QCOMPARE(WidgetRegistry::builtInDefinition(m.kind), definition);
            checkOptions(m);
        }
    }

    // Every kind in exactly one group, groups in category order, none empty, each in catalogue
    // order; a kind of no category is a tool.
    void groupsPartitionTheCatalogue() {
        const QList<WidgetRegistry::CategoryGroup> groups = WidgetRegistry::grouped();
        auto group = groups.cbegin();
        for (const WidgetCategory category : tw::allWidgetCategories) {
            QStringList members;
            for (const WidgetDefinition& definition : WidgetRegistry::all()) {
                if (tw::widgetCategoryOf(definition.metadata.kind) == category) {
                    members << definition.metadata.kind;
                }
            }
            if (!members.isEmpty()) {
                QVERIFY(group != groups.cend());
                QCOMPARE(group->category, category);
                QCOMPARE(kindsOf((group++)->widgets), members);
                QCOMPARE(tw::widgetCategoryMembers(category), members);
            }
            QCOMPARE(tw::widgetCategoryFromRawValue(tw::rawValue(category)), category);
        }
        QVERIFY(group == groups.cend());
        QCOMPARE(tw::widgetCategoryFromRawValue(u"Tools"), std::nullopt);
        for (const char* kind : {"custom.X", "analogclock", "nosuchkind"}) {
            QCOMPARE(tw::widgetCategoryOf(QLatin1String(kind)), WidgetCategory::tools);
        }
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

        QCOMPARE(registry.definition(tides)->metadata.displayName, QStringLiteral("Tides"));
        QCOMPARE(registry.definition(QStringLiteral("custom.gone")), std::nullopt);
        QCOMPARE(custom.asked, (QStringList{tides, QStringLiteral("custom.gone")}));
        // Without custom definitions, and for built-ins only, a custom kind is unknown.
        QCOMPARE(WidgetRegistry().definition(tides), std::nullopt);
        QCOMPARE(WidgetRegistry::builtInDefinition(tides), std::nullopt);

        // The alias finds a view, not a limit: analog clocks are counted as their own kind.
        QCOMPARE(WidgetRegistry::maxInstances(tides), 5);
        QCOMPARE(WidgetRegistry::maxInstances(QStringLiteral("nosuchkind")), 1);
        QCOMPARE(WidgetRegistry::maxInstances(QStringLiteral("analogclock")), 1);
        QVERIFY(WidgetRegistry::contentKeys(QStringLiteral("nosuchkind")).isEmpty());
    }

    void copyLabel_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("label");
        row("folder path", "folder", "path", "/home/ada/Projects/", "Projects");
        row("folder unset", "folder", "", "", "Desktop");
        row("folder root", "folder", "path", "/", "/");
        row("photos", "photos", "folder", "~/Pictures/Trips", "Trips");
        row("countdown empty title", "countdown", "title", "", "");
        row("web host", "web", "url", "https://news.example.org/today", "news.example.org");
        row("web no host", "web", "url", "not a url", "");
        row("worldclock zone", "worldclock", "zone", "America/Argentina/Buenos_Aires",
            "Buenos_Aires");
        row("stocks", "stocks", "symbol", "AAPL", "AAPL");
        row("unlisted kind", "moon", "name", "Luna", "");
        row("wrong key", "stocks", "coin", "AAPL", "");
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
        QTest::addColumn<QString>("kinds"); // "*": the whole catalogue
        row("keyword", "cpu", "system");
        row("name", "music", "nowplaying");
        row("word prefix, any case", "  FOREC\n", "weather");
        row("name words", "clock", "clock,simpleclock,flipclock,wordclock,worldclock");
        row("every word must begin a word", "world clock", "worldclock");
        row("the middle of a word is no match", "lock", "toolbox");
        row("category title finds all of it", "ambient",
            "worldmap,moon,companion,ambientsound,starfield,mirror");
        row("keyword in the app's language", "L\u00dcFTER", "sensors");
        row("accents ignored", "warme", "sensors");
        row("English beside the app's language", "fan", "sensors");
        row("nothing", "zzz", "");
        row("blanks", " \t ", "*");
    }
    void search() {
        QFETCH(QString, query);
        QFETCH(QString, kinds);
        const QString found = kindsOf(WidgetRegistry::search(query)).join(QLatin1Char(','));
        QCOMPARE(found, kinds == QLatin1String("*")
                            ? kindsOf(WidgetRegistry::all()).join(QLatin1Char(','))
                            : kinds);
    }

    void sizeWordsReadBackAndSpansDiffer() {
        QSet<QString> spans;
        for (const WidgetSize size : tw::allWidgetSizes) {
            QCOMPARE(tw::widgetSizeFromRawValue(tw::rawValue(size)), size);
            spans.insert(tw::spanHint(size));
        }
        QCOMPARE(spans.size(), qsizetype(tw::allWidgetSizes.size()));
        // Words are matched exactly; retired ones are gone.
        for (const char* raw : {"", "Large", "widetall", " small", "medium"}) {
            QCOMPARE(tw::widgetSizeFromRawValue(QString::fromLatin1(raw)), std::nullopt);
        }
    }

    // The size reports compared whole with a reviewed copy under golden/.
    void sizeReportsMatchTheReviewedCopy() {
        const QString table = tw::SizeReport::table();
        const QString list = tw::SizeReport::listSizes();
        QVERIFY(table.endsWith(QLatin1Char('\n')) && list.endsWith(QLatin1Char('\n')));
        QStringList lines = QString(table + list).split(QLatin1Char('\n'));
        lines.removeLast();
        tw::test::compareWithGolden(QStringLiteral(TW_GOLDEN_DIR "/size-reports.txt"), lines);
    }
};

QTEST_GUILESS_MAIN(TestWidgetRegistry)
#include "tst_widgetregistry.moc"
