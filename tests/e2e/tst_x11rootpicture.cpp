// Runs on a real X server (tests/e2e/xsession.py): another client draws a picture into a pixmap
// and names it on the root window, as wallpaper setters do; the desktop picture follows and
// reads the pixels back. Then the program itself, with no desktop named, puts a built-in
// wallpaper there and ends; the picture stays, and reads back through the same code.
#include "TarnwickProcess.h"
#include "faces/Wallpaper.h"
#include "faces/WallpaperRenderer.h"
#include "platform/linux/LinuxDesktopPicture.h"
#include "platform/linux/X11RootPicture.h"

#include <QGuiApplication>
#include <QImage>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <cstring>
#include <xcb/xcb.h>

using namespace tw;

namespace {

// Taller than one request's worth of rows (4 MiB at this width), with a mark across the seam.
constexpr int width = 1024;
constexpr int height = 1500;
struct Band {
    xcb_rectangle_t area;
    quint32 rgb;
};
constexpr Band bands[] = {
    {{0, 0, width, 500}, 0xff0000},    {{0, 500, width, 500}, 0x00ff00},
    {{0, 1000, width, 500}, 0x0000ff}, {{1000, 1020, 24, 10}, 0xffff00},
    {{3, 7, 1, 1}, 0x123456},
};

} // namespace

class tst_X11RootPicture : public QObject {
    Q_OBJECT

    QTemporaryDir m_data;
    xcb_connection_t* m_setter = nullptr;
    xcb_screen_t* m_screen = nullptr;

    xcb_atom_t atom(const char* name) {
        xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(
            m_setter, xcb_intern_atom(m_setter, 0, uint16_t(std::strlen(name)), name), nullptr);
        const xcb_atom_t value = reply->atom;
        std::free(reply);
        return value;
    }
    xcb_pixmap_t drawPicture() {
        const xcb_pixmap_t pixmap = xcb_generate_id(m_setter);
        xcb_create_pixmap(m_setter, m_screen->root_depth, pixmap, m_screen->root, width, height);
        const xcb_gcontext_t gc = xcb_generate_id(m_setter);
        xcb_create_gc(m_setter, gc, pixmap, 0, nullptr);
        for (const Band& band : bands) {
            xcb_change_gc(m_setter, gc, XCB_GC_FOREGROUND, &band.rgb);
            xcb_poly_fill_rectangle(m_setter, pixmap, gc, 1, &band.area);
        }
        xcb_free_gc(m_setter, gc);
        return pixmap;
    }
    void publish(const char* property, xcb_pixmap_t pixmap) {
        if (pixmap == 0) {
            xcb_delete_property(m_setter, m_screen->root, atom(property));
        } else {
            xcb_change_property(m_setter, XCB_PROP_MODE_REPLACE, m_screen->root, atom(property),
                                XCB_ATOM_PIXMAP, 32, 1, &pixmap);
        }
        xcb_flush(m_setter);
    }

private Q_SLOTS:
    void initTestCase() {
        if (QGuiApplication::platformName() != QLatin1String("xcb")) {
            QSKIP("needs an X server (run through tests/e2e/xsession.py)");
        }
        qunsetenv("XDG_CURRENT_DESKTOP");
        qputenv("TKW_APP_SUPPORT_DIR", m_data.path().toUtf8());
        m_setter = xcb_connect(nullptr, nullptr);
        QVERIFY(xcb_connection_has_error(m_setter) == 0);
        m_screen = xcb_setup_roots_iterator(xcb_get_setup(m_setter)).data;
        if (m_screen->root_depth != 24) {
            QSKIP("the pictures here are drawn for a depth of 24");
        }
    }
    void cleanupTestCase() {
        if (m_setter != nullptr) {
            xcb_disconnect(m_setter);
        }
    }

    void followsAndReadsTheRootPicture() {
        auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
        const QTemporaryDir config;
        // A desktop whose own settings say nothing here: the root window is asked next.
        LinuxDesktopPicture picture({QStringLiteral("XFCE")}, config.path(), x11->connection());
        QSignalSpy changed(&picture, &DesktopPicture::changed);
        const QString screen = QStringLiteral("screen");
        QCOMPARE(picture.setting(screen), std::nullopt);
        QVERIFY(picture.rootPicture().isNull());

        const xcb_pixmap_t pixmap = drawPicture();
        publish("_XROOTPMAP_ID", pixmap);
        QTRY_COMPARE(changed.size(), 1);
        const auto setting = picture.setting(screen);
        QVERIFY(setting);
        QVERIFY(setting->file.isEmpty());
        QCOMPARE(setting->fill, DesktopPicture::Fill::span);

        const QImage image = picture.rootPicture();
        QCOMPARE(image.size(), QSize(width, height));
        for (const Band& band : bands) {
            for (const QPoint corner :
                 {QPoint(band.area.x, band.area.y),
                  QPoint(band.area.x + band.area.width - 1, band.area.y + band.area.height - 1)}) {
                QCOMPARE(image.pixel(corner), 0xff000000U | band.rgb);
            }
        }

        // Taken away, then named under the older property: another picture each time.
        publish("_XROOTPMAP_ID", 0);
        QTRY_COMPARE(changed.size(), 2);
        QCOMPARE(picture.setting(screen), std::nullopt);
        publish("ESETROOT_PMAP_ID", pixmap);
        QTRY_COMPARE(changed.size(), 3);
        QVERIFY(picture.setting(screen));
        QVERIFY(picture.setting(screen)->identity != setting->identity);

        // A setter that went away without keeping its pixmap leaves a name of nothing.
        xcb_free_pixmap(m_setter, pixmap);
        xcb_flush(m_setter);
        QVERIFY(picture.rootPicture().isNull());
        publish("ESETROOT_PMAP_ID", 0);
    }

    // In order: the second replaces the picture the first left, freeing it.
    void theProgramPutsAWallpaperThere_data() {
        QTest::addColumn<QString>("id");
        QTest::newRow("first") << "night-sky";
        QTest::newRow("replacing the first") << "dawn";
    }
    void theProgramPutsAWallpaperThere() {
        QFETCH(QString, id);
        const QTemporaryDir home;
        const test::ProcessRun run = test::runTarnwick(
            QStringLiteral(TARNWICK_EXECUTABLE), {QStringLiteral("--apply-wallpaper"), id},
            home.path(), {}, qEnvironmentVariable("DISPLAY"));
        QCOMPARE(run.out, QStringLiteral("apply-wallpaper id=%1 count=1\n").arg(id));
        QCOMPARE(run.exitCode, 0);
        const QSize size(m_screen->width_in_pixels, m_screen->height_in_pixels);
        const Wallpaper& wallpaper = *Wallpaper::find(id);
        QVERIFY(QFile::exists(m_data.filePath(QStringLiteral("Wallpapers/") +
                                              WallpaperRenderer::fileName(wallpaper, size))));
        const X11RootPicture root(m_setter);
        QVERIFY(root.pixmap() != 0);
        QCOMPARE(root.picture().convertToFormat(QImage::Format_RGB32),
                 WallpaperRenderer::render(wallpaper, size));
    }
};

QTEST_MAIN(tst_X11RootPicture)
#include "tst_x11rootpicture.moc"
