// A display rectangle in internal points: (x, y) is the lower-left corner, y grows upward.
#pragma once

#include <QJsonObject>
#include <QJsonValue>

#include <optional>

namespace tw {

struct LayoutDisplayRect {
    double x = 0.0;
    double y = 0.0;
    double width = 0.0;
    double height = 0.0;

    double minX() const { return x; }
    double minY() const { return y; }
    double maxX() const { return x + width; }
    double maxY() const { return y + height; }

    QJsonObject toJson() const;
    // All four numbers are required; anything else gives nothing.
    static std::optional<LayoutDisplayRect> fromJson(const QJsonValue& json);

    friend bool operator==(const LayoutDisplayRect&, const LayoutDisplayRect&) = default;
};

} // namespace tw
