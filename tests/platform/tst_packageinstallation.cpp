#include "Files.h"
#include "TestRows.h"
#include "platform/linux/PackageInstallation.h"

#include <QTemporaryDir>
#include <QTest>

using namespace tw;
using namespace tw::test;
using Kind = Installation::Kind;

Q_DECLARE_METATYPE(tw::Installation::Kind)

class TestPackageInstallation : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // A real executable and a real file list in a temporary tree; "$BIN" stands for the
    // executable's path, "$LINK" for a link to it.
    void detect_data() {
        QTest::addColumn<QByteArray>("list"); // empty: no list at all
        QTest::addColumn<QString>("run");     // the path the program runs from
        QTest::addColumn<QString>("flatpak");
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<QString>("command");
        const QString apt =
            QStringLiteral("sudo apt update && sudo apt install --only-upgrade tarnwick");
        row("listed by the package", QByteArray("/.\n/usr\n$BIN\n/usr/share/doc\n"), "$BIN", "",
            Kind::systemPackage, apt);
        row("run through a link to a listed file", QByteArray("$BIN\n"), "$LINK", "",
            Kind::systemPackage, apt);
        row("listed as the link", QByteArray("$LINK\n"), "$LINK", "", Kind::systemPackage, apt);
        row("a package of other files", QByteArray("/usr/bin/other\n"), "$BIN", "", Kind::unmanaged,
            "");
        row("a prefix is not a match", QByteArray("$BIN.old\n"), "$BIN", "", Kind::unmanaged, "");
        row("no package", QByteArray(), "$BIN", "", Kind::unmanaged, "");
        row("inside a Flatpak", QByteArray("$BIN\n"), "$BIN", "com.tarnwick.Tarnwick",
            Kind::sandboxed, "flatpak update com.tarnwick.Tarnwick");
    }
    void detect() {
        QFETCH(QByteArray, list);
        QFETCH(QString, run);
        QFETCH(QString, flatpak);
        QTemporaryDir root;
        const QString bin = root.filePath(QStringLiteral("usr/bin/tarnwick"));
        const QString link = root.filePath(QStringLiteral("bin-tarnwick"));
        QVERIFY(writeFile(bin, "ELF"));
        QVERIFY(QFile::link(bin, link));
        const QString info = root.filePath(QStringLiteral("dpkg/info"));
        QVERIFY(QDir().mkpath(info));
        if (!list.isEmpty()) {
            list.replace("$BIN", bin.toUtf8()).replace("$LINK", link.toUtf8());
            QVERIFY(writeFile(info + QStringLiteral("/tarnwick.list"), list));
        }
        const QString executable = run == QLatin1String("$LINK") ? link : bin;
        const Installation found = PackageInstallation::detect(executable, info, flatpak);
        QTEST(found.kind, "kind");
        QTEST(found.upgradeCommand, "command");
        QCOMPARE(found.source.isEmpty(), found.kind == Kind::unmanaged);
    }
};

QTEST_GUILESS_MAIN(TestPackageInstallation)
#include "tst_packageinstallation.moc"
