// What a web tile's settings ask for: the page, how often it is loaded again, where it is
// scrolled to and how large it is drawn.
#pragma once

#include "model/WidgetInstance.h"

#include <QUrl>

#include <chrono>
#include <optional>

namespace tw {

struct WebTileSettings {
    // Invalid when the person has typed nothing usable.
    QUrl url;
    // Zero: only when the tile comes into view or on "Reload".
    std::chrono::minutes refresh{15};
    int scroll = 0;
    double zoom = 1.0;

    bool operator==(const WebTileSettings&) const = default;

    static WebTileSettings from(const WidgetSettings& settings);
};

// A web page's address from what a person typed: "example.org" is taken as https, anything but
// http and https (files, scripts, data) or without a host is nothing.
std::optional<QUrl> webPageAddress(const QString& typed);

} // namespace tw
