#include "displays/LayoutDisplayRect.h"

namespace tw {

QJsonObject LayoutDisplayRect::toJson() const {
    return QJsonObject{{QStringLiteral("x"), x},
                       {QStringLiteral("y"), y},
                       {QStringLiteral("width"), width},
                       {QStringLiteral("height"), height}};
}

std::optional<LayoutDisplayRect> LayoutDisplayRect::fromJson(const QJsonValue& json) {
    const QJsonObject object = json.toObject();
    const QJsonValue x = object.value(QStringLiteral("x"));
    const QJsonValue y = object.value(QStringLiteral("y"));
    const QJsonValue width = object.value(QStringLiteral("width"));
    const QJsonValue height = object.value(QStringLiteral("height"));
    if (!x.isDouble() || !y.isDouble() || !width.isDouble() || !height.isDouble()) {
        return std::nullopt;
    }
    return LayoutDisplayRect{x.toDouble(), y.toDouble(), width.toDouble(), height.toDouble()};
}

} // namespace tw
