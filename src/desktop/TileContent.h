// What a desktop tile shows: its face in the theme and glass of the moment, and the time at its
// face's grain. Tells when the look changed so that every tile is drawn again.
#pragma once

#include "look/ThemeStore.h"
#include "model/WidgetInstance.h"
#include "readings/ReadingFeed.h"
#include "tick/AnimationPace.h"

#include <QObject>

namespace tw {

class AppSettings;
class Clock;
class Scheduler;
class WidgetFace;
class ColorSchemeWatcher;
class FaceRegistry;
class MinuteCoordinator;
class SymbolProvider;
class TickCoordinator;
class WidgetRegistry;
struct AppUsageBoard;
class TileBehaviours;
struct CalendarBoard;
struct CustomBoard;
struct DeskBoard;
struct MarketBoard;
struct ReadingsBoard;
struct SpeedTestBoard;
struct WeatherBoard;
struct DesktopTile;

class TileContent final : public QObject {
    Q_OBJECT
public:
    // The symbols and the colour scheme may be absent (then the desktop counts as dark), as
    // may the readings (faces then show their figures as missing) and the weather (faces then
    // show it loading).
    struct Services {
        const ThemeStore& theme;
        const AppSettings& settings;
        TickCoordinator& ticker;
        MinuteCoordinator& minutes;
        const WidgetRegistry& registry;
        const FaceRegistry& faces;
        const SymbolProvider* symbols = nullptr;
        const ColorSchemeWatcher* colorScheme = nullptr;
        const ReadingsBoard* readings = nullptr;
        const WeatherBoard* weather = nullptr;
        // The custom widgets' definitions and data; without it custom faces show their loading
        // state.
        const CustomBoard* custom = nullptr;
        // Which timers ring; without it none flashes.
        const DeskBoard* desk = nullptr;
        // The events and reminders tiles show; without it a tile with a chosen calendar shows
        // it loading.
        const CalendarBoard* calendar = nullptr;
        // The speed test's figures; without it its tile shows nothing measured.
        const SpeedTestBoard* speedTest = nullptr;
        // The quotes; without them a quote tile shows them loading.
        const MarketBoard* market = nullptr;
        // What each app time tile shows; without it they say nothing was counted.
        const AppUsageBoard* appUsage = nullptr;
        // The behaviours of kinds that keep state of their own; without them their faces draw a
        // sample.
        const TileBehaviours* behaviours = nullptr;
        // What runs animated scenes; without them every scene stands still.
        Scheduler* scheduler = nullptr;
        const Clock* clock = nullptr;
    };

    explicit TileContent(const Services& services, QObject* parent = nullptr);

    // The desktop's look as "Automatic" glass follows it.
    ThemeStore::SystemAppearance systemAppearance() const;
    // The tile's face, look, time and readings for its instance as it is now.
    void refresh(DesktopTile& tile) const;
    // The tile's pace after a change of the settings, its cover or the pointer over it; an
    // animated face runs its scene at what the pace allows of what it asks.
    void applyPace(DesktopTile& tile) const;
    // A tile coming into view shows the time of now, not that of the last tick before it went.
    void reseed(DesktopTile& tile) const;
    // Takes in whether the window system has the tile covered; a covered tile is not repainted,
    // and one uncovered shows the time of now.
    void takeCovered(DesktopTile& tile) const;
    // A custom tile's feeds after its definition may have changed; true when they did.
    bool takeCustomFeeds(DesktopTile& tile) const;

Q_SIGNALS:
    void lookChanged();

private:
    void driveScene(DesktopTile& tile, const WidgetFace& face, AnimationPace pace) const;
    ReadingFeeds feedsOf(const DesktopTile& tile, const WidgetFace& face,
                         const WidgetSettings& settings) const;

    Services m_services;
};

} // namespace tw
