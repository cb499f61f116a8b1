// One widget on the desktop: its kind, size, placement, stack membership and own options.
#pragma once

#include "model/WidgetSize.h"

#include <QJsonObject>
#include <QMap>
#include <QSizeF>
#include <QString>
#include <QUuid>

#include <optional>

namespace tw {

// A widget's own options; every value is a string and each widget reads its keys with defaults.
using WidgetSettings = QMap<QString, QString>;

struct WidgetInstance {
    QUuid id = QUuid::createUuid();
    QString kind;
    WidgetSize size = WidgetSize::large;
    // Creation order: ties and the sorting of unplaced instances use it.
    int order = 0;
    int page = 0;
    // Logical grid placement; -1 means unplaced.
    int col = -1;
    int row = -1;
    // Desktop position of the tile's top-left corner in global points (y up); wins when set.
    std::optional<double> posX;
    std::optional<double> posY;
    std::optional<WidgetSettings> settings;
    std::optional<QUuid> stackID;
    std::optional<int> stackIndex;

    static constexpr double minimumScale = 1.0;
    static constexpr double maximumScale = 2.5;

    bool operator==(const WidgetInstance&) const = default;

    bool isPlaced() const { return col >= 0 && row >= 0; }
    bool inStack() const { return stackID.has_value(); }
    // The value of one settings key, absent when there are no settings or no such key.
    std::optional<QString> setting(const QString& key) const;

    QSizeF nominalPixelSize() const { return tw::nominalPixelSize(size); }
    // The settings value "tileScale" read through scale(text).
    double scale() const;
    QSizeF pixelSize() const { return nominalPixelSize() * scale(); }

    // Absent, unparsable, non-finite or below 1.0 gives 1.0; otherwise capped at 2.5 and
    // rounded to the nearest 0.05, halves away from zero.
    static double scale(const std::optional<QString>& text);

    // Every non-optional key always, the optional ones only when set.
    QJsonObject toJson() const;
    // Lenient about what is missing, strict about what is there: a key absent or null takes its
    // default (a fresh UUID for "id"), while a missing "kind", a "size" that is not one of the
    // nine, or any key of the wrong type fails the instance, so that a malformed "id" or
    // "stackID" never passes for a new widget or an unstacked one. Within "settings" a value of
    // another kind costs only itself.
    static std::optional<WidgetInstance> fromJson(const QJsonValue& json);
};

} // namespace tw
