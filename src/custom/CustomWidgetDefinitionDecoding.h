// Reading one JSON object of a custom widget file the way the format promises: a key that is
// missing or null is absent, a value of the wrong JSON type fails the whole document.
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QMap>
#include <QString>
#include <QUuid>

#include <optional>

namespace tw::CustomDecoding {

// Lists longer than these keep their first members: a file that needs more is no widget a
// person wrote, and the caps bound what one document costs to decode and to draw.
inline constexpr qsizetype maximumRows = 64;
inline constexpr qsizetype maximumElementsPerRow = 64;
inline constexpr qsizetype maximumSources = 16;
inline constexpr qsizetype maximumRules = 16;
inline constexpr qsizetype maximumSizes = 64;
inline constexpr qsizetype maximumHeaders = 32;
// A larger document is refused as a whole.
inline constexpr qsizetype maximumDocumentBytes = 1024 * 1024;

class FieldReader {
public:
    explicit FieldReader(const QJsonObject& object)
        : m_object(object) {}

    bool failed() const { return m_failed; }
    void fail() { m_failed = true; }

    // The value of `key`, or undefined for a missing key and for null.
    QJsonValue present(QLatin1String key) const;

    std::optional<QString> string(QLatin1String key);
    // An integral number that fits an int.
    std::optional<int> integer(QLatin1String key);
    std::optional<double> real(QLatin1String key);
    std::optional<QJsonArray> array(QLatin1String key);
    std::optional<QJsonObject> object(QLatin1String key);
    // Every value must be a string.
    std::optional<QMap<QString, QString>> stringMap(QLatin1String key);
    // The canonical 36 characters in any case; anything else fails.
    std::optional<QUuid> uuid(QLatin1String key);

private:
    QJsonObject m_object;
    bool m_failed = false;
};

// The canonical 36-character form in any case, without braces; the nil UUID counts.
std::optional<QUuid> parseUuid(QStringView text);

} // namespace tw::CustomDecoding
