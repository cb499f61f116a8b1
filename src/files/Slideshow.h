// Which picture a slideshow shows at a moment: a pure function of the time, so that a tile needs
// no state to resume and never skips or repeats when the host wakes it late.
#pragma once

#include <QtGlobal>

#include <chrono>

namespace tw {

struct Slideshow {
    enum class Order { sequential, shuffled };

    int count = 0;
    std::chrono::seconds interval{60};
    Order order = Order::sequential;
    // Tiles showing the same folder start at different pictures and shuffle differently.
    quint32 seed = 0;
    // Pictures the person skipped ahead with a click.
    qint64 skipped = 0;

    static constexpr std::chrono::milliseconds fadeLength{1200};

    struct Frame {
        // -1 without pictures.
        int current = -1;
        // The picture fading out; equal to `current` when none is.
        int previous = -1;
        // How far the fade from `previous` to `current` has come, 0…1; 1 once it is over.
        double fade = 1;
        // Time left until the next change starts.
        std::chrono::milliseconds untilNext{0};

        bool operator==(const Frame&) const = default;
    };

    // The frame at `msSinceEpoch` (wall time: slideshows of the same folder turn together).
    Frame at(qint64 msSinceEpoch) const;
    // The picture shown `step` changes from the start.
    int pictureAt(qint64 step) const;
};

} // namespace tw
