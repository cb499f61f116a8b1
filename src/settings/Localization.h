// Which language the application speaks: the languages offered, their names, the one chosen at
// launch and the locale every formatter uses.
#pragma once

#include <QLocale>
#include <QString>
#include <QStringList>

namespace tw {

class Defaults;

namespace Localization {

// The language worked out at launch and the string table that speaks it; English has no table
// because its words are the defaults in the code.
struct Resolved {
    QString language;
    QString tablePath;

    friend bool operator==(const Resolved&, const Resolved&) = default;
};

// The key of the application's own defaults that forces a language ahead of the system's.
QString appleLanguagesKey();
// The language every default in the code is written in.
QString developmentLanguage();

// The languages offered: "en", "de", "fr", "es", "it", "ja", "zh-Hans", "zh-Hant", then any other
// language a string table ships for, sorted.
QStringList supportedLanguages();
// The languages text exists for: English and every shipped string table.
QStringList availableLanguages();
// True for "system" and for every supported language.
bool isSupported(const QString& language);
// "system" as the localised "System"; any other code as its name in its own language.
QString languageName(const QString& code);
// The path of the string table of `language`: installed in share/tarnwick/strings beside the
// executable's directory, else compiled in; empty when none ships.
QString tablePath(const QString& language);

// "AppleLanguages" of `defaults` when present, else the system's languages.
QStringList preferredLanguages(const Defaults& defaults);
// The first of `preferences` that one of `available` serves, matching "de-CH" to "de" and
// "zh-TW" to "zh-Hant"; the development language when none does.
QString bestLanguage(const QStringList& preferences, const QStringList& available);
Resolved resolve(const Defaults& defaults);

// Installs the string table of `resolved` on the running QCoreApplication and makes its locale
// Qt's default locale. Once, at start-up.
void install(const Resolved& resolved);
// Installs this system's own wording (a string table in the development language) beneath every
// language's table. Before install().
void installPlatformWording(const QString& tablePath);
// The locale of a language code ("zh-Hans" included).
QLocale localeFor(const QString& language);
// The locale of the language chosen at launch: dates follow the application's language, not the
// system's.
QLocale locale();

} // namespace Localization
} // namespace tw
