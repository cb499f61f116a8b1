// A location service a test answers for: it records what was asked and says what the test
// makes it say.
#pragma once

#include "platform/LocationSource.h"

namespace tw::test {

class ScriptedLocationSource final : public LocationSource {
public:
    explicit ScriptedLocationSource(Authorization authorization = Authorization::notDetermined)
        : m_authorization(authorization) {}

    Authorization authorization() const override { return m_authorization; }
    void requestAuthorization() override { ++authorizationRequests; }
    void requestLocation() override { ++locationRequests; }
    void startUpdatingLocation() override { updating = true; }
    void stopUpdatingLocation() override { updating = false; }

    void setAuthorization(Authorization authorization) {
        m_authorization = authorization;
        Q_EMIT authorizationChanged(authorization);
    }
    void resolve(double latitude, double longitude) {
        Q_EMIT locationResolved(latitude, longitude);
    }
    void fail(Failure failure) { Q_EMIT locationFailed(failure, QStringLiteral("scripted")); }

    int authorizationRequests = 0;
    int locationRequests = 0;
    bool updating = false;

private:
    Authorization m_authorization;
};

} // namespace tw::test
