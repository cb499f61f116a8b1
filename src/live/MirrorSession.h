// One mirror tile's use of the camera: open only while the person allows it and the tile is in
// view, pictures at a calm pace and at the tile's pixels, and an honest state when there are none.
// Nothing of the camera is kept once it is closed.
#pragma once

#include "live/CameraFeed.h"
#include "platform/Clock.h"

#include <QImage>
#include <QObject>
#include <QSize>

#include <chrono>

namespace tw {

class MirrorSession : public QObject {
    Q_OBJECT

public:
    enum class State {
        off,         // the person has not allowed the camera
        paused,      // allowed, but the tile is out of view
        starting,    // opened, no picture yet
        live,        // pictures coming
        noCamera,    // the system lists none
        inUse,       // another program holds it
        denied,      // this user may not open it
        disappeared, // it left while in use
        failed,      // the driver failed otherwise
    };

    // At most this often a new picture is taken; the rest are dropped unscaled.
    static constexpr std::chrono::milliseconds framePace{66};

    MirrorSession(CameraFeed& feed, const Clock& clock, QObject* parent = nullptr);
    ~MirrorSession() override;
    Q_DISABLE_COPY_MOVE(MirrorSession)

    // What the tile wants now; `pixels` is the size pictures are kept at.
    void update(bool allowed, bool inView, QSize pixels);
    // After a problem, tries the camera again.
    void retry();

    State state() const { return m_state; }
    // The newest picture at the tile's pixels, as the camera sees it (not yet mirrored); null
    // unless live.
    const QImage& picture() const { return m_picture; }
    static bool isProblem(State state);

Q_SIGNALS:
    void changed();

private:
    void settle();
    void take(const QImage& picture);
    void fail(CameraFeed::Problem problem);
    void close(State state);

    CameraFeed& m_feed;
    const Clock& m_clock;
    bool m_allowed = false;
    bool m_inView = false;
    QSize m_pixels;
    State m_state = State::off;
    QImage m_picture;
    std::chrono::nanoseconds m_lastTaken{0};
    bool m_tookAny = false;
};

} // namespace tw
