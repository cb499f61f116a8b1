// The text styles an element may ask for, from the largest to the smallest.
#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace tw {

enum class CustomTextStyle { display, title, headline, body, caption, micro };

inline constexpr std::array<CustomTextStyle, 6> allCustomTextStyles{
    CustomTextStyle::display, CustomTextStyle::title,   CustomTextStyle::headline,
    CustomTextStyle::body,    CustomTextStyle::caption, CustomTextStyle::micro};

QString rawValue(CustomTextStyle style);
std::optional<CustomTextStyle> customTextStyleFromRawValue(QStringView raw);
// The localized name of the editor ("custom.style.micro" reads "Small").
QString label(CustomTextStyle style);

} // namespace tw
