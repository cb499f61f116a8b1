#include "speed/SpeedTestResult.h"

#include "model/JsonCoding.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <cmath>

namespace tw {

namespace {

std::optional<double> figure(const QJsonObject& object, const char* key) {
    const std::optional<double> value = JsonCoding::decodeDouble(object.value(QLatin1String(key)));
    if (!value || !std::isfinite(*value) || *value < 0) {
        return std::nullopt;
    }
    return value;
}

} // namespace

QJsonObject SpeedTestResult::toJson() const {
    return {{QStringLiteral("date"), JsonCoding::encodeDate(date)},
            {QStringLiteral("downMbps"), downMbps},
            {QStringLiteral("upMbps"), upMbps},
            {QStringLiteral("pingMs"), pingMs}};
}

std::optional<SpeedTestResult> SpeedTestResult::fromJson(const QJsonObject& object) {
    const std::optional<QDateTime> date =
        JsonCoding::decodeDate(object.value(QLatin1String("date")));
    const std::optional<double> down = figure(object, "downMbps");
    const std::optional<double> up = figure(object, "upMbps");
    const std::optional<double> ping = figure(object, "pingMs");
    if (!date || !down || !up || !ping) {
        return std::nullopt;
    }
    return SpeedTestResult{*date, *down, *up, *ping};
}

QByteArray SpeedTestResult::encodeHistory(const QList<SpeedTestResult>& history) {
    QJsonArray array;
    for (const SpeedTestResult& result : history) {
        array.append(result.toJson());
    }
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

QList<SpeedTestResult> SpeedTestResult::decodeHistory(const QByteArray& json) {
    const QJsonArray array = QJsonDocument::fromJson(json).array();
    QList<SpeedTestResult> history;
    for (const QJsonValue& member : array) {
        if (const auto result = fromJson(member.toObject())) {
            history.append(*result);
        }
    }
    history.remove(0, std::max<qsizetype>(0, history.size() - historyLimit));
    return history;
}

} // namespace tw
