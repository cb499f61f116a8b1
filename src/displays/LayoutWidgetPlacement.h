// Where one widget belongs: its display, and its distance from the edges of that display.
#pragma once

#include "displays/LayoutAnchor.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QUuid>

#include <optional>

namespace tw {

struct LayoutWidgetPlacement {
    QUuid widgetID;
    QString displayID;
    QString displayName;
    bool wasOnMainDisplay = false;
    double absoluteX = 0.0;    // global left edge at capture
    double absoluteTopY = 0.0; // global top edge at capture
    double normalizedX = 0.0;  // 0...1 across the free horizontal travel of the visible frame
    double normalizedY = 0.0;  // 0...1 down the free vertical travel, 0 at the top
    // Absent in records written before anchors existed.
    std::optional<LayoutAnchor> anchorH;
    std::optional<LayoutAnchor> anchorV;
    std::optional<double> offsetX;
    std::optional<double> offsetY;
    std::optional<double> displayOriginX;
    std::optional<double> displayOriginY;

    // Both anchors and both offsets are present.
    bool isAnchored() const { return anchorH && anchorV && offsetX && offsetY; }

    QJsonObject toJson() const;
    // The first eight fields are required; the optional ones are dropped when unreadable.
    static std::optional<LayoutWidgetPlacement> fromJson(const QJsonValue& json);

    friend bool operator==(const LayoutWidgetPlacement&, const LayoutWidgetPlacement&) = default;
};

} // namespace tw
