#include "platform/linux/X11RootPicture.h"

#include <QGuiApplication>
#include <QLoggingCategory>
#include <QtEndian>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <xcb/xcb.h>

namespace tw {

Q_LOGGING_CATEGORY(lcRootPicture, "Wallpaper")

namespace {

struct ReplyFree {
    void operator()(void* p) const { std::free(p); }
};
template <typename T>
using Reply = std::unique_ptr<T, ReplyFree>;

// Each request for pixels asks for about this much, so that no reply is huge.
constexpr qint64 chunkBytes = 4 * 1024 * 1024;

xcb_atom_t intern(xcb_connection_t* connection, const char* name) {
    const auto cookie =
        xcb_intern_atom(connection, 0, static_cast<uint16_t>(std::strlen(name)), name);
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

const xcb_format_t* formatOf(const xcb_setup_t* setup, uint8_t depth) {
    const xcb_format_t* formats = xcb_setup_pixmap_formats(setup);
    const int count = xcb_setup_pixmap_formats_length(setup);
    for (int i = 0; i < count; ++i) {
        if (formats[i].depth == depth) {
            return &formats[i];
        }
    }
    return nullptr;
}

} // namespace

X11RootPicture::X11RootPicture(xcb_connection_t* connection, QObject* parent)
    : QObject(parent)
    , m_connection(connection) {
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    if (screen == nullptr) {
        return;
    }
    m_root = screen->root;
    m_atoms[0] = intern(m_connection, "_XROOTPMAP_ID");
    m_atoms[1] = intern(m_connection, "ESETROOT_PMAP_ID");
    // Added to whatever the application already listens to on the root window.
    const Reply<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        m_connection, xcb_get_window_attributes(m_connection, m_root), nullptr));
    const uint32_t mask =
        (attributes ? attributes->your_event_mask : 0) | XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(m_connection, m_root, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(m_connection);
    m_pixmap = readPixmap();
    if (qGuiApp != nullptr) {
        qGuiApp->installNativeEventFilter(this);
    }
}

X11RootPicture::~X11RootPicture() {
    if (qGuiApp != nullptr) {
        qGuiApp->removeNativeEventFilter(this);
    }
}

QString X11RootPicture::identity() const {
    if (m_pixmap == 0) {
        return {};
    }
    return QStringLiteral("root\n%1\n%2").arg(m_pixmap).arg(m_generation);
}

QImage X11RootPicture::picture() const {
    return m_pixmap == 0 ? QImage() : read(m_connection, m_pixmap);
}

quint32 X11RootPicture::readPixmap() const {
    for (const quint32 atom : m_atoms) {
        if (atom == XCB_ATOM_NONE) {
            continue;
        }
        const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
            m_connection, xcb_get_property(m_connection, 0, m_root, atom, XCB_ATOM_PIXMAP, 0, 1),
            nullptr));
        if (reply && reply->format == 32 && xcb_get_property_value_length(reply.get()) == 4) {
            quint32 pixmap = 0;
            std::memcpy(&pixmap, xcb_get_property_value(reply.get()), sizeof pixmap);
            if (pixmap != 0) {
                return pixmap;
            }
        }
    }
    return 0;
}

bool X11RootPicture::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t" || m_root == 0) {
        return false;
    }
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7f) != XCB_PROPERTY_NOTIFY) {
        return false;
    }
    const auto* notify = static_cast<const xcb_property_notify_event_t*>(message);
    if (notify->window == m_root && (notify->atom == m_atoms[0] || notify->atom == m_atoms[1])) {
        m_pixmap = readPixmap();
        ++m_generation;
        Q_EMIT changed();
    }
    return false;
}

QImage X11RootPicture::read(xcb_connection_t* connection, quint32 pixmap) {
    const Reply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, pixmap), nullptr));
    if (!geometry || geometry->width == 0 || geometry->height == 0) {
        qCInfo(lcRootPicture, "the root picture %u is gone", pixmap);
        return {};
    }
    const int width = geometry->width;
    const int height = geometry->height;
    if (qint64(width) * height > maximumPixels || width > 32767 || height > 32767) {
        qCInfo(lcRootPicture, "the root picture is too large to read (%dx%d)", width, height);
        return {};
    }
    const xcb_setup_t* setup = xcb_get_setup(connection);
    const xcb_format_t* format = formatOf(setup, geometry->depth);
    const int bits = format == nullptr ? 0 : format->bits_per_pixel;
    if (bits != 32 && bits != 16) {
        qCInfo(lcRootPicture, "the root picture's depth %d is not read", geometry->depth);
        return {};
    }
    QImage image(width, height, bits == 32 ? QImage::Format_RGB32 : QImage::Format_RGB16);
    if (image.isNull()) {
        return {};
    }
    const bool swap = (setup->image_byte_order == XCB_IMAGE_ORDER_MSB_FIRST) !=
                      (QSysInfo::ByteOrder == QSysInfo::BigEndian);
    const int bytesPerLine = width * bits / 8;
    const int rowsPerChunk = int(std::max<qint64>(1, chunkBytes / bytesPerLine));
    for (int y = 0; y < height; y += rowsPerChunk) {
        const int rows = std::min(rowsPerChunk, height - y);
        const Reply<xcb_get_image_reply_t> reply(
            xcb_get_image_reply(connection,
                                xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, 0,
                                              int16_t(y), uint16_t(width), uint16_t(rows), ~0U),
                                nullptr));
        const int length = reply ? xcb_get_image_data_length(reply.get()) : 0;
        const int stride = length / rows;
        if (stride < bytesPerLine) {
            qCInfo(lcRootPicture, "the root picture could not be read");
            return {};
        }
        const uint8_t* data = xcb_get_image_data(reply.get());
        for (int row = 0; row < rows; ++row) {
            uchar* line = image.scanLine(y + row);
            std::memcpy(line, data + qint64(row) * stride, size_t(bytesPerLine));
            if (bits == 32) {
                // The byte above the colour is undefined at depth 24; the image wants it opaque.
                auto* pixels = reinterpret_cast<quint32*>(line);
                std::transform(pixels, pixels + width, pixels, [swap](quint32 pixel) {
                    return (swap ? qbswap(pixel) : pixel) | 0xff000000U;
                });
            } else if (swap) {
                auto* pixels = reinterpret_cast<quint16*>(line);
                std::transform(pixels, pixels + width, pixels,
                               [](quint16 pixel) { return qbswap(pixel); });
            }
        }
    }
    return image;
}

} // namespace tw
