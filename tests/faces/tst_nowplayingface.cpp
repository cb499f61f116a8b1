// The now-playing face: its buttons where it draws them and only where the player offers them,
// every size kept inside its tile, and a cover that is no picture drawn as none.
#include "FaceSpill.h"
#include "faces/FaceContext.h"
#include "faces/NowPlayingFace.h"
#include "faces/TileRenderer.h"
#include "model/WidgetRegistry.h"
#include "platform/null/NullSymbolProvider.h"

#include <QBuffer>
#include <QPainter>
#include <QTest>

using namespace tw;

namespace {

const QDateTime now(QDate(2026, 3, 14), QTime(9, 0));

NowPlaying playing() {
    NowPlaying p;
    p.info = {.title = QStringLiteral("A title long enough to need two lines on most sizes"),
              .artist = QStringLiteral("Someone"),
              .album = QStringLiteral("Somewhere"),
              .isPlaying = true,
              .duration = 240,
              .position = 60,
              .positionDate = now};
    p.source = {.id = QStringLiteral("org.mpris.MediaPlayer2.x"),
                .name = QStringLiteral("X"),
                .desktopEntry = {}};
    p.canPlay = p.canPause = p.canGoNext = p.canGoPrevious = true;
    return p;
}

struct Tile {
    ReadingsBoard board;
    NullSymbolProvider symbols;
    FaceContext context;

    Tile(WidgetSize size, std::optional<NowPlaying> reading) {
        board.nowPlaying = std::move(reading);
        context = FaceContext::forKind(
            WidgetRegistry::builtInDefinition(QStringLiteral("nowplaying"))->metadata, size);
        context.now = now;
        context.symbols = &symbols;
        context.readings = &board;
    }
    QRectF content() const {
        return TileRenderer::contentRect(context.points, TileShape::of(context.metadata));
    }
    QImage picture(const QByteArray& artwork) {
        board.nowPlaying->artwork = artwork;
        QImage image(context.points.toSize(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::black);
        QPainter painter(&image);
        NowPlayingFace().paint(painter, content(), context);
        return image;
    }
};

} // namespace

class TestNowPlayingFace : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // A click on a button the size draws sends its command, if the player offers it.
    void commandAt_data() {
        QTest::addColumn<WidgetSize>("size");
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("change");
        QTest::addColumn<int>("command"); // -1: none
        const auto play = static_cast<int>(MediaCommand::playPause);
        const auto next = static_cast<int>(MediaCommand::nextTrack);
        const auto previous = static_cast<int>(MediaCommand::previousTrack);
        for (const WidgetSize size :
             {WidgetSize::small, WidgetSize::wide, WidgetSize::large, WidgetSize::wideTall}) {
            const QByteArray name = rawValue(size).toUtf8();
            QTest::addRow("%s%s", name.constData(), " play") << size << "playPause"
                                                             << "" << play;
            QTest::addRow("%s%s", name.constData(), " cover") << size << "cover"
                                                              << "" << -1;
            QTest::addRow("%s%s", name.constData(), " cannot pause") << size << "playPause"
                                                                     << "noPause" << -1;
            QTest::addRow("%s%s", name.constData(), " demo") << size << "playPause"
                                                             << "manual" << -1;
            QTest::addRow("%s%s", name.constData(), " nothing playing") << size << "playPause"
                                                                        << "nothing" << -1;
        }
        for (const WidgetSize size : {WidgetSize::wide, WidgetSize::large, WidgetSize::wideTall}) {
            const QByteArray name = rawValue(size).toUtf8();
            QTest::addRow("%s%s", name.constData(), " next") << size << "next"
                                                             << "" << next;
            QTest::addRow("%s%s", name.constData(), " previous") << size << "previous"
                                                                 << "" << previous;
            QTest::addRow("%s%s", name.constData(), " no next") << size << "next"
                                                                << "noNext" << -1;
        }
    }
    void commandAt() {
        QFETCH(WidgetSize, size);
        QFETCH(QString, button);
        QFETCH(QString, change);
        QFETCH(int, command);
        NowPlaying reading = playing();
        reading.canPause = change != QLatin1String("noPause");
        reading.canGoNext = change != QLatin1String("noNext");
        if (change == QLatin1String("nothing")) {
            reading.info = {};
        }
        Tile tile(size, reading);
        if (change == QLatin1String("manual")) {
            tile.context.settings.insert(QStringLiteral("mode"), QStringLiteral("manual"));
        }
        const NowPlayingFace::Layout l = NowPlayingFace::layout(size, tile.content());
        const QRectF box = button == QLatin1String("playPause") ? l.playPause
                           : button == QLatin1String("next")    ? l.next
                           : button == QLatin1String("cover")   ? l.cover
                                                                : l.previous;
        QVERIFY(!box.isEmpty());
        const auto got = NowPlayingFace::commandAt(tile.content(), box.center(), tile.context);
        QCOMPARE(got ? static_cast<int>(*got) : -1, command);
    }

    // Every size and state keeps inside the tile's padding.
    void staysInside_data() {
        QTest::addColumn<WidgetSize>("size");
        QTest::addColumn<QString>("state");
        for (const WidgetSize size :
             {WidgetSize::small, WidgetSize::wide, WidgetSize::large, WidgetSize::wideTall}) {
            for (const char* state : {"playing", "paused", "nothing", "unreachable", "manual"}) {
                QTest::newRow(qPrintable(rawValue(size) + QLatin1Char(' ') + QLatin1String(state)))
                    << size << QString::fromLatin1(state);
            }
        }
    }
    void staysInside() {
        QFETCH(WidgetSize, size);
        QFETCH(QString, state);
        NowPlaying reading = playing();
        reading.info.isPlaying = state != QLatin1String("paused");
        reading.available = state != QLatin1String("unreachable");
        if (state == QLatin1String("nothing") || !reading.available) {
            reading.info = {};
        }
        Tile tile(size, reading);
        if (state == QLatin1String("manual")) {
            tile.context.settings.insert(QStringLiteral("mode"), QStringLiteral("manual"));
        }
        const QString spill = tw::test::spillOf(NowPlayingFace(), tile.context);
        QVERIFY2(spill.isEmpty(), qPrintable(spill));
    }

    // Bytes that are no picture draw the same as no cover; a picture draws differently.
    void coverThatIsNoPicture() {
        Tile tile(WidgetSize::large, playing());
        const QImage none = tile.picture({});
        QCOMPARE(tile.picture("not a picture at all"), none);
        QImage red(40, 40, QImage::Format_RGB32);
        red.fill(Qt::red);
        QByteArray png;
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        red.save(&buffer, "PNG");
        QVERIFY(tile.picture(png) != none);
    }

    void clockText_data() {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QString>("text");
        QTest::newRow("nought") << 0.0 << "0:00";
        QTest::newRow("below nought") << -5.0 << "0:00";
        QTest::newRow("minutes") << 187.9 << "3:07";
        QTest::newRow("hours") << 3723.0 << "1:02:03";
    }
    void clockText() {
        QFETCH(double, seconds);
        QFETCH(QString, text);
        QCOMPARE(NowPlayingFace::clockText(seconds), text);
    }
};

QTEST_MAIN(TestNowPlayingFace)
#include "tst_nowplayingface.moc"
