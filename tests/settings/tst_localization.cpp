#include "Files.h"
#include "TestRows.h"
#include "platform/null/MemoryDefaults.h"
#include "settings/AppSettings.h"
#include "settings/Formatters.h"
#include "settings/LMarkdown.h"
#include "settings/Localization.h"
#include "settings/StringTable.h"
#include "settings/StyledText.h"
#include "text/L.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QScopeGuard>
#include <QTest>
#include <QTimeZone>

#include <thread>
#include <vector>

using tw::test::readFile;
using tw::test::row;
using tw::test::writeFile;

namespace Localization = tw::Localization;
using tw::Formatters;
using tw::Grouping;
using tw::StyledText;
using tw::TextStyle;

namespace {

// "B", "I", "C", "S" for the styles, "P" for none, "L(target)" for a link; runs joined by "|".
QString dump(const StyledText& text) {
    QStringList runs;
    for (const tw::StyledRun& run : text.runs) {
        QString tag;
        for (const auto& [flag, letter] :
             {std::pair(TextStyle::strong, 'B'), std::pair(TextStyle::emphasis, 'I'),
              std::pair(TextStyle::code, 'C'), std::pair(TextStyle::strikethrough, 'S')}) {
            if (run.style.testFlag(flag)) {
                tag += QLatin1Char(letter);
            }
        }
        if (!run.link.isEmpty()) {
            tag += QStringLiteral("L(") + run.link + QLatin1Char(')');
        }
        runs << (tag.isEmpty() ? QStringLiteral("P") : tag) + QLatin1Char(':') + run.text;
    }
    return runs.join(QLatin1Char('|'));
}

} // namespace

// The application's language: which table serves it, the look-ups (styled ones too) and the
// formatters that speak it.
class TestLocalization : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }

    void datesInTheirZone_data() {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QString>("zone");
        QTest::addColumn<QDateTime>("time");
        QTest::addColumn<QString>("expected");
        const QDateTime noonUtc(QDate(2026, 3, 14), QTime(12, 5), Qt::UTC);
        row("New York, day and month", "ddd d MMM HH:mm", "America/New_York", noonUtc,
            "Sat 14 Mar 08:05");
        row("next day east", "d.M. HH:mm", "Pacific/Kiritimati", noonUtc, "15.3. 02:05");
        row("invalid time", "HH:mm", "Asia/Tokyo", QDateTime(), "—");
        row("an unknown zone is local time", "HH:mm", "Mars/Olympus_Mons", noonUtc,
            noonUtc.toLocalTime().toString(QStringLiteral("HH:mm")));
    }
    void datesInTheirZone() {
        QFETCH(QString, pattern);
        QFETCH(QString, zone);
        QFETCH(QDateTime, time);
        const auto formatter = Formatters::date(pattern, zone.toLatin1());
        QTEST(formatter->string(time), "expected");
        QCOMPARE(formatter->timeZone().has_value(), QTimeZone(zone.toLatin1()).isValid());
    }

    void numbers_data() {
        QTest::addColumn<int>("decimals");
        QTest::addColumn<Grouping>("grouping");
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("expected");
        row("grouped", 1, Grouping::on, 1234567.24, "1,234,567.2");
        row("ungrouped", 1, Grouping::off, 1234567.24, "1234567.2");
        row("no decimals rounds", 0, Grouping::on, 2.5, "3");
        row("negative", 2, Grouping::on, -1500.0, "-1,500.00");
        row("rounds to zero, no sign", 1, Grouping::on, -0.04, "0.0");
        row("negative zero", 0, Grouping::off, -0.0, "0");
        row("NaN", 2, Grouping::on, std::nan(""), "—");
        row("decimals held at 0", -3, Grouping::off, 9.75, "10");
        row("decimals held at 15", 40, Grouping::off, 0.5, "0.500000000000000");
    }
    void numbers() {
        QFETCH(int, decimals);
        QFETCH(Grouping, grouping);
        QFETCH(double, value);
        QTEST(Formatters::number(decimals, grouping)->string(value), "expected");
    }

    // Formatters are cached by pattern and zone: every thread asking for the same key gets the one
    // formatter, and none is made twice.
    void sharedAcrossThreads() {
        constexpr int threads = 4;
        constexpr int keys = 16;
        std::vector<std::vector<const tw::DateFormatter*>> seen(threads);
        std::vector<std::thread> workers;
        for (int t = 0; t < threads; ++t) {
            workers.emplace_back([&seen = seen[t]] {
                for (int round = 0; round < 200 * keys; ++round) {
                    const auto formatter = Formatters::date(
                        QStringLiteral("'k%1' HH:mm:ss").arg(round % keys), "Europe/Berlin");
                    if (round < keys) {
                        seen.push_back(formatter.get());
                    }
                    const QString text = formatter->string(QDateTime::currentDateTimeUtc());
                    Q_UNUSED(text);
                }
            });
        }
        for (auto& worker : workers) {
            worker.join();
        }
        for (int t = 1; t < threads; ++t) {
            QCOMPARE(seen[t], seen[0]);
        }
    }

    // The date cache is bounded: past its size it starts over, and a formatter handed out before
    // keeps working for its holder.
    void boundedDateCache() {
        const auto first = Formatters::date(QStringLiteral("'first' HH:mm"), "Europe/Berlin");
        for (qsizetype i = 0; i < Formatters::heldDates; ++i) {
            Formatters::date(QStringLiteral("'n%1' HH").arg(i));
        }
        QVERIFY(Formatters::date(QStringLiteral("'first' HH:mm"), "Europe/Berlin") != first);
        QCOMPARE(first->string(QDateTime(QDate(2026, 3, 14), QTime(8, 5), QTimeZone::utc())),
                 QStringLiteral("first 09:05"));
    }

    void parses_data() {
        QTest::addColumn<QString>("markdown");
        QTest::addColumn<QString>("runs");
        row("strong", "**Hold** to move", "B:Hold|P: to move");
        row("emphasis both ways", "*one* and _two_", "I:one|P: and |I:two");
        row("strong and emphasis", "***all***", "BI:all");
        row("nested", "**a *b* c**", "B:a |BI:b|B: c");
        row("struck", "~~old~~ new", "S:old|P: new");
        row("code keeps markers", "type `a*b*c`", "P:type |C:a*b*c");
        row("link", "see [the guide](https://example.org/guide) now",
            "P:see |L(https://example.org/guide):the guide|P: now");
        row("bracket without link", "[x] done", "P:[x] done");
        row("escapes", "\\*not\\* \\_this\\_", "P:*not* _this_");
        row("snake case", "tarnwick_app_name", "P:tarnwick_app_name");
        row("lone star", "5 * 3 = 15", "P:5 * 3 = 15");
        row("single tilde", "~5 min", "P:~5 min");
        row("heading and list", "# Tips\n- drag\n* **stack**", "B:Tips|P:\n• drag\n• |B:stack");
        row("lines stay lines", "one\ntwo", "P:one\ntwo");
        row("empty", "", "");
    }
    void parses() {
        QFETCH(QString, markdown);
        const auto parsed = StyledText::fromMarkdown(markdown);
        QVERIFY(parsed);
        QTEST(dump(*parsed), "runs");
        // A look-up with no translation parses its English default the same way.
        QCOMPARE(tw::LMarkdown("test.markdown.unknownKey", markdown), *parsed);
    }

    void failures_data() {
        QTest::addColumn<QString>("markdown");
        row("open strong", QStringLiteral("**open"));
        row("open code", QStringLiteral("a `b"));
        row("crossed markers", QStringLiteral("**a *b** c*"));
        row("marker across lines", QStringLiteral("**one\ntwo**"));
    }
    void failures() {
        QFETCH(QString, markdown);
        QVERIFY(!StyledText::fromMarkdown(markdown));
        // The look-up keeps the text as written rather than losing it.
        const StyledText kept = tw::LMarkdown("test.markdown.unknownKey", markdown);
        QCOMPARE(kept, StyledText::plain(markdown));
        QCOMPARE(kept.plainText(), markdown);
    }

    void plainTextDropsTheMarkers() {
        QCOMPARE(StyledText::fromMarkdown(u"Press **⇧** to `move`")->plainText(),
                 QStringLiteral("Press ⇧ to move"));
    }

    void supportedLanguagesInTheirOrder() {
        QStringList supported = Localization::supportedLanguages();
        QCOMPARE(supported.mid(0, 8).join(QLatin1Char(' ')),
                 QStringLiteral("en de fr es it ja zh-Hans zh-Hant"));
        QCOMPARE(supported.removeDuplicates(), 0);
        QVERIFY(Localization::availableLanguages().contains(QStringLiteral("en")));
        QVERIFY(Localization::availableLanguages().contains(QStringLiteral("de")));
        QVERIFY(Localization::isSupported(QStringLiteral("system")));
        QVERIFY(!Localization::isSupported(QStringLiteral("de-DE")));
        // Each language by its own name; a code nobody knows stays as it is.
        for (const auto& [code, name] : {std::pair("system", "System"), std::pair("de", "Deutsch"),
                                         std::pair("fr", "français"), std::pair("ja", "日本語"),
                                         std::pair("zh-Hant", "繁體中文"), std::pair("qq", "qq")}) {
            QCOMPARE(Localization::languageName(QLatin1String(code)), QString::fromUtf8(name));
        }
    }

    // Which table serves a list of preferred languages, as the system matches them.
    // Preferences separated by "|"; the tables shipped are en, de, zh-Hans, zh-Hant and pt-BR.
    void languageChain_data() {
        QTest::addColumn<QString>("preferences");
        QTest::addColumn<QString>("expected");
        row("region falls to language", "de-CH", "de");
        row("underscore form", "de_AT", "de");
        row("first served wins", "ja|de|en", "de");
        row("nothing served: English", "ja|ko", "en");
        row("Chinese by script", "zh-Hant", "zh-Hant");
        row("Chinese, Taiwan", "zh-TW", "zh-Hant");
        row("Chinese, mainland", "zh-CN", "zh-Hans");
        row("script and region", "zh-Hans-SG", "zh-Hans");
        row("case-insensitive", "DE-de", "de");
        row("regional table", "pt-BR", "pt-BR");
        row("language alone does not pick a regional table", "pt", "en");
        row("empty entries skipped", "|-|de", "de");
    }
    void languageChain() {
        QFETCH(QString, preferences);
        const QStringList list =
            preferences.isEmpty() ? QStringList() : preferences.split(QLatin1Char('|'));
        const QStringList shipped{QStringLiteral("en"), QStringLiteral("de"),
                                  QStringLiteral("zh-Hans"), QStringLiteral("zh-Hant"),
                                  QStringLiteral("pt-BR")};
        QTEST(Localization::bestLanguage(list, shipped), "expected");
        if (list.contains(QStringLiteral("zh-TW"))) {
            QCOMPARE(Localization::bestLanguage(list, {QStringLiteral("en")}),
                     QStringLiteral("en"));
        }
    }

    // "AppleLanguages" of the application's own defaults comes before the system's languages.
    void preferencesReadAppleLanguagesFirst() {
        tw::MemoryDefaults defaults;
        QCOMPARE(Localization::preferredLanguages(defaults), QLocale::system().uiLanguages());
        defaults.setValue(QStringLiteral("AppleLanguages"),
                          QStringList{QStringLiteral("de"), QStringLiteral("fr")});
        QCOMPARE(Localization::preferredLanguages(defaults),
                 (QStringList{QStringLiteral("de"), QStringLiteral("fr")}));
        QCOMPARE(
            Localization::resolve(defaults),
            (Localization::Resolved{QStringLiteral("de"), QStringLiteral(":/strings/de.json")}));
        // A single word, as an INI file gives back a one-element list.
        defaults.setValue(QStringLiteral("AppleLanguages"), QStringLiteral("ja"));
        QCOMPARE(Localization::preferredLanguages(defaults), QStringList{QStringLiteral("ja")});
        QCOMPARE(Localization::resolve(defaults),
                 (Localization::Resolved{QStringLiteral("en"), QString()}));
    }

    void stringTableIsLenient() {
        tw::StringTable table;
        QVERIFY(table.loadJson(R"({"a.b": "Eins", "n": 3, "list": ["x"], "e": ""})",
                               QStringLiteral("de")));
        QCOMPARE(table.count(), 2);
        QCOMPARE(table.translate("tarnwick", "a.b"), QStringLiteral("Eins"));
        QCOMPARE(table.translate("other", "a.b"), QString());
        QCOMPARE(table.translate("tarnwick", "n"), QString());
        QCOMPARE(table.tableLanguage(), QStringLiteral("de"));

        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("not a JSON object")));
        QVERIFY(!table.loadJson("{\"a.b\": \"Eins\"", QStringLiteral("de")));
        QVERIFY(table.isEmpty());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("Cannot read")));
        QVERIFY(!table.loadTable(QStringLiteral(":/strings/none.json"), QStringLiteral("xx")));
    }

    // An installed program reads its tables from share/tarnwick/strings beside its bin directory,
    // ahead of the compiled-in ones; a table found only there is a language too.
    void installedTablesComeFirst() {
        const QString share = QCoreApplication::applicationDirPath() + QStringLiteral("/../share");
        QVERIFY(!QDir(share).exists());
        const QString strings = share + QStringLiteral("/tarnwick/strings");
        const auto removeShare = qScopeGuard([&] { QDir(share).removeRecursively(); });
        for (const QString& language : {QStringLiteral("de"), QStringLiteral("pt")}) {
            QVERIFY(writeFile(strings + QLatin1Char('/') + language + QStringLiteral(".json"),
                              "{\"a.b\": \"c\"}"));
        }
        QCOMPARE(Localization::tablePath(QStringLiteral("de")),
                 QDir::cleanPath(strings + QStringLiteral("/de.json")));
        QCOMPARE(Localization::tablePath(QStringLiteral("fr")), QString());
        QCOMPARE(Localization::supportedLanguages().last(), QStringLiteral("pt"));
        QVERIFY(QDir(share).removeRecursively());
        QCOMPARE(Localization::tablePath(QStringLiteral("de")),
                 QStringLiteral(":/strings/de.json"));
    }

    // Every shipped table is a flat object of non-empty texts.
    void shippedTablesAreWellFormed() {
        for (const QString& language : Localization::availableLanguages()) {
            if (language == Localization::developmentLanguage()) {
                QVERIFY(Localization::tablePath(language).isEmpty());
                continue;
            }
            const QJsonObject object =
                QJsonDocument::fromJson(readFile(Localization::tablePath(language))).object();
            QVERIFY2(!object.isEmpty(), qPrintable(language));
            for (auto it = object.begin(); it != object.end(); ++it) {
                QVERIFY2(it.value().isString() && !it.value().toString().isEmpty(),
                         qPrintable(language + QLatin1Char(' ') + it.key()));
            }
        }
    }

    // Start-up end to end: the stored choice reaches "AppleLanguages", the table of the resolved
    // language answers L, and the formatters speak it. Runs last: it changes the process.
    void startupInstallsTheChosenLanguage() {
        tw::MemoryDefaults defaults;
        defaults.setValue(QStringLiteral("tarnwick.appLanguage"), QStringLiteral("de"));
        QCOMPARE(tw::L("size.small", QStringLiteral("Small (1×1)")), QStringLiteral("Small (1×1)"));

        QCOMPARE(tw::AppSettings::applyLanguagePreferenceAtStartup(defaults), QStringLiteral("de"));
        QCOMPARE(defaults.value(QStringLiteral("AppleLanguages")).toStringList(),
                 QStringList{QStringLiteral("de")});
        QCOMPARE(tw::L("size.small", QStringLiteral("Small (1×1)")), QStringLiteral("Klein (1×1)"));
        QCOMPARE(tw::L("size.wideTall", QStringLiteral("Big (3×2)")),
                 QStringLiteral("Größer (3×2)"));
        QCOMPARE(tw::L("test.notInAnyTable", QStringLiteral("English")), QStringLiteral("English"));
        QCOMPARE(tw::AppSettings::subtitle(tw::AppSettings::EnergyMode::saver),
                 QStringLiteral("Stehende Bilder mit möglichst wenigen Aktualisierungen"));
        QCOMPARE(Localization::languageName(QStringLiteral("system")), QStringLiteral("System"));
        QCOMPARE(Localization::locale().language(), QLocale::German);
        QCOMPARE(tw::Formatters::date(QStringLiteral("d. MMMM"), "Europe/Berlin")
                     ->string(QDateTime(QDate(2026, 3, 14), QTime(12, 0), Qt::UTC)),
                 QStringLiteral("14. März"));
        QCOMPARE(tw::Formatters::number(3, tw::Grouping::on)->string(1234.5),
                 QStringLiteral("1.234,500"));
    }
};

QTEST_GUILESS_MAIN(TestLocalization)
#include "tst_localization.moc"
