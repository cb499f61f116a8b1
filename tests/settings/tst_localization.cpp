#include "platform/null/MemoryDefaults.h"
#include "settings/AppSettings.h"
#include "settings/Formatters.h"
#include "settings/LMarkdown.h"
#include "settings/Localization.h"
#include "settings/StringTable.h"
#include "text/L.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QScopeGuard>
#include <QTest>

namespace Localization = tw::Localization;

class TestLocalization : public QObject {
    Q_OBJECT
private Q_SLOTS:
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
        const auto row = [](const char* name, const char* preferences, const char* expected) {
            QTest::newRow(name) << QString::fromLatin1(preferences)
                                << QString::fromLatin1(expected);
        };
        row("exact", "de", "de");
        row("region falls to language", "de-CH", "de");
        row("underscore form", "de_AT", "de");
        row("first served wins", "ja|de|en", "de");
        row("nothing served: English", "ja|ko", "en");
        row("no preferences: English", "", "en");
        row("Chinese by script", "zh-Hant", "zh-Hant");
        row("Chinese, Taiwan", "zh-TW", "zh-Hant");
        row("Chinese, Hong Kong", "zh_HK", "zh-Hant");
        row("Chinese, mainland", "zh-CN", "zh-Hans");
        row("Chinese, bare", "zh", "zh-Hans");
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
        QVERIFY(QDir().mkpath(strings));
        for (const QString& language : {QStringLiteral("de"), QStringLiteral("pt")}) {
            QFile file(strings + QLatin1Char('/') + language + QStringLiteral(".json"));
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write("{\"a.b\": \"c\"}") > 0);
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
            QFile file(Localization::tablePath(language));
            QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(language));
            const QJsonObject object = QJsonDocument::fromJson(file.readAll()).object();
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
