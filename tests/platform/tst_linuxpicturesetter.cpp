// Xfce's and Plasma's ways of taking a picture: xfconf-query stands in as a script (this machine
// has no Xfce), Plasma's shell as python3-dbusmock on a private session bus.
#include "Files.h"
#include "SessionBusMock.h"
#include "platform/linux/LinuxPictureSetter.h"

#include <QDBusMessage>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;
using Target = DesktopPictureSetter::Target;

namespace {

// Lists the properties in "properties", appends "property=value" to "set" for each change.
const char* const fakeXfconf = R"(#!/bin/sh
here=$(dirname "$0")
if [ "$3" = "-l" ]; then cat "$here/properties"; exit 0; fi
echo "$4=$6" >> "$here/set"
)";

const QString shell = QStringLiteral("org.kde.plasmashell");

QList<Target> targetsNamed(const QStringList& names) {
    QList<Target> targets;
    for (const QString& name : names) {
        targets.append({name, QRect(int(targets.size()) * 100, 0, 100, 80)});
    }
    return targets;
}

QStringList filesFor(const QList<Target>& targets) {
    QStringList files;
    for (const Target& target : targets) {
        files.append(QStringLiteral("/w/") + target.screen + QStringLiteral(".png"));
    }
    return files;
}

} // namespace

class tst_LinuxPictureSetter : public QObject {
    Q_OBJECT

    SessionBusMock m_bus;
    QTemporaryDir m_bin;
    QByteArray m_path = qgetenv("PATH");

private Q_SLOTS:
    void initTestCase() {
        const QString script = m_bin.filePath(QStringLiteral("xfconf-query"));
        QVERIFY(test::writeFile(script, fakeXfconf) &&
                QFile::setPermissions(script, QFile::permissions(script) | QFile::ExeOwner));
    }
    void cleanup() {
        qputenv("PATH", m_path);
        QFile::remove(m_bin.filePath(QStringLiteral("set")));
        m_bus.stopServices();
    }

    // Each display's "last-image" of every workspace, matched by the whole connector name.
    void xfconf_data() {
        QTest::addColumn<QStringList>("properties");
        QTest::addColumn<QStringList>("screens");
        QTest::addColumn<int>("count");
        QTest::addColumn<QStringList>("set");
        const auto key = [](const char* monitor, int workspace, const char* name) {
            return QStringLiteral("/backdrop/screen0/monitor%1/workspace%2/%3")
                .arg(QLatin1String(monitor))
                .arg(workspace)
                .arg(QLatin1String(name));
        };
        const QStringList properties{key("DP-1", 0, "last-image"), key("DP-1", 1, "last-image"),
                                     key("DP-1", 0, "image-style"), key("DP-10", 0, "last-image"),
                                     key("HDMI-1", 0, "last-image")};
        const QStringList dp1{QStringLiteral("DP-1")};
        QTest::newRow("every workspace of each display")
            << properties << QStringList{QStringLiteral("DP-1"), QStringLiteral("HDMI-1")} << 2
            << QStringList{key("DP-1", 0, "last-image=/w/DP-1.png"),
                           key("DP-1", 1, "last-image=/w/DP-1.png"),
                           key("HDMI-1", 0, "last-image=/w/HDMI-1.png")};
        QTest::newRow("a display Xfce has not seen")
            << properties << QStringList{QStringLiteral("DP-2")} << 0 << QStringList{};
        QTest::newRow("no xfconf-query") << QStringList() << dp1 << 0 << QStringList{};
    }
    void xfconf() {
        QFETCH(QStringList, properties);
        QFETCH(QStringList, screens);
        if (properties.isEmpty()) {
            qputenv("PATH", QFile::encodeName(m_bin.filePath(QStringLiteral("nothing"))));
        } else {
            qputenv("PATH", QFile::encodeName(m_bin.path()) + ':' + m_path);
            QVERIFY(test::writeFile(m_bin.filePath(QStringLiteral("properties")),
                                    properties.join(QLatin1Char('\n')).toUtf8() + '\n'));
        }
        LinuxPictureSetter setter({QStringLiteral("XFCE")});
        const QList<Target> targets = targetsNamed(screens);
        QTEST(setter.show(targets, filesFor(targets)), "count");
        const QString written =
            QString::fromUtf8(test::readFile(m_bin.filePath(QStringLiteral("set"))));
        QTEST(written.split(QLatin1Char('\n'), Qt::SkipEmptyParts), "set");
    }

    // The script names every file; the count is what the shell prints, never more than the
    // displays; a shell that is missing or fails gives 0.
    void plasma_data() {
        QTest::addColumn<QString>("answer"); // Python code for the mock's reply; empty: no shell
        QTest::addColumn<int>("count");
        // Answers only when the script carries the files, in the displays' order.
        QTest::newRow("both desktops")
            << "ret = '2\\n' if '[\"/w/DP-1.png\",\"/w/DP-2.png\"]' in args[0] else '0'" << 2;
        QTest::newRow("more desktops than displays") << "ret = '5'" << 2;
        QTest::newRow("a script error") << "raise dbus.exceptions.DBusException('no', "
                                           "name='org.kde.plasmashell.Error')"
                                        << 0;
        QTest::newRow("no shell on the bus") << "" << 0;
    }
    void plasma() {
        if (!m_bus.skipReason().isEmpty()) {
            QSKIP(qPrintable(m_bus.skipReason()));
        }
        QFETCH(QString, answer);
        const QString path = QStringLiteral("/PlasmaShell");
        const QString interface = QStringLiteral("org.kde.PlasmaShell");
        if (!answer.isEmpty()) {
            QVERIFY(m_bus.startService(shell, {shell, path, interface}));
            const QDBusMessage added =
                SessionBusMock::mockCall(shell, path, QStringLiteral("AddMethod"),
                                         {interface, QStringLiteral("evaluateScript"),
                                          QStringLiteral("s"), QStringLiteral("s"), answer});
            QCOMPARE(added.type(), QDBusMessage::ReplyMessage);
        }
        LinuxPictureSetter setter({QStringLiteral("KDE")});
        const QList<Target> targets =
            targetsNamed({QStringLiteral("DP-1"), QStringLiteral("DP-2")});
        QTEST(setter.show(targets, filesFor(targets)), "count");
    }
};

QTEST_GUILESS_MAIN(tst_LinuxPictureSetter)
#include "tst_linuxpicturesetter.moc"
