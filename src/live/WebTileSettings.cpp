#include "live/WebTileSettings.h"

#include "live/WebMessage.h"

#include <QRegularExpression>

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
    // "localhost:8080" is a host and port; "javascript:…" and "data:…" are schemes.
    static const QRegularExpression scheme(QStringLiteral("^[A-Za-z][A-Za-z0-9+.-]*:"));
    static const QRegularExpression hostAndPort(QStringLiteral("^[^/:]+:\\d+(/|$)"));
    const bool hasScheme = text.contains(scheme) && !text.contains(hostAndPort);
    const QUrl url(hasScheme ? text : QStringLiteral("https://") + text, QUrl::TolerantMode);
    const QString chosen = url.scheme().toLower();
    if (!url.isValid() || url.host().isEmpty() ||
        (chosen != QLatin1String("http") && chosen != QLatin1String("https"))) {
        return std::nullopt;
    }
    return url;
}

WebTileSettings WebTileSettings::from(const WidgetSettings& settings) {
    WebTileSettings result;
    result.url = webPageAddress(settings.value(QStringLiteral("url"))).value_or(QUrl());
    result.refresh = std::chrono::minutes(
        std::clamp(settings.value(QStringLiteral("refresh"), QStringLiteral("15")).toInt(), 0,
                   maxRefreshMinutes));
    result.scroll = std::clamp(settings.value(QStringLiteral("scroll")).toInt(), 0, maxScroll);
    bool ok = false;
    const double percent = settings.value(QStringLiteral("zoom")).toDouble(&ok);
    result.zoom = ok ? std::clamp(percent / 100.0, WebMessage::minZoom, WebMessage::maxZoom) : 1.0;
    return result;
}

} // namespace tw
