// What became of an HttpRequest: the answer, or why there is none.
#pragma once

#include "net/HttpRequest.h"

#include <QString>

namespace tw {

enum class HttpError {
    None,
    Timeout,
    TooLarge,
    // No route to the service, or the connection went away: most likely the machine is offline.
    Offline,
    Network,
    RedirectRefused,
    Cancelled,
};

struct HttpResponse {
    // Zero when no HTTP answer arrived.
    int status = 0;
    // Names lower-cased.
    QList<HttpHeader> headers;
    QByteArray body;
    HttpError error = HttpError::None;
    // One line for a person; empty when there is no error.
    QString message;
    // Where the answer came from, after redirects.
    QUrl url;

    // An answer arrived whole, with a 2xx status.
    bool isSuccess() const { return error == HttpError::None && status >= 200 && status < 300; }
    QByteArray header(const QByteArray& name) const;

    bool operator==(const HttpResponse&) const = default;
};

} // namespace tw
