// Where each desktop keeps its picture: Plasma's and Xfce's settings files as the desktops write
// them, in a temporary directory; GNOME's and MATE's GSettings under test schemas compiled there,
// kept by the key-file backend. Each is read and followed as it changes.
#include "Files.h"
#include "TestRows.h"
#include "platform/linux/GSettingsPicture.h"
#include "platform/linux/LinuxDesktopPicture.h"
#include "platform/linux/PictureUri.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <gio/gio.h>
#include <sys/stat.h>

using namespace tw;
using Source = LinuxDesktopPicture::Source;
using Fill = DesktopPicture::Fill;
// Settings files by their path under the configuration directory ("$DIR" in a file stands for
// it), and GSettings values by "schema key".
using Settings = QList<std::pair<QString, QByteArray>>;

namespace {

constexpr int none = -1;
const QString applets = QStringLiteral("plasma-org.kde.plasma.desktop-appletsrc");
const QString shellrc = QStringLiteral("plasmashellrc");
const QString activities = QStringLiteral("kactivitymanagerdrc");
const QString xfce = QStringLiteral("xfce4/xfconf/xfce-perchannel-xml/xfce4-desktop.xml");
const QString gnomeUri = QStringLiteral("org.gnome.desktop.background picture-uri");
const QString gnomeDark = QStringLiteral("org.gnome.desktop.background picture-uri-dark");
const QString gnomeOptions = QStringLiteral("org.gnome.desktop.background picture-options");
const QString colorScheme = QStringLiteral("org.gnome.desktop.interface color-scheme");

// Only the keys the reader uses, and one it must not follow; Cinnamon's schema is left out.
const char* const schemas = R"(<schemalist>
  <schema id="org.gnome.desktop.background" path="/org/gnome/desktop/background/">
    <key name="picture-uri" type="s"><default>''</default></key>
    <key name="picture-uri-dark" type="s"><default>''</default></key>
    <key name="picture-options" type="s"><default>'zoom'</default></key>
    <key name="primary-color" type="s"><default>'#000000'</default></key>
  </schema>
  <schema id="org.gnome.desktop.interface" path="/org/gnome/desktop/interface/">
    <key name="color-scheme" type="s"><default>'default'</default></key>
  </schema>
  <schema id="org.mate.background" path="/org/mate/desktop/background/">
    <key name="picture-filename" type="s"><default>''</default></key>
    <key name="picture-options" type="s"><default>'zoom'</default></key>
  </schema>
</schemalist>
)";

// "schema key", through GIO here or through the gsettings tool as another program.
void set(const QString& schemaKey, const QString& value, bool elsewhere = false) {
    const QStringList parts = schemaKey.split(QLatin1Char(' '));
    if (elsewhere) {
        QCOMPARE(QProcess::execute(QStringLiteral("gsettings"),
                                   {QStringLiteral("set"), parts[0], parts[1],
                                    QLatin1Char('\'') + value + QLatin1Char('\'')}),
                 0);
        return;
    }
    GSettings* settings = g_settings_new(qPrintable(parts[0]));
    g_settings_set_string(settings, qPrintable(parts[1]), qPrintable(value));
    g_object_unref(settings);
}

QByteArray containment(int number, const char* screen, const char* image,
                       const char* fill = nullptr, const char* activity = "A",
                       const char* plugin = "org.kde.image", int formfactor = 0) {
    const QByteArray group = "[Containments][" + QByteArray::number(number) + "]";
    QByteArray text = group + "\nactivityId=" + activity +
                      "\nformfactor=" + QByteArray::number(formfactor) + "\nlastScreen=" + screen +
                      "\nwallpaperplugin=" + plugin + "\n\n";
    const QByteArray general = (image ? QByteArray("Image=") + image + "\n" : QByteArray()) +
                               (fill ? QByteArray("FillMode=") + fill + "\n" : QByteArray());
    return general.isEmpty() ? text
                             : text + group + "[Wallpaper][org.kde.image][General]\n" + general;
}

QByteArray xfconf(const char* name, const char* type, const char* value) {
    return QByteArray("<property name=\"") + name + "\" type=\"" + type + "\" value=\"" + value +
           "\"/>";
}

QByteArray monitor(const char* name, const QByteArray& workspace0, const QByteArray& other = {}) {
    return QByteArray("<property name=\"monitor") + name +
           "\" type=\"empty\"><property name=\"workspace0\" type=\"empty\">" + workspace0 +
           "</property><property name=\"workspace1\" type=\"empty\">" + other +
           "</property></property>";
}

QByteArray channel(const QByteArray& monitors) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<channel name=\"xfce4-desktop\" "
           "version=\"1.0\"><property name=\"backdrop\" type=\"empty\"><property name=\"screen0\" "
           "type=\"empty\">" +
           monitors + "</property></property></channel>\n";
}

QByteArray xfceImage(const char* path, const char* style = nullptr) {
    return channel(monitor("DP-1", xfconf("last-image", "string", path) +
                                       (style ? xfconf("image-style", "int", style) : "")));
}

} // namespace

using tw::test::row;

class tst_LinuxDesktopPicture : public QObject {
    Q_OBJECT

    QTemporaryDir m_gio;
    std::unique_ptr<QTemporaryDir> m_temporary;
    QString m_dir;

    void write(const QString& relative, const QByteArray& bytes) {
        QVERIFY(test::writeFile(m_dir + QLatin1Char('/') + relative,
                                QByteArray(bytes).replace("$DIR", QFile::encodeName(m_dir))));
    }
    // As the desktops save: a new file renamed over the old one.
    void replace(const QString& relative, const QByteArray& bytes) {
        write(relative + QStringLiteral(".new"), bytes);
        const QString file = m_dir + QLatin1Char('/') + relative;
        QVERIFY(::rename(QFile::encodeName(file + QStringLiteral(".new")).constData(),
                         QFile::encodeName(file).constData()) == 0);
    }
    void expect(const std::optional<DesktopPicture::Setting>& setting, QString file, int fill) {
        file.replace(QStringLiteral("$DIR"), m_dir);
        QCOMPARE(setting ? setting->file : QString(), fill == none ? QString() : file);
        if (setting) {
            QCOMPARE(int(setting->fill), fill);
            QVERIFY(!setting->identity.isEmpty());
        }
    }

private Q_SLOTS:
    void initTestCase() {
        const QString compiled = m_gio.filePath(QStringLiteral("schemas"));
        QVERIFY(test::writeFile(compiled + QStringLiteral("/test.gschema.xml"), schemas));
        QCOMPARE(QProcess::execute(QStringLiteral("glib-compile-schemas"), {compiled}), 0);
        // Before GIO's first look at either.
        qputenv("GSETTINGS_SCHEMA_DIR", QFile::encodeName(compiled));
        qputenv("GSETTINGS_BACKEND", "keyfile");
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_gio.filePath(QStringLiteral("config"))));
    }
    void init() {
        m_temporary = std::make_unique<QTemporaryDir>();
        m_dir = m_temporary->path();
        for (const char* id : {"org.gnome.desktop.background", "org.gnome.desktop.interface",
                               "org.mate.background"}) {
            GSettings* settings = g_settings_new(id);
            GSettingsSchema* schema = nullptr;
            g_object_get(settings, "settings-schema", &schema, nullptr);
            gchar** keys = g_settings_schema_list_keys(schema);
            for (gchar** key = keys; *key != nullptr; ++key) {
                g_settings_reset(settings, *key);
            }
            g_strfreev(keys);
            g_settings_schema_unref(schema);
            g_object_unref(settings);
        }
    }

    void setting_data() {
        QTest::addColumn<QString>("desktop");
        QTest::addColumn<Settings>("settings");
        QTest::addColumn<QString>("screen");
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("fill");
        const QString kde = QStringLiteral("KDE");
        const QString gnome = QStringLiteral("GNOME");
        const QString dp1 = QStringLiteral("DP-1");
        const QByteArray connectors = "[ScreenConnectors]\n0=DP-1\n1=HDMI-1\n";
        // A panel on the first screen has a wallpaper section too; it is not a desktop.
        const QByteArray two = containment(2, "0", "/pics/panel.jpg", "0", "", "org.kde.image", 2) +
                               containment(1, "0", "file:///pics/first%20one.jpg", "1") +
                               containment(7, "1", "/pics/second\\sscreen.png");
        const Settings plasma{{applets, two}, {shellrc, connectors}};
        row("Plasma: first screen by its connector", kde, plasma, dp1, "/pics/first one.jpg",
            int(Fill::fit));
        row("Plasma: second screen, escaped space, default fill", kde, plasma, "HDMI-1",
            "/pics/second screen.png", int(Fill::zoom));
        row("Plasma: a screen the files do not name shows the first's", kde, plasma, "VGA-1",
            "/pics/first one.jpg", int(Fill::fit));
        row("Plasma: no connectors, the first screen's", kde, Settings{{applets, two}}, "HDMI-1",
            "/pics/first one.jpg", int(Fill::fit));
        const QByteArray activity = two + containment(12, "0", "/pics/b.jpg", "6", "B") +
                                    containment(13, "0", "/pics/c.jpg", "3", "C");
        row("Plasma: the current activity's desktop", kde,
            Settings{{applets, activity}, {activities, "[main]\ncurrentActivity=B\n"}}, dp1,
            "/pics/b.jpg", int(Fill::center));
        row("Plasma: another activity current", kde,
            Settings{{applets, activity}, {activities, "[main]\ncurrentActivity=C\n"}}, dp1,
            "/pics/c.jpg", int(Fill::tile));
        row("Plasma: a slideshow shows no one file", kde,
            Settings{{applets, containment(1, "0", nullptr, nullptr, "A", "org.kde.slideshow")}},
            dp1, QString(), none);
        row("Plasma's own default picture", kde,
            Settings{{applets, containment(1, "0", nullptr, "2")}}, dp1, QString(), none);
        row("Plasma: a wallpaper package, its largest picture", kde,
            Settings{{applets, containment(1, "0", "file://$DIR/pkg/")}}, dp1,
            "$DIR/pkg/contents/images/3840x2160.jpg", int(Fill::zoom));
        row("Plasma: garbage", kde,
            Settings{{applets, QByteArray("\x00\xff[[[Containments]\n=\n[\n", 20)}}, dp1, QString(),
            none);
        row("Plasma: no file", kde, Settings{}, dp1, QString(), none);

        const QByteArray twoMonitors = channel(
            monitor("DP-1",
                    xfconf("image-style", "int", "4") +
                        xfconf("last-image", "string", "/pics/a&amp;b.jpg"),
                    xfconf("last-image", "string", "/pics/other workspace.jpg")) +
            monitor("HDMI-1", xfconf("last-image", "string", "file:///pics/wide%20one.png") +
                                  xfconf("image-style", "int", "6")));
        const QString xfceDesktop = QStringLiteral("XFCE");
        row("Xfce: by output name, first workspace, escaped", xfceDesktop,
            Settings{{xfce, twoMonitors}}, dp1, "/pics/a&b.jpg", int(Fill::fit));
        row("Xfce: file URI, spanning", xfceDesktop, Settings{{xfce, twoMonitors}}, "HDMI-1",
            "/pics/wide one.png", int(Fill::span));
        row("Xfce: a monitor the file does not name shows the first picture", xfceDesktop,
            Settings{{xfce, twoMonitors}}, "VGA-1", "/pics/a&b.jpg", int(Fill::fit));
        row("Xfce: style none", xfceDesktop, Settings{{xfce, xfceImage("/pics/a.jpg", "0")}}, dp1,
            QString(), none);
        row("Xfce: no style, zoomed", xfceDesktop, Settings{{xfce, xfceImage("/pics/z.jpg")}}, dp1,
            "/pics/z.jpg", int(Fill::zoom));
        row("Xfce, older file: numbered monitor, image-path, stretched", xfceDesktop,
            Settings{{xfce, channel(monitor("0", xfconf("image-path", "string", "/pics/old.jpg") +
                                                     xfconf("image-style", "int", "3")))}},
            dp1, "/pics/old.jpg", int(Fill::stretch));
        row("Xfce, older file: picture hidden", xfceDesktop,
            Settings{{xfce, channel(monitor("0", xfconf("image-path", "string", "/pics/old.jpg") +
                                                     xfconf("image-show", "bool", "false")))}},
            dp1, QString(), none);
        row("Xfce: cut short after the first monitor", xfceDesktop,
            Settings{{xfce, twoMonitors.left(twoMonitors.indexOf("monitorHDMI"))}}, dp1,
            "/pics/a&b.jpg", int(Fill::fit));
        row("Xfce: garbage", xfceDesktop, Settings{{xfce, QByteArray("<<channel name=\x01\xff")}},
            dp1, QString(), none);

        const std::pair<QString, QByteArray> uri{gnomeUri, "file:///pics/light%20one.jpg"};
        const std::pair<QString, QByteArray> darkUri{gnomeDark, "file:///pics/dark.jpg"};
        const std::pair<QString, QByteArray> dark{colorScheme, "prefer-dark"};
        const QString light = QStringLiteral("/pics/light one.jpg");
        row("GNOME: URI, zoomed by default", gnome, Settings{uri}, dp1, light, int(Fill::zoom));
        row("GNOME: the dark look's picture", gnome, Settings{uri, darkUri, dark}, dp1,
            "/pics/dark.jpg", int(Fill::zoom));
        row("GNOME: a dark picture in the light look", gnome, Settings{uri, darkUri}, dp1, light,
            int(Fill::zoom));
        row("GNOME: the dark look with no dark picture", gnome, Settings{uri, dark}, dp1, light,
            int(Fill::zoom));
        row("GNOME: scaled", gnome, Settings{uri, {gnomeOptions, "scaled"}}, dp1, light,
            int(Fill::fit));
        row("GNOME: tiled", gnome, Settings{uri, {gnomeOptions, "wallpaper"}}, dp1, light,
            int(Fill::tile));
        row("GNOME: spanned", gnome, Settings{uri, {gnomeOptions, "spanned"}}, dp1, light,
            int(Fill::span));
        row("GNOME: no picture shown", gnome, Settings{uri, {gnomeOptions, "none"}}, dp1, QString(),
            none);
        row("GNOME: not a local file", gnome, Settings{{gnomeUri, "resource:///a.png"}}, dp1,
            QString(), none);
        row("GNOME: nothing set", gnome, Settings{}, dp1, QString(), none);
        row("MATE keeps a path, centred", "MATE",
            Settings{{QStringLiteral("org.mate.background picture-filename"), "/pics/m a.png"},
                     {QStringLiteral("org.mate.background picture-options"), "centered"}},
            dp1, "/pics/m a.png", int(Fill::center));
        // Cinnamon's schema is not installed: no source, and no abort in GIO.
        row("Cinnamon without its settings", "X-Cinnamon", Settings{uri}, dp1, QString(), none);
    }
    void setting() {
        QFETCH(QString, desktop);
        QFETCH(Settings, settings);
        QFETCH(QString, screen);
        QFETCH(QString, file);
        QFETCH(int, fill);
        for (const char* size : {"800x600.png", "3840x2160.jpg", "1920x1080.png", "preview.png"}) {
            write(QStringLiteral("pkg/contents/images/") + QLatin1String(size), "x");
        }
        for (const auto& [where, value] : settings) {
            if (where.startsWith(QLatin1String("org."))) {
                set(where, QString::fromUtf8(value));
            } else {
                write(where, value);
            }
        }
        const LinuxDesktopPicture picture({desktop}, m_dir, nullptr);
        expect(picture.setting(screen), file, fill);
    }

    // Never a crash, never a wait: the answer is simply unknown.
    void unreadableFiles_data() {
        QTest::addColumn<QString>("kind");
        row("missing", "missing");
        row("over the size cap", "huge");
        row("a directory", "directory");
        row("a pipe nobody writes", "fifo");
    }
    void unreadableFiles() {
        QFETCH(QString, kind);
        const QString file = m_dir + QLatin1Char('/') + ::xfce;
        QVERIFY(QDir().mkpath(QFileInfo(file).absolutePath()));
        if (kind == QLatin1String("huge")) {
            // A picture the reader would find, were the file not so large.
            write(::xfce, xfceImage("/p.jpg") + "<!--" +
                              QByteArray(LinuxDesktopPicture::maximumFileSize, ' ') + "-->");
        } else if (kind == QLatin1String("directory")) {
            QVERIFY(QDir().mkpath(file));
        } else if (kind == QLatin1String("fifo")) {
            QCOMPARE(::mkfifo(QFile::encodeName(file).constData(), 0600), 0);
        }
        const LinuxDesktopPicture picture({QStringLiteral("XFCE")}, m_dir, nullptr);
        QCOMPARE(picture.setting(QStringLiteral("DP-1")), std::nullopt);
    }

    void followsTheFile() {
        write(QStringLiteral("one.jpg"), "1");
        write(::xfce, xfceImage("$DIR/one.jpg"));
        LinuxDesktopPicture picture({QStringLiteral("XFCE")}, m_dir, nullptr);
        QSignalSpy changed(&picture, &DesktopPicture::changed);
        const QString screen = QStringLiteral("DP-1");
        const QString identity = picture.setting(screen)->identity;

        // Another program's file in the same directory says nothing about the picture.
        write(QFileInfo(::xfce).path() + QStringLiteral("/xfce4-panel.xml"), "<channel/>");
        QTest::qWait(300);
        QCOMPARE(changed.size(), 0);

        replace(::xfce, xfceImage("$DIR/two.jpg"));
        QTRY_COMPARE(changed.size(), 1);
        expect(picture.setting(screen), QStringLiteral("$DIR/two.jpg"), int(Fill::zoom));
        // Still watched after the rename: written in place now.
        write(::xfce, xfceImage("$DIR/one.jpg"));
        QTRY_COMPARE(changed.size(), 2);
        QCOMPARE(picture.setting(screen)->identity, identity);

        // The same path drawn afresh is another picture.
        QFile file(m_dir + QStringLiteral("/one.jpg"));
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(60),
                                 QFileDevice::FileModificationTime));
        QVERIFY(picture.setting(screen)->identity != identity);
    }

    // Changes another program makes: a key the reader does not use says nothing.
    void followsGSettingsChangedElsewhere() {
        LinuxDesktopPicture picture({QStringLiteral("GNOME")}, m_dir, nullptr);
        QSignalSpy changed(&picture, &DesktopPicture::changed);
        const QString screen = QStringLiteral("DP-1");
        set(QStringLiteral("org.gnome.desktop.background primary-color"), QStringLiteral("#102030"),
            true);
        set(gnomeUri, QStringLiteral("file:///new.jpg"), true);
        QTRY_COMPARE(changed.size(), 1);
        QCOMPARE(picture.setting(screen)->file, QStringLiteral("/new.jpg"));
        set(gnomeDark, QStringLiteral("/night.jpg"), true);
        QTRY_COMPARE(changed.size(), 2);
        set(colorScheme, QStringLiteral("prefer-dark"), true);
        QTRY_COMPARE(changed.size(), 3);
        QCOMPARE(picture.setting(screen)->file, QStringLiteral("/night.jpg"));
        QTest::qWait(200);
        QCOMPARE(changed.size(), 3);
    }

    // What GSettings is told to show is what it then reads, in the light and the dark look,
    // zoomed whatever was set before; GNOME keeps a URI, MATE a path.
    void showReadsBack_data() {
        QTest::addColumn<int>("desktop");
        QTest::addColumn<Settings>("before");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("stored");
        row("GNOME, over a dark picture and another fit", int(GSettingsPicture::Desktop::gnome),
            Settings{{gnomeDark, "file:///pics/dark.jpg"}, {gnomeOptions, "scaled"}}, gnomeDark,
            "file:///data/Wallpapers/dawn%201.png");
        row("MATE", int(GSettingsPicture::Desktop::mate),
            Settings{{QStringLiteral("org.mate.background picture-options"), "centered"}},
            "org.mate.background picture-filename", "/data/Wallpapers/dawn 1.png");
    }
    void showReadsBack() {
        QFETCH(int, desktop);
        QFETCH(Settings, before);
        QFETCH(QString, key);
        for (const auto& [schemaKey, value] : before) {
            set(schemaKey, QString::fromUtf8(value));
        }
        const QString file = QStringLiteral("/data/Wallpapers/dawn 1.png");
        QVERIFY(GSettingsPicture::create(GSettingsPicture::Desktop(desktop))->show(file));
        for (const char* look : {"default", "prefer-dark"}) {
            set(colorScheme, QLatin1String(look));
            const auto setting =
                GSettingsPicture::create(GSettingsPicture::Desktop(desktop))->setting();
            QVERIFY2(setting, look);
            QCOMPARE(setting->file, file);
            QCOMPARE(int(setting->fill), int(Fill::zoom));
        }
        const QStringList schemaKey = key.split(QLatin1Char(' '));
        GSettings* settings = g_settings_new(qPrintable(schemaKey[0]));
        gchar* stored = g_settings_get_string(settings, qPrintable(schemaKey[1]));
        QTEST(QString::fromUtf8(stored), "stored");
        g_free(stored);
        g_object_unref(settings);
    }

    void sourcesFor_data() {
        QTest::addColumn<QString>("desktops");
        QTest::addColumn<QList<Source>>("expected");
        const QList<Source> unknown{Source::root,  Source::plasma,   Source::xfce,
                                    Source::gnome, Source::cinnamon, Source::mate};
        row("GNOME after a distribution's name", "ubuntu:GNOME",
            QList<Source>{Source::gnome, Source::root});
        row("Budgie on GNOME's settings", "Budgie:GNOME",
            QList<Source>{Source::gnome, Source::root});
        row("Cinnamon", "X-Cinnamon", QList<Source>{Source::cinnamon, Source::root});
        row("MATE", "MATE", QList<Source>{Source::mate, Source::root});
        row("Plasma", "KDE", QList<Source>{Source::plasma, Source::root});
        row("Xfce", "XFCE", QList<Source>{Source::xfce, Source::root});
        row("a window manager", "i3", unknown);
        row("nothing said", "", unknown);
    }
    void sourcesFor() {
        QFETCH(QString, desktops);
        QTEST(LinuxDesktopPicture::sourcesFor(desktops.split(QLatin1Char(':'), Qt::SkipEmptyParts)),
              "expected");
    }

    // The settings' URIs: only local files, decoded.
    void localFile_data() {
        QTest::addColumn<QString>("uri");
        QTest::addColumn<QString>("expected");
        row("plain path", "/home/a/b.jpg", "/home/a/b.jpg");
        row("escaped space", "file:///home/a/my%20picture.jpg", "/home/a/my picture.jpg");
        row("escaped UTF-8", "file:///p/caf%C3%A9.png", "/p/café.png");
        row("escaped hash and percent", "file:///p/a%23b%25c.png", "/p/a#b%c.png");
        row("localhost", "file://localhost/p/a.png", "/p/a.png");
        row("upper-case scheme, spaces around", "  FILE:///p/a.png\n", "/p/a.png");
        row("another host", "file://server/p/a.png", QString());
        row("another scheme", "resource:///org/gnome/a.png", QString());
        row("relative", "pictures/a.png", QString());
        row("encoded NUL", "file:///p/a%00.png", QString());
        row("empty", "", QString());
        row("scheme alone", "file://", QString());
    }
    void localFile() {
        QFETCH(QString, uri);
        QTEST(PictureUri::localFile(uri), "expected");
    }
};

QTEST_GUILESS_MAIN(tst_LinuxDesktopPicture)
#include "tst_linuxdesktoppicture.moc"
