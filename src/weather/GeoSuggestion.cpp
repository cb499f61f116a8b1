#include "weather/GeoSuggestion.h"

#include "weather/WireValues.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

namespace tw {

QString GeoSuggestion::detail() const {
    QStringList parts;
    for (const std::optional<QString>& part : {admin, country}) {
        if (part) {
            parts.append(*part);
        }
    }
    return parts.join(QStringLiteral(", "));
}

QList<GeoSuggestion> GeoSuggestion::fromAnswer(const QByteArray& json) {
    const std::optional<QJsonObject> root = wire::rootObject(json);
    if (!root) {
        return {};
    }
    const QJsonArray results = root->value(QLatin1String("results")).toArray();
    QList<GeoSuggestion> suggestions;
    for (qsizetype i = 0; i < results.size() && suggestions.size() < maxResults; ++i) {
        const QJsonObject result = results.at(i).toObject();
        const auto field = [&](const char* key) { return result.value(QLatin1String(key)); };
        const std::optional<QString> name = wire::string(field("name"));
        const std::optional<double> latitude = wire::real(field("latitude"));
        const std::optional<double> longitude = wire::real(field("longitude"));
        if (!name || !latitude || !longitude || *latitude < -90 || *latitude > 90 ||
            *longitude < -180 || *longitude > 180) {
            continue;
        }
        suggestions.append({
            .id = wire::integer(field("id")).value_or(static_cast<int>(i)),
            .name = *name,
            .admin = wire::string(field("admin1")),
            .country = wire::string(field("country")),
            .countryCode = wire::string(field("country_code")),
            .latitude = *latitude,
            .longitude = *longitude,
        });
    }
    return suggestions;
}

} // namespace tw
