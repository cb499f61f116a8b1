#include "displays/LayoutProfileSnapshot.h"

#include "model/JsonCoding.h"

#include <QJsonArray>

namespace tw {

namespace {

// The same instant the data files have always used for "never": 1 January of year 1 in the
// Julian calendar, as seconds from the reference date.
constexpr qint64 distantPastSeconds = -63114076800;

template <typename T>
QJsonArray arrayOf(const QList<T>& items) {
    QJsonArray array;
    for (const T& item : items) {
        array.append(item.toJson());
    }
    return array;
}

template <typename T>
QList<T> lossyList(const QJsonArray& array) {
    QList<T> items;
    items.reserve(array.size());
    for (const auto& value : array) {
        if (auto item = T::fromJson(value)) {
            items.append(std::move(*item));
        }
    }
    return items;
}

} // namespace

QDateTime LayoutProfileSnapshot::distantPast() {
    return QDateTime::fromSecsSinceEpoch(JsonCoding::referenceDateOffset + distantPastSeconds,
                                         Qt::UTC);
}

QJsonObject LayoutProfileSnapshot::toJson() const {
    return QJsonObject{{QStringLiteral("layout"), layout.toJson()},
                       {QStringLiteral("displays"), arrayOf(displays)},
                       {QStringLiteral("placements"), arrayOf(placements)},
                       {QStringLiteral("capturedAt"), JsonCoding::encodeDate(capturedAt)}};
}

std::optional<LayoutProfileSnapshot> LayoutProfileSnapshot::fromJson(const QJsonValue& json) {
    const QJsonObject object = json.toObject();
    const QJsonValue displays = object.value(QStringLiteral("displays"));
    const QJsonValue placements = object.value(QStringLiteral("placements"));
    auto layout = GridLayout::fromJson(object.value(QStringLiteral("layout")));
    if (!layout || !displays.isArray() || !placements.isArray()) {
        return std::nullopt;
    }
    LayoutProfileSnapshot snapshot;
    snapshot.layout = std::move(*layout);
    snapshot.displays = lossyList<LayoutDisplay>(displays.toArray());
    snapshot.placements = lossyList<LayoutWidgetPlacement>(placements.toArray());
    snapshot.capturedAt =
        JsonCoding::decodeDate(object.value(QStringLiteral("capturedAt"))).value_or(distantPast());
    return snapshot;
}

} // namespace tw
