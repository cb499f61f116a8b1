#include "custom/CustomWidgetDocument.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

namespace tw {

std::optional<CustomWidgetDocument> CustomWidgetDocument::decode(const QByteArray& bytes) {
    QJsonParseError error{};
    const QJsonDocument json = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError || !json.isObject()) {
        return std::nullopt;
    }
    const QJsonObject root = json.object();
    CustomWidgetDocument document;
    const QJsonValue schema = root.value(QLatin1String("schema"));
    if (!schema.isUndefined()) {
        if (!schema.isDouble() || schema.toDouble() != schema.toInt()) {
            return std::nullopt;
        }
        document.schema = schema.toInt();
    }
    const QJsonValue widgets = root.value(QLatin1String("widgets"));
    if (!widgets.isUndefined() && !widgets.isArray()) {
        return std::nullopt;
    }
    QSet<QUuid> ids;
    for (const QJsonValue& entry : widgets.toArray()) {
        std::optional<CustomWidgetDefinition> widget =
            entry.isObject() ? CustomWidgetDefinition::fromJson(entry.toObject()) : std::nullopt;
        if (!widget) {
            return std::nullopt;
        }
        if (ids.contains(widget->id)) {
            widget->id = QUuid::createUuid();
        }
        ids.insert(widget->id);
        document.widgets.append(std::move(*widget));
    }
    return document;
}

QByteArray CustomWidgetDocument::encode() const {
    QJsonArray widgetArray;
    for (const CustomWidgetDefinition& widget : widgets) {
        widgetArray.append(widget.toJson(CustomWidgetDefinition::Secrets::omitted));
    }
    const QJsonObject root{{QLatin1String("schema"), schema},
                           {QLatin1String("widgets"), widgetArray}};
    return QJsonDocument(root).toJson(QJsonDocument::Indented);
}

} // namespace tw
