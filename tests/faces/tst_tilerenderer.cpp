// Every face at every size it allows stays inside its tile, and the tile's glass, shadow and ring
// stay inside the panel; the glass follows the theme store, and a slot's picture is drawn once per
// key.
#include "ManualClock.h"
#include "PaintedBounds.h"
#include "TestRows.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "faces/GlassLook.h"
#include "faces/PictureCache.h"
#include "faces/TileRenderer.h"
#include "faces/WidgetFace.h"
#include "look/Theme.h"
#include "model/WidgetRegistry.h"
#include "platform/null/MemoryDefaults.h"
#include "platform/null/NullSymbolProvider.h"

#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

using namespace tw;
using tw::test::paintedBounds;

namespace {

const QDateTime kNoon(QDate(2026, 3, 29), QTime(12, 34, 56));
const NullSymbolProvider kSymbols;
const QMarginsF kStackBands(8, 0, 8, 8);

FaceContext contextFor(const QString& kind, WidgetSize size,
                       GlassLook::Shade shade = GlassLook::Shade::Dark, qreal dpr = 1) {
    FaceContext context =
        FaceContext::forKind(WidgetRegistry::builtInDefinition(kind)->metadata, size);
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

QRect devicePixels(const QRectF& points, qreal dpr) {
    return QRectF(points.topLeft() * dpr, points.size() * dpr).toAlignedRect();
}

QString text(const QRect& r) {
    return QStringLiteral("%1,%2 %3x%4").arg(r.x()).arg(r.y()).arg(r.width()).arg(r.height());
}

} // namespace

using tw::test::row;

class TestTileRenderer : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The face alone keeps to its padded inside (a stack keeps bands for its arrows and dots);
    // the whole tile, glass, shadow and ring, to its panel.
    void staysInside_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<WidgetSize>("size");
        QTest::addColumn<GlassLook::Shade>("shade");
        QTest::addColumn<qreal>("dpr");
        QTest::addColumn<QMarginsF>("reserved");
        QTest::addColumn<double>("highlight"); // below 0: the face alone
        using enum GlassLook::Shade;
        for (const WidgetDefinition& definition : WidgetRegistry::all()) {
            const QString& kind = definition.metadata.kind;
            for (WidgetSize size : definition.metadata.allowedSizes) {
                const QByteArray name = (kind + QLatin1Char('/') + rawValue(size)).toUtf8();
                row(QByteArray(name + "/dark@1").constData(), kind, size, Dark, 1.0, QMarginsF(),
                    -1.0);
                row(QByteArray(name + "/light@2").constData(), kind, size, Light, 2.0, QMarginsF(),
                    -1.0);
            }
        }
        row("clock/small in a stack", QStringLiteral("clock"), WidgetSize::small, Dark, 1.0,
            kStackBands, -1.0);
        row("clock/wide in a stack", QStringLiteral("clock"), WidgetSize::wide, Dark, 1.0,
            kStackBands, -1.0);
        row("flipclock/large in a stack", QStringLiteral("flipclock"), WidgetSize::large, Dark, 1.0,
            kStackBands, -1.0);
        row("panel: glass", QStringLiteral("clock"), WidgetSize::wide, Dark, 2.0, QMarginsF(), 0.0);
        row("panel: glass, ring", QStringLiteral("worldclock"), WidgetSize::grand, Dark, 2.0,
            QMarginsF(), 1.0);
        row("panel: full bleed", QStringLiteral("photos"), WidgetSize::huge, Dark, 2.0, QMarginsF(),
            1.0);
        row("panel: chromeless", QStringLiteral("companion"), WidgetSize::small, Dark, 2.0,
            QMarginsF(), 0.0);
    }
    void staysInside() {
        QFETCH(QString, kind);
        QFETCH(WidgetSize, size);
        QFETCH(GlassLook::Shade, shade);
        QFETCH(qreal, dpr);
        QFETCH(QMarginsF, reserved);
        QFETCH(double, highlight);
        const FaceRegistry faces;
        TileRenderer renderer;
        FaceContext context = contextFor(kind, size, shade, dpr);
        context.reserved = reserved;
        // Room all round to catch anything that spills.
        constexpr qreal room = 40;
        const bool whole = highlight >= 0;
        const qreal margin = whole ? TileRenderer::panelMargin : 0;
        const QRectF tile(QPointF(room + margin, room + margin), context.points);
        const QRectF drawn = whole ? TileRenderer::panelRect(tile) : tile;
        QImage image = canvas(drawn.size() + QSizeF(2 * room, 2 * room), dpr);
        {
            QPainter painter(&image);
            whole ? renderer.paint(painter, tile, faces.face(kind), context, highlight)
                  : renderer.paintFace(painter, tile, faces.face(kind), context);
        }
        const QRect painted = paintedBounds(image);
        QVERIFY2(!painted.isEmpty(), "nothing painted");
        // A face may spill one pixel of anti-aliasing past its padded inside.
        const QRect limit = whole ? devicePixels(drawn, dpr)
                                  : devicePixels(TileRenderer::contentRect(
                                                     tile.size(), TileShape::of(context.metadata))
                                                     .marginsRemoved(reserved)
                                                     .translated(room, room),
                                                 dpr)
                                        .adjusted(-1, -1, 1, 1);
        QVERIFY2(
            limit.contains(painted),
            qPrintable(QStringLiteral("painted %1 outside %2").arg(text(painted), text(limit))));
    }

    // One pixel of a panel's picture: its opacity, and "dark", "light" or "accent" for its colour.
    void pixels_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<WidgetSize>("size");
        QTest::addColumn<GlassLook::Shade>("shade");
        QTest::addColumn<qreal>("dpr");
        QTest::addColumn<double>("highlight");
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<int>("minAlpha");
        QTest::addColumn<int>("maxAlpha");
        QTest::addColumn<QString>("colour");
        using enum GlassLook::Shade;
        const QString clock = QStringLiteral("clock");
        const QString companion = QStringLiteral("companion");
        const QString battery = QStringLiteral("battery");
        // 20 points into the tile, and 8 points above the panel's bottom edge (large: 204 + 2 ×
        // 22).
        const QPoint corner(42, 42);
        row("glass in a tile's corner", clock, WidgetSize::large, Dark, 1.0, 0.0, corner, 201, 255,
            "");
        row("a chromeless kind has no glass", companion, WidgetSize::large, Dark, 1.0, 0.0, corner,
            0, 0, "");
        row("a chromeless kind has no shadow", companion, WidgetSize::large, Dark, 1.0, 0.0,
            QPoint(42, 240), 0, 0, "");
        row("dark glass is smoked", battery, WidgetSize::small, Dark, 1.0, 0.0, QPoint(26, 70), 1,
            255, "dark");
        row("light glass is milky", battery, WidgetSize::small, Light, 1.0, 0.0, QPoint(26, 70), 1,
            255, "light");
        // Left of the tile, level with its middle: the ring's stroke, 5.5 points out.
        row("no ring without a highlight", clock, WidgetSize::small, Dark, 1.0, 0.0, QPoint(16, 70),
            0, 79, "");
        row("the ring in the accent", clock, WidgetSize::small, Dark, 1.0, 1.0, QPoint(16, 70), 255,
            255, "accent");
        // Previews are drawn smaller than life; glass and shadow shrink with the tile.
        row("half size: glass in the middle", clock, WidgetSize::wide, Light, 0.5, 0.0,
            QPoint(62, 35), 201, 255, "");
        row("half size: six points right of the tile, shadow at most", clock, WidgetSize::wide,
            Light, 0.5, 0.0, QPoint((22 + 204 + 6) / 2, 35), 0, 99, "");
    }

    void pixels() {
        QFETCH(QString, kind);
        QFETCH(WidgetSize, size);
        QFETCH(GlassLook::Shade, shade);
        QFETCH(qreal, dpr);
        QFETCH(double, highlight);
        QFETCH(QPoint, at);
        QFETCH(int, minAlpha);
        QFETCH(int, maxAlpha);
        QFETCH(QString, colour);
        const FaceRegistry faces;
        TileRenderer renderer;
        const FaceContext context = contextFor(kind, size, shade, dpr);
        const QImage picture = renderer.picture(faces.face(kind), context, highlight);
        QCOMPARE(picture.size(),
                 devicePixels(TileRenderer::panelRect({{}, context.points}), dpr).size());
        const QColor pixel = picture.pixelColor(at);
        const QString seen = QStringLiteral("alpha %1, lightness %2, rgb %3")
                                 .arg(pixel.alpha())
                                 .arg(pixel.lightnessF())
                                 .arg(pixel.name());
        QVERIFY2(pixel.alpha() >= minAlpha && pixel.alpha() <= maxAlpha, qPrintable(seen));
        if (colour == QLatin1String("dark")) {
            QVERIFY2(pixel.lightnessF() < 0.25F, qPrintable(seen));
        } else if (colour == QLatin1String("light")) {
            QVERIFY2(pixel.lightnessF() > 0.75F, qPrintable(seen));
        } else if (colour == QLatin1String("accent")) {
            QCOMPARE(pixel.rgb(), context.accent().rgb());
        }
    }

    void blursEachShadowOnce() {
        const FaceRegistry faces;
        TileRenderer renderer;
        FaceContext context =
            contextFor(QStringLiteral("clock"), WidgetSize::wide, GlassLook::Shade::Dark, 2);
        for (int second = 0; second < 5; ++second) {
            context.now = kNoon.addSecs(second);
            renderer.picture(faces.face(QStringLiteral("clock")), context);
        }
        QCOMPARE(renderer.cachedShadows(), 1);
        context.devicePixelRatio = 1;
        renderer.picture(faces.face(QStringLiteral("clock")), context);
        QCOMPARE(renderer.cachedShadows(), 2);
    }

    void clearAndStrongerGlassLetMoreThrough() {
        auto alphaAt = [&](GlassLook::Finish finish, double strength) {
            FaceContext context = contextFor(QStringLiteral("battery"), WidgetSize::small);
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

    void tileScaleEnlargesThePicture() {
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
        // The face scales with the tile: its content reaches the scaled padding, not the nominal
        // one.
        QImage face = canvas(QSizeF(306, 306), 1);
        {
            QPainter painter(&face);
            renderer.paintFace(painter, QRectF(0, 0, 306, 306), faces.face(metadata.kind), context);
        }
        QVERIFY(paintedBounds(face).width() > 204);
    }

    void changedPartCoversEveryChange_data() {
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
        row("clock, wide, 12 hours", clock, WidgetSize::wide, h12, 1.0, 1.0, nine, ten, true,
            false);
        row("clock, large, 24 hours, 2x", clock, WidgetSize::large, h24, 1.0, 2.0, QTime(9, 5, 59),
            QTime(9, 5, 58), true, false);
        row("clock, banner, zoned, 1.25x", clock, WidgetSize::banner, zoned, 1.0, 1.25, nine, ten,
            true, false);
        row("clock, scaled tile", clock, WidgetSize::wide, h12, 1.5, 1.0, QTime(23, 59, 0),
            QTime(23, 59, 1), true, false);
        row("clock, new minute", clock, WidgetSize::wide, none, 1.0, 1.0, QTime(12, 34, 59),
            QTime(12, 35, 0), false, false);
        row("clock, analog", clock, WidgetSize::wide, analog, 1.0, 1.0, nine, ten, false, false);
        row("clock, wide, in a stack", clock, WidgetSize::wide, h12, 1.0, 1.0, nine, ten, true,
            true);
    }

    // Two moments drawn whole: no pixel differs outside the part the renderer names.
    void changedPartCoversEveryChange() {
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
        FaceContext context = contextFor(kind, size, GlassLook::Shade::Dark, dpr);
        context.settings = settings;
        context.scale = scale;
        context.points *= scale;
        if (stacked) {
            context.reserved = kStackBands;
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
                             qPrintable(QStringLiteral("pixel %1,%2 changed outside %3")
                                            .arg(x)
                                            .arg(y)
                                            .arg(text(allowed))));
                }
            }
        }
        QVERIFY(differing > 0);
    }

    void fromStore_data() {
        QTest::addColumn<ThemeStore::GlassStyle>("style");
        QTest::addColumn<double>("strength");
        QTest::addColumn<ThemeStore::GlassTint>("tint");
        QTest::addColumn<ThemeStore::SystemAppearance>("system");
        QTest::addColumn<GlassLook>("expected");
        using Style = ThemeStore::GlassStyle;
        using Tint = ThemeStore::GlassTint;
        using System = ThemeStore::SystemAppearance;
        QTest::newRow("defaults") << Style::Frosted << 0.0 << Tint::Dark << System::Light
                                  << GlassLook{GlassLook::Finish::Frosted, 0.0,
                                               GlassLook::Shade::Dark};
        QTest::newRow("clear and light")
            << Style::Clear << 0.4 << Tint::Light << System::Dark
            << GlassLook{GlassLook::Finish::Clear, 0.4, GlassLook::Shade::Light};
        QTest::newRow("liquid") << Style::Liquid << 1.0 << Tint::Dark << System::Dark
                                << GlassLook{GlassLook::Finish::Liquid, 1.0,
                                             GlassLook::Shade::Dark};
        // Automatic takes the system's darkness as it stands, as the store defines it.
        QTest::newRow("automatic on a dark system")
            << Style::Frosted << 0.0 << Tint::Auto << System::Dark
            << GlassLook{GlassLook::Finish::Frosted, 0.0, GlassLook::Shade::Light};
        QTest::newRow("automatic on a light system")
            << Style::Frosted << 0.0 << Tint::Auto << System::Light
            << GlassLook{GlassLook::Finish::Frosted, 0.0, GlassLook::Shade::Dark};
    }

    void fromStore() {
        QFETCH(ThemeStore::GlassStyle, style);
        QFETCH(double, strength);
        QFETCH(ThemeStore::GlassTint, tint);
        QFETCH(ThemeStore::SystemAppearance, system);
        QTemporaryDir dir;
        MemoryDefaults defaults;
        tw::test::ManualClock clock;
        ThemeStore store(defaults, clock, dir.filePath(QStringLiteral("theme.json")));
        store.setGlassStyle(style);
        store.setGlassStrength(strength);
        store.setGlassTint(tint);
        QTEST(GlassLook::from(store, system), "expected");
    }

    // Content takes dark ink on light glass and over a bright lens, light ink otherwise.
    void inkFollowsWhatShowsThrough_data() {
        QTest::addColumn<GlassLook::Shade>("shade");
        QTest::addColumn<bool>("brightBehind");
        QTest::addColumn<bool>("dark");
        QTest::newRow("dark glass") << GlassLook::Shade::Dark << false << false;
        QTest::newRow("light glass") << GlassLook::Shade::Light << false << true;
        QTest::newRow("dark glass over a bright lens") << GlassLook::Shade::Dark << true << true;
    }

    void inkFollowsWhatShowsThrough() {
        QFETCH(GlassLook::Shade, shade);
        QFETCH(bool, brightBehind);
        QFETCH(bool, dark);
        FaceContext context;
        context.theme = Theme::defaultTheme();
        context.glass = {GlassLook::Finish::Liquid, 0.0, shade, brightBehind};
        QCOMPARE(context.glass.darkInk(), dark);
        QCOMPARE(context.primary().lightness() < 128, dark);
        QCOMPARE(context.secondary().lightness() < 128, dark);
    }

    void keepsTheNewestPictureOfASlot() {
        PictureCache cache;
        QImage target(200, 100, QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&target);
        int painted = 0;
        const auto draw = [&](const QString& slot, const QString& key) {
            cache.drawLatest(painter, QRectF(0, 0, 100, 50), slot, key, 2, [&](QPainter& p) {
                ++painted;
                p.fillRect(QRectF(0, 0, 10, 10), Qt::red);
            });
        };
        draw(QStringLiteral("a"), QStringLiteral("12°"));
        draw(QStringLiteral("a"), QStringLiteral("12°"));
        QCOMPARE(painted, 1);
        draw(QStringLiteral("a"), QStringLiteral("13°"));
        draw(QStringLiteral("a"), QStringLiteral("12°"));
        QCOMPARE(painted, 3);
        QCOMPARE(cache.pictures(), 1);
        draw(QStringLiteral("b"), QStringLiteral("12°"));
        QCOMPARE(cache.pictures(), 2);
        painter.end();
        QCOMPARE(target.pixelColor(5, 5), QColor(Qt::red));
    }
};

QTEST_MAIN(TestTileRenderer)
#include "tst_tilerenderer.moc"
