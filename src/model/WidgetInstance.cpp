#include "model/WidgetInstance.h"

#include "model/JsonCoding.h"

#include <QLocale>

#include <cmath>

namespace tw {

namespace {

// Settings hold strings; a number or a Boolean written by hand is kept as its text rather than
// costing the whole widget, and anything else is dropped.
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
    const QJsonValue sizeValue = object.value(QStringLiteral("size"));
    if (!sizeValue.isUndefined() && !sizeValue.isNull()) {
        const std::optional<WidgetSize> size = widgetSizeFromRawValue(sizeValue.toString());
        if (!size) {
            return std::nullopt;
        }
        instance.size = *size;
    }
    if (const auto id = JsonCoding::decodeUuid(object.value(QStringLiteral("id")))) {
        instance.id = *id;
    }
    instance.order = JsonCoding::decodeInt(object.value(QStringLiteral("order"))).value_or(0);
    instance.page = JsonCoding::decodeInt(object.value(QStringLiteral("page"))).value_or(0);
    instance.col = JsonCoding::decodeInt(object.value(QStringLiteral("col"))).value_or(-1);
    instance.row = JsonCoding::decodeInt(object.value(QStringLiteral("row"))).value_or(-1);
    instance.posX = JsonCoding::decodeDouble(object.value(QStringLiteral("posX")));
    instance.posY = JsonCoding::decodeDouble(object.value(QStringLiteral("posY")));
    instance.settings = decodeSettings(object.value(QStringLiteral("settings")));
    instance.stackID = JsonCoding::decodeUuid(object.value(QStringLiteral("stackID")));
    instance.stackIndex = JsonCoding::decodeInt(object.value(QStringLiteral("stackIndex")));
    return instance;
}

} // namespace tw
