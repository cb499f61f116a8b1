// One capture of a layout on one set of displays: the layout, the displays, and each widget's
// placement on them.
#pragma once

#include "displays/LayoutDisplay.h"
#include "displays/LayoutWidgetPlacement.h"
#include "model/GridLayout.h"

#include <QDateTime>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>

#include <optional>

namespace tw {

struct LayoutProfileSnapshot {
    GridLayout layout;
    QList<LayoutDisplay> displays;
    QList<LayoutWidgetPlacement> placements;
    QDateTime capturedAt = distantPast();

    // The stamp of a capture that carries none: older than any real one.
    static QDateTime distantPast();

    QJsonObject toJson() const;
    // `layout`, `displays` and `placements` are required; an unreadable display or placement is
    // dropped alone; a missing `capturedAt` is the distant past.
    static std::optional<LayoutProfileSnapshot> fromJson(const QJsonValue& json);

    friend bool operator==(const LayoutProfileSnapshot&, const LayoutProfileSnapshot&) = default;
};

} // namespace tw
