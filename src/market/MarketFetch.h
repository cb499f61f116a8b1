// What the three quote stores need from the outside world, and their house limits per request.
#pragma once

#include "net/Endpoints.h"

#include <chrono>

namespace tw {

class Clock;
class HttpClient;

struct MarketFetch {
    static constexpr std::chrono::milliseconds timeout{10'000};
    // A day's chart of one share is some tens of kilobytes.
    static constexpr qint64 maxBytes = 1024 * 1024;

    // All must outlive the stores.
    HttpClient& http;
    const Endpoints& endpoints;
    // For the time an answer arrived.
    const Clock& clock;
};

} // namespace tw
