#include "model/GridLayout.h"

#include "model/JsonCoding.h"
#include "model/Lossy.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <limits>

namespace tw {

namespace {

WidgetInstance placed(const char* kind, WidgetSize size, int order, int col, int row) {
    WidgetInstance instance;
    instance.kind = QLatin1String(kind);
    instance.size = size;
    instance.order = order;
    instance.col = col;
    instance.row = row;
    return instance;
}

WidgetInstance withStyle(WidgetInstance instance, const char* style) {
    instance.settings = WidgetSettings{{QStringLiteral("style"), QLatin1String(style)}};
    return instance;
}

} // namespace

GridLayout GridLayout::defaultLayout() {
    return {};
}

GridLayout GridLayout::firstDesktop() {
    GridLayout layout;
    layout.instances = {
        placed("clock", WidgetSize::large, 0, 0, 0),
        placed("calendar", WidgetSize::large, 1, 2, 0),
        placed("weather", WidgetSize::wide, 2, 0, 2),
    };
    return layout;
}

GridLayout GridLayout::starter() {
    GridLayout layout;
    layout.instances = {
        withStyle(placed("clock", WidgetSize::large, 0, 0, 0), "analog"),
        placed("weather", WidgetSize::wide, 1, 2, 0),
        placed("calendar", WidgetSize::small, 2, 4, 0),
        withStyle(placed("battery", WidgetSize::small, 3, 5, 0), "ring"),
    };
    return layout;
}

int GridLayout::pageCountFor(int storedPageCount, const QList<WidgetInstance>& instances) {
    // 64-bit so that a page of INT_MAX in a file cannot overflow the "plus one".
    qint64 count = std::max(storedPageCount, 1);
    for (const WidgetInstance& instance : instances) {
        count = std::max(count, qint64{instance.page} + 1);
    }
    return static_cast<int>(std::min<qint64>(count, std::numeric_limits<int>::max()));
}

QJsonObject GridLayout::toJson() const {
    QJsonArray array;
    for (const WidgetInstance& instance : instances) {
        array.append(instance.toJson());
    }
    QJsonObject json{{QStringLiteral("instances"), array},
                     {QStringLiteral("pageCount"), pageCount}};
    if (savedAt) {
        json.insert(QStringLiteral("savedAt"), JsonCoding::encodeDate(*savedAt));
    }
    return json;
}

QByteArray GridLayout::toJsonText() const {
    return QJsonDocument(toJson()).toJson(QJsonDocument::Compact);
}

std::optional<GridLayout> GridLayout::fromJson(const QJsonValue& json) {
    const QJsonValue instancesValue = json.toObject().value(QStringLiteral("instances"));
    if (!instancesValue.isArray()) {
        return std::nullopt;
    }
    const QJsonObject object = json.toObject();
    GridLayout layout;
    layout.instances = decodeLossyList<WidgetInstance>(instancesValue.toArray());
    layout.pageCount =
        pageCountFor(JsonCoding::decodeInt(object.value(QStringLiteral("pageCount"))).value_or(1),
                     layout.instances);
    layout.savedAt = JsonCoding::decodeDate(object.value(QStringLiteral("savedAt")));
    return layout;
}

std::optional<GridLayout> GridLayout::fromJsonText(const QByteArray& text) {
    const QJsonDocument document = QJsonDocument::fromJson(text);
    if (!document.isObject()) {
        return std::nullopt;
    }
    return fromJson(document.object());
}

} // namespace tw
