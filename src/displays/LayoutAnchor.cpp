#include "displays/LayoutAnchor.h"

#include <array>
#include <utility>

namespace tw {

namespace {

constexpr std::array<std::pair<LayoutAnchor, const char*>, 5> names{{
    {LayoutAnchor::leading, "leading"},
    {LayoutAnchor::center, "center"},
    {LayoutAnchor::trailing, "trailing"},
    {LayoutAnchor::top, "top"},
    {LayoutAnchor::bottom, "bottom"},
}};

} // namespace

QString toString(LayoutAnchor anchor) {
    for (const auto& [value, name] : names) {
        if (value == anchor) {
            return QLatin1String(name);
        }
    }
    return {};
}

std::optional<LayoutAnchor> layoutAnchorFromString(const QString& text) {
    for (const auto& [value, name] : names) {
        if (text == QLatin1String(name)) {
            return value;
        }
    }
    return std::nullopt;
}

} // namespace tw
