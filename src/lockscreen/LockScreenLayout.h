// Each widget's own place on the lock screen, kept in its settings and carried between displays.
// Points are lock-screen points of a screen's size, origin at the top left; a position is the
// widget's centre.
#pragma once

#include "model/WidgetInstance.h"

#include <QList>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QUuid>

#include <optional>
#include <utility>

namespace tw {

namespace LockScreenLayout {

inline const QString xKey = QStringLiteral("lockX");
inline const QString yKey = QStringLiteral("lockY");
inline const QString designWidthKey = QStringLiteral("lockDW");
inline const QString designHeightKey = QStringLiteral("lockDH");
inline const QString sizeKey = QStringLiteral("lockSize");
inline const QString onlyKey = QStringLiteral("lockOnly");

// The grid step of 96 plus the gap of 12.
inline constexpr double pitch = 108.0;
// Room kept from the screen's edges by the automatic arrangement, as a fraction of its size, and
// how far down its columns may reach.
inline constexpr double edgeMargin = 0.025;
inline constexpr double columnReach = 0.97;

// "lockSize" when it names a size the kind allows, otherwise the widget's own size.
WidgetSize size(const WidgetInstance& widget);
// The tile's size in points at that size and the widget's scale.
QSizeF pixelSize(const WidgetInstance& widget);

// One axis from a span `from` to a span `to`: near the centre stays by the centre, otherwise by the
// near edge; offsets are multiplied by `scale`. A span that is not positive leaves `pos` as it is.
double carry(double pos, double from, double to, double scale);
// carry on both axes of a centre, unscaled.
QPointF carryPoint(const QPointF& point, const QSizeF& from, const QSizeF& to);

// No position of its own: it follows its place on the desktop.
bool isInheritingPosition(const WidgetInstance& widget);
bool isLockOnly(const WidgetInstance& widget);
// Whether position() answers, on any screen.
bool hasPosition(const WidgetInstance& widget);
// The stored position carried to `design`, else the inherited one.
std::optional<QPointF> position(const WidgetInstance& widget, const QSizeF& design);
// Mirrors the widget's grid place from the top-left corner; nullopt when it has its own position
// or no place on the desktop.
std::optional<QPointF> inheritedPosition(const WidgetInstance& widget, const QSizeF& design);

void store(const QPointF& point, WidgetSettings& settings, const QSizeF& design);
void clearPosition(WidgetSettings& settings);

// The widget's rectangle around `centre` in fractions of `screen`.
QRectF unitRect(const WidgetInstance& widget, const QPointF& centre, const QSizeF& screen);
// To the pitch, counted from the screen's centre.
QPointF snap(const QPointF& point, const QSizeF& screen);
// Wholly on the screen and clear of every reserved region.
bool isLegal(const QPointF& point, const WidgetInstance& widget, const QSizeF& screen);
// Overlaps none of `taken` (rectangles in points); edges may touch.
bool isFree(const QPointF& point, const WidgetInstance& widget, const QList<QRectF>& taken);
// The legal, free spot closest to `point`, searched in quarter-pitch steps; nullopt when the
// widget fits nowhere.
std::optional<QPointF> nearestLegal(const QPointF& point, const WidgetInstance& widget,
                                    const QSizeF& screen, const QList<QRectF>& taken);
// `point` itself when it is legal and free, otherwise nearestLegal.
std::optional<QPointF> settle(const QPointF& point, const WidgetInstance& widget,
                              const QSizeF& screen, const QList<QRectF>& taken);

using Placement = std::pair<QUuid, QPointF>;
// Starting points for widgets without any position: columns filled down from the top, left edge,
// right edge, then the next columns inward, clear of the reserved regions.
QList<Placement> autoArrange(const QList<WidgetInstance>& widgets, const QSizeF& screen);
// Every widget the policy lets show, at its own position or an arranged one, settled so that none
// overlaps another or a reserved region, in the order given; a widget that fits nowhere is left
// out.
QList<Placement> resolvedPositions(const QList<WidgetInstance>& widgets, const QSizeF& screen);

} // namespace LockScreenLayout

} // namespace tw
