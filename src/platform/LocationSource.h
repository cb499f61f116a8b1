// Where the machine is, from the system's location service: one-shot fixes, continuous updates
// until the first fix, and whether the person lets the program ask at all.
#pragma once

#include <QObject>
#include <QString>

namespace tw {

class LocationSource : public QObject {
    Q_OBJECT
public:
    enum class Authorization {
        // Nobody has answered yet; asking may show the person a prompt.
        notDetermined,
        // The system has no location service, or it is switched off for everyone.
        restricted,
        // The person said no for this program.
        denied,
        authorized,
    };
    enum class Failure {
        // No fix could be made this time; continuous updates may still find one.
        locationUnknown,
        denied,
        other,
    };

    using QObject::QObject;

    virtual Authorization authorization() const = 0;
    // Asks the person, where the system asks people; answers through `authorizationChanged`.
    virtual void requestAuthorization() = 0;
    // One fix: `locationResolved` or `locationFailed`, once.
    virtual void requestLocation() = 0;
    // Fixes as they come until `stopUpdatingLocation`.
    virtual void startUpdatingLocation() = 0;
    virtual void stopUpdatingLocation() = 0;

Q_SIGNALS:
    // Degrees, north and east positive.
    void locationResolved(double latitude, double longitude);
    // `detail` is one line for the log.
    void locationFailed(tw::LocationSource::Failure failure, const QString& detail);
    void authorizationChanged(tw::LocationSource::Authorization authorization);
};

} // namespace tw
