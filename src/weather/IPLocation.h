// Where the machine's internet address is, as the three address services answer, and whether
// their answer names a proxy network rather than the person's own connection.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

#include <optional>

namespace tw {

struct IPLocation {
    double latitude = 0;
    double longitude = 0;
    std::optional<QString> city;
    // Two letters, as the service gave it.
    std::optional<QString> country;
    // The network's owner; empty when the answer names none.
    QString organisation;

    bool operator==(const IPLocation&) const = default;
};

// Any of the three services' answers: coordinates as numbers, numeric strings or "loc" as
// "lat,lon". Nullopt for an answer that is no object, says `success: false`, or has no place on
// the globe (0, 0 included, which the services give when they know nothing).
std::optional<IPLocation> parseIPLocation(const QByteArray& json);

// Whether the organisation looks like a VPN, relay, cloud or hosting network, whose address says
// nothing about where the person is.
bool looksLikeProxy(QStringView organisation);

// Great-circle distance in kilometres.
double distanceKm(double latitude1, double longitude1, double latitude2, double longitude2);

} // namespace tw
