#include "platform/linux/X11ScreenPower.h"

#include <QDBusConnection>
#include <QGuiApplication>
#include <QLoggingCategory>

#include <cstdlib>
#include <memory>
#include <xcb/screensaver.h>
#include <xcb/xcb.h>

namespace tw {

Q_LOGGING_CATEGORY(lcScreenPower, "Displays")

namespace {

struct ReplyFree {
    void operator()(void* p) const { std::free(p); }
};

// The names desktops publish their screen saver under; the signal is the same on each.
struct SaverService {
    const char* path;
    const char* interface;
};
constexpr SaverService saverServices[] = {
    {"/org/freedesktop/ScreenSaver", "org.freedesktop.ScreenSaver"},
    {"/ScreenSaver", "org.freedesktop.ScreenSaver"},
    {"/org/gnome/ScreenSaver", "org.gnome.ScreenSaver"},
};

bool isDark(quint8 state) {
    // "Cycle" is a saver changing its picture: still dark.
    return state == XCB_SCREENSAVER_STATE_ON || state == XCB_SCREENSAVER_STATE_CYCLE;
}

} // namespace

X11ScreenPower::X11ScreenPower(xcb_connection_t* connection, QObject* parent)
    : QObject(parent)
    , m_connection(connection) {
    if (m_connection != nullptr) {
        listenToServer();
    }
    listenToDesktop();
}

X11ScreenPower::~X11ScreenPower() {
    if (m_notifyEvent >= 0 && qGuiApp != nullptr) {
        qGuiApp->removeNativeEventFilter(this);
    }
}

void X11ScreenPower::listenToServer() {
    const xcb_query_extension_reply_t* extension =
        xcb_get_extension_data(m_connection, &xcb_screensaver_id);
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    if (extension == nullptr || extension->present == 0 || screen == nullptr) {
        qCInfo(lcScreenPower, "the X server has no screen-saver extension: displays going dark "
                              "are not told apart from displays going away");
        return;
    }
    m_notifyEvent = extension->first_event + XCB_SCREENSAVER_NOTIFY;
    xcb_screensaver_select_input(m_connection, screen->root, XCB_SCREENSAVER_EVENT_NOTIFY_MASK);
    const auto cookie = xcb_screensaver_query_info(m_connection, screen->root);
    const std::unique_ptr<xcb_screensaver_query_info_reply_t, ReplyFree> info(
        xcb_screensaver_query_info_reply(m_connection, cookie, nullptr));
    m_serverSaver = info && isDark(info->state);
    xcb_flush(m_connection);
    qGuiApp->installNativeEventFilter(this);
}

void X11ScreenPower::listenToDesktop() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return;
    }
    for (const SaverService& service : saverServices) {
        bus.connect(QString(), QString::fromLatin1(service.path),
                    QString::fromLatin1(service.interface), QStringLiteral("ActiveChanged"), this,
                    SLOT(onDesktopSaverChanged(bool)));
    }
}

void X11ScreenPower::onDesktopSaverChanged(bool active) {
    update(m_desktopSaver, active);
}

bool X11ScreenPower::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7f) == m_notifyEvent) {
        const auto* notify = static_cast<const xcb_screensaver_notify_event_t*>(message);
        update(m_serverSaver, isDark(notify->state));
    }
    return false;
}

void X11ScreenPower::update(bool& which, bool active) {
    const bool before = isAsleep();
    which = active;
    if (isAsleep() != before) {
        qCInfo(lcScreenPower, "displays %s", isAsleep() ? "went dark" : "woke");
        Q_EMIT asleepChanged(isAsleep());
    }
}

} // namespace tw
