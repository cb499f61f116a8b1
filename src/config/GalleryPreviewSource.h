// What the gallery's previews share: the faces, the tile renderer and the look and time of now.
#pragma once

#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "faces/TileRenderer.h"

namespace tw {

class GalleryPreviewSource {
public:
    explicit GalleryPreviewSource(const FaceRegistry& faces)
        : m_faces(faces) {}

    const FaceRegistry& faces() const { return m_faces; }
    TileRenderer& renderer() const { return m_renderer; }
    // Theme, glass, time, surface flags and symbols; the card sets the kind, size and ratio.
    const FaceContext& base() const { return m_base; }
    FaceContext& base() { return m_base; }
    // The weather the previews show: a made-up forecast, so that a tile looks as it will.
    WeatherBoard& weather() { return m_weather; }
    // The quotes the previews show: made up, as the weather is.
    MarketBoard& market() { return m_market; }

private:
    const FaceRegistry& m_faces;
    // Drawing fills the renderer's shadow cache, which is no change anyone observes.
    mutable TileRenderer m_renderer;
    FaceContext m_base;
    WeatherBoard m_weather;
    MarketBoard m_market;
};

} // namespace tw
