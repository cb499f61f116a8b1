// Why a forecast could not be had: the transfer's own error, a bad status or an answer that
// does not decode; and the words a tile shows for it.
#pragma once

#include "net/HttpResponse.h"

#include <QString>

namespace tw {

struct WxFetchError {
    enum class Kind { badURL, badStatus, malformed, transfer };

    Kind kind = Kind::malformed;
    // Set for `transfer`.
    HttpError transfer = HttpError::None;
    // One line for the log.
    QString detail;

    // A failed request, a non-2xx status, or nullopt for an answer that arrived whole.
    static std::optional<WxFetchError> from(const HttpResponse& response);

    bool operator==(const WxFetchError&) const = default;
};

// The localized words for a person: offline, timed out, another network error, or unavailable.
QString message(const WxFetchError& error);

} // namespace tw
