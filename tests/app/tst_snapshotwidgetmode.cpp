// The widget picture modes as the real executable runs them, with no display at all.
#include "TarnwickProcess.h"
#include "TestRows.h"

#include <QCryptographicHash>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using tw::test::matches;
using tw::test::row;
using tw::test::words;

class TestSnapshotWidgetMode : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;

    // `mode` with a picture named after the data row, then `modifiers`. No platform chosen and
    // no display, or one nobody answers at: the mode must pick the offscreen platform itself.
    tw::test::ProcessRun snapshot(const QString& mode, QString* path, const QString& modifiers,
                                  const QString& time = {}, const QString& display = {}) {
        *path = m_dir.filePath(
            mode.mid(2) +
            QString::fromLatin1(QTest::currentDataTag())
                .replace(QRegularExpression(QStringLiteral("[ ,]")), QStringLiteral("-")) +
            QStringLiteral(".png"));
        return tw::test::runTarnwick(QStringLiteral(TARNWICK_EXECUTABLE),
                                     QStringList{mode, *path} + words(modifiers), m_dir.path(),
                                     time, display);
    }

private Q_SLOTS:
    // The err column is matched with "…" standing for anything.
    void widgetPictures_data() {
        QTest::addColumn<QString>("modifiers");
        QTest::addColumn<QString>("expectedTail"); // the line after "path=…"
        QTest::addColumn<QSize>("pixels");
        QTest::addColumn<QString>("err");
        QTest::addColumn<QString>("display");
        const QString bogus = QStringLiteral(":9871");
        const QString none;
        const QSize no(0, 0);
        row("analog clock on light glass", "--kind clock --size large --style analog --light",
            " kind=clock size=large", QSize(496, 496), "", bogus);
        row("default size, one pixel a point", "--kind clock --scale 1", " kind=clock size=wide",
            QSize(248, 140), "", none);
        row("tile scale and settings",
            "--kind countdown --size wideTall --scale 1 --theme sunset --set title=Launch --set "
            "target=2030-01-01 --set tileScale=1.5",
            " kind=countdown size=wideTall", QSize(468 + 44, 306 + 44), "", none);
        row("largest size", "--kind weather --size grand", " kind=weather size=grand",
            QSize(928, 712), "", none);
        row("unknown theme", "--kind weather --theme nope", " kind=weather size=wide", no,
            "tarnwick: unknown --theme \"nope\"; the themes are midnight, …", none);
        row("style the clock does not draw", "--kind clock --style sundial",
            " kind=clock size=wide", no,
            "tarnwick: clock has no --style \"sundial\"; its styles are digital, analog.\n", none);
        row("style on a kind with one look", "--kind weather --style analog",
            " kind=weather size=wide", no, "tarnwick: weather has only one look…", none);
        row("scale that is no number", "--kind clock --scale two", " kind=clock size=wide", no,
            "tarnwick: --scale needs a number of pixels per point, not \"two\".\n", bogus);
        row("unknown kind", "--kind nope --size large", " kind=nope size=large", no,
            "tarnwick: unknown --kind \"nope\"; tarnwick --list-sizes…", none);
        row("size the kind does not allow", "--kind clock --size grand", " kind=clock size=grand",
            no, "tarnwick: clock has no size grand; it has small, wide, large…", none);
        row("no such size", "--kind clock --size Large", " kind=clock size=Large", no,
            "tarnwick: unknown --size \"Large\"; the sizes are small, …", none);
        row("no kind", "", " kind= size=", no, "tarnwick: --kind is missing; …", none);
        row("a custom widget template with sample values", "--template crypto --scale 1",
            " template=crypto size=wide", QSize(248, 140), "", none);
        row("unknown template", "--template nope", " template=nope size=", no,
            "tarnwick: unknown --template \"nope\"; the templates are blank, system, …", none);
    }
    void widgetPictures() {
        QFETCH(QString, modifiers);
        QFETCH(QString, expectedTail);
        QFETCH(QSize, pixels);
        QFETCH(QString, err);
        QFETCH(QString, display);
        QString path;
        const auto run =
            snapshot(QStringLiteral("--snapshot-widget"), &path, modifiers, {}, display);
        const bool ok = err.isEmpty();
        QCOMPARE(run.out, QStringLiteral("snapshot-widget ok=%1 path=%2%3\n")
                              .arg(ok ? QStringLiteral("true") : QStringLiteral("false"), path,
                                   expectedTail));
        QCOMPARE(run.exitCode, ok ? 0 : 1);
        QVERIFY2(matches(run.err, err), qPrintable(run.err));
        const QImage image(path);
        QCOMPARE(image.size(), pixels);
        if (!image.isNull()) {
            // Transparent around the tile: the panel's corners hold neither glass nor shadow.
            QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
            QCOMPARE(qAlpha(image.pixel(image.width() - 1, image.height() - 1)), 0);
            QVERIFY(qAlpha(image.pixel(image.width() / 2, image.height() / 2)) > 0);
        }
    }

    void glassPictures_data() {
        QTest::addColumn<QString>("modifiers"); // BACKDROP stands for a plain blue picture
        QTest::addColumn<QString>("size");
        QTest::addColumn<QSize>("pixels");
        QTest::addColumn<QString>("err");
        row("stripes under a large tile", "", "large", QSize(496, 496), "");
        row("light, frosted and wide at 1x over a picture",
            "--size wide --frost 0.5 --light --scale 1 --backdrop BACKDROP", "wide",
            QSize(248, 140), "");
        row("no such picture", "--backdrop /nonexistent/picture.png", "large", QSize(0, 0),
            "tarnwick: cannot read --backdrop /nonexistent/picture.png: …");
        row("frost that is no number", "--frost much", "large", QSize(0, 0),
            "tarnwick: --frost needs a number from 0 to 1, not \"much\".\n");
    }
    void glassPictures() {
        QFETCH(QString, modifiers);
        QFETCH(QString, size);
        QFETCH(QSize, pixels);
        QFETCH(QString, err);
        const QRgb blue = qRgb(40, 90, 200);
        const QString backdrop = m_dir.filePath(QStringLiteral("blue.png"));
        QImage plain(64, 40, QImage::Format_RGB32);
        plain.fill(blue);
        QVERIFY(plain.save(backdrop));
        QString path;
        const auto run = snapshot(QStringLiteral("--snapshot-glass"), &path,
                                  QString(modifiers).replace(QStringLiteral("BACKDROP"), backdrop));
        const bool ok = err.isEmpty();
        QCOMPARE(run.out,
                 QStringLiteral("snapshot-glass ok=%1 path=%2 size=%3\n")
                     .arg(ok ? QStringLiteral("true") : QStringLiteral("false"), path, size));
        QCOMPARE(run.exitCode, ok ? 0 : 1);
        QVERIFY2(matches(run.err, err), qPrintable(run.err));
        const QImage image(path);
        QCOMPARE(image.size(), pixels);
        if (!image.isNull() && modifiers.contains(QStringLiteral("BACKDROP"))) {
            // The picture shows around the tile; the glass over it tints it.
            QCOMPARE(image.pixel(0, 0), blue);
            QVERIFY(image.pixel(image.width() / 2, image.height() / 2) != blue);
        }
    }

    // The scene modes over a plain blue --wallpaper: it shows where no tile stands, and the
    // drawing covers it where one does.
    void scenePictures_data() {
        QTest::addColumn<QString>("arguments"); // OUT and BLUE stand for the picture and wallpaper
        QTest::addColumn<QString>("line");
        QTest::addColumn<QSize>("pixels");
        QTest::addColumn<QList<QPoint>>("blueAt");
        QTest::addColumn<QList<QPoint>>("unlike"); // pairs of pixels that must differ
        using Points = QList<QPoint>;
        row("hero: the liquid tile is no frosted one",
            "--snapshot-glass-hero OUT --wallpaper BLUE --scale 1",
            "snapshot-glass-hero ok=true path=OUT style=frosted,clear,liquid dark=true",
            QSize(1280, 720), Points{{4, 4}, {640, 700}},
            Points{{409, 310}, {1124, 310}, {409, 310}, {4, 4}});
        row("hero: one look, light",
            "--snapshot-glass-hero OUT --style liquid --light --wallpaper BLUE --scale 0.5",
            "snapshot-glass-hero ok=true path=OUT style=liquid dark=false", QSize(640, 360),
            Points{{2, 2}}, Points{{320, 150}, {2, 2}});
        row("hero: unknown look", "--snapshot-glass-hero OUT --style milky",
            "snapshot-glass-hero ok=false path=OUT style= dark=true", QSize(), Points{}, Points{});
        row("glass intro: unknown look", "--snapshot-glassintro OUT --style milky",
            "snapshot-glassintro ok=false path=OUT dark=true", QSize(), Points{}, Points{});
        row("lock: the wallpaper around the tiles",
            "--snapshot-lock OUT --wallpaper BLUE --scale 0.5 --style liquid",
            "snapshot-lock ok=true path=OUT style=liquid dark=true", QSize(720, 450),
            Points{{108, 270}, {612, 270}}, Points{{100, 50}, {108, 270}});
        row("lock pane: the preview shows the lock screen",
            "--snapshot-lockpane OUT --wallpaper BLUE --scale 1 --light",
            "snapshot-lockpane ok=true path=OUT dark=false", QSize(760, 480), Points{{79, 343}},
            Points{{2, 2}, {79, 343}});
        row("glass intro: a live preview of each look",
            "--snapshot-glassintro OUT --wallpaper BLUE --scale 1",
            "snapshot-glassintro ok=true path=OUT dark=true", QSize(880, 436),
            Points{{50, 200}, {830, 200}}, Points{{95, 240}, {649, 240}});
        row("live backdrop: the frames move", "--snapshot-livebg OUT lagoon --scale 0.5 --start 5",
            "snapshot-livebg ok=true path=OUT scene=lagoon frames=6", QSize(508, 246), Points{},
            Points{{88, 38}, {254, 38}, {88, 38}, {88, 160}});
        row("live backdrop: a still picture", "--snapshot-livebg OUT dunes",
            "snapshot-livebg ok=false path=OUT scene=dunes frames=0", QSize(), Points{}, Points{});
        row("browse: the gallery page, light", "--snapshot-browse OUT --scale 1",
            "snapshot-browse ok=true path=OUT dark=false", QSize(980, 680), Points{},
            Points{{2, 340}, {100, 200}});
        row("browse: dark at 2x", "--snapshot-browse OUT --dark",
            "snapshot-browse ok=true path=OUT dark=true", QSize(1960, 1360), Points{},
            Points{{4, 680}, {200, 400}});
        row("browse: --light wins", "--snapshot-browse OUT --dark --light --scale 0.5",
            "snapshot-browse ok=true path=OUT dark=false", QSize(490, 340), Points{}, Points{});
        row("browse: scale that is no number", "--snapshot-browse OUT --scale two",
            "snapshot-browse ok=false path=OUT dark=false", QSize(), Points{}, Points{});
        row("settings: the lock page shows its preview over the wallpaper",
            "--snapshot-settings OUT lock --wallpaper BLUE --scale 1",
            "snapshot-settings ok=true path=OUT dark=true page=lock", QSize(980, 680),
            Points{{300, 400}, {400, 450}}, Points{{10, 300}, {600, 300}});
        row("general, light: the sidebar beside the page", "--snapshot-general OUT --light",
            "snapshot-general ok=true path=OUT dark=false page=general", QSize(1960, 1360),
            Points{}, Points{{20, 600}, {1200, 600}});
        row("kit: every control on cards over the window's ground", "--snapshot-kit OUT --scale 1",
            "snapshot-kit ok=true path=OUT dark=true", QSize(980, 1106), Points{},
            Points{{10, 10}, {100, 150}, {850, 240}, {700, 240}});
        row("icon: the program's mark on a clear ground", "--icon OUT --scale 0.5",
            "icon ok=true path=OUT size=256", QSize(256, 256), Points{},
            Points{{128, 128}, {0, 0}});
        row("general at half a pixel a point: the whole window, smaller",
            "--snapshot-general OUT --scale 0.5",
            "snapshot-general ok=true path=OUT dark=true page=general", QSize(490, 340), Points{},
            Points{{20, 300}, {150, 300}});
        row("tutorial: the guide's card over the veiled window, light",
            "--snapshot-tutorial OUT 2 --light --scale 1",
            "snapshot-tutorial ok=true path=OUT dark=false step=2", QSize(980, 680), Points{},
            Points{{262, 530}, {100, 530}});
        row("tutorial: no such step", "--snapshot-tutorial OUT 4",
            "snapshot-tutorial ok=false path=OUT dark=true step=4", QSize(), Points{}, Points{});
        row("custom editor: the text beside the previews over a piece of desktop",
            "--snapshot-customeditor OUT --template system --light --scale 1",
            "snapshot-customeditor ok=true path=OUT dark=false template=system", QSize(980, 680),
            Points{}, Points{{300, 300}, {800, 200}, {10, 300}, {800, 200}});
        row("custom editor: no such template", "--snapshot-customeditor OUT --template nope",
            "snapshot-customeditor ok=false path=OUT dark=true template=nope", QSize(), Points{},
            Points{});
        row("config: unknown section", "--snapshot-config OUT nowhere",
            "snapshot-config ok=false path=OUT dark=true page=nowhere", QSize(), Points{},
            Points{});
        row("hero: unreadable wallpaper", "--snapshot-glass-hero OUT --wallpaper /nonexistent.png",
            "snapshot-glass-hero ok=false path=OUT style=frosted,clear,liquid dark=true", QSize(),
            Points{}, Points{});
    }
    void scenePictures() {
        QFETCH(QString, arguments);
        QFETCH(QString, line);
        QFETCH(QSize, pixels);
        QFETCH(QList<QPoint>, blueAt);
        QFETCH(QList<QPoint>, unlike);
        const QRgb blue = qRgb(40, 90, 200);
        const QString wallpaper = m_dir.filePath(QStringLiteral("wall-blue.png"));
        QImage plain(64, 40, QImage::Format_RGB32);
        plain.fill(blue);
        QVERIFY(plain.save(wallpaper));
        const QString path = m_dir.filePath(QStringLiteral("scene-%1.png")
                                                .arg(QString::fromLatin1(QTest::currentDataTag()))
                                                .replace(QLatin1Char(' '), QLatin1Char('-')));
        QStringList list = words(arguments);
        list.replaceInStrings(QStringLiteral("OUT"), path);
        list.replaceInStrings(QStringLiteral("BLUE"), wallpaper);
        const auto run =
            tw::test::runTarnwick(QStringLiteral(TARNWICK_EXECUTABLE), list, m_dir.path());
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

    void pinnedTimeMakesPicturesRepeatable() {
        const auto render = [&](const QString& time) {
            QString path;
            const auto run = snapshot(QStringLiteral("--snapshot-widget"), &path,
                                      QStringLiteral("--kind clock --size wide --scale 1"), time);
            QFile file(path);
            return run.exitCode == 0 && file.open(QIODevice::ReadOnly)
                       ? QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256)
                       : QByteArray();
        };
        const QByteArray first = render(QStringLiteral("7:30"));
        QVERIFY(!first.isEmpty());
        QCOMPARE(render(QStringLiteral("7:30")), first);
        QVERIFY(render(QStringLiteral("8:45")) != first);
    }

    void gallerySheet() {
        const QString mode = QStringLiteral("--snapshot-gallery");
        QString path;
        const auto run = snapshot(mode, &path, QStringLiteral("--scale 1"));
        QCOMPARE(run.out, QStringLiteral("snapshot-gallery ok=true path=%1\n").arg(path));
        QCOMPARE(run.exitCode, 0);
        const QImage sheet(path);
        QCOMPARE(sheet.width(), 1480);
        QVERIFY(sheet.height() > 1000);

        const QString nowhere = m_dir.filePath(QStringLiteral("missing/dir/gallery.png"));
        const auto failed = tw::test::runTarnwick(QStringLiteral(TARNWICK_EXECUTABLE),
                                                  {mode, nowhere}, m_dir.path());
        QCOMPARE(failed.out, QStringLiteral("snapshot-gallery ok=false path=%1\n").arg(nowhere));
        QCOMPARE(failed.exitCode, 1);
        QVERIFY2(matches(failed.err, QStringLiteral("tarnwick: cannot write %1: …").arg(nowhere)),
                 qPrintable(failed.err));
        const auto themeless = snapshot(mode, &path, QStringLiteral("--theme x"));
        QCOMPARE(themeless.exitCode, 1);
        QVERIFY(matches(themeless.err, QStringLiteral("tarnwick: unknown --theme \"x\"…")));
    }
};

QTEST_GUILESS_MAIN(TestSnapshotWidgetMode)
#include "tst_snapshotwidgetmode.moc"
