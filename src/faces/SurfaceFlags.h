// What kind of surface a face is drawn on, and so what it may do there.
#pragma once

namespace tw {

struct SurfaceFlags {
    // On a real desktop or lock-screen panel, not in a gallery preview or a picture.
    bool isLiveSurface = false;
    // Being rendered to a picture.
    bool snapshotMode = false;
    // Show sample content where the widget has none of its own yet.
    bool showsDemoContent = false;
    // May fetch from the network.
    bool fetchesLiveData = false;
    // May run view transitions.
    bool allowsTransitions = false;

    // A panel on the desktop.
    static constexpr SurfaceFlags desktop() {
        return {.isLiveSurface = true, .fetchesLiveData = true, .allowsTransitions = true};
    }
    // A preview in the gallery: sample content, live time, no fetching.
    static constexpr SurfaceFlags gallery() { return {.showsDemoContent = true}; }
    // A picture: sample content, nothing that moves or fetches.
    static constexpr SurfaceFlags snapshot() {
        return {.snapshotMode = true, .showsDemoContent = true};
    }

    bool operator==(const SurfaceFlags&) const = default;
};

} // namespace tw
