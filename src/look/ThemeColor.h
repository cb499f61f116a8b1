// A colour of a theme as four fractions, free of any drawing library.
#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QStringView>

#include <optional>

namespace tw {

struct ThemeColor {
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;
    double opacity = 1.0;

    bool operator==(const ThemeColor&) const = default;

    // "#RRGGBB" (the "#" optional, blanks around it ignored), each byte divided by 255; text
    // that is not hexadecimal reads as black.
    static ThemeColor hex(QStringView text, double opacity = 1.0);

    // Keys "red", "green", "blue", "opacity".
    QJsonObject toJson() const;
    // Lenient: a missing or non-numeric component is 0 (opacity 1), every value held to 0...1;
    // only a value that is not an object fails.
    static std::optional<ThemeColor> fromJson(const QJsonValue& json);
};

} // namespace tw
