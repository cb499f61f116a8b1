#include "live/MirrorSession.h"

namespace tw {

MirrorSession::MirrorSession(CameraFeed& feed, const Clock& clock, QObject* parent)
    : QObject(parent)
    , m_feed(feed)
    , m_clock(clock) {
    connect(&m_feed, &CameraFeed::frame, this, &MirrorSession::take);
    connect(&m_feed, &CameraFeed::problem, this, &MirrorSession::fail);
    // A camera plugged in is worth a try when there was none or it had left.
    connect(&m_feed, &CameraFeed::camerasChanged, this, [this] {
        if (m_state == State::noCamera || m_state == State::disappeared) {
            retry();
        }
    });
}

MirrorSession::~MirrorSession() {
    m_feed.stop();
}

bool MirrorSession::isProblem(State state) {
    return state == State::noCamera || state == State::inUse || state == State::denied ||
           state == State::disappeared || state == State::failed;
}

void MirrorSession::update(bool allowed, bool inView, QSize pixels) {
    m_allowed = allowed;
    m_inView = inView;
    if (pixels != m_pixels) {
        m_pixels = pixels;
        m_picture = QImage();
    }
    // A problem stands until the person retries or the cameras change, so a hidden tile
    // coming back does not knock on a busy camera again and again.
    if (allowed && isProblem(m_state)) {
        return;
    }
    settle();
}

void MirrorSession::retry() {
    if (isProblem(m_state)) {
        m_state = State::paused;
    }
    settle();
}

void MirrorSession::settle() {
    if (!m_allowed) {
        close(State::off);
        return;
    }
    if (!m_inView) {
        close(State::paused);
        return;
    }
    if (m_state == State::starting || m_state == State::live) {
        return;
    }
    if (!m_feed.hasCamera()) {
        close(State::noCamera);
        return;
    }
    m_state = State::starting;
    m_tookAny = false;
    Q_EMIT changed();
    m_feed.start();
}

void MirrorSession::take(const QImage& picture) {
    if (m_state != State::starting && m_state != State::live) {
        return;
    }
    const std::chrono::nanoseconds now = m_clock.uptime();
    if (m_tookAny && now - m_lastTaken < framePace) {
        return;
    }
    m_tookAny = true;
    m_lastTaken = now;
    m_picture = m_pixels.isEmpty() ? picture
                                   : picture.scaled(m_pixels, Qt::KeepAspectRatioByExpanding,
                                                    Qt::SmoothTransformation);
    m_state = State::live;
    Q_EMIT changed();
}

void MirrorSession::fail(CameraFeed::Problem problem) {
    if (m_state != State::starting && m_state != State::live) {
        return;
    }
    switch (problem) {
    case CameraFeed::Problem::noCamera:
        close(State::noCamera);
        return;
    case CameraFeed::Problem::inUse:
        close(State::inUse);
        return;
    case CameraFeed::Problem::denied:
        close(State::denied);
        return;
    case CameraFeed::Problem::disappeared:
        close(State::disappeared);
        return;
    case CameraFeed::Problem::failed:
        close(State::failed);
        return;
    }
}

void MirrorSession::close(State state) {
    m_feed.stop();
    m_picture = QImage();
    if (m_state != state) {
        m_state = state;
        Q_EMIT changed();
    }
}

} // namespace tw
