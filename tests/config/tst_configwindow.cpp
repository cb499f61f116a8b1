#include "ManualScheduler.h"
#include "config/ConfigWindow.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

using namespace tw;
using namespace tw::test;

class tst_ConfigWindow : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // One window; its views outlive a close by half a second, so a quick reopening keeps them,
    // and closing never quits.
    void oneWindowWhoseViewsOutliveAShortClose() {
        ManualScheduler scheduler;
        int built = 0;
        ConfigWindow window(scheduler, [&] {
            ++built;
            return new QWidget();
        });
        QSignalSpy quits(qApp, &QCoreApplication::aboutToQuit);
        window.present();
        QCOMPARE(window.windowTitle(), QStringLiteral("Tarnwick"));
        QCOMPARE(window.size(), QSize(980, 680));
        QVERIFY(window.isVisible());
        window.present();
        QCOMPARE(built, 1);
        QPointer<QWidget> views = window.content();

        window.close();
        QVERIFY(!window.isVisible());
        scheduler.advance(std::chrono::milliseconds(200));
        window.present();
        scheduler.advance(std::chrono::milliseconds(1000));
        QCOMPARE(window.content(), views.data());

        window.close();
        scheduler.advance(std::chrono::milliseconds(499));
        QVERIFY(views);
        scheduler.advance(std::chrono::milliseconds(1));
        QVERIFY(!views && !window.content());
        window.present();
        QVERIFY(window.content());
        QCOMPARE(built, 2);
        QCOMPARE(quits.size(), 0);
    }

    // The previews tick only while the window can be seen.
    void onScreenOnlyWhenShownUncoveredAndNotMinimised() {
        ManualScheduler scheduler;
        ConfigWindow window(scheduler, [] { return new QWidget(); });
        QSignalSpy spy(&window, &ConfigWindow::visibilityChanged);
        const auto last = [&] { return spy.isEmpty() ? false : spy.last().at(0).toBool(); };
        window.present();
        QVERIFY(last());
        window.setCovered(true);
        QVERIFY(!last());
        window.setCovered(false);
        QVERIFY(last());
        window.showMinimized();
        QTRY_VERIFY(!last());
        window.present();
        QTRY_VERIFY(last());
        window.close();
        QVERIFY(!last());
        // Each change is said once.
        QCOMPARE(spy.size(), 6);
    }
};

QTEST_MAIN(tst_ConfigWindow)
#include "tst_configwindow.moc"
