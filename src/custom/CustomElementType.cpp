#include "custom/CustomElementType.h"

#include "platform/RawValues.h"
#include "text/L.h"

namespace tw {

namespace {

constexpr RawValues<CustomElementType, 11> rawValues{{"text", "value", "icon", "gauge", "bar",
                                                      "sparkline", "image", "divider", "spacer",
                                                      "list", "bars"}};

struct TypeFacts {
    const char* labelKey;
    const char* defaultLabel;
    const char* symbol;
    int level;
};

// Indexed by the enumeration's value.
constexpr std::array<TypeFacts, 11> facts{{
    {"custom.el.text", "Text", "textformat", 1},
    {"custom.el.value", "Number", "number", 1},
    {"custom.el.icon", "Symbol", "star", 1},
    {"custom.el.gauge", "Ring", "circle.dashed", 1},
    {"custom.el.bar", "Bar", "chart.bar.fill", 1},
    {"custom.el.sparkline", "Chart", "waveform.path.ecg", 1},
    {"custom.el.image", "Picture", "photo", 1},
    {"custom.el.divider", "Divider", "minus", 1},
    {"custom.el.spacer", "Space", "arrow.left.and.right", 1},
    {"custom.el.list", "List", "list.bullet", 2},
    {"custom.el.bars", "Bars", "chart.bar.xaxis", 2},
}};

const TypeFacts& factsOf(CustomElementType type) {
    return facts.at(static_cast<std::size_t>(type));
}

} // namespace

QString rawValue(CustomElementType type) {
    return rawValues.of(type);
}

std::optional<CustomElementType> customElementTypeFromRawValue(QStringView raw) {
    return rawValues.parse(raw);
}

QString title(CustomElementType type) {
    return L(factsOf(type).labelKey, QString::fromUtf8(factsOf(type).defaultLabel));
}

QString symbol(CustomElementType type) {
    return QLatin1String(factsOf(type).symbol);
}

int schemaLevel(CustomElementType type) {
    return factsOf(type).level;
}

} // namespace tw
