// The widgets the scene pictures show: chosen to look like a real desk, built fresh each time.
#pragma once

#include "model/WidgetInstance.h"

#include <QList>
#include <QPointF>

#include <utility>

namespace tw {

namespace SceneWidgets {

// One widget of a kind at a size with its settings and a tile scale of `scale`.
WidgetInstance widget(const char* kind, WidgetSize size, WidgetSettings settings = {},
                      double scale = 1.0);
// A world clock above an analog clock and the day's progress, with their top-left corners in
// points of a tile `scale`.
QList<std::pair<QPointF, WidgetInstance>> clocks(double scale);
// A desk's widgets without lock-screen places of their own: public kinds that may show there
// and a personal note that may not.
QList<WidgetInstance> lockScreen();

} // namespace SceneWidgets

} // namespace tw
