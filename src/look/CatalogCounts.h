// The size of the catalogue, for texts that cite it: widget kinds, size classes, themes.
#pragma once

#include <QString>

namespace tw {

// Lives with the themes because it is the lowest layer that sees both the kinds and the themes.
class CatalogCounts {
public:
    CatalogCounts() = delete;

    static int widgets();
    static int sizes();
    static int themes();
    // "widgets=51 sizes=9 themes=25".
    static QString line();
};

} // namespace tw
