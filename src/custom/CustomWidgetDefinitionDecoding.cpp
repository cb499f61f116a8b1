#include "custom/CustomWidgetDefinitionDecoding.h"

#include "model/JsonCoding.h"

namespace tw::CustomDecoding {

QJsonValue FieldReader::present(QLatin1String key) const {
    const QJsonValue value = m_object.value(key);
    return value.isNull() ? QJsonValue(QJsonValue::Undefined) : value;
}

std::optional<QString> FieldReader::string(QLatin1String key) {
    const QJsonValue value = present(key);
    if (value.isUndefined()) {
        return std::nullopt;
    }
    if (!value.isString()) {
        fail();
        return std::nullopt;
    }
    return value.toString();
}

std::optional<int> FieldReader::integer(QLatin1String key) {
    const QJsonValue value = present(key);
    if (value.isUndefined()) {
        return std::nullopt;
    }
    const std::optional<int> number = JsonCoding::decodeInt(value);
    if (!number) {
        fail();
    }
    return number;
}

std::optional<double> FieldReader::real(QLatin1String key) {
    const QJsonValue value = present(key);
    if (value.isUndefined()) {
        return std::nullopt;
    }
    const std::optional<double> number = JsonCoding::decodeDouble(value);
    if (!number) {
        fail();
    }
    return number;
}

std::optional<QJsonArray> FieldReader::array(QLatin1String key) {
    const QJsonValue value = present(key);
    if (value.isUndefined()) {
        return std::nullopt;
    }
    if (!value.isArray()) {
        fail();
        return std::nullopt;
    }
    return value.toArray();
}

std::optional<QJsonObject> FieldReader::object(QLatin1String key) {
    const QJsonValue value = present(key);
    if (value.isUndefined()) {
        return std::nullopt;
    }
    if (!value.isObject()) {
        fail();
        return std::nullopt;
    }
    return value.toObject();
}

std::optional<QMap<QString, QString>> FieldReader::stringMap(QLatin1String key) {
    const std::optional<QJsonObject> json = object(key);
    if (!json) {
        return std::nullopt;
    }
    QMap<QString, QString> map;
    for (auto it = json->constBegin(); it != json->constEnd(); ++it) {
        if (!it.value().isString()) {
            fail();
            return std::nullopt;
        }
        if (map.size() < maximumHeaders) {
            map.insert(it.key(), it.value().toString());
        }
    }
    return map;
}

std::optional<QUuid> FieldReader::uuid(QLatin1String key) {
    const std::optional<QString> text = string(key);
    if (!text) {
        return std::nullopt;
    }
    const std::optional<QUuid> parsed = parseUuid(*text);
    if (!parsed) {
        fail();
    }
    return parsed;
}

std::optional<QUuid> parseUuid(QStringView text) {
    if (text.size() != 36) {
        return std::nullopt;
    }
    const QUuid uuid = QUuid::fromString(text);
    // fromString answers the nil UUID for garbage; the round trip tells garbage from nil.
    if (uuid.toString(QUuid::WithoutBraces).compare(text, Qt::CaseInsensitive) != 0) {
        return std::nullopt;
    }
    return uuid;
}

} // namespace tw::CustomDecoding
