// The whole desktop arrangement: every widget instance, the logical page count and the save stamp.
#pragma once

#include "model/WidgetInstance.h"

#include <QByteArray>
#include <QDateTime>
#include <QJsonObject>
#include <QList>

#include <optional>

namespace tw {

struct GridLayout {
    // Array order is not z-order and means nothing.
    QList<WidgetInstance> instances;
    int pageCount = 1;
    std::optional<QDateTime> savedAt;

    bool operator==(const GridLayout&) const = default;

    // No instances, one page, never saved: what an unreadable file leaves.
    static GridLayout defaultLayout();
    // A first start: clock and calendar large on top, weather wide beneath, fresh UUIDs.
    static GridLayout firstDesktop();
    // Analog clock, weather, calendar and ring battery in one row of page 0, fresh UUIDs.
    static GridLayout starter();

    // At least 1 and at least the highest page of `instances` plus one.
    static int pageCountFor(int storedPageCount, const QList<WidgetInstance>& instances);

    QJsonObject toJson() const;
    // Compact JSON text, as "grid.json" holds it.
    QByteArray toJsonText() const;
    // Fails only without an "instances" array; a member that fails to decode is dropped.
    static std::optional<GridLayout> fromJson(const QJsonValue& json);
    // Text that is not a JSON object fails like a layout without "instances".
    static std::optional<GridLayout> fromJsonText(const QByteArray& text);
};

} // namespace tw
