// The context menu of a tile on the desktop, in its fixed order: settings, size, glass, the
// stack's entries, removal. Built from plain facts so that it can be read without a desktop.
#pragma once

#include "look/ThemeStore.h"
#include "model/WidgetSize.h"

#include <QList>

#include <array>
#include <functional>
#include <optional>

class QMenu;
class QObject;

namespace tw {

class GridStore;
class WidgetRegistry;
struct WidgetInstance;

class PanelContextMenu {
public:
    PanelContextMenu() = delete;

    // The "Rotate Every" choices in seconds; 0 is off.
    static constexpr std::array<int, 4> rotateChoices{0, 4, 8, 15};

    struct Facts {
        bool hasSettings = false;
        QList<WidgetSize> allowedSizes;
        WidgetSize size = WidgetSize::small;
        ThemeStore::GlassStyle glass = ThemeStore::GlassStyle::Frosted;
        // Set for a member of a stack: the stack's rhythm in seconds.
        std::optional<int> stackSeconds;

        // The facts of a tile as the grid and the catalogue have them.
        static Facts of(const WidgetInstance& instance, const WidgetRegistry& registry,
                        const GridStore& grid, ThemeStore::GlassStyle glass);
    };
    struct Actions {
        std::function<void()> openSettings;
        std::function<void(WidgetSize)> setSize;
        std::function<void(ThemeStore::GlassStyle)> setGlass;
        std::function<void()> showNext;
        std::function<void(int)> setRotate;
        std::function<void()> unstack;
        std::function<void()> remove;
    };

    // A new menu (the caller owns it); the actions run in `context`'s lifetime.
    static QMenu* build(const Facts& facts, const Actions& actions, QObject* context);
};

} // namespace tw
