// The contents of the elements that draw many entries: the lines of a `list` and the numbers of
// `bars`, both read from an array in a source document.
#pragma once

#include "custom/CustomElement.h"
#include "custom/CustomValueBag.h"
#include "model/WidgetSize.h"

#include <QList>
#include <QStringList>

namespace tw {

class CustomCollections {
public:
    CustomCollections() = delete;

    // A list never shows more lines than this, whatever its `limit` says.
    static constexpr int maximumLines = 12;
    // Bars keep the last this many numbers.
    static constexpr int maximumBars = 24;

    // The element's `text` (or "{item:title}") rendered once per entry, each with the entry as
    // the bag's `item`, as many as `limit` or the tile's size allow.
    static QStringList lines(const CustomElement& element, const CustomValueBag& values,
                             WidgetSize size);
    // The number of each entry at the element's `text` field, the last 24 of them.
    static QList<double> series(const CustomElement& element, const CustomValueBag& values);

    // How many lines a list without `limit` shows at `size`.
    static int defaultLines(WidgetSize size);
};

} // namespace tw
