// A place the city search offers, and the reading of the search answer.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace tw {

struct GeoSuggestion {
    // As many as the search asks for; a longer answer is cut here.
    static constexpr qsizetype maxResults = 6;

    int id = 0;
    QString name;
    std::optional<QString> admin;
    std::optional<QString> country;
    std::optional<QString> countryCode;
    double latitude = 0;
    double longitude = 0;

    // The line under the name: the region and the country that are known, joined by ", ".
    QString detail() const;

    // The `results` of a search answer. A result without a name or with coordinates off the
    // globe is left out; one without an `id` takes its position in the answer.
    static QList<GeoSuggestion> fromAnswer(const QByteArray& json);

    bool operator==(const GeoSuggestion&) const = default;
};

} // namespace tw
