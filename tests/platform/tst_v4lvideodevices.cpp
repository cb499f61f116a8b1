#include "Files.h"
#include "platform/linux/V4lVideoDevices.h"

#include <QTemporaryDir>
#include <QTest>

using namespace tw;
using namespace tw::test;

class V4lVideoDevicesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Nodes in natural order with the driver's first line as their name; other devices and
    // a sysfs entry without a name are no trouble.
    void listsNodesWithNamesAndAccess() {
        QTemporaryDir root;
        const QString dev = root.filePath(QStringLiteral("dev"));
        const QString sys = root.filePath(QStringLiteral("sys"));
        QVERIFY(writeFile(dev + QStringLiteral("/video10"), {}));
        QVERIFY(writeFile(dev + QStringLiteral("/video2"), {}));
        QVERIFY(writeFile(dev + QStringLiteral("/sda"), {}));
        QVERIFY(writeFile(sys + QStringLiteral("/video2/name"), "Integrated Camera: RGB\nmore\n"));
        QVERIFY(QFile::setPermissions(dev + QStringLiteral("/video10"), QFile::ReadOwner));

        const QList<VideoNode> nodes = V4lVideoDevices(dev, sys).nodes();
        QCOMPARE(nodes.size(), 2);
        QCOMPARE(nodes[0].path, dev + QStringLiteral("/video2"));
        QCOMPARE(nodes[0].name, QStringLiteral("Integrated Camera: RGB"));
        QVERIFY(nodes[0].readable && nodes[0].writable);
        QCOMPARE(nodes[1].path, dev + QStringLiteral("/video10"));
        QCOMPARE(nodes[1].name, QString());
        QVERIFY(nodes[1].readable);
        // The administrator may write anything; everyone else is held to the mode.
        if (QFileInfo(dev).ownerId() != 0) {
            QVERIFY(!nodes[1].writable);
        }
        QVERIFY(V4lVideoDevices(root.filePath(QStringLiteral("none")), sys).nodes().isEmpty());
    }
};

QTEST_GUILESS_MAIN(V4lVideoDevicesTest)
#include "tst_v4lvideodevices.moc"
