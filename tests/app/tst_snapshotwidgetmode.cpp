// The widget picture modes as the real executable runs them, with no display at all.
#include "TarnwickProcess.h"

#include <QCryptographicHash>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

namespace {

using Run = tw::test::ProcessRun;

// No platform chosen and no display, or one nobody answers at: the mode must pick the offscreen
// platform itself.
Run runTarnwick(const QStringList& arguments, const QString& home,
                const QString& twkTime = QString(), const QString& display = QString()) {
    QProcessEnvironment environment = tw::test::isolatedEnvironment(home, twkTime);
    environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    environment.remove(QStringLiteral("DISPLAY"));
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    if (!display.isEmpty()) {
        environment.insert(QStringLiteral("DISPLAY"), display);
    }
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
    QTest::addColumn<QString>("errStart"); // the reason a refused picture gives on stderr
    QTest::addColumn<QString>("display");
    const QString bogusDisplay = QStringLiteral(":9871");
    const QString clock = QStringLiteral("--kind");
    QTest::newRow("analog clock on light glass")
        << QStringList{clock,
                       QStringLiteral("clock"),
                       QStringLiteral("--size"),
                       QStringLiteral("large"),
                       QStringLiteral("--style"),
                       QStringLiteral("analog"),
                       QStringLiteral("--light")}
        << " kind=clock size=large" << 0 << QSize(496, 496) << QString() << bogusDisplay;
    QTest::newRow("default size, one pixel a point")
        << QStringList{clock, QStringLiteral("clock"), QStringLiteral("--scale"),
                       QStringLiteral("1")}
        << " kind=clock size=wide" << 0 << QSize(248, 140) << QString() << QString();
    QTest::newRow("tile scale and settings") << QStringList{clock,
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
                                             << " kind=countdown size=wideTall" << 0
                                             << QSize(468 + 44, 306 + 44) << QString() << QString();
    QTest::newRow("generic face") << QStringList{clock, QStringLiteral("weather"),
                                                 QStringLiteral("--size"), QStringLiteral("grand")}
                                  << " kind=weather size=grand" << 0 << QSize(928, 712) << QString()
                                  << QString();
    QTest::newRow("unknown theme")
        << QStringList{clock, QStringLiteral("weather"), QStringLiteral("--theme"),
                       QStringLiteral("nope")}
        << " kind=weather size=wide" << 1 << QSize(0, 0)
        << QStringLiteral("tarnwick: unknown --theme \"nope\"; the themes are midnight, ")
        << QString();
    QTest::newRow("style the clock does not draw")
        << QStringList{clock, QStringLiteral("clock"), QStringLiteral("--style"),
                       QStringLiteral("sundial")}
        << " kind=clock size=wide" << 1 << QSize(0, 0)
        << QStringLiteral("tarnwick: clock has no --style \"sundial\"; its styles are digital, "
                          "analog.\n")
        << QString();
    QTest::newRow("style on a kind with one look")
        << QStringList{clock, QStringLiteral("weather"), QStringLiteral("--style"),
                       QStringLiteral("analog")}
        << " kind=weather size=wide" << 1 << QSize(0, 0)
        << QStringLiteral("tarnwick: weather has only one look") << QString();
    QTest::newRow("scale that is no number")
        << QStringList{clock, QStringLiteral("clock"), QStringLiteral("--scale"),
                       QStringLiteral("two")}
        << " kind=clock size=wide" << 1 << QSize(0, 0)
        << QStringLiteral("tarnwick: --scale needs a number of pixels per point, not \"two\".\n")
        << bogusDisplay;
    QTest::newRow("unknown kind") << QStringList{clock, QStringLiteral("nope"),
                                                 QStringLiteral("--size"), QStringLiteral("large")}
                                  << " kind=nope size=large" << 1 << QSize(0, 0)
                                  << QStringLiteral(
                                         "tarnwick: unknown --kind \"nope\"; tarnwick --list-sizes")
                                  << QString();
    QTest::newRow("size the kind does not allow")
        << QStringList{clock, QStringLiteral("clock"), QStringLiteral("--size"),
                       QStringLiteral("grand")}
        << " kind=clock size=grand" << 1 << QSize(0, 0)
        << QStringLiteral("tarnwick: clock has no size grand; it has small, wide, large")
        << QString();
    QTest::newRow("no such size")
        << QStringList{clock, QStringLiteral("clock"), QStringLiteral("--size"),
                       QStringLiteral("Large")}
        << " kind=clock size=Large" << 1 << QSize(0, 0)
        << QStringLiteral("tarnwick: unknown --size \"Large\"; the sizes are small, ") << QString();
    QTest::newRow("no kind") << QStringList{} << " kind= size=" << 1 << QSize(0, 0)
                             << QStringLiteral("tarnwick: --kind is missing; ") << QString();
}

void TestSnapshotWidgetMode::widgetPictures() {
    QFETCH(QStringList, modifiers);
    QFETCH(QString, expectedTail);
    QFETCH(int, exitCode);
    QFETCH(QSize, pixels);
    QFETCH(QString, errStart);
    QFETCH(QString, display);
    QVERIFY(m_dir.isValid());
    const QString path = m_dir.filePath(
        QString::fromLatin1(QTest::currentDataTag()).replace(QLatin1Char(' '), QLatin1Char('-')) +
        QStringLiteral(".png"));
    const Run run = runTarnwick(QStringList{QStringLiteral("--snapshot-widget"), path} + modifiers,
                                m_dir.path(), QString(), display);
    const QString ok = exitCode == 0 ? QStringLiteral("true") : QStringLiteral("false");
    QCOMPARE(run.out,
             QStringLiteral("snapshot-widget ok=%1 path=%2%3\n").arg(ok, path, expectedTail));
    QCOMPARE(run.exitCode, exitCode);
    QVERIFY2(errStart.isEmpty() ? run.err.isEmpty() : run.err.startsWith(errStart),
             qPrintable(run.err));
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
    QVERIFY2(failed.err.startsWith(QStringLiteral("tarnwick: cannot write %1: ").arg(nowhere)),
             qPrintable(failed.err));

    const Run themeless = runTarnwick({QStringLiteral("--snapshot-gallery"), path,
                                       QStringLiteral("--theme"), QStringLiteral("x")},
                                      m_dir.path());
    QCOMPARE(themeless.exitCode, 1);
    QVERIFY(themeless.err.startsWith(QStringLiteral("tarnwick: unknown --theme \"x\"")));
}

QTEST_GUILESS_MAIN(TestSnapshotWidgetMode)
#include "tst_snapshotwidgetmode.moc"
