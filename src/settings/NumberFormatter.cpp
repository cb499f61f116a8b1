#include "settings/NumberFormatter.h"

#include <algorithm>
#include <cmath>

namespace tw {

NumberFormatter::NumberFormatter(int decimals, Grouping grouping, QLocale locale)
    : m_decimals(std::clamp(decimals, 0, maximumDecimals))
    , m_grouping(grouping)
    , m_locale(std::move(locale)) {
    m_locale.setNumberOptions(grouping == Grouping::on ? QLocale::DefaultNumberOptions
                                                       : QLocale::OmitGroupSeparator);
}

QString NumberFormatter::string(double value) const {
    if (!std::isfinite(value)) {
        return QStringLiteral("—");
    }
    QString text = m_locale.toString(value, 'f', m_decimals);
    // "-0" and "-0.0" read as a reading below zero; a reading that rounds to zero is zero.
    if (value < 0 &&
        m_locale.toString(-value, 'f', m_decimals) == m_locale.toString(0.0, 'f', m_decimals)) {
        text = m_locale.toString(0.0, 'f', m_decimals);
    }
    return text;
}

} // namespace tw
