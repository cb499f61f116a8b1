#include "weather/WireValues.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <cmath>
#include <limits>

namespace tw::wire {

namespace {

template <typename T, typename Read>
QList<T> listOf(const QJsonValue& list, qsizetype cap, Read read) {
    QList<T> result;
    const QJsonArray array = list.toArray();
    for (const QJsonValue member : array) {
        if (result.size() >= cap) {
            break;
        }
        const std::optional<T> value = read(member);
        if (!value) {
            break;
        }
        result.append(*value);
    }
    return result;
}

} // namespace

std::optional<QJsonObject> rootObject(const QByteArray& json) {
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject()) {
        return std::nullopt;
    }
    return document.object();
}

std::optional<int> integer(const QJsonValue& value) {
    if (!value.isDouble()) {
        return std::nullopt;
    }
    const double number = value.toDouble();
    if (std::trunc(number) != number || number < std::numeric_limits<int>::min() ||
        number > std::numeric_limits<int>::max()) {
        return std::nullopt;
    }
    return static_cast<int>(number);
}

std::optional<double> real(const QJsonValue& value) {
    if (!value.isDouble() || !std::isfinite(value.toDouble())) {
        return std::nullopt;
    }
    return value.toDouble();
}

std::optional<QString> string(const QJsonValue& value) {
    if (!value.isString() || value.toString().isEmpty()) {
        return std::nullopt;
    }
    return value.toString();
}

QList<int> integers(const QJsonValue& list, qsizetype cap) {
    return listOf<int>(list, cap, integer);
}

QList<double> reals(const QJsonValue& list, qsizetype cap) {
    return listOf<double>(list, cap, real);
}

QList<QString> strings(const QJsonValue& list, qsizetype cap) {
    // An empty time text is still a member of the list; only a non-string ends it.
    return listOf<QString>(list, cap, [](const QJsonValue& v) -> std::optional<QString> {
        if (!v.isString()) {
            return std::nullopt;
        }
        return v.toString();
    });
}

} // namespace tw::wire
