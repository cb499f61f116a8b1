#include "custom/CustomSource.h"

#include "custom/CustomWidgetDefinitionDecoding.h"

#include <QStringList>

#include <algorithm>

namespace tw {

std::optional<CustomSource> CustomSource::fromJson(const QJsonValue& json) {
    if (!json.isObject()) {
        return std::nullopt;
    }
    CustomDecoding::FieldReader read(json.toObject());
    CustomSource source;
    source.url = read.string(QLatin1String("url")).value_or(QString());
    source.refreshSeconds = read.integer(QLatin1String("refreshSeconds")).value_or(defaultRefresh);
    source.headers = read.stringMap(QLatin1String("headers"));
    source.name = read.string(QLatin1String("name"));
    if (read.failed()) {
        return std::nullopt;
    }
    return source;
}

QJsonObject CustomSource::toJson() const {
    QJsonObject json{{QLatin1String("url"), url},
                     {QLatin1String("refreshSeconds"), refreshSeconds}};
    if (headers) {
        QJsonObject map;
        for (auto it = headers->constBegin(); it != headers->constEnd(); ++it) {
            map.insert(it.key(), it.value());
        }
        json.insert(QLatin1String("headers"), map);
    }
    if (name) {
        json.insert(QLatin1String("name"), *name);
    }
    return json;
}

std::chrono::duration<double> CustomSource::interval() const {
    return std::chrono::duration<double>(
        std::clamp(refreshSeconds, minimumRefresh, maximumRefresh));
}

QString CustomSource::cacheKey() const {
    if (!headers || headers->isEmpty()) {
        return url;
    }
    // QMap keeps its keys in ascending order, which is the order the key promises.
    QStringList pairs;
    for (auto it = headers->constBegin(); it != headers->constEnd(); ++it) {
        pairs.append(it.key() + QLatin1Char('=') + it.value());
    }
    return url + QLatin1Char('#') + pairs.join(QLatin1Char('&'));
}

CustomSource CustomSource::sanitized() const {
    CustomSource clean = *this;
    clean.url = url.trimmed();
    clean.refreshSeconds = std::clamp(refreshSeconds, minimumRefresh, maximumRefresh);
    if (clean.headers && clean.headers->isEmpty()) {
        clean.headers.reset();
    }
    return clean;
}

bool CustomSource::isValidName(QStringView name) {
    if (name.isEmpty() || name.size() > 16) {
        return false;
    }
    return std::all_of(name.begin(), name.end(), [](QChar c) {
        return (c >= QLatin1Char('a') && c <= QLatin1Char('z')) ||
               (c >= QLatin1Char('0') && c <= QLatin1Char('9')) || c == QLatin1Char('_');
    });
}

} // namespace tw
