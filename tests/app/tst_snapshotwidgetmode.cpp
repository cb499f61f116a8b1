// The widget picture modes as the real executable runs them, with no display at all.
#include "TarnwickProcess.h"

#include <QCryptographicHash>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

using tw::test::words;

namespace {

// No platform chosen and no display, or one nobody answers at: the mode must pick the offscreen
// platform itself.
tw::test::ProcessRun runTarnwick(const QStringList& arguments, const QString& home,
                                 const QString& twkTime = {}, const QString& display = {}) {
    return tw::test::runTarnwick(QStringLiteral(TARNWICK_EXECUTABLE), arguments, home, twkTime,
                                 display);
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
    void glassPictures_data();
    void glassPictures();
    void scenePictures_data();
    void scenePictures();

private:
    QTemporaryDir m_dir;
};

void TestSnapshotWidgetMode::widgetPictures_data() {
    QTest::addColumn<QString>("modifiers");
    QTest::addColumn<QString>("expectedTail"); // the line after "path=…"
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QSize>("pixels");
    QTest::addColumn<QString>("errStart"); // the reason a refused picture gives on stderr
    QTest::addColumn<QString>("display");
    const QString bogusDisplay = QStringLiteral(":9871");
    const QSize none(0, 0);
    QTest::newRow("analog clock on light glass")
        << "--kind clock --size large --style analog --light"
        << " kind=clock size=large" << 0 << QSize(496, 496) << QString() << bogusDisplay;
    QTest::newRow("default size, one pixel a point")
        << "--kind clock --scale 1"
        << " kind=clock size=wide" << 0 << QSize(248, 140) << QString() << QString();
    QTest::newRow("tile scale and settings")
        << "--kind countdown --size wideTall --scale 1 --theme sunset --set title=Launch "
           "--set target=2030-01-01 --set tileScale=1.5"
        << " kind=countdown size=wideTall" << 0 << QSize(468 + 44, 306 + 44) << QString()
        << QString();
    QTest::newRow("generic face") << "--kind weather --size grand"
                                  << " kind=weather size=grand" << 0 << QSize(928, 712) << QString()
                                  << QString();
    QTest::newRow("unknown theme")
        << "--kind weather --theme nope"
        << " kind=weather size=wide" << 1 << none
        << "tarnwick: unknown --theme \"nope\"; the themes are midnight, " << QString();
    QTest::newRow("style the clock does not draw")
        << "--kind clock --style sundial"
        << " kind=clock size=wide" << 1 << none
        << "tarnwick: clock has no --style \"sundial\"; its styles are digital, analog.\n"
        << QString();
    QTest::newRow("style on a kind with one look")
        << "--kind weather --style analog"
        << " kind=weather size=wide" << 1 << none << "tarnwick: weather has only one look"
        << QString();
    QTest::newRow("scale that is no number")
        << "--kind clock --scale two"
        << " kind=clock size=wide" << 1 << none
        << "tarnwick: --scale needs a number of pixels per point, not \"two\".\n"
        << bogusDisplay;
    QTest::newRow("unknown kind") << "--kind nope --size large"
                                  << " kind=nope size=large" << 1 << none
                                  << "tarnwick: unknown --kind \"nope\"; tarnwick --list-sizes"
                                  << QString();
    QTest::newRow("size the kind does not allow")
        << "--kind clock --size grand"
        << " kind=clock size=grand" << 1 << none
        << "tarnwick: clock has no size grand; it has small, wide, large" << QString();
    QTest::newRow("no such size") << "--kind clock --size Large"
                                  << " kind=clock size=Large" << 1 << none
                                  << "tarnwick: unknown --size \"Large\"; the sizes are small, "
                                  << QString();
    QTest::newRow("no kind") << ""
                             << " kind= size=" << 1 << none << "tarnwick: --kind is missing; "
                             << QString();
}

void TestSnapshotWidgetMode::widgetPictures() {
    QFETCH(QString, modifiers);
    QFETCH(QString, expectedTail);
    QFETCH(int, exitCode);
    QFETCH(QSize, pixels);
    QFETCH(QString, errStart);
    QFETCH(QString, display);
    QVERIFY(m_dir.isValid());
    const QString path = m_dir.filePath(
        QString::fromLatin1(QTest::currentDataTag()).replace(QLatin1Char(' '), QLatin1Char('-')) +
        QStringLiteral(".png"));
    const auto run =
        runTarnwick(QStringList{QStringLiteral("--snapshot-widget"), path} + words(modifiers),
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

void TestSnapshotWidgetMode::glassPictures_data() {
    QTest::addColumn<QString>("modifiers"); // BACKDROP stands for a plain blue picture
    QTest::addColumn<QString>("size");
    QTest::addColumn<QSize>("pixels");
    QTest::addColumn<QString>("errStart");
    QTest::newRow("stripes under a large tile") << ""
                                                << "large" << QSize(496, 496) << QString();
    QTest::newRow("light, frosted and wide at 1x over a picture")
        << "--size wide --frost 0.5 --light --scale 1 --backdrop BACKDROP"
        << "wide" << QSize(248, 140) << QString();
    QTest::newRow("no such picture")
        << "--backdrop /nonexistent/picture.png"
        << "large" << QSize(0, 0) << "tarnwick: cannot read --backdrop /nonexistent/picture.png: ";
    QTest::newRow("frost that is no number")
        << "--frost much"
        << "large" << QSize(0, 0)
        << "tarnwick: --frost needs a number from 0 to 1, not \"much\".\n";
}

void TestSnapshotWidgetMode::glassPictures() {
    QFETCH(QString, modifiers);
    QFETCH(QString, size);
    QFETCH(QSize, pixels);
    QFETCH(QString, errStart);
    QVERIFY(m_dir.isValid());
    const QRgb blue = qRgb(40, 90, 200);
    const QString backdrop = m_dir.filePath(QStringLiteral("blue.png"));
    QImage plain(64, 40, QImage::Format_RGB32);
    plain.fill(blue);
    QVERIFY(plain.save(backdrop));
    const QString path = m_dir.filePath(QStringLiteral("glass-") +
                                        QString::fromLatin1(QTest::currentDataTag())
                                            .replace(QLatin1Char(' '), QLatin1Char('-'))
                                            .replace(QLatin1Char(','), QLatin1Char('-')) +
                                        QStringLiteral(".png"));
    const auto run = runTarnwick(QStringList{QStringLiteral("--snapshot-glass"), path} +
                                     words(modifiers.replace(QStringLiteral("BACKDROP"), backdrop)),
                                 m_dir.path());
    const bool ok = errStart.isEmpty();
    QCOMPARE(run.out, QStringLiteral("snapshot-glass ok=%1 path=%2 size=%3\n")
                          .arg(ok ? QStringLiteral("true") : QStringLiteral("false"), path, size));
    QCOMPARE(run.exitCode, ok ? 0 : 1);
    QVERIFY2(ok ? run.err.isEmpty() : run.err.startsWith(errStart), qPrintable(run.err));
    const QImage image(path);
    QCOMPARE(image.size(), pixels);
    if (!image.isNull() && modifiers.contains(backdrop)) {
        // The picture shows around the tile; the glass over it tints it.
        QCOMPARE(image.pixel(0, 0), blue);
        QVERIFY(image.pixel(image.width() / 2, image.height() / 2) != blue);
    }
}

// The scene modes over a plain blue --wallpaper: it shows where no tile stands, and the drawing
// covers it where one does.
void TestSnapshotWidgetMode::scenePictures_data() {
    QTest::addColumn<QString>("arguments"); // OUT and BLUE stand for the picture and the wallpaper
    QTest::addColumn<QString>("line");
    QTest::addColumn<QSize>("pixels");
    QTest::addColumn<QList<QPoint>>("blueAt");
    QTest::addColumn<QList<QPoint>>("unlike"); // pairs of pixels that must differ
    QTest::newRow("hero: the liquid tile is no frosted one")
        << "--snapshot-glass-hero OUT --wallpaper BLUE --scale 1"
        << "snapshot-glass-hero ok=true path=OUT style=frosted,clear,liquid dark=true"
        << QSize(1280, 720) << QList<QPoint>{{4, 4}, {640, 700}}
        << QList<QPoint>{{409, 310}, {1124, 310}, {409, 310}, {4, 4}};
    QTest::newRow("hero: one look, light")
        << "--snapshot-glass-hero OUT --style liquid --light --wallpaper BLUE --scale 0.5"
        << "snapshot-glass-hero ok=true path=OUT style=liquid dark=false" << QSize(640, 360)
        << QList<QPoint>{{2, 2}} << QList<QPoint>{{320, 150}, {2, 2}};
    QTest::newRow("hero: unknown look") << "--snapshot-glass-hero OUT --style milky"
                                        << "snapshot-glass-hero ok=false path=OUT style= dark=true"
                                        << QSize() << QList<QPoint>{} << QList<QPoint>{};
    QTest::newRow("lock: the wallpaper around the tiles")
        << "--snapshot-lock OUT --wallpaper BLUE --scale 0.5 --style liquid"
        << "snapshot-lock ok=true path=OUT style=liquid dark=true" << QSize(720, 450)
        << QList<QPoint>{{108, 270}, {612, 270}} << QList<QPoint>{{100, 50}, {108, 270}};
    QTest::newRow("lock pane: the preview shows the lock screen")
        << "--snapshot-lockpane OUT --wallpaper BLUE --scale 1 --light"
        << "snapshot-lockpane ok=true path=OUT dark=false" << QSize(760, 480)
        << QList<QPoint>{{79, 343}} << QList<QPoint>{{2, 2}, {79, 343}};
    QTest::newRow("glass intro: a live preview of each look")
        << "--snapshot-glassintro OUT --wallpaper BLUE --scale 1"
        << "snapshot-glassintro ok=true path=OUT dark=true" << QSize(880, 436)
        << QList<QPoint>{{50, 200}, {830, 200}} << QList<QPoint>{{95, 240}, {649, 240}};
    QTest::newRow("hero: unreadable wallpaper")
        << "--snapshot-glass-hero OUT --wallpaper /nonexistent.png"
        << "snapshot-glass-hero ok=false path=OUT style=frosted,clear,liquid dark=true" << QSize()
        << QList<QPoint>{} << QList<QPoint>{};
}

void TestSnapshotWidgetMode::scenePictures() {
    QFETCH(QString, arguments);
    QFETCH(QString, line);
    QFETCH(QSize, pixels);
    QFETCH(QList<QPoint>, blueAt);
    QFETCH(QList<QPoint>, unlike);
    QVERIFY(m_dir.isValid());
    const QRgb blue = qRgb(40, 90, 200);
    const QString wallpaper = m_dir.filePath(QStringLiteral("wall-blue.png"));
    QImage plain(64, 40, QImage::Format_RGB32);
    plain.fill(blue);
    QVERIFY(plain.save(wallpaper));
    const QString path = m_dir.filePath(QStringLiteral("scene-%1.png")
                                            .arg(QString::fromLatin1(QTest::currentDataTag()))
                                            .replace(QLatin1Char(' '), QLatin1Char('-')));
    QStringList words = tw::test::words(arguments);
    words.replaceInStrings(QStringLiteral("OUT"), path);
    words.replaceInStrings(QStringLiteral("BLUE"), wallpaper);
    const auto run = runTarnwick(words, m_dir.path());
    QCOMPARE(run.out, line.replace(QStringLiteral("OUT"), path) + QLatin1Char('\n'));
    const bool ok = pixels.isValid();
    QCOMPARE(run.exitCode, ok ? 0 : 1);
    QVERIFY2(ok == run.err.isEmpty(), qPrintable(run.err));
    const QImage image(path);
    QCOMPARE(image.size(), ok ? pixels : QSize(0, 0));
    for (const QPoint& at : blueAt) {
        QCOMPARE(image.pixel(at), blue);
    }
    for (qsizetype i = 0; i + 1 < unlike.size(); i += 2) {
        QVERIFY2(
            image.pixel(unlike.at(i)) != image.pixel(unlike.at(i + 1)),
            qPrintable(QStringLiteral("(%1, %2)").arg(unlike.at(i).x()).arg(unlike.at(i).y())));
    }
}

void TestSnapshotWidgetMode::pinnedTimeMakesPicturesRepeatable() {
    auto render = [&](const QString& name, const QString& time) {
        const QString path = m_dir.filePath(name);
        const auto run =
            runTarnwick(QStringList{QStringLiteral("--snapshot-widget"), path} +
                            words(QStringLiteral("--kind clock --size wide --scale 1")),
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
    const auto run = runTarnwick({QStringLiteral("--snapshot-gallery"), path,
                                  QStringLiteral("--scale"), QStringLiteral("1")},
                                 m_dir.path());
    QCOMPARE(run.out, QStringLiteral("snapshot-gallery ok=true path=%1\n").arg(path));
    QCOMPARE(run.exitCode, 0);
    const QImage sheet(path);
    QCOMPARE(sheet.width(), 1480);
    QVERIFY(sheet.height() > 1000);

    const QString nowhere = m_dir.filePath(QStringLiteral("missing/dir/gallery.png"));
    const auto failed = runTarnwick({QStringLiteral("--snapshot-gallery"), nowhere}, m_dir.path());
    QCOMPARE(failed.out, QStringLiteral("snapshot-gallery ok=false path=%1\n").arg(nowhere));
    QCOMPARE(failed.exitCode, 1);
    QVERIFY2(failed.err.startsWith(QStringLiteral("tarnwick: cannot write %1: ").arg(nowhere)),
             qPrintable(failed.err));

    const auto themeless = runTarnwick({QStringLiteral("--snapshot-gallery"), path,
                                        QStringLiteral("--theme"), QStringLiteral("x")},
                                       m_dir.path());
    QCOMPARE(themeless.exitCode, 1);
    QVERIFY(themeless.err.startsWith(QStringLiteral("tarnwick: unknown --theme \"x\"")));
}

QTEST_GUILESS_MAIN(TestSnapshotWidgetMode)
#include "tst_snapshotwidgetmode.moc"
