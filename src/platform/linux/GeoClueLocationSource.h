// Where the machine is, from GeoClue on the system bus: one client of the program's own, started
// while someone waits for a fix or an answer about permission, stopped as soon as nobody does.
// GeoClue asks its agent (the desktop's prompt or privacy setting) when the client starts, so a
// start that succeeds is the permission; every call is asynchronous.
#pragma once

#include "platform/LocationSource.h"
#include "platform/ScheduledTask.h"
#include "platform/Scheduler.h"

#include <QDBusConnection>
#include <QVariantList>

#include <functional>
#include <memory>

class QDBusError;
class QDBusMessage;

namespace tw {

class GeoClueLocationSource final : public LocationSource {
    Q_OBJECT
public:
    // The basename of the program's desktop entry: what GeoClue's agent and the location portal
    // name to the person and keep the decision under.
    static inline const QString desktopId = QStringLiteral("com.tarnwick.Tarnwick");
    // How long a one-shot request waits before it gives up with `locationUnknown`.
    static constexpr Scheduler::Duration fixTimeout = std::chrono::seconds(30);
    // Updates closer than this (metres) are not told: a forecast is the same a few streets on.
    static constexpr uint distanceThreshold = 3000;

    GeoClueLocationSource(QDBusConnection bus, Scheduler& scheduler, QObject* parent = nullptr);
    // On the system bus, with its own timers.
    static std::unique_ptr<GeoClueLocationSource> create();
    ~GeoClueLocationSource() override;

    Authorization authorization() const override { return m_authorization; }
    // Always answered once through `authorizationChanged`, changed or not.
    void requestAuthorization() override;
    void requestLocation() override;
    void startUpdatingLocation() override;
    void stopUpdatingLocation() override;

private Q_SLOTS:
    void onLocationUpdated(const QDBusMessage& message);

private:
    enum class Phase { idle, starting, running };

    GeoClueLocationSource(std::unique_ptr<Scheduler> scheduler);
    void watchService();
    bool wanted() const { return m_oneShot || m_updating || m_authorizing; }
    void ensureStarted();
    void configureAndStart(const QString& clientPath);
    void started();
    void failed(const QDBusError& error);
    void fail(Failure failure, const QString& detail);
    void resolved(double latitude, double longitude);
    void stopIfUnwanted();
    void setAuthorization(Authorization authorization, bool report);
    // Calls a method of GeoClue; `next` gets the answer, an error ends the start.
    void send(const QString& path, const QString& interface, const QString& method,
              const QVariantList& arguments, std::function<void(const QDBusMessage&)> next);
    void setClientProperty(const QString& name, const QVariant& value, std::function<void()> next);

    std::unique_ptr<Scheduler> m_ownScheduler;
    QDBusConnection m_bus;
    Scheduler& m_scheduler;

    Authorization m_authorization = Authorization::notDetermined;
    Phase m_phase = Phase::idle;
    QString m_clientPath;
    bool m_oneShot = false;
    bool m_updating = false;
    bool m_authorizing = false;
    bool m_toldAbsent = false;
    ScheduledTask m_fixTimer;
};

} // namespace tw
