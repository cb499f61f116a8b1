#include "custom/CustomRow.h"

#include "custom/CustomWidgetDefinitionDecoding.h"

#include <QJsonArray>

namespace tw {

std::optional<CustomRow> CustomRow::fromJson(const QJsonValue& json) {
    if (!json.isObject()) {
        return std::nullopt;
    }
    CustomDecoding::FieldReader read(json.toObject());
    CustomRow row;
    if (const std::optional<QString> align = read.string(QLatin1String("align"))) {
        row.align = customAlignFromRawValue(*align);
        if (!row.align) {
            return std::nullopt;
        }
    }
    row.spacing = read.real(QLatin1String("spacing"));
    const QJsonArray elements = read.array(QLatin1String("elements")).value_or(QJsonArray());
    if (read.failed()) {
        return std::nullopt;
    }
    for (const QJsonValue& member : elements) {
        std::optional<CustomElement> element = CustomElement::fromJson(member);
        if (!element) {
            return std::nullopt;
        }
        if (row.elements.size() < CustomDecoding::maximumElementsPerRow) {
            row.elements.append(std::move(*element));
        }
    }
    return row;
}

QJsonObject CustomRow::toJson() const {
    QJsonArray array;
    for (const CustomElement& element : elements) {
        array.append(element.toJson());
    }
    QJsonObject json{{QLatin1String("elements"), array}};
    if (align) {
        json.insert(QLatin1String("align"), rawValue(*align));
    }
    if (spacing) {
        json.insert(QLatin1String("spacing"), *spacing);
    }
    return json;
}

} // namespace tw
