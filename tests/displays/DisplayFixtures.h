// Displays, widgets and layouts for the display tests, in internal points (y up).
#pragma once

#include "displays/LayoutDisplay.h"
#include "model/GridLayout.h"

#include <QUuid>

#include <optional>

namespace tw::test {

enum class Role { secondary, main };

inline LayoutDisplay screenAt(const QString& id, double x, double y, double width, double height,
                              Role role = Role::secondary, const QString& name = {}) {
    const LayoutDisplayRect frame{x, y, width, height};
    return LayoutDisplay{id, name.isEmpty() ? id : name, frame, frame, role == Role::main};
}

inline LayoutDisplay withVisibleFrame(LayoutDisplay display, LayoutDisplayRect visibleFrame) {
    display.visibleFrame = visibleFrame;
    return display;
}

// A stable id from a small number, so that dumps and failures read the same on every run.
inline QUuid widgetId(int n) {
    return QUuid(static_cast<uint>(n), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
}

inline WidgetInstance widgetAt(int n, WidgetSize size, std::optional<double> x,
                               std::optional<double> topY, const QString& kind = {}) {
    WidgetInstance widget;
    widget.id = widgetId(n);
    widget.kind = kind.isEmpty() ? QStringLiteral("clock") : kind;
    widget.size = size;
    widget.order = n;
    widget.posX = x;
    widget.posY = topY;
    return widget;
}

inline GridLayout layoutOf(QList<WidgetInstance> instances) {
    GridLayout layout;
    layout.instances = std::move(instances);
    return layout;
}

inline const WidgetInstance& widgetIn(const GridLayout& layout, int n) {
    for (const WidgetInstance& widget : layout.instances) {
        if (widget.id == widgetId(n)) {
            return widget;
        }
    }
    qFatal("no widget %d in the layout", n);
}

} // namespace tw::test
