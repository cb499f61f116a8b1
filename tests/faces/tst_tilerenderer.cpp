// Every face at every size it allows stays inside its tile, and the tile's glass, shadow and ring
// stay inside the panel.
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "faces/TileRenderer.h"
#include "faces/WidgetFace.h"
#include "look/Theme.h"
#include "model/WidgetRegistry.h"
#include "platform/null/NullSymbolProvider.h"

#include <QImage>
#include <QPainter>
#include <QTest>

#include <cmath>

using namespace tw;

namespace {

const QDateTime kNoon(QDate(2026, 3, 29), QTime(12, 34, 56));
const NullSymbolProvider kSymbols;

FaceContext contextFor(const WidgetMetadata& metadata, WidgetSize size, GlassLook::Shade shade,
                       qreal dpr) {
    FaceContext context = FaceContext::forKind(metadata, size);
    context.theme = Theme::defaultTheme();
    context.glass.shade = shade;
    context.devicePixelRatio = dpr;
    context.now = kNoon;
    context.surface = SurfaceFlags::snapshot();
    context.symbols = &kSymbols;
    return context;
}

QImage canvas(const QSizeF& points, qreal dpr) {
    QImage image(QSize(static_cast<int>(std::ceil(points.width() * dpr)),
                       static_cast<int>(std::ceil(points.height() * dpr))),
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(dpr);
    image.fill(Qt::transparent);
    return image;
}

// The bounding box, in device pixels, of everything painted.
QRect paintedBounds(const QImage& image) {
    int left = image.width(), top = image.height(), right = -1, bottom = -1;
    for (int y = 0; y < image.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(line[x]) != 0) {
                left = std::min(left, x);
                right = std::max(right, x);
                top = std::min(top, y);
                bottom = std::max(bottom, y);
            }
        }
    }
    return right < 0 ? QRect() : QRect(QPoint(left, top), QPoint(right, bottom));
}

QRect devicePixels(const QRectF& points, qreal dpr) {
    return QRectF(points.topLeft() * dpr, points.size() * dpr).toAlignedRect();
}

} // namespace

class TestTileRenderer : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void facesStayInsideTheirTiles_data();
    void facesStayInsideTheirTiles();
    void tilesStayInsideTheirPanels_data();
    void tilesStayInsideTheirPanels();
    void blursEachShadowOnce();
    void chromelessKindsDrawNoGlass();
    void lightGlassIsBrighterThanDark();
    void clearAndStrongerGlassLetMoreThrough();
    void highlightRingSurroundsTheTile();
    void tileScaleEnlargesThePicture();
    void reservedRoomStaysFree_data();
    void reservedRoomStaysFree();
    void fractionalPixelRatiosKeepTheGeometry();
    void changedPartCoversEveryChange_data();
    void changedPartCoversEveryChange();
};

void TestTileRenderer::facesStayInsideTheirTiles_data() {
    QTest::addColumn<QString>("kind");
    QTest::addColumn<WidgetSize>("size");
    QTest::addColumn<GlassLook::Shade>("shade");
    QTest::addColumn<qreal>("dpr");
    for (const WidgetDefinition& definition : WidgetRegistry::all()) {
        for (WidgetSize size : definition.metadata.allowedSizes) {
            const QByteArray name =
                (definition.metadata.kind + QLatin1Char('/') + rawValue(size)).toUtf8();
            QTest::newRow(QByteArray(name + "/dark@1").constData())
                << definition.metadata.kind << size << GlassLook::Shade::Dark << qreal(1);
            QTest::newRow(QByteArray(name + "/light@2").constData())
                << definition.metadata.kind << size << GlassLook::Shade::Light << qreal(2);
        }
    }
}

void TestTileRenderer::facesStayInsideTheirTiles() {
    QFETCH(QString, kind);
    QFETCH(WidgetSize, size);
    QFETCH(GlassLook::Shade, shade);
    QFETCH(qreal, dpr);
    const FaceRegistry faces;
    const WidgetMetadata metadata = WidgetRegistry::builtInDefinition(kind)->metadata;
    const FaceContext context = contextFor(metadata, size, shade, dpr);

    // The face alone, unclipped, with room all round to catch anything that spills.
    constexpr qreal room = 30;
    const QSizeF tile = context.points;
    QImage image = canvas(tile + QSizeF(2 * room, 2 * room), dpr);
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(room, room);
        faces.face(kind).paint(painter, TileRenderer::contentRect(tile, TileShape::of(metadata)),
                               context);
    }
    const QRect painted = paintedBounds(image);
    QVERIFY2(!painted.isEmpty(), "the face painted nothing");
    // Padded faces keep to the padded inside; one pixel of anti-aliasing is allowed.
    const QRectF allowed =
        TileRenderer::contentRect(tile, TileShape::of(metadata)).translated(room, room);
    const QRect limit = devicePixels(allowed, dpr).adjusted(-1, -1, 1, 1);
    QVERIFY2(limit.contains(painted),
             qPrintable(QStringLiteral("painted %1,%2 %3x%4 outside %5,%6 %7x%8")
                            .arg(painted.x())
                            .arg(painted.y())
                            .arg(painted.width())
                            .arg(painted.height())
                            .arg(limit.x())
                            .arg(limit.y())
                            .arg(limit.width())
                            .arg(limit.height())));
}

void TestTileRenderer::tilesStayInsideTheirPanels_data() {
    QTest::addColumn<QString>("kind");
    QTest::addColumn<WidgetSize>("size");
    QTest::addColumn<double>("highlight");
    QTest::newRow("glass") << QStringLiteral("clock") << WidgetSize::wide << 0.0;
    QTest::newRow("glass, ring") << QStringLiteral("worldclock") << WidgetSize::grand << 1.0;
    QTest::newRow("full bleed") << QStringLiteral("photos") << WidgetSize::huge << 1.0;
    QTest::newRow("chromeless") << QStringLiteral("companion") << WidgetSize::small << 0.0;
}

void TestTileRenderer::tilesStayInsideTheirPanels() {
    QFETCH(QString, kind);
    QFETCH(WidgetSize, size);
    QFETCH(double, highlight);
    const FaceRegistry faces;
    TileRenderer renderer;
    const WidgetMetadata metadata = WidgetRegistry::builtInDefinition(kind)->metadata;
    const FaceContext context = contextFor(metadata, size, GlassLook::Shade::Dark, 2);
    constexpr qreal room = 40;
    const QRectF tile(QPointF(room + TileRenderer::panelMargin, room + TileRenderer::panelMargin),
                      context.points);
    QImage image = canvas(TileRenderer::panelRect(tile).size() + QSizeF(2 * room, 2 * room), 2);
    {
        QPainter painter(&image);
        renderer.paint(painter, tile, faces.face(kind), context, highlight);
    }
    const QRect painted = paintedBounds(image);
    QVERIFY(!painted.isEmpty());
    QVERIFY(devicePixels(TileRenderer::panelRect(tile), 2).contains(painted));

    // picture() is exactly the panel, at the context's pixel ratio.
    const QImage picture = renderer.picture(faces.face(kind), context, highlight);
    QCOMPARE(
        picture.size(),
        devicePixels(TileRenderer::panelRect(QRectF(QPointF(0, 0), context.points)), 2).size());
}

void TestTileRenderer::blursEachShadowOnce() {
    const FaceRegistry faces;
    TileRenderer renderer;
    const WidgetMetadata metadata =
        WidgetRegistry::builtInDefinition(QStringLiteral("clock"))->metadata;
    FaceContext context = contextFor(metadata, WidgetSize::wide, GlassLook::Shade::Dark, 2);
    for (int second = 0; second < 5; ++second) {
        context.now = kNoon.addSecs(second);
        renderer.picture(faces.face(QStringLiteral("clock")), context);
    }
    QCOMPARE(renderer.cachedShadows(), 1);
    context.devicePixelRatio = 1;
    renderer.picture(faces.face(QStringLiteral("clock")), context);
    QCOMPARE(renderer.cachedShadows(), 2);
}

void TestTileRenderer::chromelessKindsDrawNoGlass() {
    const FaceRegistry faces;
    TileRenderer renderer;
    const WidgetMetadata companion =
        WidgetRegistry::builtInDefinition(QStringLiteral("companion"))->metadata;
    QVERIFY(companion.chromeless);
    const QImage picture =
        renderer.picture(faces.face(companion.kind),
                         contextFor(companion, WidgetSize::large, GlassLook::Shade::Dark, 1));
    // A corner of the tile would be glass on any other kind; beside the tile, a shadow.
    const QPoint corner(static_cast<int>(TileRenderer::panelMargin + 20),
                        static_cast<int>(TileRenderer::panelMargin + 20));
    QCOMPARE(qAlpha(picture.pixel(corner)), 0);
    QCOMPARE(qAlpha(picture.pixel(QPoint(corner.x(), picture.height() - 8))), 0);

    const WidgetMetadata clock =
        WidgetRegistry::builtInDefinition(QStringLiteral("clock"))->metadata;
    const QImage glass = renderer.picture(
        faces.face(clock.kind), contextFor(clock, WidgetSize::large, GlassLook::Shade::Dark, 1));
    QVERIFY(qAlpha(glass.pixel(corner)) > 200);
}

void TestTileRenderer::lightGlassIsBrighterThanDark() {
    const FaceRegistry faces;
    TileRenderer renderer;
    const WidgetMetadata metadata =
        WidgetRegistry::builtInDefinition(QStringLiteral("battery"))->metadata;
    const QPoint inside(static_cast<int>(TileRenderer::panelMargin + 4),
                        static_cast<int>(TileRenderer::panelMargin + 48));
    const QColor dark =
        renderer
            .picture(faces.face(metadata.kind),
                     contextFor(metadata, WidgetSize::small, GlassLook::Shade::Dark, 1))
            .pixelColor(inside);
    const QColor light =
        renderer
            .picture(faces.face(metadata.kind),
                     contextFor(metadata, WidgetSize::small, GlassLook::Shade::Light, 1))
            .pixelColor(inside);
    QVERIFY2(
        light.lightnessF() > dark.lightnessF() + 0.5F,
        qPrintable(
            QStringLiteral("light %1 dark %2").arg(light.lightnessF()).arg(dark.lightnessF())));
}

void TestTileRenderer::clearAndStrongerGlassLetMoreThrough() {
    const WidgetMetadata metadata =
        WidgetRegistry::builtInDefinition(QStringLiteral("battery"))->metadata;
    auto alphaAt = [&](GlassLook::Finish finish, double strength) {
        FaceContext context = contextFor(metadata, WidgetSize::small, GlassLook::Shade::Dark, 1);
        context.glass.finish = finish;
        context.glass.strength = strength;
        QImage image = canvas(QSizeF(96, 96), 1);
        QPainter painter(&image);
        TileRenderer::paintGlass(painter, QRectF(0, 0, 96, 96), context);
        painter.end();
        return qAlpha(image.pixel(48, 80));
    };
    const int frosted = alphaAt(GlassLook::Finish::Frosted, 0);
    QVERIFY(alphaAt(GlassLook::Finish::Frosted, 1) < frosted);
    QVERIFY(alphaAt(GlassLook::Finish::Clear, 0) < frosted);
    QVERIFY(alphaAt(GlassLook::Finish::Clear, 1) < alphaAt(GlassLook::Finish::Clear, 0));
}

void TestTileRenderer::highlightRingSurroundsTheTile() {
    const FaceRegistry faces;
    TileRenderer renderer;
    const WidgetMetadata metadata =
        WidgetRegistry::builtInDefinition(QStringLiteral("clock"))->metadata;
    const FaceContext context = contextFor(metadata, WidgetSize::small, GlassLook::Shade::Dark, 1);
    // Left of the tile, level with its middle: the ring's stroke, 5.5 points out.
    const QPoint ring(static_cast<int>(TileRenderer::panelMargin - 5.5),
                      static_cast<int>(TileRenderer::panelMargin + 48));
    const QImage without = renderer.picture(faces.face(metadata.kind), context, 0);
    const QImage with = renderer.picture(faces.face(metadata.kind), context, 1);
    QVERIFY(qAlpha(without.pixel(ring)) < 80);
    const QColor stroke = with.pixelColor(ring);
    QCOMPARE(stroke.alpha(), 255);
    QCOMPARE(stroke.rgb(), context.accent().rgb());
}

void TestTileRenderer::tileScaleEnlargesThePicture() {
    const FaceRegistry faces;
    TileRenderer renderer;
    const WidgetMetadata metadata =
        WidgetRegistry::builtInDefinition(QStringLiteral("clock"))->metadata;
    WidgetInstance instance;
    instance.kind = metadata.kind;
    instance.size = WidgetSize::large;
    instance.settings = WidgetSettings{{QStringLiteral("tileScale"), QStringLiteral("1.5")}};
    FaceContext context = FaceContext::forInstance(metadata, instance);
    context.theme = Theme::defaultTheme();
    context.symbols = &kSymbols;
    context.now = kNoon;
    QCOMPARE(context.points, QSizeF(306, 306));
    const QImage picture = renderer.picture(faces.face(metadata.kind), context);
    QCOMPARE(picture.size(), QSize(306 + 44, 306 + 44));
    // The face scales with the tile: its content reaches the scaled padding, not the nominal one.
    QImage face = canvas(QSizeF(306, 306), 1);
    {
        QPainter painter(&face);
        renderer.paintFace(painter, QRectF(0, 0, 306, 306), faces.face(metadata.kind), context);
    }
    QVERIFY(paintedBounds(face).width() > 204);
}

void TestTileRenderer::reservedRoomStaysFree_data() {
    QTest::addColumn<QString>("kind");
    QTest::addColumn<WidgetSize>("size");
    QTest::newRow("clock, small") << QStringLiteral("clock") << WidgetSize::small;
    QTest::newRow("clock, wide") << QStringLiteral("clock") << WidgetSize::wide;
    QTest::newRow("flip clock, large") << QStringLiteral("flipclock") << WidgetSize::large;
}

// A stack keeps bands for its arrows and dots; the face draws only in what is left.
void TestTileRenderer::reservedRoomStaysFree() {
    QFETCH(QString, kind);
    QFETCH(WidgetSize, size);
    const FaceRegistry faces;
    TileRenderer renderer;
    const WidgetMetadata metadata = WidgetRegistry::builtInDefinition(kind)->metadata;
    FaceContext context = contextFor(metadata, size, GlassLook::Shade::Dark, 1);
    context.reserved = QMarginsF(8, 0, 8, 8);
    const QRectF tile(QPointF(0, 0), context.points);
    QImage image = canvas(context.points, 1);
    {
        QPainter painter(&image);
        renderer.paintFace(painter, tile, faces.face(kind), context);
    }
    const QRect allowed =
        devicePixels(TileRenderer::contentRect(tile.size(), TileShape::of(metadata))
                         .marginsRemoved(context.reserved),
                     1)
            .adjusted(-1, -1, 1, 1);
    const QRect painted = paintedBounds(image);
    QVERIFY(!painted.isEmpty());
    QVERIFY2(
        allowed.contains(painted),
        qPrintable(
            QStringLiteral("bottom %1 beyond %2").arg(painted.bottom()).arg(allowed.bottom())));
}

void TestTileRenderer::fractionalPixelRatiosKeepTheGeometry() {
    // Previews are drawn smaller than life; glass and text must shrink with the tile.
    const FaceRegistry faces;
    TileRenderer renderer;
    const WidgetMetadata metadata =
        WidgetRegistry::builtInDefinition(QStringLiteral("clock"))->metadata;
    const FaceContext context =
        contextFor(metadata, WidgetSize::wide, GlassLook::Shade::Light, 0.5);
    const QImage picture = renderer.picture(faces.face(metadata.kind), context);
    QCOMPARE(picture.size(), QSize(124, 70));
    const int middleRow = 35;
    QVERIFY(qAlpha(picture.pixel(62, middleRow)) > 200);
    // Six points right of the tile's edge: shadow at most, never glass.
    QVERIFY(qAlpha(picture.pixel((22 + 204 + 6) / 2, middleRow)) < 100);
}

void TestTileRenderer::changedPartCoversEveryChange_data() {
    QTest::addColumn<QString>("kind");
    QTest::addColumn<WidgetSize>("size");
    QTest::addColumn<WidgetSettings>("settings");
    QTest::addColumn<double>("scale");
    QTest::addColumn<qreal>("dpr");
    QTest::addColumn<QTime>("before");
    QTest::addColumn<QTime>("after");
    QTest::addColumn<bool>("partial");
    QTest::addColumn<bool>("stacked");

    const QString clock = QStringLiteral("clock");
    const WidgetSettings none;
    const WidgetSettings h12{{QStringLiteral("format"), QStringLiteral("12")}};
    const WidgetSettings h24{{QStringLiteral("format"), QStringLiteral("24")}};
    const WidgetSettings zoned{{QStringLiteral("zone"), QStringLiteral("Asia/Kolkata")}};
    const WidgetSettings analog{{QStringLiteral("style"), QStringLiteral("analog")}};
    const QTime nine(12, 34, 9);
    const QTime ten(12, 34, 10);
    QTest::newRow("clock, wide, 12 hours")
        << clock << WidgetSize::wide << h12 << 1.0 << 1.0 << nine << ten << true << false;
    QTest::newRow("clock, large, 24 hours, 2x")
        << clock << WidgetSize::large << h24 << 1.0 << 2.0 << QTime(9, 5, 59) << QTime(9, 5, 58)
        << true << false;
    QTest::newRow("clock, banner, zoned, 1.25x")
        << clock << WidgetSize::banner << zoned << 1.0 << 1.25 << nine << ten << true << false;
    QTest::newRow("clock, scaled tile") << clock << WidgetSize::wide << h12 << 1.5 << 1.0
                                        << QTime(23, 59, 0) << QTime(23, 59, 1) << true << false;
    QTest::newRow("clock, new minute") << clock << WidgetSize::wide << none << 1.0 << 1.0
                                       << QTime(12, 34, 59) << QTime(12, 35, 0) << false << false;
    QTest::newRow("clock, analog")
        << clock << WidgetSize::wide << analog << 1.0 << 1.0 << nine << ten << false << false;
    QTest::newRow("clock, wide, in a stack")
        << clock << WidgetSize::wide << h12 << 1.0 << 1.0 << nine << ten << true << true;
}

// Two moments drawn whole: no pixel differs outside the part the renderer names.
void TestTileRenderer::changedPartCoversEveryChange() {
    QFETCH(QString, kind);
    QFETCH(WidgetSize, size);
    QFETCH(WidgetSettings, settings);
    QFETCH(double, scale);
    QFETCH(qreal, dpr);
    QFETCH(QTime, before);
    QFETCH(QTime, after);
    QFETCH(bool, partial);
    QFETCH(bool, stacked);
    const FaceRegistry faces;
    TileRenderer renderer;
    const WidgetFace& face = faces.face(kind);
    FaceContext context = contextFor(WidgetRegistry::builtInDefinition(kind)->metadata, size,
                                     GlassLook::Shade::Dark, dpr);
    context.settings = settings;
    context.scale = scale;
    context.points *= scale;
    if (stacked) {
        context.reserved = QMarginsF(8, 0, 8, 8);
    }
    const QDateTime from(kNoon.date(), before);
    const QDateTime to(kNoon.date(), after);
    context.now = from;
    const QImage first = renderer.picture(face, context);
    context.now = to;
    const QImage second = renderer.picture(face, context);

    const QRectF tile(QPointF(TileRenderer::panelMargin, TileRenderer::panelMargin),
                      context.points);
    context.now = from;
    const QRectF changed = renderer.changedRect(tile, face, context, from, to);
    QVERIFY(tile.contains(changed));
    QCOMPARE(changed.width() * changed.height() < tile.width() * tile.height() / 2, partial);
    const QRect allowed = devicePixels(changed, dpr);
    int differing = 0;
    for (int y = 0; y < first.height(); ++y) {
        for (int x = 0; x < first.width(); ++x) {
            if (first.pixel(x, y) != second.pixel(x, y)) {
                ++differing;
                QVERIFY2(allowed.contains(x, y),
                         qPrintable(QStringLiteral("pixel %1,%2 changed outside %3,%4 %5x%6")
                                        .arg(x)
                                        .arg(y)
                                        .arg(allowed.x())
                                        .arg(allowed.y())
                                        .arg(allowed.width())
                                        .arg(allowed.height())));
            }
        }
    }
    QVERIFY(differing > 0);
}

QTEST_MAIN(TestTileRenderer)
#include "tst_tilerenderer.moc"
