#include "notices/NoticeVersion.h"

#include <limits>

namespace tw {

QList<qint64> NoticeVersion::parts(const QString& version) {
    QList<qint64> out;
    for (const QString& piece : version.split(QLatin1Char('.'), Qt::SkipEmptyParts)) {
        qint64 value = 0;
        for (const QChar c : piece) {
            if (c >= QLatin1Char('0') && c <= QLatin1Char('9')) {
                // A run of digits too long for any real version saturates instead of wrapping.
                const qint64 digit = c.unicode() - '0';
                value = value > (std::numeric_limits<qint64>::max() - digit) / 10
                            ? std::numeric_limits<qint64>::max()
                            : value * 10 + digit;
            }
        }
        out.append(value);
    }
    return out;
}

std::strong_ordering NoticeVersion::compare(const QString& a, const QString& b) {
    const QList<qint64> left = parts(a);
    const QList<qint64> right = parts(b);
    for (qsizetype i = 0; i < std::max(left.size(), right.size()); ++i) {
        const qint64 l = left.value(i, 0);
        const qint64 r = right.value(i, 0);
        if (l != r) {
            return l <=> r;
        }
    }
    return std::strong_ordering::equal;
}

} // namespace tw
