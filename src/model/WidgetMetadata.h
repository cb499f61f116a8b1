// What the program must know of a widget kind before it draws one.
#pragma once

#include "model/RefreshCadence.h"
#include "model/WidgetPermission.h"
#include "model/WidgetSize.h"

#include <QList>
#include <QString>

namespace tw {

struct WidgetMetadata {
    // The key stored in WidgetInstance::kind.
    QString kind;
    // Localised: "widget.<kind>.name".
    QString displayName;
    // The name of the symbol that stands for the kind.
    QString symbol;
    // In the order the size picker shows them; never empty.
    QList<WidgetSize> allowedSizes;
    // Always one of allowedSizes.
    WidgetSize defaultSize = WidgetSize::large;
    RefreshCadence refresh = RefreshCadence::never();
    QList<WidgetPermission> permissions;
    // The options sheet offers the kind's own settings.
    bool hasSettings = false;
    // The content reaches the tile's edges, with no inner padding.
    bool fullBleed = false;
    // The tile draws no glass background at all.
    bool chromeless = false;
    // Typed into: the tile takes the keyboard when clicked, and a click never runs its action.
    bool typedInto = false;

    bool operator==(const WidgetMetadata&) const = default;
};

} // namespace tw
