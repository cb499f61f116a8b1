// One display as the layout logic sees it: a stable identity, a name and two rectangles.
#pragma once

#include "displays/LayoutDisplayRect.h"

#include <QList>
#include <QString>

namespace tw {

class Displays;

struct LayoutDisplay {
    QString id;
    QString name;
    LayoutDisplayRect frame;
    LayoutDisplayRect visibleFrame;
    bool isMain = false;

    QJsonObject toJson() const;
    // Every field is required; a record missing one gives nothing.
    static std::optional<LayoutDisplay> fromJson(const QJsonValue& json);

    // One record per connected display, in the order the platform lists them.
    static QList<LayoutDisplay> currentDisplays(const Displays& displays);

    // Display names as people read them: equal ignoring case and diacritics ("Écran" is "ecran").
    static bool namesMatch(const QString& a, const QString& b);

    friend bool operator==(const LayoutDisplay&, const LayoutDisplay&) = default;
};

} // namespace tw
