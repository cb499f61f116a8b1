// A fetched JSON document of a custom widget and the dot paths that read values out of it.
#pragma once

#include <QByteArrayView>
#include <QJsonValue>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace tw {

struct CustomJSON {
    // A larger answer is refused rather than parsed: tiles show a few values, never megabytes.
    static constexpr qsizetype maximumBytes = 524288;
    // Deeper nesting is refused before parsing: no answer a tile reads nests this deep, and a
    // hostile one costs nothing.
    static constexpr int maximumDepth = 128;

    // Any JSON value: object, array, string, number, boolean or null.
    QJsonValue root;

    // `bytes` as a document, fragments allowed ("42", "\"text\""); nullopt for what is no JSON,
    // is larger than `maximumBytes` or nests deeper than `maximumDepth`.
    static std::optional<CustomJSON> parse(QByteArrayView bytes);

    // The value at a dot path ("current.temperature_2m", "items.2.title"); empty pieces are
    // dropped, so "" is the root. Nothing for a missing key, an index out of range, a step
    // through a scalar, or a null at the end.
    std::optional<QJsonValue> value(const QString& path) const;
    // A number as is, a boolean as 1 or 0, a string read whole as a number with "," as the point.
    std::optional<double> number(const QString& path) const;
    // Text as a person reads it; nothing for an object.
    std::optional<QString> string(const QString& path) const;
    // The members of the array at `path`, each a document of its own.
    std::optional<QList<CustomJSON>> entries(const QString& path) const;
    // The number of each entry at `path` (the value at `field` in it, or the entry itself when
    // `field` is empty); entries without a number are skipped.
    QList<double> numbers(const QString& path, const QString& field) const;
    // The leaf paths of this document below `prefix`, depth first, until `into` holds `limit`.
    void walk(const QString& prefix, QStringList& into, qsizetype limit) const;

    // The sample document that previews draw with.
    static const CustomJSON& preview();

    bool operator==(const CustomJSON&) const = default;
};

// A JSON value coerced as `CustomJSON::number` does.
std::optional<double> customNumber(const QJsonValue& value);

} // namespace tw
