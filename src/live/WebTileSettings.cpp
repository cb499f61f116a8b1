#include "live/WebTileSettings.h"

#include "live/WebMessage.h"

#include <algorithm>

namespace tw {

namespace {

constexpr int maxRefreshMinutes = 24 * 60;
constexpr int maxScroll = 100000;

} // namespace

std::optional<QUrl> webPageAddress(const QString& typed) {
    const QString text = typed.trimmed();
    if (text.isEmpty() || text.size() > WebMessage::maxLine / 2) {
        return std::nullopt;
    }
    // Only a scheme of letters before "://" is a scheme; "localhost:8080" is a host and port.
    const bool hasScheme = text.contains(QLatin1String("://"));
    QUrl url = QUrl::fromUserInput(hasScheme ? text : QStringLiteral("https://") + text);
    const QString scheme = url.scheme().toLower();
    if (!url.isValid() || url.host().isEmpty() ||
        (scheme != QLatin1String("http") && scheme != QLatin1String("https"))) {
        return std::nullopt;
    }
    return url;
}

WebTileSettings WebTileSettings::from(const WidgetSettings& settings) {
    WebTileSettings result;
    result.url = webPageAddress(settings.value(QStringLiteral("url"))).value_or(QUrl());
    result.refresh = std::chrono::minutes(
        std::clamp(settings.value(QStringLiteral("refresh")).toInt(), 0, maxRefreshMinutes));
    result.scroll = std::clamp(settings.value(QStringLiteral("scroll")).toInt(), 0, maxScroll);
    bool ok = false;
    const double percent = settings.value(QStringLiteral("zoom")).toDouble(&ok);
    result.zoom = ok ? std::clamp(percent / 100.0, WebMessage::minZoom, WebMessage::maxZoom) : 1.0;
    return result;
}

} // namespace tw
