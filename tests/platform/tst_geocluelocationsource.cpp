#include "ManualScheduler.h"
#include "SessionBusMock.h"
#include "TestRows.h"
#include "platform/linux/GeoClueLocationSource.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QSignalSpy>
#include <QTest>

#include <cmath>

namespace tw {

namespace {

using Authorization = LocationSource::Authorization;
using Failure = LocationSource::Failure;

const QString geoclue = QStringLiteral("org.freedesktop.GeoClue2");
const QString manager = QStringLiteral("/org/freedesktop/GeoClue2/Manager");
const QString client = QStringLiteral("/org/freedesktop/GeoClue2/Client/1");
const QString clientInterface = QStringLiteral("org.freedesktop.GeoClue2.Client");

// GeoClue on the private bus: a manager whose GetClient hands out one client; the client's Start
// asks the agent, which grants or refuses.
bool startGeoClue(SessionBusMock& bus, bool grants) {
    if (!bus.startService(geoclue, {QStringLiteral("--session"), geoclue, manager,
                                    QStringLiteral("org.freedesktop.GeoClue2.Manager")})) {
        return false;
    }
    const QString start =
        grants ? QStringLiteral("self.Set('%1', 'Active', True)").arg(clientInterface)
               : QStringLiteral("raise dbus.exceptions.DBusException('disallowed by the agent', "
                                "name='org.freedesktop.DBus.Error.AccessDenied')");
    return SessionBusMock::mockCall(geoclue, manager, QStringLiteral("AddMethod"),
                                    {QString(), QStringLiteral("GetClient"), QString(),
                                     QStringLiteral("o"), QStringLiteral("ret = '%1'").arg(client)})
                   .type() == QDBusMessage::ReplyMessage &&
           SessionBusMock::addObject(
               geoclue, manager, client, clientInterface,
               {{QStringLiteral("DesktopId"), QString()},
                {QStringLiteral("RequestedAccuracyLevel"), 0U},
                {QStringLiteral("DistanceThreshold"), 0U},
                {QStringLiteral("Active"), false},
                {QStringLiteral("Location"), QVariant::fromValue(QDBusObjectPath("/"))}},
               {{QStringLiteral("Start"), QString(), QString(), start},
                {QStringLiteral("Stop"), QString(), QString(),
                 QStringLiteral("self.Set('%1', 'Active', False)").arg(clientInterface)}});
}

QVariant clientProperty(const QString& name) {
    QDBusMessage get = QDBusMessage::createMethodCall(
        geoclue, client, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    get << clientInterface << name;
    const QDBusMessage reply = QDBusConnection::sessionBus().call(get);
    return reply.arguments().value(0).value<QDBusVariant>().variant();
}

bool active() {
    return clientProperty(QStringLiteral("Active")).toBool();
}

// A new Location object, announced as GeoClue does.
bool moveTo(double latitude, double longitude) {
    static int count = 0;
    const QString location = QStringLiteral("/org/freedesktop/GeoClue2/Location/%1").arg(++count);
    return SessionBusMock::addObject(geoclue, manager, location,
                                     QStringLiteral("org.freedesktop.GeoClue2.Location"),
                                     {{QStringLiteral("Latitude"), latitude},
                                      {QStringLiteral("Longitude"), longitude},
                                      {QStringLiteral("Accuracy"), 5000.0}},
                                     {}) &&
           SessionBusMock::mockCall(geoclue, client, QStringLiteral("EmitSignal"),
                                    {clientInterface, QStringLiteral("LocationUpdated"),
                                     QStringLiteral("oo"),
                                     QVariantList{QVariant::fromValue(QDBusObjectPath("/")),
                                                  QVariant::fromValue(QDBusObjectPath(location))}})
                   .type() == QDBusMessage::ReplyMessage;
}

void settle(const GeoClueLocationSource& source) {
    QTRY_VERIFY(source.findChildren<QDBusPendingCallWatcher*>().isEmpty());
}

} // namespace

// The real source against GeoClue's objects served by python3-dbusmock on a private bus.
class TestGeoClueLocationSource : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        if (!m_bus.skipReason().isEmpty()) {
            QSKIP(qPrintable(m_bus.skipReason()));
        }
    }
    void cleanup() { m_bus.stopServices(); }

    void requestLocation_data() {
        QTest::addColumn<bool>("served");
        QTest::addColumn<bool>("grants");
        // NaN: GeoClue never finds the place.
        QTest::addColumn<double>("latitude");
        // -1: resolved.
        QTest::addColumn<int>("failure");
        QTest::addColumn<Authorization>("authorization");
        using test::row;
        const double none = std::nan("");
        row("a fix", true, true, 52.52, -1, Authorization::authorized);
        row("a place off the globe is no fix", true, true, 123.0, int(Failure::locationUnknown),
            Authorization::authorized);
        row("no fix in time", true, true, none, int(Failure::locationUnknown),
            Authorization::authorized);
        row("refused by the agent", true, false, none, int(Failure::denied), Authorization::denied);
        row("GeoClue absent", false, false, none, int(Failure::other), Authorization::restricted);
    }
    void requestLocation() {
        QFETCH(bool, served);
        QFETCH(bool, grants);
        QFETCH(double, latitude);
        QFETCH(int, failure);
        QFETCH(Authorization, authorization);
        if (served) {
            QVERIFY(startGeoClue(m_bus, grants));
        }
        test::ManualScheduler scheduler;
        GeoClueLocationSource source(QDBusConnection::sessionBus(), scheduler);
        QCOMPARE(source.authorization(), Authorization::notDetermined);
        QSignalSpy resolved(&source, &LocationSource::locationResolved);
        QSignalSpy failed(&source, &LocationSource::locationFailed);
        QSignalSpy authorizations(&source, &LocationSource::authorizationChanged);

        source.requestLocation();
        if (grants) {
            QTRY_VERIFY(active());
            QCOMPARE(clientProperty(QStringLiteral("DesktopId")),
                     QVariant(QStringLiteral("com.tarnwick.Tarnwick")));
            // City accuracy; both as the unsigned integers GeoClue's properties are, since it
            // refuses any other type.
            const QVariant accuracy = clientProperty(QStringLiteral("RequestedAccuracyLevel"));
            const QVariant threshold = clientProperty(QStringLiteral("DistanceThreshold"));
            QCOMPARE(accuracy.typeId(), QMetaType::UInt);
            QCOMPARE(threshold.typeId(), QMetaType::UInt);
            QCOMPARE(accuracy.toUInt(), 4U);
            QCOMPARE(threshold.toUInt(), GeoClueLocationSource::distanceThreshold);
            if (!std::isnan(latitude)) {
                QVERIFY(moveTo(latitude, 13.405));
            }
        }
        settle(source);
        if (failure == int(Failure::locationUnknown)) {
            scheduler.advance(GeoClueLocationSource::fixTimeout);
        }
        QTRY_COMPARE(resolved.count() + failed.count(), 1);
        if (failure < 0) {
            QCOMPARE(resolved.first(), (QVariantList{latitude, 13.405}));
        } else {
            QCOMPARE(failed.first().first().value<Failure>(), Failure(failure));
        }
        QCOMPARE(source.authorization(), authorization);
        QCOMPARE(authorizations.count(), 1);
        // Nobody waits any more: the client is stopped.
        QTRY_VERIFY(!active());

        // Asked again, the answer comes even when nothing changed.
        source.requestAuthorization();
        QTRY_COMPARE(authorizations.count(), 2);
        QCOMPARE(authorizations.last().first().value<Authorization>(), authorization);
        settle(source);
        QVERIFY(!active());
        QCOMPARE(resolved.count() + failed.count(), 1);
    }

    void updatesFollowUntilStoppedOrGeoClueLeaves() {
        QVERIFY(startGeoClue(m_bus, true));
        test::ManualScheduler scheduler;
        GeoClueLocationSource source(QDBusConnection::sessionBus(), scheduler);
        QSignalSpy resolved(&source, &LocationSource::locationResolved);
        QSignalSpy failed(&source, &LocationSource::locationFailed);

        source.startUpdatingLocation();
        QTRY_VERIFY(active());
        QVERIFY(moveTo(48.1351, 11.582));
        QTRY_COMPARE(resolved.count(), 1);
        QVERIFY(moveTo(48.2, 11.6));
        QTRY_COMPARE(resolved.count(), 2);
        QCOMPARE(resolved.last(), (QVariantList{48.2, 11.6}));
        // Updates have no deadline of their own.
        scheduler.advance(GeoClueLocationSource::fixTimeout * 2);
        QVERIFY(active());

        source.stopUpdatingLocation();
        QTRY_VERIFY(!active());
        QVERIFY(moveTo(1, 2));
        settle(source);
        QCOMPARE(resolved.count(), 2);
        QCOMPARE(failed.count(), 0);

        // GeoClue leaving ends the updates; once back, a new start follows it again.
        source.startUpdatingLocation();
        QTRY_VERIFY(active());
        settle(source);
        m_bus.stopServices();
        QTRY_COMPARE(failed.count(), 1);
        QCOMPARE(failed.last().first().value<Failure>(), Failure::other);
        QVERIFY(startGeoClue(m_bus, true));
        source.startUpdatingLocation();
        QTRY_VERIFY(active());
        QVERIFY(moveTo(-33.87, 151.21));
        QTRY_COMPARE(resolved.count(), 3);
        QCOMPARE(resolved.last(), (QVariantList{-33.87, 151.21}));
    }

private:
    SessionBusMock m_bus;
};

} // namespace tw

QTEST_GUILESS_MAIN(tw::TestGeoClueLocationSource)
#include "tst_geocluelocationsource.moc"
