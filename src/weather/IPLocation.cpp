#include "weather/IPLocation.h"

#include "weather/WireValues.h"

#include <QJsonObject>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace tw {

namespace {

using namespace Qt::StringLiterals;

std::optional<double> coordinate(const QJsonValue& value) {
    if (value.isDouble()) {
        return value.toDouble();
    }
    bool ok = false;
    const double parsed = value.toString().trimmed().toDouble(&ok);
    return ok ? std::optional(parsed) : std::nullopt;
}

bool onGlobe(double latitude, double longitude) {
    return latitude >= -90 && latitude <= 90 && longitude >= -180 && longitude <= 180 &&
           !(latitude == 0 && longitude == 0);
}

std::optional<QString> countryOf(const QJsonObject& root) {
    for (const QString& key : {u"country_code"_s, u"countryCode"_s}) {
        if (auto code = wire::string(root.value(key))) {
            return code;
        }
    }
    const std::optional<QString> country = wire::string(root.value(u"country"_s));
    if (country && country->size() == 2 && country->at(0).isLetter() && country->at(1).isLetter()) {
        return country;
    }
    return std::nullopt;
}

QString organisationOf(const QJsonObject& root) {
    const QJsonObject connection = root.value(u"connection"_s).toObject();
    for (const QJsonValue& value : {root.value(u"org"_s), connection.value(u"org"_s),
                                    connection.value(u"isp"_s), root.value(u"isp"_s)}) {
        if (auto organisation = wire::string(value)) {
            return *organisation;
        }
    }
    return {};
}

} // namespace

std::optional<IPLocation> parseIPLocation(const QByteArray& json) {
    const std::optional<QJsonObject> root = wire::rootObject(json);
    if (!root) {
        return std::nullopt;
    }
    const QJsonValue success = root->value(u"success"_s);
    if (success.isBool() && !success.toBool()) {
        return std::nullopt;
    }
    std::optional<double> latitude = coordinate(root->value(u"latitude"_s));
    std::optional<double> longitude = coordinate(root->value(u"longitude"_s));
    if (!latitude || !longitude) {
        const QStringList parts = root->value(u"loc"_s).toString().split(u',');
        if (parts.size() == 2) {
            latitude = coordinate(parts.at(0));
            longitude = coordinate(parts.at(1));
        }
    }
    if (!latitude || !longitude || !onGlobe(*latitude, *longitude)) {
        return std::nullopt;
    }
    return IPLocation{.latitude = *latitude,
                      .longitude = *longitude,
                      .city = wire::string(root->value(u"city"_s)),
                      .country = countryOf(*root),
                      .organisation = organisationOf(*root)};
}

bool looksLikeProxy(QStringView organisation) {
    static constexpr std::array<QStringView, 36> marks{
        u"cloudflare",   u"private relay", u"icloud",         u"akamai",      u"fastly",
        u"zscaler",      u"vpn",           u"nordvpn",        u"mullvad",     u"proton",
        u"surfshark",    u"expressvpn",    u"m247",           u"datacamp",    u"tefincom",
        u"cyberghost",   u"windscribe",    u"tor ",           u"amazon",      u"aws",
        u"google cloud", u"google llc",    u"microsoft corp", u"azure",       u"digitalocean",
        u"ovh",          u"hetzner",       u"linode",         u"vultr",       u"choopa",
        u"leaseweb",     u"hosting",       u"datacenter",     u"data center", u"colocation",
        u"quadranet"};
    const QString lower = organisation.toString().toLower();
    return std::any_of(marks.begin(), marks.end(),
                       [&](QStringView mark) { return lower.contains(mark); });
}

double distanceKm(double latitude1, double longitude1, double latitude2, double longitude2) {
    constexpr double earthRadiusKm = 6371.0;
    constexpr double toRadians = std::numbers::pi / 180.0;
    const double dLat = (latitude2 - latitude1) * toRadians;
    const double dLon = (longitude2 - longitude1) * toRadians;
    const double a = std::pow(std::sin(dLat / 2), 2) + std::cos(latitude1 * toRadians) *
                                                           std::cos(latitude2 * toRadians) *
                                                           std::pow(std::sin(dLon / 2), 2);
    return 2 * earthRadiusKm * std::asin(std::sqrt(std::min(1.0, a)));
}

} // namespace tw
