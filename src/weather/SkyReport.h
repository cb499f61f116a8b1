// The sky at a place and a moment, read from text and told as "key=value" lines.
#pragma once

#include <QDateTime>
#include <QString>

#include <variant>

namespace tw {

class SkyReport {
public:
    SkyReport() = delete;

    struct Query {
        double latitude = 0;
        double longitude = 0;
        // Carries the offset the times are told in and whose day they fall on.
        QDateTime at;
    };

    // Degrees within ±90 and ±180, and an ISO 8601 moment with its offset; otherwise one
    // sentence saying what is wrong.
    static std::variant<Query, QString> read(const QString& latitude, const QString& longitude,
                                             const QString& time);
    // phase (0 to 1, new 0), illumination (percent), sunrise, sunset, moonrise, moonset (ISO 8601
    // in the query's offset, or "none"), subsolar_lat, subsolar_lon (degrees).
    static QString lines(const Query& query);
};

} // namespace tw
