// The "grid.json" decoder: any bytes decode or fail without harm, and whatever decodes is written
// back and read again to the very same layout, with every page counted.
#include "Require.h"
#include "model/GridLayout.h"

#include <QByteArray>

#include <cstdint>
#include <limits>

using tw::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray text =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const std::optional<tw::GridLayout> layout = tw::GridLayout::fromJsonText(text);
    if (!layout) {
        return 0;
    }
    require(layout->pageCount >= 1, "at least one page");
    for (const tw::WidgetInstance& instance : layout->instances) {
        require(!instance.id.isNull(), "every instance has an identity");
        // The count saturates at the largest int rather than overflow.
        require(instance.page < layout->pageCount ||
                    layout->pageCount == std::numeric_limits<int>::max(),
                "every page is counted");
    }
    const std::optional<tw::GridLayout> again = tw::GridLayout::fromJsonText(layout->toJsonText());
    require(again.has_value(), "an encoded layout decodes");
    require(*again == *layout, "a round trip keeps the layout");
    return 0;
}
