// The helper's side of a web tile: one page in an off-screen view, drawn to the frame file after
// it loads, after a click has settled and on request.
#pragma once

#include "live/WebMessage.h"

#include <QImage>
#include <QObject>
#include <QTimer>

#include <functional>

class QWebEngineView;
class QWebEngineLoadingInfo;

namespace tw {

class WebRenderer : public QObject {
    Q_OBJECT

public:
    // `say` writes one event line to the host.
    WebRenderer(QString framePath, std::function<void(const QByteArray&)> say,
                QObject* parent = nullptr);
    ~WebRenderer() override;
    Q_DISABLE_COPY_MOVE(WebRenderer)

    void handle(const WebCommand& command);

private:
    void loadingChanged(const QWebEngineLoadingInfo& info);
    void scrollThenCapture();
    // After a load the host waits for a picture, even an unchanged one; a second look sends
    // only a change.
    void capture(bool always);

    QString m_framePath;
    std::function<void(const QByteArray&)> m_say;
    QWebEngineView* m_view = nullptr;
    QTimer m_settle;
    QTimer m_secondLook;
    QImage m_last;
    int m_scroll = 0;
};

} // namespace tw
