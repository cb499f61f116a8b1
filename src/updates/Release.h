// One published version: its number, day, notes and page.
#pragma once

#include "updates/SemanticVersion.h"

#include <QDate>
#include <QJsonObject>
#include <QStringList>
#include <QUrl>

#include <optional>

namespace tw {

struct Release {
    static constexpr qsizetype maxNotes = 30;
    static constexpr qsizetype maxNoteLength = 600;
    static constexpr qsizetype maxTitleLength = 120;

    SemanticVersion version;
    // Invalid when the list gives none.
    QDate date;
    QString title;
    // One line each, in the person's language where the list has it.
    QStringList notes;
    // An http or https page about the version; empty when the list gives none.
    QUrl page;

    // Notes as a list; the chosen language only.
    QJsonObject toJson() const;
    // Nullopt without a readable version. Notes may be a string (one line each), a list of
    // strings, or an object by language code, of which `language` ("de-CH"), then its first
    // part ("de"), then "en", then the first language is taken. Other members are lenient:
    // wrong types are absent, long texts cut, more notes than maxNotes dropped.
    static std::optional<Release> fromJson(const QJsonObject& object, const QString& language);

    bool operator==(const Release&) const = default;
};

} // namespace tw
