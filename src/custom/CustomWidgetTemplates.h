// Finished custom widgets a person starts from: each a plain definition to take apart and change.
#pragma once

#include "custom/CustomWidgetDefinition.h"

#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace tw {

class CustomWidgetTemplates {
public:
    CustomWidgetTemplates() = delete;

    struct Template {
        QString id;
        QString title;
        QString detail;
        QString symbol;
        // A fresh definition with a new id at every call.
        std::function<CustomWidgetDefinition()> make;
    };

    // In the order the editor offers them, "blank" first.
    static QList<Template> all();
    static std::optional<Template> byId(const QString& id);

    static CustomWidgetDefinition blank();
    static CustomWidgetDefinition system();
    static CustomWidgetDefinition dayCard();
    static CustomWidgetDefinition apiValue();
    static CustomWidgetDefinition chart();
    static CustomWidgetDefinition crypto();
    static CustomWidgetDefinition forecast();
    static CustomWidgetDefinition headlines();
    static CustomWidgetDefinition release();
    static CustomWidgetDefinition twoCities();
    static CustomWidgetDefinition spaceStation();
};

} // namespace tw
