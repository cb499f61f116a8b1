// How a number element reads: its number with the element's decimals, prefix and suffix, and
// where a ring or bar stands between its ends.
#pragma once

#include "custom/CustomElement.h"
#include "custom/CustomValueBag.h"

#include <QString>

#include <optional>

namespace tw {

class CustomValueText {
public:
    CustomValueText() = delete;

    // Ends of a ring or bar that names none.
    static constexpr double defaultMinimum = 0;
    static constexpr double defaultMaximum = 100;

    // `decimals` held to 0...6; without it a fraction below 100 shows one decimal and anything
    // else none.
    static QString number(double value, std::optional<int> decimals);
    // Prefix, number and suffix; an element without a number shows its rendered text, or "—".
    static QString text(const CustomElement& element, const CustomValueBag& values);
    // Where `value` stands between the element's `min` and `max`, from 0 to 1; 0 for ends that
    // go backwards or meet.
    static double fraction(const CustomElement& element, double value);
};

} // namespace tw
