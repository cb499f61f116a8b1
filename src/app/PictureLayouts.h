// Made-up profiles, rules and backups for pictures of the Layouts section, kept in a folder of
// their own that goes when the picture is drawn.
#pragma once

#include "displays/LayoutProfileStore.h"
#include "displays/ScreenTopologyWatcher.h"
#include "displays/SmartLayoutCoordinator.h"
#include "displays/SmartLayoutRuleStore.h"
#include "grid/GridStore.h"
#include "model/WidgetRegistry.h"
#include "platform/null/FixedDisplays.h"
#include "tick/OffsetClock.h"

#include <QTemporaryDir>

#include <memory>

namespace tw {

class Defaults;
class Scheduler;

class PictureLayouts {
public:
    // "Default", "Work", "Home" and "Presenting", four rules of which "Working hours" holds, and
    // two automatic backups, on a clock that reads 10:09 on a Tuesday, whatever the time.
    PictureLayouts(const Clock& clock, Scheduler& scheduler, Defaults& defaults);

    SmartLayoutCoordinator& coordinator() { return *m_coordinator; }
    QString dataDirectory() const { return m_dir.path(); }

private:
    OffsetClock m_clock;
    QTemporaryDir m_dir;
    WidgetRegistry m_registry;
    FixedDisplays m_displays;
    std::unique_ptr<GridStore> m_grid;
    std::unique_ptr<ScreenTopologyWatcher> m_watcher;
    std::unique_ptr<LayoutProfileStore> m_profiles;
    std::unique_ptr<SmartLayoutRuleStore> m_rules;
    std::unique_ptr<SmartLayoutCoordinator> m_coordinator;
};

} // namespace tw
