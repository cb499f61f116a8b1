#include "live/web/WebRenderer.h"

#include <QApplication>
#include <QMouseEvent>
#include <QSaveFile>
#include <QWebEngineLoadingInfo>
#include <QWebEnginePage>
#include <QWebEngineSettings>
#include <QWebEngineView>

namespace tw {

namespace {

// Layout and web fonts settle a moment after the load ends; a click's effect a little later.
constexpr int settleAfterLoadMs = 400;
constexpr int settleAfterClickMs = 700;
// The engine may hand out its previous frame for a moment after a new page has loaded: a second
// look later sends the picture again when it changed.
constexpr int secondLookMs = 1200;

// Pages may not open windows of their own: a link that asks for one opens in the tile.
class TilePage : public QWebEnginePage {
public:
    using QWebEnginePage::QWebEnginePage;

protected:
    QWebEnginePage* createWindow(WebWindowType) override { return this; }
};

void sendClick(QWidget* target, QPointF at) {
    const QPointF global = target->mapToGlobal(at);
    QMouseEvent press(QEvent::MouseButtonPress, at, global, Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QMouseEvent release(QEvent::MouseButtonRelease, at, global, Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    QApplication::sendEvent(target, &press);
    QApplication::sendEvent(target, &release);
}

} // namespace

WebRenderer::WebRenderer(QString framePath, std::function<void(const QByteArray&)> say,
                         QObject* parent)
    : QObject(parent)
    , m_framePath(std::move(framePath))
    , m_say(std::move(say))
    , m_view(new QWebEngineView) {
    auto* page = new TilePage(m_view);
    page->setAudioMuted(true);
    page->settings()->setAttribute(QWebEngineSettings::ShowScrollBars, false);
    page->settings()->setAttribute(QWebEngineSettings::PlaybackRequiresUserGesture, true);
    // Nothing a page asks for (camera, location, notifications) is granted to a picture.
    connect(page, &QWebEnginePage::featurePermissionRequested, page,
            [page](const QUrl& origin, QWebEnginePage::Feature feature) {
                page->setFeaturePermission(origin, feature, QWebEnginePage::PermissionDeniedByUser);
            });
    m_view->setPage(page);
    m_view->setAttribute(Qt::WA_DontShowOnScreen);
    m_view->show();
    connect(page, &QWebEnginePage::loadingChanged, this, &WebRenderer::loadingChanged);
    m_settle.setSingleShot(true);
    connect(&m_settle, &QTimer::timeout, this, [this] {
        capture(true);
        m_secondLook.start(secondLookMs);
    });
    m_secondLook.setSingleShot(true);
    connect(&m_secondLook, &QTimer::timeout, this, [this] { capture(false); });
}

WebRenderer::~WebRenderer() {
    delete m_view;
}

void WebRenderer::handle(const WebCommand& command) {
    switch (command.kind) {
    case WebCommand::Kind::load:
        m_scroll = command.scroll;
        m_view->resize(command.pixels);
        m_view->page()->setZoomFactor(command.zoom);
        m_view->load(command.url);
        return;
    case WebCommand::Kind::reload:
        m_view->reload();
        return;
    case WebCommand::Kind::click:
        if (QWidget* target = m_view->focusProxy()) {
            sendClick(target, command.point);
            m_settle.start(settleAfterClickMs);
        }
        return;
    case WebCommand::Kind::scroll:
        m_scroll = command.scroll;
        scrollThenCapture();
        return;
    }
}

void WebRenderer::loadingChanged(const QWebEngineLoadingInfo& info) {
    switch (info.status()) {
    case QWebEngineLoadingInfo::LoadStartedStatus:
        m_settle.stop();
        m_secondLook.stop();
        m_say(WebMessage::encode(WebEvent{WebEvent::Kind::loading, {}, {}, {}}));
        return;
    case QWebEngineLoadingInfo::LoadSucceededStatus:
        scrollThenCapture();
        return;
    case QWebEngineLoadingInfo::LoadFailedStatus:
        m_say(WebMessage::encode(WebEvent{WebEvent::Kind::failed, {}, {}, info.errorString()}));
        return;
    case QWebEngineLoadingInfo::LoadStoppedStatus:
        return;
    }
}

void WebRenderer::scrollThenCapture() {
    m_view->page()->runJavaScript(QStringLiteral("window.scrollTo(0, %1);").arg(m_scroll));
    m_settle.start(settleAfterLoadMs);
}

void WebRenderer::capture(bool always) {
    const QImage picture = m_view->grab().toImage();
    if (!always && picture == m_last) {
        return;
    }
    m_last = picture;
    QSaveFile file(m_framePath);
    if (picture.isNull() || !file.open(QIODevice::WriteOnly) || !picture.save(&file, "PNG") ||
        !file.commit()) {
        m_say(WebMessage::encode(WebEvent{
            WebEvent::Kind::failed, {}, {}, QStringLiteral("The picture could not be kept")}));
        return;
    }
    m_say(WebMessage::encode(WebEvent{WebEvent::Kind::frame, m_view->title(), m_view->url(), {}}));
}

} // namespace tw
