#include "updates/Release.h"

#include <QJsonArray>
#include <QRegularExpression>

namespace tw {

namespace {

QString cut(const QString& text, qsizetype length) {
    QString trimmed = text.simplified();
    if (trimmed.size() > length) {
        trimmed.truncate(length - 1);
        // Never half a character.
        if (trimmed.back().isHighSurrogate()) {
            trimmed.chop(1);
        }
        trimmed += QChar(0x2026);
    }
    return trimmed;
}

QStringList linesOf(const QJsonValue& value) {
    QStringList lines;
    if (value.isString()) {
        // Text is one note a line, written as a list by hand: the bullets are the view's job.
        for (QString line : value.toString().split(QLatin1Char('\n'))) {
            line = line.trimmed();
            if (line.startsWith(QLatin1String("- ")) || line.startsWith(QLatin1String("* "))) {
                line.remove(0, 2);
            }
            lines.append(line);
        }
    } else if (value.isArray()) {
        for (const QJsonValue& member : value.toArray()) {
            lines.append(member.toString());
        }
    }
    QStringList notes;
    for (const QString& line : std::as_const(lines)) {
        const QString note = cut(line, Release::maxNoteLength);
        if (!note.isEmpty() && notes.size() < Release::maxNotes) {
            notes.append(note);
        }
    }
    return notes;
}

QJsonValue inLanguage(const QJsonObject& byLanguage, const QString& language) {
    const QString base = language.section(QRegularExpression(QStringLiteral("[-_]")), 0, 0);
    for (const QString& key : {language, base, QStringLiteral("en")}) {
        if (!key.isEmpty() && byLanguage.contains(key)) {
            return byLanguage.value(key);
        }
    }
    return byLanguage.isEmpty() ? QJsonValue() : byLanguage.begin().value();
}

} // namespace

QJsonObject Release::toJson() const {
    QJsonObject object{{QStringLiteral("version"), version.toString()},
                       {QStringLiteral("notes"), QJsonArray::fromStringList(notes)}};
    if (date.isValid()) {
        object.insert(QStringLiteral("date"), date.toString(Qt::ISODate));
    }
    if (!title.isEmpty()) {
        object.insert(QStringLiteral("title"), title);
    }
    if (!page.isEmpty()) {
        object.insert(QStringLiteral("url"), page.toString(QUrl::FullyEncoded));
    }
    return object;
}

std::optional<Release> Release::fromJson(const QJsonObject& object, const QString& language) {
    const std::optional<SemanticVersion> version =
        SemanticVersion::parse(object.value(QStringLiteral("version")).toString());
    if (!version) {
        return std::nullopt;
    }
    Release release{.version = *version, .date = {}, .title = {}, .notes = {}, .page = {}};
    release.date =
        QDate::fromString(object.value(QStringLiteral("date")).toString().left(10), Qt::ISODate);
    release.title = cut(object.value(QStringLiteral("title")).toString(), maxTitleLength);
    const QJsonValue notes = object.value(QStringLiteral("notes"));
    release.notes = linesOf(notes.isObject() ? inLanguage(notes.toObject(), language) : notes);
    const QUrl page(object.value(QStringLiteral("url")).toString(), QUrl::StrictMode);
    // Shown as a link a person follows: nothing but the web.
    if (page.isValid() && !page.host().isEmpty() &&
        (page.scheme() == QLatin1String("https") || page.scheme() == QLatin1String("http"))) {
        release.page = page;
    }
    return release;
}

} // namespace tw
