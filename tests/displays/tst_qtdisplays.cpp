#include "SessionBusMock.h"
#include "platform/linux/QtDisplays.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

namespace tw {

class TestQtDisplays : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // First: the system bus connection is made once per process, and here it must be the fake,
    // a private bus that stands in for both buses, with a mocked logind on it.
    void sleepAndWakeComeFromTheLoginManager() {
        SessionBusMock bus;
        if (!bus.skipReason().isEmpty()) {
            QSKIP(qPrintable(bus.skipReason()));
        }
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", qgetenv("DBUS_SESSION_BUS_ADDRESS"));
        QVERIFY(bus.startService(QStringLiteral("org.freedesktop.login1"),
                                 {QStringLiteral("--template"), QStringLiteral("logind")}));
        const auto prepareForSleep = [](bool start) {
            // A plain message: an interface object would introspect, and Qt keeps what it learns.
            SessionBusMock::mockCall(QStringLiteral("org.freedesktop.login1"),
                                     QStringLiteral("/org/freedesktop/login1"),
                                     QStringLiteral("EmitSignal"),
                                     {QStringLiteral("org.freedesktop.login1.Manager"),
                                      QStringLiteral("PrepareForSleep"), QStringLiteral("b"),
                                      QVariantList{QVariant::fromValue(QDBusVariant(start))}},
                                     QDBusConnection::systemBus());
        };
        QtDisplays displays;
        QSignalSpy sleeps(&displays, &Displays::willSleep);
        QSignalSpy wakes(&displays, &Displays::didWake);
        prepareForSleep(true);
        QVERIFY(sleeps.wait(5000));
        QCOMPARE(wakes.count(), 0);
        prepareForSleep(false);
        QVERIFY(wakes.wait(5000));
        QCOMPARE(sleeps.count(), 1);
    }

    void conversion_data() {
        QTest::addColumn<QRectF>("primary");
        QTest::addColumn<QRectF>("qt");
        QTest::addColumn<QRectF>("internal");
        const QRectF primary(0, 0, 1920, 1080);
        QTest::newRow("taller, to the right, tops aligned")
            << primary << QRectF(1920, 0, 2560, 1440) << QRectF(1920, -360, 2560, 1440);
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

    void uniqueIds_data() {
        using Ids = QHash<QString, QString>;
        QTest::addColumn<Ids>("read");
        QTest::addColumn<Ids>("unique");
        const QString twin = QStringLiteral("edid-0a1b2c3d4e5f6071");
        const QString other = QStringLiteral("model-99aa88bb77cc66dd");
        const QString dp1 = QStringLiteral("DP-1");
        const QString dp2 = QStringLiteral("DP-2");
        const QString hdmi = QStringLiteral("HDMI-1");
        QTest::newRow("nothing read") << Ids{} << Ids{};
        QTest::newRow("different monitors keep theirs")
            << Ids{{dp1, twin}, {hdmi, other}} << Ids{{dp1, twin}, {hdmi, other}};
        QTest::newRow("three twins beside another")
            << Ids{{hdmi, twin}, {dp2, other}, {dp1, twin}, {QStringLiteral("DP-3"), twin}}
            << Ids{{dp1, twin},
                   {dp2, other},
                   {QStringLiteral("DP-3"), twin + QStringLiteral("-DP-3")},
                   {hdmi, twin + QStringLiteral("-HDMI-1")}};
    }
    void uniqueIds() {
        using Ids = QHash<QString, QString>;
        QFETCH(Ids, read);
        QTEST(QtDisplays::uniqueIds(read), "unique");
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
