// The newest picture of a slot: drawn once per key, and only one kept per slot.
#include "faces/PictureCache.h"

#include <QImage>
#include <QPainter>
#include <QTest>

using namespace tw;

class TestPictureCache : public QObject {
    Q_OBJECT

private Q_SLOTS:
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

QTEST_MAIN(TestPictureCache)
#include "tst_picturecache.moc"
