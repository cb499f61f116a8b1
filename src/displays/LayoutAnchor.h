// The edge (or the middle) of a display that a group of widgets keeps its distance from.
#pragma once

#include <QString>

#include <optional>

namespace tw {

enum class LayoutAnchor { leading, center, trailing, top, bottom };

// The stored form: "leading", "center", "trailing", "top", "bottom".
QString toString(LayoutAnchor anchor);
std::optional<LayoutAnchor> layoutAnchorFromString(const QString& text);

} // namespace tw
