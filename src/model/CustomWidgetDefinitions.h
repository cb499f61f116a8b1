// Where the catalogue finds the kinds "custom.<UUID>" that users defined; the custom widget store
// implements it and the composition root hands it to the registry.
#pragma once

#include "model/WidgetDefinition.h"

#include <QList>
#include <QString>

#include <optional>

namespace tw {

class CustomWidgetDefinitions {
public:
    CustomWidgetDefinitions() = default;
    virtual ~CustomWidgetDefinitions() = default;
    Q_DISABLE_COPY_MOVE(CustomWidgetDefinitions)

    // The definition of a kind that begins with "custom.", or nullopt when none exists.
    virtual std::optional<WidgetDefinition> widgetDefinition(const QString& kind) const = 0;
    // Every custom kind, in the order the person made them, for the gallery.
    virtual QList<WidgetDefinition> widgetDefinitions() const { return {}; }
};

} // namespace tw
