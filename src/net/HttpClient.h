// The one way out to the network: asynchronous GETs with a time-out and a size cap on each.
#pragma once

#include "net/HttpResponse.h"

#include <functional>

class QObject;

namespace tw {

class HttpClient {
public:
    using Completion = std::function<void(const HttpResponse&)>;

    virtual ~HttpClient() = default;

    // Starts the request and returns at once; `done` runs once on the calling thread with the
    // outcome. `requester` (never null) is who waits: when it is destroyed first, the transfer is
    // aborted and `done` never runs.
    virtual void get(const HttpRequest& request, const QObject* requester, Completion done) = 0;
};

} // namespace tw
