// One line of a custom widget: its elements side by side, how they line up and how far apart.
#pragma once

#include "custom/CustomAlign.h"
#include "custom/CustomElement.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QUuid>

#include <optional>

namespace tw {

struct CustomRow {
    // Made afresh at every decoding and construction; never written.
    QUuid id = QUuid::createUuid();
    QList<CustomElement> elements;
    std::optional<CustomAlign> align;
    std::optional<double> spacing;

    // Every key is optional; an unknown `align`, a field of the wrong type or an element that
    // fails gives nullopt, which fails the whole file.
    static std::optional<CustomRow> fromJson(const QJsonValue& json);
    QJsonObject toJson() const;

    bool operator==(const CustomRow&) const = default;
};

} // namespace tw
