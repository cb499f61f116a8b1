// What a custom widget element is: its raw word in the file, its editor label and symbol, and
// the schema level that using it needs.
#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace tw {

enum class CustomElementType {
    text,
    value,
    icon,
    gauge,
    bar,
    sparkline,
    image,
    divider,
    spacer,
    list,
    bars
};

inline constexpr std::array<CustomElementType, 11> allCustomElementTypes{
    CustomElementType::text,  CustomElementType::value,   CustomElementType::icon,
    CustomElementType::gauge, CustomElementType::bar,     CustomElementType::sparkline,
    CustomElementType::image, CustomElementType::divider, CustomElementType::spacer,
    CustomElementType::list,  CustomElementType::bars};

QString rawValue(CustomElementType type);
std::optional<CustomElementType> customElementTypeFromRawValue(QStringView raw);
// The localized label of the editor ("custom.el.gauge" reads "Ring").
QString title(CustomElementType type);
QString symbol(CustomElementType type);
// 2 for `list` and `bars`, 1 for the rest.
int schemaLevel(CustomElementType type);

} // namespace tw
