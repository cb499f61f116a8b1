// A named set of six colours every tile and window draws with, and the built-in sets.
#pragma once

#include "look/ThemeColor.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QString>

#include <optional>

namespace tw {

struct Theme {
    QString id;
    QString name;
    ThemeColor accent;
    ThemeColor surface;
    ThemeColor surfaceElevated;
    ThemeColor textPrimary;
    ThemeColor textSecondary;
    ThemeColor separator;

    bool operator==(const Theme&) const = default;

    // The 25 themes offered to the user, "midnight" first.
    static const QList<Theme>& builtIns();
    // The offered theme with that id, or nullopt.
    static std::optional<Theme> builtIn(const QString& id);
    // Midnight.
    static const Theme& defaultTheme();
    // The application's own windows, light ("app-chrome") and dark ("app-chrome-dark"); never
    // offered as tile themes.
    static const Theme& appChrome();
    static const Theme& appChromeDark();

    QJsonObject toJson() const;
    // Needs a string "id"; a missing name reads as the id and a missing colour as the default
    // theme's.
    static std::optional<Theme> fromJson(const QJsonValue& json);
};

} // namespace tw
