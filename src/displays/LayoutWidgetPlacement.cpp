#include "displays/LayoutWidgetPlacement.h"

#include "model/JsonCoding.h"

namespace tw {

namespace {

std::optional<double> optionalNumber(const QJsonObject& object, const QString& key) {
    const QJsonValue value = object.value(key);
    return value.isDouble() ? std::optional<double>(value.toDouble()) : std::nullopt;
}

std::optional<LayoutAnchor> optionalAnchor(const QJsonObject& object, const QString& key) {
    return layoutAnchorFromString(object.value(key).toString());
}

} // namespace

QJsonObject LayoutWidgetPlacement::toJson() const {
    QJsonObject object{{QStringLiteral("widgetID"), JsonCoding::encodeUuid(widgetID)},
                       {QStringLiteral("displayID"), displayID},
                       {QStringLiteral("displayName"), displayName},
                       {QStringLiteral("wasOnMainDisplay"), wasOnMainDisplay},
                       {QStringLiteral("absoluteX"), absoluteX},
                       {QStringLiteral("absoluteTopY"), absoluteTopY},
                       {QStringLiteral("normalizedX"), normalizedX},
                       {QStringLiteral("normalizedY"), normalizedY}};
    if (anchorH) {
        object.insert(QStringLiteral("anchorH"), toString(*anchorH));
    }
    if (anchorV) {
        object.insert(QStringLiteral("anchorV"), toString(*anchorV));
    }
    if (offsetX) {
        object.insert(QStringLiteral("offsetX"), *offsetX);
    }
    if (offsetY) {
        object.insert(QStringLiteral("offsetY"), *offsetY);
    }
    if (displayOriginX) {
        object.insert(QStringLiteral("displayOriginX"), *displayOriginX);
    }
    if (displayOriginY) {
        object.insert(QStringLiteral("displayOriginY"), *displayOriginY);
    }
    return object;
}

std::optional<LayoutWidgetPlacement> LayoutWidgetPlacement::fromJson(const QJsonValue& json) {
    const QJsonObject object = json.toObject();
    const auto widgetID = JsonCoding::decodeUuid(object.value(QStringLiteral("widgetID")));
    const QJsonValue displayID = object.value(QStringLiteral("displayID"));
    const QJsonValue displayName = object.value(QStringLiteral("displayName"));
    const QJsonValue wasOnMain = object.value(QStringLiteral("wasOnMainDisplay"));
    const auto absoluteX = optionalNumber(object, QStringLiteral("absoluteX"));
    const auto absoluteTopY = optionalNumber(object, QStringLiteral("absoluteTopY"));
    const auto normalizedX = optionalNumber(object, QStringLiteral("normalizedX"));
    const auto normalizedY = optionalNumber(object, QStringLiteral("normalizedY"));
    if (!widgetID || !displayID.isString() || !displayName.isString() || !wasOnMain.isBool() ||
        !absoluteX || !absoluteTopY || !normalizedX || !normalizedY) {
        return std::nullopt;
    }
    LayoutWidgetPlacement placement;
    placement.widgetID = *widgetID;
    placement.displayID = displayID.toString();
    placement.displayName = displayName.toString();
    placement.wasOnMainDisplay = wasOnMain.toBool();
    placement.absoluteX = *absoluteX;
    placement.absoluteTopY = *absoluteTopY;
    placement.normalizedX = *normalizedX;
    placement.normalizedY = *normalizedY;
    placement.anchorH = optionalAnchor(object, QStringLiteral("anchorH"));
    placement.anchorV = optionalAnchor(object, QStringLiteral("anchorV"));
    placement.offsetX = optionalNumber(object, QStringLiteral("offsetX"));
    placement.offsetY = optionalNumber(object, QStringLiteral("offsetY"));
    placement.displayOriginX = optionalNumber(object, QStringLiteral("displayOriginX"));
    placement.displayOriginY = optionalNumber(object, QStringLiteral("displayOriginY"));
    return placement;
}

} // namespace tw
