#include "grid/DropDecision.h"
#include "grid/FreeSpot.h"

#include <QFile>
#include <QTest>

// Whole placement sessions written out as text and compared with a reviewed copy under golden/:
// a change to any rule shows as a readable difference. TW_UPDATE_GOLDEN=1 rewrites the copies.
class TestPlacementGolden : public QObject {
    Q_OBJECT

    static QString point(double x, double y) { return QStringLiteral("%1,%2").arg(x).arg(y); }

    static void compareWithGolden(const QString& name, const QStringList& lines) {
        const QString path = QStringLiteral(TW_GOLDEN_DIR "/") + name;
        const QByteArray text = lines.join(QLatin1Char('\n')).toUtf8() + '\n';
        if (qEnvironmentVariableIsSet("TW_UPDATE_GOLDEN")) {
            QFile out(path);
            QVERIFY(out.open(QIODevice::WriteOnly));
            out.write(text);
            return;
        }
        QFile in(path);
        QVERIFY2(in.open(QIODevice::ReadOnly), qPrintable(path));
        const QStringList expected =
            QString::fromUtf8(in.readAll()).trimmed().split(QLatin1Char('\n'));
        QCOMPARE(lines, expected);
    }

private Q_SLOTS:
    // A laptop screen filled with a repeating mix of sizes, one new tile after another.
    void fillingAScreen() {
        const QRectF frame(0, 0, 1440, 875);
        const QList<tw::WidgetSize> mix{tw::WidgetSize::large, tw::WidgetSize::small,
                                        tw::WidgetSize::wide, tw::WidgetSize::tall,
                                        tw::WidgetSize::banner};
        QList<QRectF> placed;
        QStringList lines;
        for (int n = 0; n < 40; ++n) {
            const tw::WidgetSize size = mix.at(n % mix.size());
            const QSizeF pixels = tw::nominalPixelSize(size);
            const auto spot = tw::FreeSpot::find(pixels, frame, placed);
            if (!spot) {
                lines << QStringLiteral("%1 %2 -> full").arg(n).arg(tw::rawValue(size));
                continue;
            }
            placed << QRectF(spot->x(), spot->y() - pixels.height(), pixels.width(),
                             pixels.height());
            lines << QStringLiteral("%1 %2 -> %3")
                         .arg(n)
                         .arg(tw::rawValue(size), point(spot->x(), spot->y()));
        }
        compareWithGolden(QStringLiteral("filling_a_screen.txt"), lines);
    }

    // Tiles dropped one after another around a cluster: each stacks, slides or stays, and the
    // next one meets the desktop the previous drops left.
    void dropsOnACluster() {
        const QRectF frame(0, 0, 1440, 875);
        QList<tw::DropDecision::Tile> tiles;
        for (int i = 0; i < 6; ++i) {
            const tw::WidgetSize size = i % 2 == 0 ? tw::WidgetSize::small : tw::WidgetSize::wide;
            const QSizeF pixels = tw::nominalPixelSize(size);
            tiles.append({QUuid::createUuidV5(QUuid(), QString::number(i)), size,
                          QRectF(400 + (i % 3) * 230, 400 + (i / 3) * 110, pixels.width(),
                                 pixels.height())});
        }
        const QList<QPointF> drops{{410, 410}, {450, 420},  {600, 440}, {640, 470}, {20, 20},
                                   {-30, 400}, {1400, 800}, {865, 505}, {520, 455}, {700, 300}};
        QStringList lines;
        for (qsizetype n = 0; n < drops.size(); ++n) {
            const tw::WidgetSize size = n % 2 == 0 ? tw::WidgetSize::small : tw::WidgetSize::wide;
            const QSizeF pixels = tw::nominalPixelSize(size);
            const QRectF rect(drops.at(n), pixels);
            const auto d = tw::DropDecision::decide(size, rect, tiles, frame);
            QString line = QStringLiteral("%1 %2 at %3 -> ")
                               .arg(n)
                               .arg(tw::rawValue(size), point(rect.x(), rect.y()));
            switch (d.outcome) {
            case tw::DropDecision::Outcome::stack:
                line += QStringLiteral("stack onto #%1")
                            .arg(std::find_if(tiles.cbegin(), tiles.cend(),
                                              [&](const auto& t) { return t.id == d.stackOnto; }) -
                                 tiles.cbegin());
                break;
            case tw::DropDecision::Outcome::slide:
                line += QStringLiteral("slide to ") + point(d.rect.x(), d.rect.y());
                break;
            case tw::DropDecision::Outcome::stay:
                line += QStringLiteral("stay");
                break;
            case tw::DropDecision::Outcome::ignore:
                line += QStringLiteral("ignore");
                break;
            }
            lines << line;
            if (d.outcome != tw::DropDecision::Outcome::stack) {
                tiles.append(
                    {QUuid::createUuidV5(QUuid(), QStringLiteral("drop%1").arg(n)), size, d.rect});
            }
        }
        compareWithGolden(QStringLiteral("drops_on_a_cluster.txt"), lines);
    }
};

QTEST_GUILESS_MAIN(TestPlacementGolden)
#include "tst_placementgolden.moc"
