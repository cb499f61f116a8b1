// Numbers as text with a fixed count of decimals, with or without group separators, in the
// application's locale. Immutable once made; Formatters shares one per combination.
#pragma once

#include <QLocale>
#include <QString>

namespace tw {

enum class Grouping { off, on };

class NumberFormatter {
public:
    static constexpr int maximumDecimals = 15;

    // `decimals` is held to 0...maximumDecimals.
    NumberFormatter(int decimals, Grouping grouping, QLocale locale);

    // Rounded to the decimals; a value that rounds to zero has no minus sign; NaN and infinities
    // give "—".
    QString string(double value) const;

    int decimals() const { return m_decimals; }
    Grouping grouping() const { return m_grouping; }
    const QLocale& locale() const { return m_locale; }

private:
    int m_decimals;
    Grouping m_grouping;
    QLocale m_locale;
};

} // namespace tw
