#include "lockscreen/LockScreenLayout.h"

#include "displays/LayoutProfileResolver.h"
#include "lockscreen/LockScreenPolicy.h"
#include "lockscreen/LockScreenSystemUI.h"
#include "model/WidgetRegistry.h"

#include <cmath>
#include <limits>

namespace tw {

namespace {

constexpr double gap = 12.0;
constexpr double searchStep = LockScreenLayout::pitch / 4;
// Slack for rectangles computed from fractions, so a tile flush with an edge stays on screen.
constexpr double epsilon = 1e-9;

std::optional<double> number(const WidgetInstance& widget, const QString& key) {
    const std::optional<QString> text = widget.setting(key);
    if (!text) {
        return std::nullopt;
    }
    bool ok = false;
    const double value = text->toDouble(&ok);
    if (!ok || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

QRectF rectAround(const QPointF& centre, const QSizeF& size) {
    return {centre.x() - size.width() / 2, centre.y() - size.height() / 2, size.width(),
            size.height()};
}

} // namespace

WidgetSize LockScreenLayout::size(const WidgetInstance& widget) {
    const std::optional<QString> raw = widget.setting(sizeKey);
    if (!raw) {
        return widget.size;
    }
    const std::optional<WidgetSize> chosen = widgetSizeFromRawValue(*raw);
    const std::optional<WidgetDefinition> definition =
        WidgetRegistry::builtInDefinition(widget.kind);
    if (chosen && definition && definition->metadata.allowedSizes.contains(*chosen)) {
        return *chosen;
    }
    return widget.size;
}

QSizeF LockScreenLayout::pixelSize(const WidgetInstance& widget) {
    return nominalPixelSize(size(widget)) * widget.scale();
}

double LockScreenLayout::carry(double pos, double from, double to, double scale) {
    if (from <= 0) {
        return pos;
    }
    const double u = pos / from;
    if (std::abs(u - 0.5) <= LayoutProfileResolver::centerBand) {
        return to * 0.5 + (pos - from * 0.5) * scale;
    }
    if (u < 0.5) {
        return pos * scale;
    }
    return to - (from - pos) * scale;
}

QPointF LockScreenLayout::carryPoint(const QPointF& point, const QSizeF& from, const QSizeF& to) {
    return {carry(point.x(), from.width(), to.width(), 1.0),
            carry(point.y(), from.height(), to.height(), 1.0)};
}

bool LockScreenLayout::isInheritingPosition(const WidgetInstance& widget) {
    return !widget.setting(xKey) && !widget.setting(yKey);
}

bool LockScreenLayout::isLockOnly(const WidgetInstance& widget) {
    return widget.setting(onlyKey) == QStringLiteral("true");
}

bool LockScreenLayout::hasPosition(const WidgetInstance& widget) {
    return position(widget, QSizeF(1, 1)).has_value();
}

std::optional<QPointF> LockScreenLayout::position(const WidgetInstance& widget,
                                                  const QSizeF& design) {
    const std::optional<double> x = number(widget, xKey);
    const std::optional<double> y = number(widget, yKey);
    const std::optional<double> width = number(widget, designWidthKey);
    const std::optional<double> height = number(widget, designHeightKey);
    if (x && y && width && height) {
        return carryPoint({*x, *y}, {*width, *height}, design);
    }
    return inheritedPosition(widget, design);
}

std::optional<QPointF> LockScreenLayout::inheritedPosition(const WidgetInstance& widget,
                                                           const QSizeF& design) {
    if (!isInheritingPosition(widget) || !widget.isPlaced()) {
        return std::nullopt;
    }
    const QSizeF tile = pixelSize(widget);
    return QPointF(design.width() * edgeMargin + widget.col * pitch + tile.width() / 2,
                   design.height() * edgeMargin + widget.row * pitch + tile.height() / 2);
}

void LockScreenLayout::store(const QPointF& point, WidgetSettings& settings, const QSizeF& design) {
    settings.insert(xKey, QString::number(point.x(), 'g', 12));
    settings.insert(yKey, QString::number(point.y(), 'g', 12));
    settings.insert(designWidthKey, QString::number(design.width(), 'g', 12));
    settings.insert(designHeightKey, QString::number(design.height(), 'g', 12));
}

void LockScreenLayout::clearPosition(WidgetSettings& settings) {
    for (const QString& key : {xKey, yKey, designWidthKey, designHeightKey}) {
        settings.remove(key);
    }
}

QRectF LockScreenLayout::unitRect(const WidgetInstance& widget, const QPointF& centre,
                                  const QSizeF& screen) {
    const QRectF points = rectAround(centre, pixelSize(widget));
    return {points.x() / screen.width(), points.y() / screen.height(),
            points.width() / screen.width(), points.height() / screen.height()};
}

QPointF LockScreenLayout::snap(const QPointF& point, const QSizeF& screen) {
    const auto axis = [](double value, double span) {
        const double middle = span / 2;
        return middle + std::round((value - middle) / pitch) * pitch;
    };
    return {axis(point.x(), screen.width()), axis(point.y(), screen.height())};
}

bool LockScreenLayout::isLegal(const QPointF& point, const WidgetInstance& widget,
                               const QSizeF& screen) {
    if (screen.width() <= 0 || screen.height() <= 0) {
        return false;
    }
    const QRectF unit = unitRect(widget, point, screen);
    const bool inside = unit.left() >= -epsilon && unit.top() >= -epsilon &&
                        unit.right() <= 1 + epsilon && unit.bottom() <= 1 + epsilon;
    return inside && LockScreenSystemUI::collisions(unit).isEmpty();
}

bool LockScreenLayout::isFree(const QPointF& point, const WidgetInstance& widget,
                              const QList<QRectF>& taken) {
    const QRectF rect = rectAround(point, pixelSize(widget));
    for (const QRectF& other : taken) {
        if (rect.intersects(other)) {
            return false;
        }
    }
    return true;
}

std::optional<QPointF> LockScreenLayout::nearestLegal(const QPointF& point,
                                                      const WidgetInstance& widget,
                                                      const QSizeF& screen,
                                                      const QList<QRectF>& taken) {
    const QSizeF tile = pixelSize(widget);
    // Only the steps that keep the tile on the screen are worth trying.
    const auto range = [](double at, double half, double span) {
        return std::pair(static_cast<int>(std::ceil((half - at) / searchStep - epsilon)),
                         static_cast<int>(std::floor((span - half - at) / searchStep + epsilon)));
    };
    const auto [firstX, lastX] = range(point.x(), tile.width() / 2, screen.width());
    const auto [firstY, lastY] = range(point.y(), tile.height() / 2, screen.height());
    std::optional<QPointF> best;
    double bestDistance = std::numeric_limits<double>::infinity();
    for (int i = firstX; i <= lastX; ++i) {
        for (int j = firstY; j <= lastY; ++j) {
            const double distance = double(i) * i + double(j) * j;
            if (distance >= bestDistance) {
                continue;
            }
            const QPointF candidate(point.x() + i * searchStep, point.y() + j * searchStep);
            if (isLegal(candidate, widget, screen) && isFree(candidate, widget, taken)) {
                best = candidate;
                bestDistance = distance;
            }
        }
    }
    return best;
}

std::optional<QPointF> LockScreenLayout::settle(const QPointF& point, const WidgetInstance& widget,
                                                const QSizeF& screen, const QList<QRectF>& taken) {
    if (isLegal(point, widget, screen) && isFree(point, widget, taken)) {
        return point;
    }
    return nearestLegal(point, widget, screen, taken);
}

QList<LockScreenLayout::Placement>
LockScreenLayout::autoArrange(const QList<WidgetInstance>& widgets, const QSizeF& screen) {
    struct Side {
        bool left;
        // Distance of the current column from the side's edge, its widest tile, and the top of the
        // next tile in it.
        double inset;
        double width;
        double top;
    };
    const double marginX = screen.width() * edgeMargin;
    const double marginY = screen.height() * edgeMargin;
    const double reach = screen.height() * columnReach;
    Side sides[2] = {{true, marginX, 0, marginY}, {false, marginX, 0, marginY}};
    int current = 0;

    QList<Placement> placed;
    QList<QRectF> taken;
    for (const WidgetInstance& widget : widgets) {
        if (position(widget, screen)) {
            continue;
        }
        const QSizeF tile = pixelSize(widget);
        std::optional<QPointF> spot;
        while (!spot) {
            Side& side = sides[current];
            if (side.inset + tile.width() > screen.width() / 2) {
                break;
            }
            for (double top = side.top; top + tile.height() <= reach; top += searchStep) {
                const double x = side.left ? side.inset + tile.width() / 2
                                           : screen.width() - side.inset - tile.width() / 2;
                const QPointF centre(x, top + tile.height() / 2);
                if (isLegal(centre, widget, screen) && isFree(centre, widget, taken)) {
                    spot = centre;
                    side.top = top + tile.height() + gap;
                    side.width = std::max(side.width, tile.width());
                    break;
                }
            }
            if (!spot) {
                // This column is full: the next one is on the other side, or further in.
                side.inset += side.width + gap;
                side.width = 0;
                side.top = marginY;
                current = 1 - current;
                if (sides[0].inset + tile.width() > screen.width() / 2 &&
                    sides[1].inset + tile.width() > screen.width() / 2) {
                    break;
                }
            }
        }
        if (spot) {
            placed.append({widget.id, *spot});
            taken.append(rectAround(*spot, tile));
        }
    }
    return placed;
}

QList<LockScreenLayout::Placement>
LockScreenLayout::resolvedPositions(const QList<WidgetInstance>& widgets, const QSizeF& screen) {
    QList<WidgetInstance> shown;
    for (const WidgetInstance& widget : widgets) {
        if (LockScreenPolicy::shows(widget)) {
            shown.append(widget);
        }
    }
    const QList<Placement> arranged = autoArrange(shown, screen);
    QList<Placement> resolved;
    QList<QRectF> taken;
    for (const WidgetInstance& widget : shown) {
        std::optional<QPointF> start = position(widget, screen);
        for (const Placement& placement : arranged) {
            if (!start && placement.first == widget.id) {
                start = placement.second;
            }
        }
        if (!start) {
            start = QPointF(screen.width() / 2, screen.height() / 2);
        }
        const std::optional<QPointF> spot = settle(*start, widget, screen, taken);
        if (spot) {
            resolved.append({widget.id, *spot});
            taken.append(rectAround(*spot, pixelSize(widget)));
        }
    }
    return resolved;
}

} // namespace tw
