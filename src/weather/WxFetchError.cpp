#include "weather/WxFetchError.h"

#include "text/L.h"

namespace tw {

std::optional<WxFetchError> WxFetchError::from(const HttpResponse& response) {
    if (response.error != HttpError::None) {
        return WxFetchError{Kind::transfer, response.error, response.message};
    }
    if (!response.isSuccess()) {
        return WxFetchError{Kind::badStatus, HttpError::None,
                            QStringLiteral("HTTP %1").arg(response.status)};
    }
    return std::nullopt;
}

QString message(const WxFetchError& error) {
    if (error.kind == WxFetchError::Kind::transfer) {
        switch (error.transfer) {
        case HttpError::Offline:
            return L("weather.err.offline", QStringLiteral("You’re offline"));
        case HttpError::Timeout:
            return L("weather.err.timeout", QStringLiteral("Request timed out"));
        case HttpError::Network:
        case HttpError::RedirectRefused:
        case HttpError::Cancelled:
            return L("weather.err.network", QStringLiteral("Network error"));
        case HttpError::TooLarge:
        case HttpError::None:
            break;
        }
    }
    return L("weather.err.unavailable", QStringLiteral("Weather data unavailable"));
}

} // namespace tw
