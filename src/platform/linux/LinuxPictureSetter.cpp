#include "platform/linux/LinuxPictureSetter.h"

#include "platform/linux/GSettingsPicture.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QPainter>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QtEndian>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <xcb/randr.h>
#include <xcb/xcb.h>

namespace tw {

Q_LOGGING_CATEGORY(lcPictureSetter, "Wallpaper")

namespace {

struct ReplyFree {
    void operator()(void* p) const { std::free(p); }
};
template <typename T>
using Reply = std::unique_ptr<T, ReplyFree>;

using Source = LinuxDesktopPicture::Source;

// A helper that does not answer in this time is taken as unavailable.
constexpr int helperTimeoutMs = 5000;

xcb_atom_t intern(xcb_connection_t* connection, const char* name) {
    const auto cookie =
        xcb_intern_atom(connection, 0, static_cast<uint16_t>(std::strlen(name)), name);
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

xcb_pixmap_t pixmapProperty(xcb_connection_t* connection, xcb_window_t root, xcb_atom_t atom) {
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        connection, xcb_get_property(connection, 0, root, atom, XCB_ATOM_PIXMAP, 0, 1), nullptr));
    if (!reply || reply->format != 32 || xcb_get_property_value_length(reply.get()) != 4) {
        return 0;
    }
    return *static_cast<const xcb_pixmap_t*>(xcb_get_property_value(reply.get()));
}

const xcb_format_t* formatOf(const xcb_setup_t* setup, uint8_t depth) {
    const xcb_format_t* formats = xcb_setup_pixmap_formats(setup);
    for (int i = 0; i < xcb_setup_pixmap_formats_length(setup); ++i) {
        if (formats[i].depth == depth) {
            return &formats[i];
        }
    }
    return nullptr;
}

QString atomName(xcb_connection_t* connection, xcb_atom_t atom) {
    const Reply<xcb_get_atom_name_reply_t> reply(
        xcb_get_atom_name_reply(connection, xcb_get_atom_name(connection, atom), nullptr));
    return reply ? QString::fromLatin1(xcb_get_atom_name_name(reply.get()),
                                       xcb_get_atom_name_name_length(reply.get()))
                 : QString();
}

} // namespace

LinuxPictureSetter::LinuxPictureSetter(const QStringList& desktops)
    : m_source(LinuxDesktopPicture::sourcesFor(desktops).value(0, Source::root)) {
    if (!qEnvironmentVariableIsEmpty("DISPLAY")) {
        m_connection = xcb_connect(nullptr, nullptr);
        if (xcb_connection_has_error(m_connection) != 0) {
            xcb_disconnect(m_connection);
            m_connection = nullptr;
        }
    }
}

LinuxPictureSetter::~LinuxPictureSetter() {
    if (m_connection != nullptr) {
        xcb_disconnect(m_connection);
    }
}

QList<DesktopPictureSetter::Target> LinuxPictureSetter::targets() const {
    if (m_connection == nullptr) {
        return {};
    }
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    QList<Target> targets;
    const xcb_query_extension_reply_t* randr = xcb_get_extension_data(m_connection, &xcb_randr_id);
    if (randr != nullptr && randr->present != 0) {
        const Reply<xcb_randr_get_monitors_reply_t> monitors(xcb_randr_get_monitors_reply(
            m_connection, xcb_randr_get_monitors(m_connection, screen->root, 1), nullptr));
        if (monitors) {
            for (auto it = xcb_randr_get_monitors_monitors_iterator(monitors.get()); it.rem > 0;
                 xcb_randr_monitor_info_next(&it)) {
                const QRect area(it.data->x, it.data->y, it.data->width, it.data->height);
                if (!area.isEmpty()) {
                    targets.append({atomName(m_connection, it.data->name), area});
                }
            }
        }
    }
    if (targets.isEmpty()) {
        targets.append({QStringLiteral("screen"),
                        QRect(0, 0, screen->width_in_pixels, screen->height_in_pixels)});
    }
    return targets;
}

int LinuxPictureSetter::show(const QList<Target>& targets, const QStringList& files) {
    if (files.size() != targets.size() || files.isEmpty()) {
        return 0;
    }
    switch (m_source) {
    case Source::gnome:
    case Source::cinnamon:
    case Source::mate: {
        const auto picture = GSettingsPicture::create(
            m_source == Source::gnome      ? GSettingsPicture::Desktop::gnome
            : m_source == Source::cinnamon ? GSettingsPicture::Desktop::cinnamon
                                           : GSettingsPicture::Desktop::mate);
        if (!picture) {
            qCWarning(lcPictureSetter, "the desktop's background settings are not installed");
            return 0;
        }
        // One picture for every display: the largest, which the desktop zooms to the others.
        qsizetype largest = 0;
        for (qsizetype i = 1; i < targets.size(); ++i) {
            const QSize size = targets[i].pixels.size();
            const QSize best = targets[largest].pixels.size();
            largest = qint64(size.width()) * size.height() > qint64(best.width()) * best.height()
                          ? i
                          : largest;
        }
        return picture->show(files[largest]) ? int(targets.size()) : 0;
    }
    case Source::xfce:
        return showWithXfconf(targets, files);
    case Source::plasma:
        return showWithPlasma(targets, files);
    case Source::root:
        if (m_connection == nullptr) {
            qCWarning(lcPictureSetter, "no X display to put the picture on");
            return 0;
        }
        return showOnRoot(m_connection, targets, files);
    }
    return 0;
}

int LinuxPictureSetter::showWithXfconf(const QList<Target>& targets,
                                       const QStringList& files) const {
    const QString program = QStandardPaths::findExecutable(QStringLiteral("xfconf-query"));
    if (program.isEmpty()) {
        qCWarning(lcPictureSetter, "xfconf-query is not installed: Xfce's picture is unavailable");
        return 0;
    }
    const auto query = [&](const QStringList& arguments) -> std::optional<QByteArray> {
        QProcess process;
        process.start(program, QStringList{QStringLiteral("-c"), QStringLiteral("xfce4-desktop")} +
                                   arguments);
        if (!process.waitForFinished(helperTimeoutMs) ||
            process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
            process.kill();
            process.waitForFinished(helperTimeoutMs);
            return std::nullopt;
        }
        return process.readAllStandardOutput();
    };
    const std::optional<QByteArray> listing = query({QStringLiteral("-l")});
    if (!listing) {
        qCWarning(lcPictureSetter, "xfconf-query did not answer: Xfce's picture is unavailable");
        return 0;
    }
    const QStringList properties = QString::fromUtf8(*listing).split(QLatin1Char('\n'));
    int shown = 0;
    for (qsizetype i = 0; i < targets.size(); ++i) {
        const QRegularExpression own(
            QStringLiteral("^/backdrop/screen\\d+/monitor%1/workspace\\d+/last-image$")
                .arg(QRegularExpression::escape(targets[i].screen)));
        bool set = false;
        for (const QString& property : properties) {
            if (own.match(property).hasMatch() &&
                query({QStringLiteral("-p"), property, QStringLiteral("-s"), files[i]})) {
                set = true;
            }
        }
        shown += set ? 1 : 0;
    }
    return shown;
}

int LinuxPictureSetter::showWithPlasma(const QList<Target>& targets,
                                       const QStringList& files) const {
    const QString service = QStringLiteral("org.kde.plasmashell");
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || bus.interface() == nullptr ||
        !bus.interface()->isServiceRegistered(service).value()) {
        qCWarning(lcPictureSetter, "Plasma's shell is not on the session bus: unavailable");
        return 0;
    }
    // Plasma numbers its screens in the order of its own list, which follows the displays'.
    const QString paths = QString::fromUtf8(
        QJsonDocument(QJsonArray::fromStringList(files)).toJson(QJsonDocument::Compact));
    const QString script =
        QStringLiteral("var files = %1; var shown = 0; var all = desktops();"
                       "for (var i = 0; i < all.length; ++i) { var d = all[i];"
                       " if (d.screen < 0 || d.screen >= files.length) continue;"
                       " d.wallpaperPlugin = 'org.kde.image';"
                       " d.currentConfigGroup = ['Wallpaper', 'org.kde.image', 'General'];"
                       " d.writeConfig('Image', 'file://' + files[d.screen]); ++shown; }"
                       "print(shown);")
            .arg(paths);
    QDBusMessage call = QDBusMessage::createMethodCall(service, QStringLiteral("/PlasmaShell"),
                                                       QStringLiteral("org.kde.PlasmaShell"),
                                                       QStringLiteral("evaluateScript"));
    call << script;
    const QDBusMessage reply = bus.call(call, QDBus::Block, helperTimeoutMs);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        qCWarning(lcPictureSetter, "Plasma refused the picture: %s",
                  qUtf8Printable(reply.errorMessage()));
        return 0;
    }
    return std::min(reply.arguments().constFirst().toString().trimmed().toInt(),
                    int(targets.size()));
}

int LinuxPictureSetter::showOnRoot(xcb_connection_t* connection, const QList<Target>& targets,
                                   const QStringList& files) {
    const xcb_setup_t* setup = xcb_get_setup(connection);
    const xcb_screen_t* screen = xcb_setup_roots_iterator(setup).data;
    const xcb_format_t* format = formatOf(setup, screen->root_depth);
    if (format == nullptr || format->bits_per_pixel != 32 || screen->root_depth < 24) {
        qCWarning(lcPictureSetter, "the root window's depth %d is not drawn here",
                  int(screen->root_depth));
        return 0;
    }
    const int width = screen->width_in_pixels;
    const int height = screen->height_in_pixels;
    QImage canvas(width, height, QImage::Format_RGB32);
    if (canvas.isNull()) {
        return 0;
    }
    canvas.fill(Qt::black);
    int placed = 0;
    {
        QPainter painter(&canvas);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        for (qsizetype i = 0; i < targets.size(); ++i) {
            const QImage picture(files[i]);
            if (!picture.isNull()) {
                painter.drawImage(QRectF(targets[i].pixels), picture);
                ++placed;
            }
        }
    }
    if (placed == 0) {
        return 0;
    }
    // Format_RGB32 is one 0xffRRGGBB word per pixel in the host's order; the server may want
    // the other.
    const bool serverBigEndian = setup->image_byte_order == XCB_IMAGE_ORDER_MSB_FIRST;
    if (serverBigEndian != (QSysInfo::ByteOrder == QSysInfo::BigEndian)) {
        for (int y = 0; y < height; ++y) {
            auto* line = reinterpret_cast<quint32*>(canvas.scanLine(y));
            for (int x = 0; x < width; ++x) {
                line[x] = qbswap(line[x]);
            }
        }
    }
    const xcb_pixmap_t pixmap = xcb_generate_id(connection);
    xcb_create_pixmap(connection, screen->root_depth, pixmap, screen->root, uint16_t(width),
                      uint16_t(height));
    const xcb_gcontext_t gc = xcb_generate_id(connection);
    xcb_create_gc(connection, gc, pixmap, 0, nullptr);
    const qint64 maximumBytes = qint64(xcb_get_maximum_request_length(connection)) * 4 - 64;
    const int rowsPerRequest = std::max(1, int(maximumBytes / canvas.bytesPerLine()));
    for (int y = 0; y < height; y += rowsPerRequest) {
        const int rows = std::min(rowsPerRequest, height - y);
        xcb_put_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, gc, uint16_t(width),
                      uint16_t(rows), 0, int16_t(y), 0, screen->root_depth,
                      uint32_t(canvas.bytesPerLine() * rows), canvas.constScanLine(y));
    }
    xcb_free_gc(connection, gc);

    const xcb_atom_t rootAtom = intern(connection, "_XROOTPMAP_ID");
    const xcb_atom_t setrootAtom = intern(connection, "ESETROOT_PMAP_ID");
    // A picture left by a setter that kept its client alive this way is freed the same way.
    const xcb_pixmap_t previous = pixmapProperty(connection, screen->root, setrootAtom);
    if (previous != 0 && previous == pixmapProperty(connection, screen->root, rootAtom)) {
        xcb_kill_client(connection, previous);
    }
    for (const xcb_atom_t atom : {rootAtom, setrootAtom}) {
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, screen->root, atom, XCB_ATOM_PIXMAP,
                            32, 1, &pixmap);
    }
    xcb_change_window_attributes(connection, screen->root, XCB_CW_BACK_PIXMAP, &pixmap);
    xcb_clear_area(connection, 0, screen->root, 0, 0, 0, 0);
    // The pixmap outlives this connection, as the root window's picture must.
    xcb_set_close_down_mode(connection, XCB_CLOSE_DOWN_RETAIN_PERMANENT);
    const Reply<xcb_get_input_focus_reply_t> sync(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    return sync ? placed : 0;
}

} // namespace tw
