#include "desktop/TileContent.h"

#include "custom/CustomBoard.h"
#include "desktop/DesktopTile.h"
#include "desktop/PanelPace.h"
#include "faces/FaceRegistry.h"
#include "faces/GlassLook.h"
#include "model/WidgetRegistry.h"
#include "platform/ColorSchemeWatcher.h"
#include "tick/MinuteCoordinator.h"
#include "tick/TickCoordinator.h"

namespace tw {

TileContent::TileContent(const Services& services, QObject* parent)
    : QObject(parent)
    , m_services(services) {
    const ThemeStore* theme = &m_services.theme;
    for (auto signal : {&ThemeStore::themedChanged, &ThemeStore::accentOverrideChanged}) {
        connect(theme, signal, this, &TileContent::lookChanged);
    }
    connect(theme, &ThemeStore::glassStyleChanged, this, &TileContent::lookChanged);
    connect(theme, &ThemeStore::glassStrengthChanged, this, &TileContent::lookChanged);
    connect(theme, &ThemeStore::glassTintChanged, this, &TileContent::lookChanged);
    if (m_services.colorScheme != nullptr) {
        connect(m_services.colorScheme, &ColorSchemeWatcher::colorSchemeChanged, this, [this] {
            if (m_services.theme.glassTint() == ThemeStore::GlassTint::Auto) {
                Q_EMIT lookChanged();
            }
        });
    }
}

ThemeStore::SystemAppearance TileContent::systemAppearance() const {
    const bool light = m_services.colorScheme != nullptr &&
                       m_services.colorScheme->colorScheme() == ColorScheme::Light;
    return light ? ThemeStore::SystemAppearance::Light : ThemeStore::SystemAppearance::Dark;
}

void TileContent::refresh(DesktopTile& tile) const {
    const auto definition = m_services.registry.definition(tile.instance.kind);
    if (!definition) {
        return;
    }
    const WidgetFace& face = m_services.faces.face(definition->metadata.kind);
    FaceContext context = FaceContext::forInstance(definition->metadata, tile.instance);
    context.theme = m_services.theme.themed();
    context.glass = GlassLook::from(m_services.theme, systemAppearance());
    context.surface = SurfaceFlags::desktop();
    context.surface.allowsTransitions = panelAllowsTransitions(m_services.settings, *tile.state);
    context.pace = panelPace(m_services.settings, *tile.state);
    context.symbols = m_services.symbols;
    context.readings = m_services.readings;
    context.weather = m_services.weather;
    context.custom = m_services.custom;
    context.desk = m_services.desk;
    context.calendar = m_services.calendar;
    context.speedTest = m_services.speedTest;
    context.market = m_services.market;
    context.appUsage = m_services.appUsage;
    context.behaviours = m_services.behaviours;
    tile.feeds = feedsOf(tile, face, context.settings);
    tile.showsWeather = face.showsWeather(context.settings);
    tile.showsCalendar = face.showsCalendar(context.settings);
    tile.market = MarketDemand::of(tile.instance.kind, context.settings);

    const auto grain = face.grain(tile.instance.size, context.settings);
    if (!grain) {
        tile.time.reset();
    } else if (!tile.time || tile.time->grain() != *grain) {
        tile.time = std::make_unique<TimeSource>(*grain, m_services.ticker, m_services.minutes);
        DesktopPanel* panel = tile.panel.get();
        PanelState* state = tile.state.get();
        // A covered tile is not repainted; it catches up when it comes back into view.
        connect(tile.time.get(), &TimeSource::timeChanged, panel,
                [panel, state](const QDateTime& now) {
                    if (!state->occluded()) {
                        panel->setNow(now);
                    }
                });
    }
    context.now = tile.time ? tile.time->time() : QDateTime();
    context.sceneTime = tile.scene ? tile.scene->sceneTime() : 0;
    tile.panel->setContent(face, context);
    driveScene(tile, face, context.pace);
}

ReadingFeeds TileContent::feedsOf(const DesktopTile& tile, const WidgetFace& face,
                                  const WidgetSettings& settings) const {
    ReadingFeeds feeds = face.feeds(tile.instance.size, settings);
    // A custom widget's tokens read the readings hub: it samples while such a tile is in view.
    const CustomWidgetDefinition* definition =
        m_services.custom != nullptr ? m_services.custom->definition(tile.instance.kind) : nullptr;
    if (definition != nullptr && definition->needsSystemValues()) {
        feeds |= ReadingFeeds(ReadingFeed::system) | ReadingFeed::battery;
    }
    return feeds;
}

bool TileContent::takeCustomFeeds(DesktopTile& tile) const {
    const ReadingFeeds before = tile.feeds;
    tile.feeds =
        feedsOf(tile, m_services.faces.face(tile.instance.kind), tile.panel->context().settings);
    return tile.feeds != before;
}

void TileContent::applyPace(DesktopTile& tile) const {
    const AnimationPace pace = panelPace(m_services.settings, *tile.state);
    tile.panel->setPace(pace, panelAllowsTransitions(m_services.settings, *tile.state));
    driveScene(tile, m_services.faces.face(tile.instance.kind), pace);
}

void TileContent::driveScene(DesktopTile& tile, const WidgetFace& face, AnimationPace pace) const {
    // The panel's context carries the settings and the data the face shows now.
    const double fps = pace.fps(face.sceneFps(tile.panel->context()));
    if (fps > 0 && !tile.scene && m_services.scheduler != nullptr && m_services.clock != nullptr) {
        DesktopPanel* panel = tile.panel.get();
        tile.scene = std::make_unique<SceneDriver>(
            *m_services.scheduler, *m_services.clock,
            [panel](double sceneTime) { panel->setSceneTime(sceneTime); });
    }
    if (tile.scene) {
        tile.scene->setRate(fps);
    }
}

void TileContent::reseed(DesktopTile& tile) const {
    if (tile.time) {
        tile.time->reseed();
        if (!tile.state->occluded()) {
            tile.panel->setNow(tile.time->time());
        }
    }
}

void TileContent::takeCovered(DesktopTile& tile) const {
    const bool wasOccluded = tile.state->occluded();
    tile.state->setOccluded(tile.covered);
    if (wasOccluded && !tile.covered) {
        reseed(tile);
    }
}

} // namespace tw
