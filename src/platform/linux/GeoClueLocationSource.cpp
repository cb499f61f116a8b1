#include "platform/linux/GeoClueLocationSource.h"

#include "platform/QtScheduler.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QLoggingCategory>

#include <cmath>

namespace tw {

namespace {

Q_LOGGING_CATEGORY(lcLocation, "Location")

const QString service = QStringLiteral("org.freedesktop.GeoClue2");
const QString managerPath = QStringLiteral("/org/freedesktop/GeoClue2/Manager");
const QString managerInterface = QStringLiteral("org.freedesktop.GeoClue2.Manager");
const QString clientInterface = QStringLiteral("org.freedesktop.GeoClue2.Client");
const QString locationInterface = QStringLiteral("org.freedesktop.GeoClue2.Location");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

// GClueAccuracyLevel: a forecast is the same across a city, and asking no finer lets GeoClue
// answer from the network alone and its agent grant the least it can.
constexpr uint accuracyCity = 4;

// The service is neither running nor startable: not installed, or switched off for everyone.
bool meansAbsent(const QString& error) {
    return error == QLatin1String("org.freedesktop.DBus.Error.ServiceUnknown") ||
           error == QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner") ||
           error == QLatin1String("org.freedesktop.DBus.Error.Disconnected") ||
           error.startsWith(QLatin1String("org.freedesktop.DBus.Error.Spawn."));
}

std::optional<double> coordinate(const QVariant& value, double limit) {
    bool ok = false;
    const double degrees = value.toDouble(&ok);
    if (!ok || !std::isfinite(degrees) || std::abs(degrees) > limit) {
        return std::nullopt;
    }
    return degrees;
}

} // namespace

GeoClueLocationSource::GeoClueLocationSource(QDBusConnection bus, Scheduler& scheduler,
                                             QObject* parent)
    : LocationSource(parent)
    , m_bus(std::move(bus))
    , m_scheduler(scheduler) {
    watchService();
}

GeoClueLocationSource::GeoClueLocationSource(std::unique_ptr<Scheduler> scheduler)
    : m_ownScheduler(std::move(scheduler))
    , m_bus(QDBusConnection::systemBus())
    , m_scheduler(*m_ownScheduler) {
    watchService();
}

std::unique_ptr<GeoClueLocationSource> GeoClueLocationSource::create() {
    return std::unique_ptr<GeoClueLocationSource>(
        new GeoClueLocationSource(std::make_unique<QtScheduler>()));
}

GeoClueLocationSource::~GeoClueLocationSource() = default;

// A GeoClue that leaves takes its clients along: whoever waits is told, the next ask begins anew
// (the signal stays followed by path, whoever owns the name then).
void GeoClueLocationSource::watchService() {
    if (!m_bus.isConnected()) {
        return;
    }
    auto* watcher =
        new QDBusServiceWatcher(service, m_bus, QDBusServiceWatcher::WatchForUnregistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
        if (m_phase == Phase::running) {
            m_phase = Phase::idle;
            fail(Failure::other, QStringLiteral("GeoClue left the bus"));
        }
    });
}

void GeoClueLocationSource::requestAuthorization() {
    m_authorizing = true;
    if (m_phase == Phase::running) {
        // The running client is the permission; answer after the caller has returned.
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (m_authorizing) {
                    m_authorizing = false;
                    setAuthorization(m_authorization, true);
                    stopIfUnwanted();
                }
            },
            Qt::QueuedConnection);
        return;
    }
    ensureStarted();
}

void GeoClueLocationSource::requestLocation() {
    m_oneShot = true;
    if (!m_fixTimer.isActive()) {
        m_fixTimer = m_scheduler.singleShot(fixTimeout, std::chrono::seconds(1), this, [this] {
            m_oneShot = false;
            Q_EMIT locationFailed(
                Failure::locationUnknown,
                QStringLiteral("no fix from GeoClue within %1 s")
                    .arg(std::chrono::duration_cast<std::chrono::seconds>(fixTimeout).count()));
            stopIfUnwanted();
        });
    }
    ensureStarted();
}

void GeoClueLocationSource::startUpdatingLocation() {
    m_updating = true;
    ensureStarted();
}

void GeoClueLocationSource::stopUpdatingLocation() {
    m_updating = false;
    stopIfUnwanted();
}

void GeoClueLocationSource::ensureStarted() {
    if (m_phase != Phase::idle) {
        return;
    }
    m_phase = Phase::starting;
    send(managerPath, managerInterface, QStringLiteral("GetClient"), {},
         [this](const QDBusMessage& reply) {
             if (reply.signature() != QLatin1String("o")) {
                 m_phase = Phase::idle;
                 fail(Failure::other, QStringLiteral("GeoClue answered GetClient with \"%1\"")
                                          .arg(reply.signature()));
                 return;
             }
             configureAndStart(qdbus_cast<QDBusObjectPath>(reply.arguments().at(0)).path());
         });
}

// LocationUpdated is followed before Start, which may already tell the first fix.
void GeoClueLocationSource::configureAndStart(const QString& clientPath) {
    if (clientPath != m_clientPath) {
        if (!m_clientPath.isEmpty()) {
            m_bus.disconnect(service, m_clientPath, clientInterface,
                             QStringLiteral("LocationUpdated"), this,
                             SLOT(onLocationUpdated(QDBusMessage)));
        }
        m_clientPath = clientPath;
        m_bus.connect(service, m_clientPath, clientInterface, QStringLiteral("LocationUpdated"),
                      this, SLOT(onLocationUpdated(QDBusMessage)));
    }
    setClientProperty(QStringLiteral("DesktopId"), desktopId, [this] {
        setClientProperty(QStringLiteral("RequestedAccuracyLevel"), accuracyCity, [this] {
            setClientProperty(QStringLiteral("DistanceThreshold"), distanceThreshold, [this] {
                send(m_clientPath, clientInterface, QStringLiteral("Start"), {},
                     [this](const QDBusMessage&) { started(); });
            });
        });
    });
}

void GeoClueLocationSource::started() {
    m_phase = Phase::running;
    const bool report = m_authorizing;
    m_authorizing = false;
    setAuthorization(Authorization::authorized, report);
    stopIfUnwanted();
}

void GeoClueLocationSource::failed(const QDBusError& error) {
    m_phase = Phase::idle;
    const QString detail = QStringLiteral("%1: %2").arg(error.name(), error.message());
    const bool report = m_authorizing;
    m_authorizing = false;
    if (error.type() == QDBusError::AccessDenied) {
        setAuthorization(Authorization::denied, report);
        fail(Failure::denied, detail);
        return;
    }
    if (meansAbsent(error.name())) {
        if (!m_toldAbsent) {
            m_toldAbsent = true;
            qCInfo(lcLocation, "GeoClue is absent (%s); the place comes from the network address",
                   qUtf8Printable(detail));
        }
        setAuthorization(Authorization::restricted, report);
        fail(Failure::other, detail);
        return;
    }
    if (report) {
        setAuthorization(m_authorization, true);
    }
    fail(Failure::other, detail);
}

// Whoever waits for a fix hears of the failure once; updates end with it.
void GeoClueLocationSource::fail(Failure failure, const QString& detail) {
    if (!m_oneShot && !m_updating) {
        return;
    }
    m_oneShot = false;
    m_updating = false;
    m_fixTimer.cancel();
    Q_EMIT locationFailed(failure, detail);
}

void GeoClueLocationSource::onLocationUpdated(const QDBusMessage& message) {
    if (message.signature() != QLatin1String("oo")) {
        return;
    }
    const QString location = qdbus_cast<QDBusObjectPath>(message.arguments().at(1)).path();
    QDBusMessage call = QDBusMessage::createMethodCall(service, location, propertiesInterface,
                                                       QStringLiteral("GetAll"));
    call << locationInterface;
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                const QDBusPendingReply<QVariantMap> reply = *finished;
                if (reply.isError()) {
                    qCWarning(lcLocation, "GeoClue's location could not be read: %s",
                              qUtf8Printable(reply.error().message()));
                    return;
                }
                const QVariantMap properties = reply.value();
                const auto latitude = coordinate(properties.value(QStringLiteral("Latitude")), 90);
                const auto longitude =
                    coordinate(properties.value(QStringLiteral("Longitude")), 180);
                if (!latitude || !longitude) {
                    qCWarning(lcLocation, "GeoClue gave a location off the globe; ignored");
                    return;
                }
                resolved(*latitude, *longitude);
            });
}

void GeoClueLocationSource::resolved(double latitude, double longitude) {
    if (!m_oneShot && !m_updating) {
        return;
    }
    m_oneShot = false;
    m_fixTimer.cancel();
    setAuthorization(Authorization::authorized, false);
    Q_EMIT locationResolved(latitude, longitude);
    stopIfUnwanted();
}

// A client that is still starting is stopped by `started` when nobody wants it by then.
void GeoClueLocationSource::stopIfUnwanted() {
    if (wanted() || m_phase != Phase::running) {
        return;
    }
    m_phase = Phase::idle;
    QDBusMessage call = QDBusMessage::createMethodCall(service, m_clientPath, clientInterface,
                                                       QStringLiteral("Stop"));
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                if (finished->isError()) {
                    qCWarning(lcLocation, "GeoClue's client did not stop: %s",
                              qUtf8Printable(finished->error().message()));
                }
            });
}

void GeoClueLocationSource::setAuthorization(Authorization authorization, bool report) {
    const bool changed = authorization != m_authorization;
    m_authorization = authorization;
    if (changed || report) {
        Q_EMIT authorizationChanged(authorization);
    }
}

void GeoClueLocationSource::send(const QString& path, const QString& interface,
                                 const QString& method, const QVariantList& arguments,
                                 std::function<void(const QDBusMessage&)> next) {
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, method);
    call.setArguments(arguments);
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, next = std::move(next)](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                if (finished->isError()) {
                    failed(finished->error());
                    return;
                }
                next(finished->reply());
            });
}

void GeoClueLocationSource::setClientProperty(const QString& name, const QVariant& value,
                                              std::function<void()> next) {
    send(m_clientPath, propertiesInterface, QStringLiteral("Set"),
         {clientInterface, name, QVariant::fromValue(QDBusVariant(value))},
         [next = std::move(next)](const QDBusMessage&) { next(); });
}

} // namespace tw
