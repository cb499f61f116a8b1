#include "platform/linux/QtDisplays.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTest>

namespace tw {

class TestQtDisplays : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void conversion_data() {
        QTest::addColumn<QRectF>("primary");
        QTest::addColumn<QRectF>("qt");
        QTest::addColumn<QRectF>("internal");
        const QRectF primary(0, 0, 1920, 1080);
        QTest::newRow("the primary itself") << primary << primary << QRectF(0, 0, 1920, 1080);
        QTest::newRow("taller, to the right, tops aligned")
            << primary << QRectF(1920, 0, 2560, 1440) << QRectF(1920, -360, 2560, 1440);
        QTest::newRow("above the primary")
            << primary << QRectF(0, -1080, 1920, 1080) << QRectF(0, 1080, 1920, 1080);
        QTest::newRow("a tile near the top-left")
            << primary << QRectF(24, 24, 204, 204) << QRectF(24, 852, 204, 204);
        QTest::newRow("primary away from Qt's origin")
            << QRectF(1280, 200, 1512, 982) << QRectF(1280, 200, 1512, 982)
            << QRectF(0, 0, 1512, 982);
        QTest::newRow("left of a displaced primary")
            << QRectF(1280, 200, 1512, 982) << QRectF(0, 0, 1280, 1024)
            << QRectF(-1280, 158, 1280, 1024);
    }
    void conversion() {
        QFETCH(QRectF, primary);
        QFETCH(QRectF, qt);
        QFETCH(QRectF, internal);
        QCOMPARE(QtDisplays::toInternal(qt, primary), internal);
        QCOMPARE(QtDisplays::toQt(internal, primary), qt);
    }

    void screensOfTheRunningSession() {
        QtDisplays displays;
        const QList<ScreenInfo> screens = displays.screens();
        QCOMPARE(screens.size(), QGuiApplication::screens().size());
        QVERIFY(!screens.isEmpty());
        const QScreen* primary = QGuiApplication::primaryScreen();
        const ScreenInfo& main = screens.first();
        QVERIFY(main.isMain);
        // No EDID here: the name identifies the screen, or its place when it has none.
        QCOMPARE(main.id, primary->name().isEmpty() ? QStringLiteral("screen-%1-%2")
                                                          .arg(primary->geometry().x())
                                                          .arg(primary->geometry().y())
                                                    : primary->name());
        QCOMPARE(main.frame, QRectF(QPointF(0, 0), QSizeF(primary->geometry().size())));
        QCOMPARE(displays.toQt(main.frame), QRectF(primary->geometry()));
        QCOMPARE(displays.toQt(main.visibleFrame), QRectF(primary->availableGeometry()));
        QVERIFY(!displays.hasSeparateSpacesPerDisplay());
    }
};

} // namespace tw

QTEST_MAIN(tw::TestQtDisplays)
#include "tst_qtdisplays.moc"
