// The Plasma and Xfce settings files as the desktops write them, read from a temporary
// directory, and followed as they change.
#include "platform/linux/LinuxDesktopPicture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace tw;
using Source = LinuxDesktopPicture::Source;
using Fill = DesktopPicture::Fill;

namespace {

const QString applets = QStringLiteral("plasma-org.kde.plasma.desktop-appletsrc");
const QString xfce = QStringLiteral("xfce4/xfconf/xfce-perchannel-xml/xfce4-desktop.xml");
constexpr int none = -1;

QByteArray containment(int number, const char* screen, const char* image,
                       const char* fill = nullptr, const char* activity = "A",
                       const char* plugin = "org.kde.image", int formfactor = 0) {
    QByteArray text = "[Containments][" + QByteArray::number(number) + "]\nactivityId=" + activity +
                      "\nformfactor=" + QByteArray::number(formfactor) + "\nlastScreen=" + screen +
                      "\nwallpaperplugin=" + plugin + "\n\n";
    QByteArray general;
    if (image != nullptr) {
        general += QByteArray("Image=") + image + "\n";
    }
    if (fill != nullptr) {
        general += QByteArray("FillMode=") + fill + "\n";
    }
    if (!general.isEmpty()) {
        text += "[Containments][" + QByteArray::number(number) +
                "][Wallpaper][org.kde.image][General]\n" + general + "\n";
    }
    return text;
}

const QByteArray connectors = "[ScreenConnectors]\n0=DP-1\n1=HDMI-1\n";

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

const QByteArray twoMonitors = channel(
    monitor("DP-1",
            xfconf("image-style", "int", "4") + xfconf("last-image", "string", "/pics/a&amp;b.jpg"),
            xfconf("last-image", "string", "/pics/other workspace.jpg")) +
    monitor("HDMI-1", xfconf("last-image", "string", "file:///pics/wide%20one.png") +
                          xfconf("image-style", "int", "6")));

} // namespace

class tst_LinuxDesktopPicture : public QObject {
    Q_OBJECT

    QString m_dir;
    std::unique_ptr<QTemporaryDir> m_temporary;

    void write(const QString& relative, const QByteArray& bytes) {
        const QString file = m_dir + QLatin1Char('/') + relative;
        QVERIFY(QDir().mkpath(QFileInfo(file).absolutePath()));
        QFile out(file);
        QVERIFY(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
        out.write(QByteArray(bytes).replace("$DIR", QFile::encodeName(m_dir)));
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
    void init() {
        m_temporary = std::make_unique<QTemporaryDir>();
        m_dir = m_temporary->path();
    }

    void plasma_data() {
        QTest::addColumn<QByteArray>("appletsrc");
        QTest::addColumn<QByteArray>("shellrc");
        QTest::addColumn<QByteArray>("activities");
        QTest::addColumn<QString>("screen");
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("fill");
        // A panel on the first screen has a wallpaper section too; it is not a desktop.
        const QByteArray two = containment(2, "0", "/pics/panel.jpg", "0", "", "org.kde.image", 2) +
                               containment(1, "0", "file:///pics/first%20one.jpg", "1") +
                               containment(7, "1", "/pics/second\\sscreen.png");
        QTest::newRow("first screen by its connector")
            << two << connectors << QByteArray() << "DP-1"
            << "/pics/first one.jpg" << int(Fill::fit);
        QTest::newRow("second screen, escaped space, default fill")
            << two << connectors << QByteArray() << "HDMI-1"
            << "/pics/second screen.png" << int(Fill::zoom);
        QTest::newRow("a screen the files do not name shows the first's")
            << two << connectors << QByteArray() << "VGA-1"
            << "/pics/first one.jpg" << int(Fill::fit);
        QTest::newRow("no connectors: the first screen's")
            << two << QByteArray() << QByteArray() << "HDMI-1"
            << "/pics/first one.jpg" << int(Fill::fit);
        const QByteArray activities = two + containment(12, "0", "/pics/b.jpg", "6", "B") +
                                      containment(13, "0", "/pics/c.jpg", "3", "C");
        QTest::newRow("the current activity's desktop")
            << activities << connectors << QByteArray("[main]\ncurrentActivity=B\n") << "DP-1"
            << "/pics/b.jpg" << int(Fill::center);
        QTest::newRow("another activity current")
            << activities << connectors << QByteArray("[main]\ncurrentActivity=C\n") << "DP-1"
            << "/pics/c.jpg" << int(Fill::tile);
        QTest::newRow("a slideshow shows no one file")
            << containment(1, "0", nullptr, nullptr, "A", "org.kde.slideshow") << connectors
            << QByteArray() << "DP-1" << QString() << none;
        QTest::newRow("Plasma's own default picture")
            << containment(1, "0", nullptr, "2") << connectors << QByteArray() << "DP-1"
            << QString() << none;
        QTest::newRow("a wallpaper package: its largest picture")
            << containment(1, "0", "file://$DIR/pkg/") << connectors << QByteArray() << "DP-1"
            << "$DIR/pkg/contents/images/3840x2160.jpg" << int(Fill::zoom);
        QTest::newRow("garbage") << QByteArray("\x00\xff[[[Containments]\n=\n[\n", 20) << connectors
                                 << QByteArray() << "DP-1" << QString() << none;
        QTest::newRow("no file") << QByteArray() << QByteArray() << QByteArray() << "DP-1"
                                 << QString() << none;
    }
    void plasma() {
        QFETCH(QByteArray, appletsrc);
        QFETCH(QByteArray, shellrc);
        QFETCH(QByteArray, activities);
        QFETCH(QString, screen);
        QFETCH(QString, file);
        QFETCH(int, fill);
        for (const char* size : {"800x600.png", "3840x2160.jpg", "1920x1080.png", "preview.png"}) {
            write(QStringLiteral("pkg/contents/images/") + QLatin1String(size), "x");
        }
        if (!appletsrc.isEmpty()) {
            write(applets, appletsrc);
        }
        write(QStringLiteral("plasmashellrc"), shellrc);
        write(QStringLiteral("kactivitymanagerdrc"), activities);
        const LinuxDesktopPicture picture({QStringLiteral("KDE")}, m_dir, nullptr);
        expect(picture.setting(screen), file, fill);
    }

    void xfce_data() {
        QTest::addColumn<QByteArray>("xml");
        QTest::addColumn<QString>("screen");
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("fill");
        QTest::newRow("by output name, first workspace, escaped")
            << twoMonitors << "DP-1"
            << "/pics/a&b.jpg" << int(Fill::fit);
        QTest::newRow("file URI, spanning") << twoMonitors << "HDMI-1"
                                            << "/pics/wide one.png" << int(Fill::span);
        QTest::newRow("a monitor the file does not name shows the first picture")
            << twoMonitors << "VGA-1"
            << "/pics/a&b.jpg" << int(Fill::fit);
        QTest::newRow("style none")
            << channel(monitor("DP-1", xfconf("last-image", "string", "/pics/a.jpg") +
                                           xfconf("image-style", "int", "0")))
            << "DP-1" << QString() << none;
        QTest::newRow("older file: numbered monitor, image-path, stretched")
            << channel(monitor("0", xfconf("image-path", "string", "/pics/old.jpg") +
                                        xfconf("image-style", "int", "3")))
            << "DP-1"
            << "/pics/old.jpg" << int(Fill::stretch);
        QTest::newRow("older file: picture hidden")
            << channel(monitor("0", xfconf("image-path", "string", "/pics/old.jpg") +
                                        xfconf("image-show", "bool", "false")))
            << "DP-1" << QString() << none;
        QTest::newRow("no style: zoomed")
            << channel(monitor("DP-1", xfconf("last-image", "string", "/pics/z.jpg"))) << "DP-1"
            << "/pics/z.jpg" << int(Fill::zoom);
        QTest::newRow("cut short after the first monitor")
            << twoMonitors.left(twoMonitors.indexOf("monitorHDMI")) << "DP-1"
            << "/pics/a&b.jpg" << int(Fill::fit);
        QTest::newRow("garbage") << QByteArray("<<channel name=\x01\xff") << "DP-1" << QString()
                                 << none;
    }
    void xfce() {
        QFETCH(QByteArray, xml);
        QFETCH(QString, screen);
        QFETCH(QString, file);
        QFETCH(int, fill);
        write(::xfce, xml);
        const LinuxDesktopPicture picture({QStringLiteral("XFCE")}, m_dir, nullptr);
        expect(picture.setting(screen), file, fill);
    }

    // Never a crash, never a wait: the answer is simply unknown.
    void unreadableFiles_data() {
        QTest::addColumn<QString>("kind");
        QTest::newRow("missing") << "missing";
        QTest::newRow("over the size cap") << "huge";
        QTest::newRow("a directory") << "directory";
        QTest::newRow("a pipe nobody writes") << "fifo";
    }
    void unreadableFiles() {
        QFETCH(QString, kind);
        const QString file = m_dir + QLatin1Char('/') + ::xfce;
        QVERIFY(QDir().mkpath(QFileInfo(file).absolutePath()));
        if (kind == QLatin1String("huge")) {
            // A picture the reader would find, were the file not so large.
            const QByteArray padding =
                "<!--" + QByteArray(LinuxDesktopPicture::maximumFileSize, ' ') + "-->";
            write(::xfce,
                  channel(monitor("DP-1", xfconf("last-image", "string", "/p.jpg"))) + padding);
        } else if (kind == QLatin1String("directory")) {
            QVERIFY(QDir().mkpath(file));
        } else if (kind == QLatin1String("fifo")) {
            QCOMPARE(::mkfifo(QFile::encodeName(file).constData(), 0600), 0);
        }
        const LinuxDesktopPicture picture({QStringLiteral("XFCE")}, m_dir, nullptr);
        QCOMPARE(picture.setting(QStringLiteral("DP-1")), std::nullopt);
    }

    void followsTheFile() {
        const QByteArray one =
            channel(monitor("DP-1", xfconf("last-image", "string", "$DIR/one.jpg")));
        const QByteArray two =
            channel(monitor("DP-1", xfconf("last-image", "string", "$DIR/two.jpg")));
        write(QStringLiteral("one.jpg"), "1");
        write(::xfce, one);
        LinuxDesktopPicture picture({QStringLiteral("XFCE")}, m_dir, nullptr);
        QSignalSpy changed(&picture, &DesktopPicture::changed);
        const QString screen = QStringLiteral("DP-1");
        const QString identity = picture.setting(screen)->identity;

        // Another program's file in the same directory says nothing about the picture.
        write(QFileInfo(::xfce).path() + QStringLiteral("/xfce4-panel.xml"), "<channel/>");
        QTest::qWait(300);
        QCOMPARE(changed.size(), 0);

        replace(::xfce, two);
        QTRY_COMPARE(changed.size(), 1);
        expect(picture.setting(screen), QStringLiteral("$DIR/two.jpg"), int(Fill::zoom));
        // Still watched after the rename: written in place now.
        write(::xfce, one);
        QTRY_COMPARE(changed.size(), 2);
        QCOMPARE(picture.setting(screen)->identity, identity);

        // The same path drawn afresh is another picture.
        QFile file(m_dir + QStringLiteral("/one.jpg"));
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(60),
                                 QFileDevice::FileModificationTime));
        QVERIFY(picture.setting(screen)->identity != identity);
    }

    void sourcesFor_data() {
        QTest::addColumn<QString>("desktops");
        QTest::addColumn<QList<Source>>("expected");
        const QList<Source> unknown{Source::root,  Source::plasma,   Source::xfce,
                                    Source::gnome, Source::cinnamon, Source::mate};
        QTest::newRow("GNOME after a distribution's name")
            << "ubuntu:GNOME" << QList<Source>{Source::gnome, Source::root};
        QTest::newRow("Budgie on GNOME's settings")
            << "Budgie:GNOME" << QList<Source>{Source::gnome, Source::root};
        QTest::newRow("Cinnamon") << "X-Cinnamon" << QList<Source>{Source::cinnamon, Source::root};
        QTest::newRow("MATE") << "MATE" << QList<Source>{Source::mate, Source::root};
        QTest::newRow("Plasma") << "KDE" << QList<Source>{Source::plasma, Source::root};
        QTest::newRow("Xfce") << "XFCE" << QList<Source>{Source::xfce, Source::root};
        QTest::newRow("a window manager") << "i3" << unknown;
        QTest::newRow("nothing said") << "" << unknown;
    }
    void sourcesFor() {
        QFETCH(QString, desktops);
        QFETCH(QList<Source>, expected);
        QCOMPARE(
            LinuxDesktopPicture::sourcesFor(desktops.split(QLatin1Char(':'), Qt::SkipEmptyParts)),
            expected);
    }
};

QTEST_GUILESS_MAIN(tst_LinuxDesktopPicture)
#include "tst_linuxdesktoppicture.moc"
