#include "custom/CustomValueText.h"

#include "custom/CustomTokens.h"
#include "settings/Formatters.h"

#include <algorithm>
#include <cmath>

namespace tw {

QString CustomValueText::number(double value, std::optional<int> decimals) {
    const bool whole = value == std::trunc(value);
    const int digits =
        decimals ? std::clamp(*decimals, 0, 6) : (!whole && std::abs(value) < 100 ? 1 : 0);
    return Formatters::number(digits, Grouping::on)->string(value);
}

QString CustomValueText::text(const CustomElement& element, const CustomValueBag& values) {
    const std::optional<double> value =
        CustomTokens::number(element.path.value_or(QString()), element.text, values);
    if (value) {
        return element.prefix.value_or(QString()) + number(*value, element.decimals) +
               element.suffix.value_or(QString());
    }
    if (element.text && !element.text->isEmpty()) {
        return CustomTokens::render(*element.text, values);
    }
    return QStringLiteral("—");
}

double CustomValueText::fraction(const CustomElement& element, double value) {
    const double low = element.min.value_or(defaultMinimum);
    const double high = element.max.value_or(defaultMaximum);
    if (!(high > low) || !std::isfinite(value)) {
        return 0;
    }
    return std::clamp((value - low) / (high - low), 0.0, 1.0);
}

} // namespace tw
