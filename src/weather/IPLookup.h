// Asks the three internet-address services in turn where the machine is, skipping any that is
// down or names a proxy network.
#pragma once

#include "weather/IPLocation.h"

#include <chrono>
#include <functional>
#include <optional>

class QObject;

namespace tw {

class Endpoints;
class HttpClient;

struct IPLookup {
    static constexpr std::chrono::milliseconds timeout{8'000};
    // The services' answers are a few hundred bytes.
    static constexpr qint64 maxBytes = 64 * 1024;

    std::optional<IPLocation> location;
    // A provider named a proxy network: the address says nothing of where the person is.
    bool unreliable = false;

    bool operator==(const IPLookup&) const = default;
};

// ipapi "/json/", then ipwho "/", then ipinfo "/json"; the first usable answer ends the search.
// `done` runs once, unless `requester` is destroyed first.
void fetchIPLocation(HttpClient& http, const Endpoints& endpoints, const QObject* requester,
                     std::function<void(const IPLookup&)> done);

} // namespace tw
