#include "desktop/PanelContextMenu.h"

#include "grid/GridStore.h"
#include "model/WidgetRegistry.h"
#include "text/L.h"

#include <QMenu>

#include <tuple>

namespace tw {

PanelContextMenu::Facts PanelContextMenu::Facts::of(const WidgetInstance& instance,
                                                    const WidgetRegistry& registry,
                                                    const GridStore& grid,
                                                    ThemeStore::GlassStyle glass) {
    const auto definition = registry.definition(instance.kind);
    return {
        .hasSettings = definition && definition->metadata.hasSettings,
        .allowedSizes =
            definition ? definition->metadata.allowedSizes : QList<WidgetSize>{instance.size},
        .size = instance.size,
        .glass = glass,
        .stackSeconds =
            instance.stackID ? std::optional(grid.stackSeconds(*instance.stackID)) : std::nullopt,
    };
}

QMenu* PanelContextMenu::build(const Facts& facts, const Actions& actions, QObject* context) {
    auto* menu = new QMenu();
    if (facts.hasSettings) {
        menu->addAction(L("widget.settings", QStringLiteral("Widget Settings…")), context,
                        [f = actions.openSettings] { f(); });
    }

    QMenu* sizes = menu->addMenu(L("widget.size", QStringLiteral("Size")));
    for (const WidgetSize size : facts.allowedSizes) {
        QAction* action =
            sizes->addAction(label(size), context, [f = actions.setSize, size] { f(size); });
        action->setCheckable(true);
        action->setChecked(size == facts.size);
    }

    QMenu* glass = menu->addMenu(L("widget.glass", QStringLiteral("Glass")));
    const std::array<std::tuple<ThemeStore::GlassStyle, const char*, QString>, 3> styles{{
        {ThemeStore::GlassStyle::Frosted, "appearance.frosted", QStringLiteral("Frosted")},
        {ThemeStore::GlassStyle::Clear, "appearance.clear", QStringLiteral("Clear")},
        {ThemeStore::GlassStyle::Liquid, "appearance.liquid", QStringLiteral("Liquid")},
    }};
    for (const auto& [style, key, english] : styles) {
        QAction* action =
            glass->addAction(L(key, english), context, [f = actions.setGlass, s = style] { f(s); });
        action->setCheckable(true);
        action->setChecked(facts.glass == style);
    }

    if (facts.stackSeconds) {
        menu->addAction(L("stack.showNext", QStringLiteral("Show Next")), context,
                        [f = actions.showNext] { f(); });
        QMenu* rotate = menu->addMenu(L("stack.rotateEvery", QStringLiteral("Rotate Every")));
        for (const int seconds : rotateChoices) {
            const QString title = seconds == 0 ? L("common.off", QStringLiteral("Off"))
                                               : QString::number(seconds) + QStringLiteral(" s");
            QAction* action =
                rotate->addAction(title, context, [f = actions.setRotate, seconds] { f(seconds); });
            action->setCheckable(true);
            action->setChecked(*facts.stackSeconds == seconds);
        }
        menu->addAction(L("stack.unstack", QStringLiteral("Remove from Stack")), context,
                        [f = actions.unstack] { f(); });
    }
    menu->addAction(L("widget.removeWidget", QStringLiteral("Remove Widget")), context,
                    [f = actions.remove] { f(); });
    return menu;
}

} // namespace tw
