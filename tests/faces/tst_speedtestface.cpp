// The speed test face: every size and moment of a run kept inside its tile, its button where it
// draws it with the word for what a press does, and the gauge's scale.
#include "FaceSpill.h"
#include "TestRows.h"
#include "faces/FaceContext.h"
#include "faces/SpeedTestFace.h"
#include "faces/TileRenderer.h"
#include "model/WidgetRegistry.h"
#include "platform/null/NullSymbolProvider.h"

#include <QTest>

#include <cmath>

using namespace tw;
using tw::test::row;
using Kind = SpeedTestPhase::Kind;

namespace {

SpeedTestBoard boardAt(Kind kind) {
    SpeedTestBoard board = kind == Kind::idle ? SpeedTestBoard() : SpeedTestFace::sampleBoard();
    board.phase = {kind, kind == Kind::failed ? QStringLiteral("No connection to the test server")
                                              : QString()};
    if (board.phase.isRunning()) {
        board.progress = 0.4;
        board.liveMbps = 12'345.6;
    }
    return board;
}

struct Tile {
    SpeedTestBoard board;
    NullSymbolProvider symbols;
    FaceContext context;

    Tile(WidgetSize size, Kind kind)
        : board(boardAt(kind)) {
        context = FaceContext::forKind(
            WidgetRegistry::builtInDefinition(QStringLiteral("speedtest"))->metadata, size);
        context.surface = SurfaceFlags::desktop();
        context.symbols = &symbols;
        context.speedTest = &board;
    }
    QRectF content() const {
        return TileRenderer::contentRect(context.points, TileShape::of(context.metadata));
    }
};

const QList<WidgetSize> sizes{WidgetSize::small, WidgetSize::wide, WidgetSize::large,
                              WidgetSize::wideTall};

} // namespace

Q_DECLARE_METATYPE(tw::SpeedTestPhase::Kind)

class TestSpeedTestFace : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Nothing measured yet (idle without history), each phase with a needle beyond the scale,
    // done and failed.
    void staysInside_data() {
        QTest::addColumn<WidgetSize>("size");
        QTest::addColumn<Kind>("kind");
        for (const WidgetSize size : sizes) {
            for (const Kind kind :
                 {Kind::idle, Kind::ping, Kind::download, Kind::upload, Kind::done, Kind::failed}) {
                QTest::newRow(
                    qPrintable(rawValue(size) + QLatin1Char(' ') + SpeedTestPhase::name(kind)))
                    << size << kind;
            }
        }
    }
    void staysInside() {
        QFETCH(WidgetSize, size);
        QFETCH(Kind, kind);
        Tile tile(size, kind);
        const QString spill = tw::test::spillOf(SpeedTestFace(), tile.context);
        QVERIFY2(spill.isEmpty(), qPrintable(spill));
    }

    // The button starts a run or cancels it; elsewhere a press does nothing (the small tile is
    // all button).
    void button_data() {
        QTest::addColumn<WidgetSize>("size");
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<QString>("help");
        for (const WidgetSize size : sizes) {
            QTest::newRow(qPrintable(rawValue(size) + QLatin1String(" idle")))
                << size << Kind::done << QStringLiteral("Start a speed test");
            QTest::newRow(qPrintable(rawValue(size) + QLatin1String(" running")))
                << size << Kind::upload << QStringLiteral("Cancel the speed test");
        }
    }
    void button() {
        QFETCH(WidgetSize, size);
        QFETCH(Kind, kind);
        QFETCH(QString, help);
        Tile tile(size, kind);
        const QRectF rect = tile.content();
        const QRectF button = SpeedTestFace::buttonRect(rect, size);
        QVERIFY(rect.contains(button));
        const WidgetFace::Spot spot = SpeedTestFace().spotAt(rect, button.center(), tile.context);
        QCOMPARE(spot.help, help);
        QVERIFY((spot.control == DeskAction{DeskAction::Kind::toggle, 0}));
        const QPointF corner = rect.bottomLeft() + QPointF(2, -2);
        QCOMPARE(SpeedTestFace().spotAt(rect, corner, tile.context).control.has_value(),
                 size == WidgetSize::small);
    }

    void gaugeFraction_data() {
        QTest::addColumn<double>("mbps");
        QTest::addColumn<double>("fraction");
        row("nothing", 0.0, 0.0);
        row("not a number", std::nan(""), 0.0);
        row("negative", -5.0, 0.0);
        row("the middle of the scale is about 30", 30.6, 0.5);
        row("the top", 1000.0, 1.0);
        row("beyond the top", 9000.0, 1.0);
    }
    void gaugeFraction() {
        QFETCH(double, mbps);
        QFETCH(double, fraction);
        QVERIFY2(std::abs(SpeedTestFace::gaugeFraction(mbps) - fraction) < 0.005,
                 qPrintable(QString::number(SpeedTestFace::gaugeFraction(mbps))));
    }
};

QTEST_MAIN(TestSpeedTestFace)
#include "tst_speedtestface.moc"
