#include "look/ThemeColor.h"

#include <QString>

#include <algorithm>
#include <cmath>

namespace tw {

namespace {

double component(const QJsonObject& object, const char* key, double fallback) {
    const QJsonValue value = object.value(QLatin1String(key));
    const double number = value.isDouble() ? value.toDouble() : fallback;
    return std::isfinite(number) ? std::clamp(number, 0.0, 1.0) : fallback;
}

} // namespace

ThemeColor ThemeColor::hex(QStringView text, double opacity) {
    QStringView digits = text.trimmed();
    if (digits.startsWith(QLatin1Char('#'))) {
        digits = digits.mid(1);
    }
    bool ok = false;
    const uint value = digits.toUInt(&ok, 16);
    const uint rgb = ok ? value : 0;
    return {((rgb >> 16) & 0xFF) / 255.0, ((rgb >> 8) & 0xFF) / 255.0, (rgb & 0xFF) / 255.0,
            opacity};
}

QJsonObject ThemeColor::toJson() const {
    return {{QStringLiteral("red"), red},
            {QStringLiteral("green"), green},
            {QStringLiteral("blue"), blue},
            {QStringLiteral("opacity"), opacity}};
}

std::optional<ThemeColor> ThemeColor::fromJson(const QJsonValue& json) {
    if (!json.isObject()) {
        return std::nullopt;
    }
    const QJsonObject object = json.toObject();
    return ThemeColor{component(object, "red", 0.0), component(object, "green", 0.0),
                      component(object, "blue", 0.0), component(object, "opacity", 1.0)};
}

} // namespace tw
