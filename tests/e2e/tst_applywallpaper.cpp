// Runs on a real X server (tests/e2e/xsession.py) with no desktop named: the program puts a
// built-in wallpaper on the root window and ends; the picture stays, and reads back through the
// same code that follows other setters' pictures.
#include "TarnwickProcess.h"
#include "faces/Wallpaper.h"
#include "faces/WallpaperRenderer.h"
#include "platform/linux/X11RootPicture.h"

#include <QGuiApplication>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

#include <xcb/xcb.h>

using namespace tw;

class tst_ApplyWallpaper : public QObject {
    Q_OBJECT

    QTemporaryDir m_data;
    xcb_connection_t* m_connection = nullptr;

private Q_SLOTS:
    void initTestCase() {
        qunsetenv("XDG_CURRENT_DESKTOP");
        qputenv("TKW_APP_SUPPORT_DIR", m_data.path().toUtf8());
        m_connection = xcb_connect(nullptr, nullptr);
        QVERIFY(xcb_connection_has_error(m_connection) == 0);
    }
    void cleanupTestCase() { xcb_disconnect(m_connection); }

    // In order: the second replaces the picture the first left, freeing it.
    void rootWindowShowsIt_data() {
        QTest::addColumn<QString>("id");
        QTest::newRow("first") << "night-sky";
        QTest::newRow("replacing the first") << "dawn";
    }
    void rootWindowShowsIt() {
        QFETCH(QString, id);
        const QTemporaryDir home;
        const test::ProcessRun run = test::runTarnwick(
            QStringLiteral(TARNWICK_EXECUTABLE), {QStringLiteral("--apply-wallpaper"), id},
            home.path(), {}, qEnvironmentVariable("DISPLAY"));
        QCOMPARE(run.out, QStringLiteral("apply-wallpaper id=%1 count=1\n").arg(id));
        QCOMPARE(run.exitCode, 0);

        const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        const QSize size(screen->width_in_pixels, screen->height_in_pixels);
        const QImage expected = WallpaperRenderer::render(*Wallpaper::find(id), size);
        QVERIFY(QFile::exists(
            m_data.filePath(QStringLiteral("Wallpapers/") +
                            WallpaperRenderer::fileName(*Wallpaper::find(id), size))));
        const X11RootPicture root(m_connection);
        QVERIFY(root.pixmap() != 0);
        QCOMPARE(root.picture().convertToFormat(QImage::Format_RGB32), expected);
    }
};

QTEST_MAIN(tst_ApplyWallpaper)
#include "tst_applywallpaper.moc"
