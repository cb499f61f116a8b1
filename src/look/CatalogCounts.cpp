#include "look/CatalogCounts.h"

#include "look/Theme.h"
#include "model/WidgetRegistry.h"
#include "model/WidgetSize.h"

namespace tw {

int CatalogCounts::widgets() {
    return static_cast<int>(WidgetRegistry::all().size());
}

int CatalogCounts::sizes() {
    return static_cast<int>(allWidgetSizes.size());
}

int CatalogCounts::themes() {
    return static_cast<int>(Theme::builtIns().size());
}

QString CatalogCounts::line() {
    return QStringLiteral("widgets=%1 sizes=%2 themes=%3")
        .arg(widgets())
        .arg(sizes())
        .arg(themes());
}

} // namespace tw
