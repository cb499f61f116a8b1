// One "mimeapps.list" file: the person's (or the system's) chosen and added handlers of MIME
// types and URL schemes, by desktop-entry id.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

namespace tw {

struct MimeAppsList {
    // [Default Applications], [Added Associations], [Removed Associations]: MIME type to ids.
    QHash<QString, QStringList> defaults;
    QHash<QString, QStringList> added;
    QHash<QString, QStringList> removed;

    bool operator==(const MimeAppsList&) const = default;

    // Lenient: unknown groups, lines without "=" and empty ids are skipped.
    static MimeAppsList parse(const QByteArray& text);
    // An absent, unreadable or oversized file reads as an empty list.
    static MimeAppsList read(const QString& filePath);
    static constexpr qint64 maximumSize = 1024 * 1024;
};

} // namespace tw
