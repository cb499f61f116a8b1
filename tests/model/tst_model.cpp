// The model's rules: a widget instance and the stored layout of them (lenient decoding, encoding,
// the scale, the ready-made layouts); the catalogue's rules and look-ups, whose cells, with each
// size's span, words and points, are in the catalogue's golden copy (tests/look), and the command
// line's two reports of the sizes; and what a click on a tile resolves to and does.
#include "GoldenFile.h"
#include "TestRows.h"
#include "model/CustomWidgetDefinitions.h"
#include "model/GridLayout.h"
#include "model/SizeReport.h"
#include "model/WidgetAction.h"
#include "model/WidgetInstance.h"
#include "model/WidgetOption.h"
#include "model/WidgetRegistry.h"
#include "platform/null/NullNotifications.h"
#include "platform/null/NullWorkspace.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>

using tw::GridLayout;
using tw::ResolvedAction;
using tw::WidgetAction;
using tw::WidgetCategory;
using tw::WidgetDefinition;
using tw::WidgetInstance;
using tw::WidgetRegistry;
using tw::WidgetSettings;
using tw::WidgetSize;
using tw::test::row;

namespace {

std::optional<WidgetInstance> decode(const QString& json) {
    const QJsonDocument document = QJsonDocument::fromJson(json.toUtf8());
    return WidgetInstance::fromJson(document.isObject() ? QJsonValue(document.object())
                                                        : QJsonValue(document.array()));
}

// "kind size order page col,row posX,posY stackID stackIndex settings", "-" for what is absent and
// settings as "key=value;…".
QString describe(const WidgetInstance& i) {
    const auto orDash = [](const auto& value) {
        return value ? QVariant::fromValue(*value).toString() : QStringLiteral("-");
    };
    QString settings = QStringLiteral("-");
    if (i.settings) {
        QStringList pairs;
        for (auto it = i.settings->cbegin(); it != i.settings->cend(); ++it) {
            pairs << it.key() + QLatin1Char('=') + it.value();
        }
        settings = pairs.join(QLatin1Char(';'));
    }
    return QStringLiteral("%1 %2 %3 %4 %5,%6 %7,%8 %9 %10 %11")
        .arg(i.kind, tw::rawValue(i.size))
        .arg(i.order)
        .arg(i.page)
        .arg(i.col)
        .arg(i.row)
        .arg(orDash(i.posX), orDash(i.posY), orDash(i.stackID), orDash(i.stackIndex), settings);
}

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

// "action=target" pairs, or "-" for no settings at all.
std::optional<WidgetSettings> settingsFrom(const QString& pairs) {
    if (pairs == QLatin1String("-")) {
        return std::nullopt;
    }
    WidgetSettings settings;
    for (const QString& pair : pairs.split(QLatin1Char('|'), Qt::SkipEmptyParts)) {
        settings.insert(pair.section(QLatin1Char('='), 0, 0), pair.section(QLatin1Char('='), 1));
    }
    return settings;
}

QString describe(const std::optional<ResolvedAction>& action) {
    return action ? tw::rawValue(action->kind) + QLatin1Char(' ') + action->target
                  : QStringLiteral("no action");
}

} // namespace

class TestModel : public QObject {
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
            case tw::WidgetOption::Type::source:
                QVERIFY2(values.contains(option.defaultValue), qPrintable(where));
                break;
            case tw::WidgetOption::Type::toggle:
                QVERIFY2(values.isEmpty() && (option.defaultValue == QLatin1String("true") ||
                                              option.defaultValue == QLatin1String("false")),
                         qPrintable(where));
                break;
            case tw::WidgetOption::Type::text:
            case tw::WidgetOption::Type::lines:
            case tw::WidgetOption::Type::date:
            case tw::WidgetOption::Type::folder:
            case tw::WidgetOption::Type::app:
            case tw::WidgetOption::Type::apps:
                QVERIFY2(values.isEmpty(), qPrintable(where));
                break;
            case tw::WidgetOption::Type::quote:
                QVERIFY2(values.isEmpty() && !option.defaultValue.isEmpty(), qPrintable(where));
                break;
            }
        }
    }

private Q_SLOTS:
    void decoding_data() {
        QTest::addColumn<QString>("json");
        QTest::addColumn<QString>("expected");
        row("only a kind takes every default", R"({"kind":"clock"})",
            "clock large 0 0 -1,-1 -,- - - -");
        row("every key",
            R"({"kind":"a","size":"wide","order":4,"page":2,"col":3,"row":1,)"
            R"("posX":-1920.5,"posY":0,"stackID":"e621e1f8-c36c-495a-93fc-0c247a3e6e5f",)"
            R"("stackIndex":1,"settings":{"k":"v"}})",
            "a wide 4 2 3,1 -1920.5,0 {e621e1f8-c36c-495a-93fc-0c247a3e6e5f} 1 k=v");
        // Null stands for absent, a whole number written with a fraction is still whole, and a
        // setting of another kind costs only itself.
        row("nulls and whole fractions",
            R"({"kind":"note","id":null,"size":null,"col":2.0,"row":null,"posX":null,)"
            R"("stackID":null,"stackIndex":-1,"settings":{"a":"x","b":2,"c":true,"d":[1]}})",
            "note large 0 0 2,-1 -,- - -1 a=x;b=2;c=true");
        row("no kind", R"({"size":"small"})", "fails");
        row("unknown size", R"({"kind":"clock","size":"medium"})", "fails");
        row("not an object", R"(["kind","clock"])", "fails");
        // A key of the wrong type costs the widget rather than passing for its default.
        row("malformed id", R"({"kind":"clock","id":"not-a-uuid"})", "fails");
        row("malformed stackID", R"({"kind":"clock","stackID":42})", "fails");
        row("order a string", R"({"kind":"clock","order":"3"})", "fails");
        row("page a fraction", R"({"kind":"clock","page":1.5})", "fails");
        row("posX a string", R"({"kind":"clock","posX":"12"})", "fails");
        row("stackIndex a Boolean", R"({"kind":"clock","stackIndex":true})", "fails");
        row("settings a list", R"({"kind":"clock","settings":["a"]})", "fails");
    }
    void decoding() {
        QFETCH(QString, json);
        const auto instance = decode(json);
        QTEST(instance ? describe(*instance) : QStringLiteral("fails"), "expected");
        if (!instance) {
            return;
        }
        if (!json.contains(QLatin1String("\"id\""))) {
            QVERIFY(!instance->id.isNull());
            QVERIFY(instance->id != decode(json)->id);
        }
        // Written back the same, optionals only when set, identifiers in upper case.
        const QJsonObject written = instance->toJson();
        QCOMPARE(WidgetInstance::fromJson(written), instance);
        QCOMPARE(written.size(),
                 7 + int(instance->posX.has_value()) + int(instance->posY.has_value()) +
                     int(instance->stackID.has_value()) + int(instance->stackIndex.has_value()) +
                     int(instance->settings.has_value()));
        for (const char* key : {"id", "stackID"}) {
            const QString id = written.value(QLatin1String(key)).toString();
            QCOMPARE(id, id.toUpper());
        }
    }

    void scaleFromText_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("present");
        QTest::addColumn<double>("expected");
        QTest::newRow("absent") << QString() << false << 1.0;
        QTest::newRow("2.51 capped") << QStringLiteral("2.51") << true << 2.5;
        QTest::newRow("1.02 rounds down") << QStringLiteral("1.02") << true << 1.0;
        QTest::newRow("1.03 rounds up") << QStringLiteral("1.03") << true << 1.05;
        QTest::newRow("1.125 half away from zero") << QStringLiteral("1.125") << true << 1.15;
        QTest::newRow("0.5 below range") << QStringLiteral("0.5") << true << 1.0;
        QTest::newRow("nan") << QStringLiteral("nan") << true << 1.0;
        QTest::newRow("words") << QStringLiteral("big") << true << 1.0;
    }
    // The tile scale as stored, and the pixel size it gives a large tile.
    void scaleFromText() {
        QFETCH(QString, text);
        QFETCH(bool, present);
        QFETCH(double, expected);
        const std::optional<QString> stored = present ? std::optional(text) : std::nullopt;
        const double scale = WidgetInstance::scale(stored);
        QVERIFY2(qFuzzyCompare(scale, expected), qPrintable(QString::number(scale)));
        WidgetInstance instance;
        instance.size = WidgetSize::large;
        if (stored) {
            instance.settings = tw::WidgetSettings{{QStringLiteral("tileScale"), *stored}};
        }
        QCOMPARE(instance.pixelSize(), QSizeF(204, 204) * expected);
    }

    // What a stored text decodes to: "fails", or the kinds kept, the page count and the stamp.
    void layoutDecoding_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        row("one bad instance costs only itself",
            R"({"instances":[{"kind":"clock","size":"small"},{"kind":"weather","size":"enormous"},)"
            R"({"size":"large"},"garbage",{"kind":"battery","size":"wide"}],"pageCount":1})",
            "clock,battery pages=1 savedAt=-");
        row("no instances", R"({"pageCount":2})", "fails");
        row("not JSON", "{\"instances\":[", "fails");
        row("stored 1, instance on page 3",
            R"({"instances":[{"kind":"clock","page":3}],"pageCount":1})",
            "clock pages=4 savedAt=-");
        row("stored larger wins", R"({"instances":[{"kind":"a","page":1}],"pageCount":6})",
            "a pages=6 savedAt=-");
        row("stored 0, empty", R"({"instances":[],"pageCount":0})", " pages=1 savedAt=-");
        row("page of the dropped instance ignored", R"({"instances":[{"kind":"a"},{"page":9}]})",
            "a pages=1 savedAt=-");
        row("largest page cannot overflow", R"({"instances":[{"kind":"a","page":2147483647}]})",
            "a pages=2147483647 savedAt=-");
        row("savedAt in seconds since 2001", R"({"instances":[],"savedAt":0.5})",
            " pages=1 savedAt=2001-01-01T00:00:00.500Z");
        row("savedAt a string", R"({"instances":[],"savedAt":"2026-03-14"})", " pages=1 savedAt=-");
        row("savedAt far future", R"({"instances":[],"savedAt":1e300})", " pages=1 savedAt=-");
        row("savedAt far past", R"({"instances":[],"savedAt":-1e300})", " pages=1 savedAt=-");
    }
    void layoutDecoding() {
        QFETCH(QString, text);
        const auto layout = GridLayout::fromJsonText(text.toUtf8());
        QString actual = QStringLiteral("fails");
        if (layout) {
            QStringList kinds;
            for (const WidgetInstance& instance : layout->instances) {
                kinds << instance.kind;
            }
            actual = QStringLiteral("%1 pages=%2 savedAt=%3")
                         .arg(kinds.join(QLatin1Char(',')))
                         .arg(layout->pageCount)
                         .arg(layout->savedAt ? layout->savedAt->toString(Qt::ISODateWithMs)
                                              : QStringLiteral("-"));
            // Written back in one line and read the same.
            QVERIFY(!layout->toJsonText().contains('\n'));
            QCOMPARE(GridLayout::fromJsonText(layout->toJsonText()), layout);
        }
        QTEST(actual, "expected");
    }

    void readyMadeLayouts() {
        const auto layoutText = [](const GridLayout& layout) -> QString {
            QStringList lines;
            for (const WidgetInstance& instance : layout.instances) {
                lines << describe(instance);
            }
            return lines.join(QStringLiteral("; ")) +
                   QStringLiteral(" pages=%1").arg(layout.pageCount);
        };
        const GridLayout first = GridLayout::firstDesktop();
        QCOMPARE(layoutText(first),
                 QStringLiteral("clock large 0 0 0,0 -,- - - -; calendar large 1 0 2,0 -,- - - -; "
                                "weather wide 2 0 0,2 -,- - - - pages=1"));
        QCOMPARE(layoutText(GridLayout::starter()),
                 QStringLiteral(
                     "clock large 0 0 0,0 -,- - - style=analog; weather wide 1 0 2,0 -,- - - -; "
                     "calendar small 2 0 4,0 -,- - - -; battery small 3 0 5,0 -,- - - style=ring "
                     "pages=1"));
        // Every call gives new identities, so two desktops never share an instance.
        QVERIFY(GridLayout::firstDesktop().instances.at(0).id != first.instances.at(0).id);
    }

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

    // A kind and its settings ("-" for none; "fail" makes the workspace refuse), what they
    // resolve to, and what running it does: the requests made ("-" when nothing is to run) and
    // "!" before a notice shown.
    void resolvedAndRun_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("settings");
        QTest::addColumn<QString>("resolved");
        QTest::addColumn<QString>("outcome");
        const char* none = "clickAction=none|clickTarget=x";
        row("default of calendar", "calendar", "-", "app calendar", "application /apps/calendar");
        row("explicit none beats the default", "calendar", none, "no action", "-");
        row("url with a blank target, not the default", "calendar",
            "clickAction=url|clickTarget=  \n", "no action", "-");
        row("target trimmed", "moon", "clickAction=url|clickTarget=  example.com\n",
            "url example.com", "open https://example.com");
        row("shortcut", "moon", "clickAction=shortcut|clickTarget= Focus  ", "shortcut Focus",
            "shortcut Focus");
        row("unknown action falls back to a role nothing takes", "clock",
            "clickAction=launch|clickTarget=x", "app clock",
            "! Nothing opens clocks | Install a clock app, or choose one as the default in your "
            "desktop's settings.");
        row("silent kind", "crypto", "-", "no action", "-");
        row("silent kind, chosen app", "crypto", "clickAction=app|clickTarget=org.gnome.Calculator",
            "app org.gnome.Calculator", "by-name org.gnome.Calculator");
        row("an address that cannot be one", "moon", "clickAction=url|clickTarget=exa mple.com",
            "url exa mple.com",
            "! Nothing opens “exa mple.com” | This address cannot be opened. Check the widget's "
            "click action in its settings.");
        row("a program that fails", "moon",
            "clickAction=app|clickTarget=Nothing|fail=no application named Nothing", "app Nothing",
            "by-name Nothing ! Nothing opens “Nothing” | No application of that name is installed. "
            "Install it, or choose another in the widget's settings.");
    }
    void resolvedAndRun() {
        QFETCH(QString, kind);
        QFETCH(QString, settings);
        QFETCH(QString, outcome);
        std::optional<WidgetSettings> given = settingsFrom(settings);
        tw::NullWorkspace workspace;
        if (given && given->contains(QStringLiteral("fail"))) {
            workspace.failWith(given->take(QStringLiteral("fail")));
        }
        workspace.addRoleApplication(tw::AppRole::calendar, QStringLiteral("/apps/calendar"));
        workspace.addRoleApplication(tw::AppRole::settings, QStringLiteral("/apps/settings"));
        workspace.addRoleApplication(tw::AppRole::systemMonitor,
                                     QStringLiteral("/apps/system-monitor"));
        tw::NullNotifications notifications;
        const auto action = WidgetAction::resolved(kind, given);
        QTEST(describe(action), "resolved");
        if (outcome.contains(QLatin1Char('!'))) {
            QTest::ignoreMessage(QtCriticalMsg,
                                 QRegularExpression(QStringLiteral("^action failed: .+")));
        }
        QStringList done = action && WidgetAction::run(workspace, notifications, *action)
                               ? workspace.requests()
                               : QStringList{QStringLiteral("-")};
        for (const auto& message : notifications.shown()) {
            done << QStringLiteral("! ") + message.title + QLatin1String(" | ") + message.body;
        }
        QCOMPARE(done.join(QLatin1Char(' ')), outcome);
    }

    void resolvedURL_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("url");
        row("blanks", " \t\n", "");
        row("bare host", "example.com", "https://example.com");
        row("trimmed", "  https://x.org/a \n", "https://x.org/a");
        row("host with port", "host:8080/path", "https://host:8080/path");
        row("other scheme kept", "ftp://files.example.org", "ftp://files.example.org");
        row("mail link with blank", "mailto:a b@x.de", "mailto:a%20b@x.de");
        row("blank in path", "example.com/a b", "https://example.com/a%20b");
        row("umlauts", "münchen.de/straße", "https://xn--mnchen-3ya.de/stra%C3%9Fe");
        row("lone percent", "example.com/100%", "https://example.com/100%25");
        row("invalid host even encoded", "exa mple.com", "");
    }
    void resolvedURL() {
        QFETCH(QString, text);
        const std::optional<QUrl> url = WidgetAction::resolvedURL(text);
        QTEST(url ? url->toString(QUrl::FullyEncoded) : QString(), "url");
    }

    void openAppTriesInOrder_data() {
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("request");
        row("identifier known", "org.example.Editor", "application /apps/editor");
        row("identifier unknown, name known", "net.example.clock", "application /apps/clock");
        row("a role by its raw value", "Terminal", "application /apps/terminal");
        row("a role nothing takes", "music-player", "by-name music-player");
        row("name", "Editor", "application /apps/editor");
        row("a blank is no identifier", "org.example.Editor x", "by-name org.example.Editor x");
        row("missing absolute path", "/nonexistent/tool", "by-name /nonexistent/tool");
        row("an existing file is opened", "<file>", "open <file>");
    }
    void openAppTriesInOrder() {
        QFETCH(QString, target);
        QFETCH(QString, request);
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("notes.txt"));
        QVERIFY(QFile(file).open(QIODevice::WriteOnly));
        target.replace(QStringLiteral("<file>"), file);
        request.replace(QStringLiteral("<file>"), QUrl::fromLocalFile(file).toString());
        tw::NullWorkspace workspace;
        workspace.addApplication(QStringLiteral("org.example.Editor"), QStringLiteral("Editor"),
                                 QStringLiteral("/apps/editor"));
        workspace.addApplication(QStringLiteral("org.example.Clock"),
                                 QStringLiteral("net.example.clock"),
                                 QStringLiteral("/apps/clock"));
        workspace.addRoleApplication(tw::AppRole::terminal, QStringLiteral("/apps/terminal"));
        WidgetAction::openApp(workspace, target);
        QCOMPARE(workspace.requests(), QStringList{request});
    }
};

QTEST_GUILESS_MAIN(TestModel)
#include "tst_model.moc"
