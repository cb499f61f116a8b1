#include "settings/Localization.h"

#include "platform/Defaults.h"
#include "settings/StringTable.h"
#include "text/L.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>

namespace tw::Localization {

Q_LOGGING_CATEGORY(lcLocalization, "Localization")

namespace {

// The tables installed beside the executable's directory come first, so that one can be added or
// mended without a new build; the compiled-in ones stand behind them.
QStringList tableDirectories() {
    QStringList directories;
    if (QCoreApplication::instance() != nullptr) {
        directories << QCoreApplication::applicationDirPath() +
                           QStringLiteral("/../share/tarnwick/strings");
    }
    directories << QStringLiteral(":/strings");
    return directories;
}

QStringList fixedOrder() {
    return {QStringLiteral("en"),      QStringLiteral("de"),     QStringLiteral("fr"),
            QStringLiteral("es"),      QStringLiteral("it"),     QStringLiteral("ja"),
            QStringLiteral("zh-Hans"), QStringLiteral("zh-Hant")};
}

QStringList shippedTables() {
    QStringList languages;
    for (const QString& directory : tableDirectories()) {
        const QStringList files =
            QDir(directory).entryList({QStringLiteral("*.json")}, QDir::Files, QDir::Name);
        for (const QString& file : files) {
            if (!languages.contains(file.chopped(5))) {
                languages << file.chopped(5);
            }
        }
    }
    return languages;
}

// Chinese is served by script, whatever region or script the preference names.
QString chineseScript(const QStringList& subtags) {
    static const QStringList traditional{QStringLiteral("hant"), QStringLiteral("tw"),
                                         QStringLiteral("hk"), QStringLiteral("mo")};
    for (const QString& subtag : subtags.mid(1)) {
        if (subtag.compare(QLatin1String("hans"), Qt::CaseInsensitive) == 0) {
            return QStringLiteral("zh-Hans");
        }
        if (traditional.contains(subtag.toLower())) {
            return QStringLiteral("zh-Hant");
        }
    }
    return QStringLiteral("zh-Hans");
}

QString findIn(const QStringList& available, const QString& code) {
    for (const QString& language : available) {
        if (language.compare(code, Qt::CaseInsensitive) == 0) {
            return language;
        }
    }
    return {};
}

} // namespace

QString appleLanguagesKey() {
    return QStringLiteral("AppleLanguages");
}

QString developmentLanguage() {
    return QStringLiteral("en");
}

QStringList supportedLanguages() {
    QStringList languages = fixedOrder();
    QStringList others;
    for (const QString& language : shippedTables()) {
        if (!languages.contains(language)) {
            others << language;
        }
    }
    others.sort();
    return languages + others;
}

QStringList availableLanguages() {
    QStringList languages{developmentLanguage()};
    for (const QString& language : shippedTables()) {
        if (!languages.contains(language)) {
            languages << language;
        }
    }
    return languages;
}

bool isSupported(const QString& language) {
    return language == QLatin1String("system") || supportedLanguages().contains(language);
}

QString languageName(const QString& code) {
    if (code == QLatin1String("system")) {
        return L("general.language.system", QStringLiteral("System"));
    }
    const QLocale locale = localeFor(code);
    if (locale.language() == QLocale::C) {
        return code;
    }
    const QString name = locale.nativeLanguageName();
    return name.isEmpty() ? code : name;
}

QString tablePath(const QString& language) {
    for (const QString& directory : tableDirectories()) {
        const QString path = directory + QLatin1Char('/') + language + QStringLiteral(".json");
        if (QFileInfo(path).isFile()) {
            return QDir::cleanPath(path);
        }
    }
    return {};
}

QStringList preferredLanguages(const Defaults& defaults) {
    const QVariant stored = defaults.value(appleLanguagesKey());
    QStringList languages = stored.toStringList();
    languages.removeAll(QString());
    if (!languages.isEmpty()) {
        return languages;
    }
    return QLocale::system().uiLanguages();
}

QString bestLanguage(const QStringList& preferences, const QStringList& available) {
    for (const QString& preference : preferences) {
        QStringList subtags = QString(preference)
                                  .replace(QLatin1Char('_'), QLatin1Char('-'))
                                  .split(QLatin1Char('-'), Qt::SkipEmptyParts);
        if (subtags.isEmpty()) {
            continue;
        }
        if (subtags.constFirst().compare(QLatin1String("zh"), Qt::CaseInsensitive) == 0) {
            if (const QString found = findIn(available, chineseScript(subtags)); !found.isEmpty()) {
                return found;
            }
            continue;
        }
        // "de-CH-1996" tries "de-CH-1996", "de-CH", then "de".
        while (!subtags.isEmpty()) {
            if (const QString found = findIn(available, subtags.join(QLatin1Char('-')));
                !found.isEmpty()) {
                return found;
            }
            subtags.removeLast();
        }
    }
    return developmentLanguage();
}

Resolved resolve(const Defaults& defaults) {
    const QString language = bestLanguage(preferredLanguages(defaults), availableLanguages());
    return {language, tablePath(language)};
}

void install(const Resolved& resolved) {
    QLocale::setDefault(localeFor(resolved.language));
    if (resolved.tablePath.isEmpty()) {
        return;
    }
    auto* app = QCoreApplication::instance();
    if (!app) {
        qCWarning(lcLocalization) << "No application to install the string table on";
        return;
    }
    auto* table = new StringTable(app);
    if (!table->loadTable(resolved.tablePath, resolved.language)) {
        delete table;
        return;
    }
    QCoreApplication::installTranslator(table);
}

void installPlatformWording(const QString& tablePath) {
    auto* app = QCoreApplication::instance();
    if (!app || tablePath.isEmpty()) {
        return;
    }
    auto* table = new StringTable(app);
    if (!table->loadTable(tablePath, developmentLanguage())) {
        delete table;
        return;
    }
    // Translators installed later are asked first, so the language's own table wins.
    QCoreApplication::installTranslator(table);
}

QLocale localeFor(const QString& language) {
    return QLocale(QString(language).replace(QLatin1Char('-'), QLatin1Char('_')));
}

QLocale locale() {
    return QLocale();
}

} // namespace tw::Localization
