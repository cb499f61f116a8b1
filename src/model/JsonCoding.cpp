#include "model/JsonCoding.h"

#include <cmath>
#include <limits>

namespace tw::JsonCoding {

namespace {

// About ±3,000 years: far beyond any real stamp, and safely inside qint64 milliseconds.
constexpr double maximumSeconds = 1.0e11;

} // namespace

QJsonValue encodeDate(const QDateTime& date) {
    return static_cast<double>(date.toMSecsSinceEpoch() - referenceDateOffset * 1000) / 1000.0;
}

std::optional<QDateTime> decodeDate(const QJsonValue& value) {
    if (!value.isDouble()) {
        return std::nullopt;
    }
    const double seconds = value.toDouble();
    if (!std::isfinite(seconds) || std::abs(seconds) > maximumSeconds) {
        return std::nullopt;
    }
    const qint64 msecs = std::llround(seconds * 1000.0) + referenceDateOffset * 1000;
    return QDateTime::fromMSecsSinceEpoch(msecs, Qt::UTC);
}

QString encodeUuid(const QUuid& uuid) {
    return uuid.toString(QUuid::WithoutBraces).toUpper();
}

std::optional<QUuid> decodeUuid(const QJsonValue& value) {
    if (!value.isString()) {
        return std::nullopt;
    }
    const QUuid uuid = QUuid::fromString(value.toString());
    if (uuid.isNull()) {
        return std::nullopt;
    }
    return uuid;
}

std::optional<int> decodeInt(const QJsonValue& value) {
    if (!value.isDouble()) {
        return std::nullopt;
    }
    const double number = value.toDouble();
    if (!std::isfinite(number) || number != std::trunc(number) ||
        number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max()) {
        return std::nullopt;
    }
    return static_cast<int>(number);
}

std::optional<double> decodeDouble(const QJsonValue& value) {
    if (!value.isDouble()) {
        return std::nullopt;
    }
    const double number = value.toDouble();
    if (!std::isfinite(number)) {
        return std::nullopt;
    }
    return number;
}

} // namespace tw::JsonCoding
