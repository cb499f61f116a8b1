#include "platform/linux/X11ForegroundApplication.h"

#include "platform/linux/XdgApplications.h"
#include "platform/null/FixedForegroundApplication.h"

#include <QGuiApplication>
#include <QLoggingCategory>
#include <QWindow>

#include <cstdlib>
#include <cstring>
#include <unistd.h>
#include <xcb/xcb.h>

namespace tw {

namespace {

Q_LOGGING_CATEGORY(lcForeground, "ForegroundApplication")

struct ReplyFree {
    void operator()(void* p) const { std::free(p); }
};
template <typename T>
using Reply = std::unique_ptr<T, ReplyFree>;

quint32 internAtom(xcb_connection_t* connection, const char* name) {
    const auto cookie =
        xcb_intern_atom(connection, 0, static_cast<quint16>(std::strlen(name)), name);
    Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : 0;
}

// Property values are small; 1024 words cover any WM_CLASS a window sets.
Reply<xcb_get_property_reply_t> readProperty(xcb_connection_t* connection, quint32 window,
                                             quint32 atom, quint32 type) {
    const auto cookie = xcb_get_property(connection, 0, window, atom, type, 0, 1024);
    return Reply<xcb_get_property_reply_t>(xcb_get_property_reply(connection, cookie, nullptr));
}

} // namespace

std::unique_ptr<ForegroundApplication> X11ForegroundApplication::create(QObject* parent) {
    auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    if (x11 == nullptr || x11->connection() == nullptr) {
        qCInfo(lcForeground) << "not running on X11: the foreground application is unknown";
        return std::make_unique<FixedForegroundApplication>(parent);
    }
    return std::unique_ptr<ForegroundApplication>(
        new X11ForegroundApplication(x11->connection(), parent));
}

X11ForegroundApplication::X11ForegroundApplication(xcb_connection_t* connection, QObject* parent)
    : ForegroundApplication(parent)
    , m_connection(connection)
    , m_root(xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root)
    , m_activeAtom(internAtom(connection, "_NET_ACTIVE_WINDOW"))
    , m_pidAtom(internAtom(connection, "_NET_WM_PID")) {
    // Qt listens to the root window for its own needs; property changes join that mask.
    const auto cookie = xcb_get_window_attributes(m_connection, m_root);
    Reply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(m_connection, cookie, nullptr));
    const quint32 mask =
        (attributes ? attributes->your_event_mask : 0) | XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(m_connection, m_root, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(m_connection);
    m_last = appOf(activeWindow());
    qGuiApp->installNativeEventFilter(this);
}

X11ForegroundApplication::~X11ForegroundApplication() {
    if (qGuiApp) {
        qGuiApp->removeNativeEventFilter(this);
    }
}

std::optional<ForegroundApp> X11ForegroundApplication::frontmost() const {
    return appOf(activeWindow());
}

bool X11ForegroundApplication::nativeEventFilter(const QByteArray& eventType, void* message,
                                                 qintptr*) {
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & ~0x80) != XCB_PROPERTY_NOTIFY) {
        return false;
    }
    const auto* change = static_cast<const xcb_property_notify_event_t*>(message);
    if (change->window != m_root || change->atom != m_activeAtom) {
        return false;
    }
    const std::optional<ForegroundApp> app = appOf(activeWindow());
    if (app && app != m_last) {
        m_last = app;
        Q_EMIT activated(*app);
    }
    return false;
}

quint32 X11ForegroundApplication::activeWindow() const {
    const auto reply = readProperty(m_connection, m_root, m_activeAtom, XCB_ATOM_WINDOW);
    if (!reply || xcb_get_property_value_length(reply.get()) < 4) {
        return 0;
    }
    return *static_cast<const quint32*>(xcb_get_property_value(reply.get()));
}

std::optional<ForegroundApp> X11ForegroundApplication::appOf(quint32 window) const {
    if (window == 0) {
        return std::nullopt;
    }
    const auto classReply = readProperty(m_connection, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING);
    if (!classReply) {
        return std::nullopt;
    }
    // "instance\0class\0"; the class names the application, the instance may name a window.
    const QList<QByteArray> parts =
        QByteArray(static_cast<const char*>(xcb_get_property_value(classReply.get())),
                   xcb_get_property_value_length(classReply.get()))
            .split('\0');
    const QString id =
        QString::fromUtf8(parts.value(1).isEmpty() ? parts.value(0) : parts.value(1));
    if (id.isEmpty()) {
        return std::nullopt;
    }
    bool own = false;
    for (const QWindow* mine : QGuiApplication::allWindows()) {
        // Asking a window that has no native one yet for its id would make one.
        own = own || (mine->handle() != nullptr && mine->winId() == window);
    }
    const auto pidReply = readProperty(m_connection, window, m_pidAtom, XCB_ATOM_CARDINAL);
    if (pidReply && xcb_get_property_value_length(pidReply.get()) >= 4) {
        own = own || *static_cast<const quint32*>(xcb_get_property_value(pidReply.get())) ==
                         static_cast<quint32>(::getpid());
    }
    return ForegroundApp{.id = id, .name = nameFor(id), .isThisProgram = own};
}

QString X11ForegroundApplication::nameFor(const QString& windowClass) const {
    const auto known = m_names.constFind(windowClass);
    if (known != m_names.cend()) {
        return *known;
    }
    const QString name =
        XdgApplications::scan().nameForWindowClass(windowClass).value_or(windowClass);
    m_names.insert(windowClass, name);
    return name;
}

} // namespace tw
