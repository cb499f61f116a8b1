#include "model/WidgetInstance.h"

#include "model/JsonCoding.h"

#include <QLocale>

#include <cmath>

namespace tw {

namespace {

// A key that is absent or null takes its default; one of the wrong type costs the instance.
bool present(const QJsonValue& value) {
    return !value.isUndefined() && !value.isNull();
}

// Settings hold strings. One value of another kind costs only itself, so that a recovered file
// keeps its widget: a number or a Boolean written by hand is kept as its text, anything else is
// dropped. Settings that are not an object fail the instance.
std::optional<WidgetSettings> decodeSettings(const QJsonValue& value) {
    if (!value.isObject()) {
        return std::nullopt;
    }
    WidgetSettings settings;
    const QJsonObject object = value.toObject();
    for (auto it = object.begin(); it != object.end(); ++it) {
        const QJsonValue item = it.value();
        if (item.isString()) {
            settings.insert(it.key(), item.toString());
        } else if (item.isBool()) {
            settings.insert(it.key(),
                            item.toBool() ? QStringLiteral("true") : QStringLiteral("false"));
        } else if (item.isDouble()) {
            settings.insert(it.key(),
                            QString::number(item.toDouble(), 'g', QLocale::FloatingPointShortest));
        }
    }
    return settings;
}

// Decodes `value` into `field` when it is present; false when it is present and malformed.
template <typename T, typename Decode>
bool decodeField(const QJsonValue& value, T& field, Decode decode) {
    if (!present(value)) {
        return true;
    }
    auto decoded = decode(value);
    if (!decoded) {
        return false;
    }
    field = std::move(*decoded);
    return true;
}

} // namespace

std::optional<QString> WidgetInstance::setting(const QString& key) const {
    if (!settings) {
        return std::nullopt;
    }
    const auto it = settings->constFind(key);
    if (it == settings->cend()) {
        return std::nullopt;
    }
    return *it;
}

double WidgetInstance::scale() const {
    return scale(setting(QStringLiteral("tileScale")));
}

double WidgetInstance::scale(const std::optional<QString>& text) {
    if (!text) {
        return minimumScale;
    }
    bool ok = false;
    const double value = text->trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(value) || value < minimumScale) {
        return minimumScale;
    }
    return std::round(std::min(value, maximumScale) * 20.0) / 20.0;
}

QJsonObject WidgetInstance::toJson() const {
    QJsonObject json{
        {QStringLiteral("id"), JsonCoding::encodeUuid(id)},
        {QStringLiteral("kind"), kind},
        {QStringLiteral("size"), rawValue(size)},
        {QStringLiteral("order"), order},
        {QStringLiteral("page"), page},
        {QStringLiteral("col"), col},
        {QStringLiteral("row"), row},
    };
    if (posX) {
        json.insert(QStringLiteral("posX"), *posX);
    }
    if (posY) {
        json.insert(QStringLiteral("posY"), *posY);
    }
    if (settings) {
        QJsonObject object;
        for (auto it = settings->cbegin(); it != settings->cend(); ++it) {
            object.insert(it.key(), it.value());
        }
        json.insert(QStringLiteral("settings"), object);
    }
    if (stackID) {
        json.insert(QStringLiteral("stackID"), JsonCoding::encodeUuid(*stackID));
    }
    if (stackIndex) {
        json.insert(QStringLiteral("stackIndex"), *stackIndex);
    }
    return json;
}

std::optional<WidgetInstance> WidgetInstance::fromJson(const QJsonValue& json) {
    if (!json.isObject()) {
        return std::nullopt;
    }
    const QJsonObject object = json.toObject();
    const QJsonValue kindValue = object.value(QStringLiteral("kind"));
    if (!kindValue.isString()) {
        return std::nullopt;
    }
    WidgetInstance instance;
    instance.kind = kindValue.toString();
    const auto field = [&](const char* key) { return object.value(QLatin1String(key)); };
    const auto size = [](const QJsonValue& v) { return widgetSizeFromRawValue(v.toString()); };
    const auto text = [](const QJsonValue& v) { return decodeSettings(v); };
    const bool decoded =
        decodeField(field("size"), instance.size, size) &&
        decodeField(field("id"), instance.id, JsonCoding::decodeUuid) &&
        decodeField(field("order"), instance.order, JsonCoding::decodeInt) &&
        decodeField(field("page"), instance.page, JsonCoding::decodeInt) &&
        decodeField(field("col"), instance.col, JsonCoding::decodeInt) &&
        decodeField(field("row"), instance.row, JsonCoding::decodeInt) &&
        decodeField(field("posX"), instance.posX, JsonCoding::decodeDouble) &&
        decodeField(field("posY"), instance.posY, JsonCoding::decodeDouble) &&
        decodeField(field("settings"), instance.settings, text) &&
        decodeField(field("stackID"), instance.stackID, JsonCoding::decodeUuid) &&
        decodeField(field("stackIndex"), instance.stackIndex, JsonCoding::decodeInt);
    if (!decoded) {
        return std::nullopt;
    }
    return instance;
}

} // namespace tw
