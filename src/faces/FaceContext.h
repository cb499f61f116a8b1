// Everything a face needs to draw one tile: size, scale, theme and glass, the time, the widget's
// options and what the surface allows. The same context drives a panel, a preview and a picture.
#pragma once

#include "custom/CustomBoard.h"
#include "desk/AppUsageView.h"
#include "desk/CalendarBoard.h"
#include "desk/DeskBoard.h"
#include "faces/GlassLook.h"
#include "faces/SurfaceFlags.h"
#include "look/Theme.h"
#include "market/MarketBoard.h"
#include "model/TileBehaviour.h"
#include "model/WidgetInstance.h"
#include "model/WidgetMetadata.h"
#include "model/WidgetSize.h"
#include "readings/ReadingsBoard.h"
#include "speed/SpeedTestBoard.h"
#include "tick/AnimationPace.h"
#include "weather/WeatherBoard.h"

#include <QColor>
#include <QDateTime>
#include <QMarginsF>
#include <QSizeF>
#include <QString>
#include <QUuid>

namespace tw {

class SymbolProvider;
class PictureCache;

struct FaceContext {
    // The kind's catalogue entry: name, symbol, chrome and bleed.
    WidgetMetadata metadata;
    WidgetSize size = WidgetSize::small;
    // The tile's size in points, tile scale included.
    QSizeF points;
    // The instance's "tileScale": faces draw in points and scale nothing themselves.
    double scale = 1.0;
    qreal devicePixelRatio = 1.0;
    // Already themed (accent override applied).
    Theme theme;
    GlassLook glass;
    // The time at the face's grain; invalid for faces that show no time.
    QDateTime now;
    WidgetSettings settings;
    SurfaceFlags surface;
    // Room inside the padding that the host keeps for its own marks (a stack's arrows and
    // dots), in points; the face draws in what is left.
    QMarginsF reserved;
    AnimationPace pace;
    // Seconds of the face's own scene time: stands still while paused, pinned for pictures.
    double sceneTime = 0;
    // Never null when drawing; NullSymbolProvider where no icon set exists.
    const SymbolProvider* symbols = nullptr;
    // Pictures kept between frames (large text, dials); the tile renderer supplies its own.
    PictureCache* pictures = nullptr;
    // The machine's latest readings for faces that show them; null where none were taken, and
    // the face then draws its figures as missing.
    const ReadingsBoard* readings = nullptr;
    // The weather of the places tiles show; null where none is known, and the face then draws
    // its loading state.
    const WeatherBoard* weather = nullptr;
    // The custom widgets' definitions, sources and histories; null where none are known, and a
    // custom face then draws its loading state.
    const CustomBoard* custom = nullptr;
    // Which timer tiles ring now; null where nothing rings (pictures, the gallery).
    const DeskBoard* desk = nullptr;
    // The instance drawn; null for a preview of a kind.
    QUuid instanceID;
    // The events and reminders tiles show; null where none were read, and a tile whose person
    // chose a calendar then draws it loading.
    const CalendarBoard* calendar = nullptr;
    // The speed test's phase, figures and history; null where there is none, and the face then
    // shows a sample in previews and pictures and nothing measured elsewhere.
    const SpeedTestBoard* speedTest = nullptr;
    // The quotes of shares, coins and currencies; null where none were fetched, and a quote tile
    // then draws its loading state.
    const MarketBoard* market = nullptr;
    // What each app time tile shows; null where nothing was counted, and the tile then says so.
    const AppUsageBoard* appUsage = nullptr;
    // The desktop's behaviours of kinds that keep state of their own (a note's text, the
    // clipboard's clippings); null in pictures, previews and the gallery, which draw a sample.
    const TileBehaviours* behaviours = nullptr;

    // Size, scale and settings of one instance; the rest keeps its defaults for the host to fill.
    static FaceContext forInstance(const WidgetMetadata& metadata, const WidgetInstance& instance);
    // This context with the metadata, size, tile scale and settings of one instance.
    FaceContext sizedFor(const WidgetMetadata& kind, const WidgetInstance& instance) const;
    // A preview of a kind at a size with no settings of its own.
    static FaceContext forKind(const WidgetMetadata& metadata, WidgetSize size);

    const QString& kind() const { return metadata.kind; }
    // The behaviour of this kind as its own class, or null where there is none.
    template <class T>
    const T* behaviour() const {
        return behaviours != nullptr ? behaviours->as<T>(kind()) : nullptr;
    }

    // The settings value of `key`, or `fallback` when it is absent or empty.
    QString setting(const QString& key, const QString& fallback = {}) const;

    // Colours for content on this glass: light glass turns the theme's light text dark.
    QColor primary() const;
    QColor secondary() const;
    QColor separator() const;
    QColor accent() const;
    QColor elevated() const;

    static QColor color(const ThemeColor& color);
};

} // namespace tw
