// The sky behind a weather tile's figures: a gradient with the sun or the moon, drifting clouds,
// falling rain and snow, fog bands and a flash of lightning now and then. A pure function of the
// scene, day or night, the scene time, the rectangle and the level; what does not move is kept in
// the tile's picture cache.
#pragma once

#include "weather/WxScene.h"

#include <QColor>
#include <QRectF>

class QPainter;

namespace tw {

class PictureCache;

namespace WeatherScene {

// "subtle" tints the glass and lets few things move; "full" paints the whole sky.
enum class Level { subtle, full };

struct Frame {
    WxScene scene = WxScene::clear;
    bool night = false;
    // Seconds; the picture at any time is that of the loop at that moment.
    double time = 0;
    Level level = Level::subtle;
};

// The "sceneLevel" setting: "full", anything else subtle.
Level levelOf(const QString& setting);

// Frames per second the scene asks for: still skies need few, falling things more.
double fps(WxScene scene, Level level);

// Draws the scene into `rect` as a card with the tile's inner corners. `pictures` may be null (the
// still parts are then drawn every time); `devicePixelRatio` is the target's.
void paint(QPainter& painter, const QRectF& rect, const Frame& frame, PictureCache* pictures,
           qreal devicePixelRatio);

// The corner radius of the card, concentric with the tile's.
qreal cornerRadius(const QRectF& rect);

// Whether figures over the full scene read in white; the subtle scene keeps the glass's colours.
bool wantsLightText(const Frame& frame);

} // namespace WeatherScene

} // namespace tw
