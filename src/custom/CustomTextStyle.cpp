#include "custom/CustomTextStyle.h"

#include "platform/RawValues.h"
#include "text/L.h"

namespace tw {

namespace {

constexpr RawValues<CustomTextStyle, 6> rawValues{
    {"display", "title", "headline", "body", "caption", "micro"}};

struct StyleLabel {
    const char* key;
    const char* english;
};

// Indexed by the enumeration's value.
constexpr std::array<StyleLabel, 6> labels{{
    {"custom.style.display", "Display"},
    {"custom.style.title", "Title"},
    {"custom.style.headline", "Headline"},
    {"custom.style.body", "Body"},
    {"custom.style.caption", "Caption"},
    {"custom.style.micro", "Small"},
}};

} // namespace

QString rawValue(CustomTextStyle style) {
    return rawValues.of(style);
}

std::optional<CustomTextStyle> customTextStyleFromRawValue(QStringView raw) {
    return rawValues.parse(raw);
}

QString label(CustomTextStyle style) {
    const StyleLabel& l = labels.at(static_cast<std::size_t>(style));
    return L(l.key, QString::fromUtf8(l.english));
}

} // namespace tw
