// The helper's side of a web tile: one page in an off-screen view, drawn to the frame file after
// it loads, after a click has settled and on request.
#pragma once

#include "live/WebMessage.h"

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
    void capture();

    QString m_framePath;
    std::function<void(const QByteArray&)> m_say;
    QWebEngineView* m_view = nullptr;
    QTimer m_settle;
    int m_scroll = 0;
};

} // namespace tw
