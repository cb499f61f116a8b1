// One web page kept as a picture: a helper process with the web engine loads it off-screen, draws
// it at the tile's pixels and hands the picture back. The helper runs only between show() and
// stop(); the last picture outlives it.
#pragma once

#include "live/WebMessage.h"
#include "live/WebTileSettings.h"
#include "platform/Scheduler.h"

#include <QImage>
#include <QObject>
#include <QSize>
#include <QStringList>
#include <QTemporaryDir>

#include <chrono>
#include <vector>

class QProcess;

namespace tw {

class WebPage : public QObject {
    Q_OBJECT

public:
    enum class State {
        idle,     // nothing asked yet, or stopped before a picture came
        loading,  // the helper is loading the page
        shown,    // the picture is the page as loaded
        timedOut, // the page did not finish within the limit
        failed,   // the page could not be loaded (no such host, refused, …)
        noHelper, // the helper could not be started
        ended,    // the helper stopped by itself
    };

    // The helper program and what it is always given besides the frame file.
    struct Helper {
        QString program;
        QStringList arguments;
    };

    // The helper beside this program's executable, else where an installation keeps it.
    static Helper installedHelper(bool administrator);

    // How long a page may take before the tile says so and the helper is ended.
    static constexpr std::chrono::seconds loadLimit{30};

    WebPage(Helper helper, Scheduler& scheduler, QObject* parent = nullptr);
    ~WebPage() override;
    Q_DISABLE_COPY_MOVE(WebPage)

    // Shows the page of `settings` at `pixels`: starts the helper when it isn't running and loads
    // again only when the address, size, zoom or scroll changed. An invalid address stops it.
    void show(const WebTileSettings& settings, QSize pixels);
    void reload();
    // A click at a point of the picture, in its pixels; the page is drawn again once it settles.
    void click(QPointF pixels);
    // Ends the helper; the picture stays.
    void stop();

    bool running() const { return m_process != nullptr; }
    State state() const { return m_state; }
    // The latest picture; null before the first.
    const QImage& picture() const { return m_picture; }
    QString title() const { return m_title; }
    // The address of the page the picture shows (after redirects and clicks).
    QUrl shownUrl() const { return m_shownUrl; }
    // Why the page failed, in the engine's words; empty otherwise.
    QString problem() const { return m_problem; }

Q_SIGNALS:
    void changed();

private:
    bool start();
    void send(const WebCommand& command);
    void readEvents();
    void handle(const WebEvent& event);
    void processEnded();
    void arm();
    void setState(State state);
    QString framePath() const;

    Helper m_helper;
    Scheduler& m_scheduler;
    QTemporaryDir m_dir;
    QProcess* m_process = nullptr;
    WebTileSettings m_settings;
    QSize m_pixels;
    State m_state = State::idle;
    QImage m_picture;
    QString m_title;
    QUrl m_shownUrl;
    QString m_problem;
    ScheduledTask m_limit;
    ScheduledTask m_refresh;
    // Kill helpers that were asked to end and have not.
    std::vector<ScheduledTask> m_reapers;
};

} // namespace tw
