// One tile on the desktop: its panel, what the desktop knows of it, the clock of its face's grain
// and the instance it last showed.
#pragma once

#include "desktop/DesktopPanel.h"
#include "desktop/PanelState.h"
#include "desktop/SceneDriver.h"
#include "market/MarketSettings.h"
#include "model/WidgetInstance.h"
#include "readings/ReadingFeed.h"
#include "tick/TimeSource.h"

#include <memory>

namespace tw {

struct DesktopTile {
    std::unique_ptr<DesktopPanel> panel;
    std::unique_ptr<PanelState> state;
    std::unique_ptr<TimeSource> time;   // none for a face without a grain
    std::unique_ptr<SceneDriver> scene; // made when its face first may animate
    WidgetInstance instance;
    bool covered = false;       // as the window system last said
    ReadingFeeds feeds;         // the machine's readings its face shows
    bool showsWeather = false;  // its face draws the weather of the place its settings name
    bool showsCalendar = false; // its face draws the events or reminders its settings choose
    MarketDemand market;        // the quotes its face draws
};

} // namespace tw
