// One GET to the outside world, with the house limits every request carries.
#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QUrl>

#include <chrono>

namespace tw {

using HttpHeader = QPair<QByteArray, QByteArray>;

struct HttpRequest {
    static constexpr std::chrono::milliseconds defaultTimeout{15'000};
    static constexpr qint64 defaultMaxBytes = 4 * 1024 * 1024;

    QUrl url;
    // Sent as given; "User-Agent" and "Accept" get the house values unless set here.
    QList<HttpHeader> headers;
    // From the start of the request to the last byte of the body, not between bytes.
    std::chrono::milliseconds timeout = defaultTimeout;
    // Of the body as read, so after any decompression.
    qint64 maxBytes = defaultMaxBytes;

    bool operator==(const HttpRequest&) const = default;
};

} // namespace tw
