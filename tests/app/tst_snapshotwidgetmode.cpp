// The widget picture modes as the real executable runs them, with no display at all.
#include "TarnwickProcess.h"

#include <QCryptographicHash>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

namespace {

using Run = tw::test::ProcessRun;

// No display and no platform chosen: the mode must pick the offscreen platform itself.
Run runTarnwick(const QStringList& arguments, const QString& home,
                const QString& twkTime = QString()) {
    QProcessEnvironment environment = tw::test::isolatedEnvironment(home, twkTime);
    environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    environment.remove(QStringLiteral("DISPLAY"));
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    return tw::test::runProcess(QStringLiteral(TARNWICK_EXECUTABLE), arguments, environment);
}

QByteArray digest(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly)
               ? QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256)
               : QByteArray();
}

} // namespace

class TestSnapshotWidgetMode : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void widgetPictures_data();
    void widgetPictures();
    void pinnedTimeMakesPicturesRepeatable();
    void gallerySheet();

private:
    QTemporaryDir m_dir;
};

void TestSnapshotWidgetMode::widgetPictures_data() {
    QTest::addColumn<QStringList>("modifiers");
    QTest::addColumn<QString>("expectedTail"); // the line after "path=…"
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QSize>("pixels");
    const QString clock = QStringLiteral("--kind");
    QTest::newRow("analog clock on light glass")
        << QStringList{clock,
                       QStringLiteral("clock"),
                       QStringLiteral("--size"),
                       QStringLiteral("large"),
                       QStringLiteral("--style"),
                       QStringLiteral("analog"),
                       QStringLiteral("--light")}
        << " kind=clock size=large" << 0 << QSize(496, 496);
    QTest::newRow("default size, one pixel a point")
        << QStringList{clock, QStringLiteral("clock"), QStringLiteral("--scale"),
                       QStringLiteral("1")}
        << " kind=clock size=wide" << 0 << QSize(248, 140);
    QTest::newRow("tile scale and settings")
        << QStringList{clock,
                       QStringLiteral("countdown"),
                       QStringLiteral("--size"),
                       QStringLiteral("wideTall"),
                       QStringLiteral("--scale"),
                       QStringLiteral("1"),
                       QStringLiteral("--theme"),
                       QStringLiteral("sunset"),
                       QStringLiteral("--set"),
                       QStringLiteral("title=Launch"),
                       QStringLiteral("--set"),
                       QStringLiteral("target=2030-01-01"),
                       QStringLiteral("--set"),
                       QStringLiteral("tileScale=1.5")}
        << " kind=countdown size=wideTall" << 0 << QSize(468 + 44, 306 + 44);
    QTest::newRow("generic face, unknown theme")
        << QStringList{clock,
                       QStringLiteral("weather"),
                       QStringLiteral("--size"),
                       QStringLiteral("grand"),
                       QStringLiteral("--theme"),
                       QStringLiteral("nope")}
        << " kind=weather size=grand" << 0 << QSize(928, 712);
    QTest::newRow("unknown kind") << QStringList{clock, QStringLiteral("nope"),
                                                 QStringLiteral("--size"), QStringLiteral("large")}
                                  << " kind=nope size=large" << 1 << QSize(0, 0);
    QTest::newRow("size the kind does not allow")
        << QStringList{clock, QStringLiteral("clock"), QStringLiteral("--size"),
                       QStringLiteral("grand")}
        << " kind=clock size=grand" << 1 << QSize(0, 0);
    QTest::newRow("no such size") << QStringList{clock, QStringLiteral("clock"),
                                                 QStringLiteral("--size"), QStringLiteral("Large")}
                                  << " kind=clock size=Large" << 1 << QSize(0, 0);
    QTest::newRow("no kind") << QStringList{} << " kind= size=" << 1 << QSize(0, 0);
}

void TestSnapshotWidgetMode::widgetPictures() {
    QFETCH(QStringList, modifiers);
    QFETCH(QString, expectedTail);
    QFETCH(int, exitCode);
    QFETCH(QSize, pixels);
    QVERIFY(m_dir.isValid());
    const QString path = m_dir.filePath(
        QString::fromLatin1(QTest::currentDataTag()).replace(QLatin1Char(' '), QLatin1Char('-')) +
        QStringLiteral(".png"));
    const Run run = runTarnwick(QStringList{QStringLiteral("--snapshot-widget"), path} + modifiers,
                                m_dir.path());
    const QString ok = exitCode == 0 ? QStringLiteral("true") : QStringLiteral("false");
    QCOMPARE(run.out,
             QStringLiteral("snapshot-widget ok=%1 path=%2%3\n").arg(ok, path, expectedTail));
    QCOMPARE(run.exitCode, exitCode);
    const QImage image(path);
    QCOMPARE(image.size(), pixels);
    if (!image.isNull()) {
        // Transparent around the tile: the panel's corners hold neither glass nor shadow.
        QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
        QCOMPARE(qAlpha(image.pixel(image.width() - 1, image.height() - 1)), 0);
        QVERIFY(qAlpha(image.pixel(image.width() / 2, image.height() / 2)) > 0);
    }
}

void TestSnapshotWidgetMode::pinnedTimeMakesPicturesRepeatable() {
    auto render = [&](const QString& name, const QString& time) {
        const QString path = m_dir.filePath(name);
        const Run run =
            runTarnwick({QStringLiteral("--snapshot-widget"), path, QStringLiteral("--kind"),
                         QStringLiteral("clock"), QStringLiteral("--size"), QStringLiteral("wide"),
                         QStringLiteral("--scale"), QStringLiteral("1")},
                        m_dir.path(), time);
        return run.exitCode == 0 ? digest(path) : QByteArray();
    };
    const QByteArray first = render(QStringLiteral("a.png"), QStringLiteral("7:30"));
    QVERIFY(!first.isEmpty());
    QCOMPARE(render(QStringLiteral("b.png"), QStringLiteral("7:30")), first);
    QVERIFY(render(QStringLiteral("c.png"), QStringLiteral("8:45")) != first);
}

void TestSnapshotWidgetMode::gallerySheet() {
    const QString path = m_dir.filePath(QStringLiteral("gallery.png"));
    const Run run = runTarnwick({QStringLiteral("--snapshot-gallery"), path,
                                 QStringLiteral("--scale"), QStringLiteral("1")},
                                m_dir.path());
    QCOMPARE(run.out, QStringLiteral("snapshot-gallery ok=true path=%1\n").arg(path));
    QCOMPARE(run.exitCode, 0);
    const QImage sheet(path);
    QCOMPARE(sheet.width(), 1480);
    QVERIFY(sheet.height() > 1000);

    const QString nowhere = m_dir.filePath(QStringLiteral("missing/dir/gallery.png"));
    const Run failed = runTarnwick({QStringLiteral("--snapshot-gallery"), nowhere}, m_dir.path());
    QCOMPARE(failed.out, QStringLiteral("snapshot-gallery ok=false path=%1\n").arg(nowhere));
    QCOMPARE(failed.exitCode, 1);
}

QTEST_GUILESS_MAIN(TestSnapshotWidgetMode)
#include "tst_snapshotwidgetmode.moc"
