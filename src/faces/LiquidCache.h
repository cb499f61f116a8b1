// Lens pictures already rendered, looked up by request; belongs to the main thread.
#pragma once

#include "faces/LiquidRequest.h"

#include <QImage>
#include <QList>

namespace tw {

class LiquidCache {
public:
    // Each picture is tile-sized (about 2 MB for a wide tile at 2x), and every resize, move across
    // the wallpaper or wallpaper change makes a new one; a bound keeps a long session from hoarding
    // pictures no tile shows any more, while 64 still holds every tile of a crowded desktop.
    static constexpr qsizetype capacity = 64;

    // The picture stored for a request equal to `request`, or a null image.
    QImage cached(const LiquidRequest& request) const;
    // Replaces the picture of an equal request, else adds one, dropping the oldest when full.
    void store(const QImage& image, const LiquidRequest& request);

    qsizetype count() const { return m_entries.size(); }

private:
    struct Entry {
        LiquidRequest request;
        QImage image;
    };
    QList<Entry> m_entries; // oldest first
};

} // namespace tw
