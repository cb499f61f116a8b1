#include "market/JsonNumbers.h"

#include <cmath>

namespace tw {

namespace {

constexpr qsizetype longestText = 120;

} // namespace

std::optional<double> finiteNumber(const QJsonValue& value) {
    if (!value.isDouble() || !std::isfinite(value.toDouble())) {
        return std::nullopt;
    }
    return value.toDouble();
}

std::optional<double> positiveNumber(const QJsonValue& value) {
    const std::optional<double> number = finiteNumber(value);
    if (!number || *number <= 0) {
        return std::nullopt;
    }
    return number;
}

QString shortText(const QJsonValue& value) {
    return value.isString() ? value.toString().trimmed().left(longestText) : QString();
}

} // namespace tw
