#include "platform/linux/X11DesktopWindowing.h"

#include "platform/null/NullDesktopWindowing.h"

#include <QGuiApplication>
#include <QLoggingCategory>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <xcb/xcb.h>

namespace tw {

Q_LOGGING_CATEGORY(lcDesktopWindowing, "DesktopWindowing")

namespace {

// ICCCM WM_HINTS: flags, input, initial_state, icon_pixmap, icon_window, icon_x, icon_y,
// icon_mask, window_group.
constexpr int kWmHintsFields = 9;
constexpr quint32 kInputHint = 1;
constexpr quint32 kAllDesktops = 0xFFFFFFFF;
constexpr quint8 kFullyObscured = XCB_VISIBILITY_FULLY_OBSCURED;

struct ReplyFree {
    void operator()(void* p) const { std::free(p); }
};
template <typename T>
using Reply = std::unique_ptr<T, ReplyFree>;

} // namespace

std::unique_ptr<DesktopWindowing> X11DesktopWindowing::create(QObject* parent) {
    auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    if (x11 == nullptr || x11->connection() == nullptr) {
        qCInfo(lcDesktopWindowing)
            << "not running on X11: desktop windows keep the toolkit's level";
        return std::make_unique<NullDesktopWindowing>(parent);
    }
    return std::unique_ptr<DesktopWindowing>(new X11DesktopWindowing(x11->connection(), parent));
}

X11DesktopWindowing::X11DesktopWindowing(xcb_connection_t* connection, QObject* parent)
    : DesktopWindowing(parent)
    , m_connection(connection) {
    qGuiApp->installNativeEventFilter(this);
}

X11DesktopWindowing::~X11DesktopWindowing() {
    if (qGuiApp) {
        qGuiApp->removeNativeEventFilter(this);
    }
}

quint32 X11DesktopWindowing::atom(const char* name) {
    const QByteArray key(name);
    if (auto it = m_atoms.constFind(key); it != m_atoms.cend()) {
        return *it;
    }
    const auto cookie =
        xcb_intern_atom(m_connection, 0, static_cast<quint16>(key.size()), key.constData());
    Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(m_connection, cookie, nullptr));
    const quint32 value = reply ? reply->atom : quint32{XCB_ATOM_NONE};
    m_atoms.insert(key, value);
    return value;
}

void X11DesktopWindowing::prepare(QObject* object, Focus focus) {
    auto* window = qobject_cast<QWindow*>(object);
    if (window == nullptr) {
        return;
    }
    const auto id = static_cast<quint32>(window->winId());
    m_tracked.insert(id, Tracked{window, focus, false});
    connect(window, &QObject::destroyed, this, [this, id] { m_tracked.remove(id); });
    applyUnmappedHints(id, focus);
    xcb_flush(m_connection);
}

void X11DesktopWindowing::watchCoverage(QObject* object) {
    auto* window = qobject_cast<QWindow*>(object);
    if (window == nullptr) {
        return;
    }
    const auto id = static_cast<quint32>(window->winId());
    m_tracked.insert(id, Tracked{window, Focus::WhenClicked, false, false});
    connect(window, &QObject::destroyed, this, [this, id] { m_tracked.remove(id); });
    watchVisibility(id);
    xcb_flush(m_connection);
}

// EWMH: a compositing manager owns the selection _NET_WM_CM_S<screen>.
bool X11DesktopWindowing::isCompositing() const {
    auto* self = const_cast<X11DesktopWindowing*>(this);
    const auto cookie = xcb_get_selection_owner(m_connection, self->atom("_NET_WM_CM_S0"));
    Reply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(m_connection, cookie, nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

void X11DesktopWindowing::release(QObject* object) {
    auto* window = qobject_cast<QWindow*>(object);
    if (window != nullptr && window->handle() != nullptr) {
        m_tracked.remove(static_cast<quint32>(window->winId()));
    }
}

// What a window manager reads when it takes the window on. Qt rewrites _NET_WM_STATE and
// _NET_WM_DESKTOP while mapping, so `applyMappedHints` says those again once the window is mapped.
void X11DesktopWindowing::applyUnmappedHints(quint32 window, Focus focus) {
    const quint32 allDesktops = kAllDesktops;
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, atom("_NET_WM_DESKTOP"),
                        XCB_ATOM_CARDINAL, 32, 1, &allDesktops);
    writeFocusHints(window, focus);
    watchVisibility(window);
}

// EWMH: a mapped window asks the window manager for state and desktop changes by messages to
// the root window; writing the properties would go unnoticed.
void X11DesktopWindowing::applyMappedHints(quint32 window, Focus focus) {
    constexpr quint32 add = 1;
    constexpr quint32 sourceApplication = 1;
    sendToRoot(window, atom("_NET_WM_STATE"),
               {add, atom("_NET_WM_STATE_BELOW"), atom("_NET_WM_STATE_STICKY"), sourceApplication});
    sendToRoot(window, atom("_NET_WM_STATE"),
               {add, atom("_NET_WM_STATE_SKIP_TASKBAR"), atom("_NET_WM_STATE_SKIP_PAGER"),
                sourceApplication});
    sendToRoot(window, atom("_NET_WM_DESKTOP"), {kAllDesktops, sourceApplication});
    writeFocusHints(window, focus);
    watchVisibility(window);
    xcb_flush(m_connection);
}

void X11DesktopWindowing::sendToRoot(quint32 window, quint32 type,
                                     std::initializer_list<quint32> data) {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = type;
    std::copy(data.begin(), data.end(), std::begin(event.data.data32));
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    xcb_send_event(m_connection, 0, root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&event));
}

// A window that never takes focus says so twice: input false in WM_HINTS and no WM_TAKE_FOCUS
// in WM_PROTOCOLS (ICCCM's "no input" model), else a window manager still offers it focus.
void X11DesktopWindowing::writeFocusHints(quint32 window, Focus focus) {
    std::array<quint32, kWmHintsFields> hints{};
    const auto hintsCookie = xcb_get_property(m_connection, 0, window, XCB_ATOM_WM_HINTS,
                                              XCB_ATOM_WM_HINTS, 0, kWmHintsFields);
    Reply<xcb_get_property_reply_t> hintsReply(
        xcb_get_property_reply(m_connection, hintsCookie, nullptr));
    if (hintsReply && hintsReply->format == 32) {
        const auto* data = static_cast<const quint32*>(xcb_get_property_value(hintsReply.get()));
        const int count =
            std::min(kWmHintsFields, xcb_get_property_value_length(hintsReply.get()) / 4);
        std::copy(data, data + count, hints.begin());
    }
    hints[0] |= kInputHint;
    hints[1] = focus == Focus::WhenClicked ? 1 : 0;
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_HINTS,
                        XCB_ATOM_WM_HINTS, 32, kWmHintsFields, hints.data());

    if (focus == Focus::WhenClicked) {
        return;
    }
    const quint32 protocolsAtom = atom("WM_PROTOCOLS");
    const quint32 takeFocus = atom("WM_TAKE_FOCUS");
    const auto cookie =
        xcb_get_property(m_connection, 0, window, protocolsAtom, XCB_ATOM_ATOM, 0, 32);
    Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply || reply->format != 32) {
        return;
    }
    const auto* data = static_cast<const quint32*>(xcb_get_property_value(reply.get()));
    QList<quint32> protocols(data, data + xcb_get_property_value_length(reply.get()) / 4);
    protocols.removeAll(takeFocus);
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, protocolsAtom, XCB_ATOM_ATOM,
                        32, static_cast<quint32>(protocols.size()), protocols.constData());
}

// Qt selects its own events at creation; visibility changes are added to that mask, not put in
// its place.
void X11DesktopWindowing::watchVisibility(quint32 window) {
    const auto cookie = xcb_get_window_attributes(m_connection, window);
    Reply<xcb_get_window_attributes_reply_t> reply(
        xcb_get_window_attributes_reply(m_connection, cookie, nullptr));
    if (!reply) {
        return;
    }
    const quint32 mask = reply->your_event_mask | XCB_EVENT_MASK_VISIBILITY_CHANGE;
    xcb_change_window_attributes(m_connection, window, XCB_CW_EVENT_MASK, &mask);
}

bool X11DesktopWindowing::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const auto type = event->response_type & ~0x80;
    if (type == XCB_MAP_NOTIFY) {
        const auto* map = static_cast<const xcb_map_notify_event_t*>(message);
        if (auto it = m_tracked.constFind(map->window); it != m_tracked.cend() && it->desktop) {
            applyMappedHints(map->window, it->focus);
        }
        return false;
    }
    if (type != XCB_VISIBILITY_NOTIFY) {
        return false;
    }
    const auto* visibility = static_cast<const xcb_visibility_notify_event_t*>(message);
    auto it = m_tracked.find(visibility->window);
    if (it == m_tracked.end() || it->window.isNull()) {
        return false;
    }
    const bool covered = visibility->state == kFullyObscured;
    if (covered != it->covered) {
        it->covered = covered;
        Q_EMIT coveredChanged(it->window.data(), covered);
    }
    return false;
}

} // namespace tw
