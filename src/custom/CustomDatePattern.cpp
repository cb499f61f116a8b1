#include "custom/CustomDatePattern.h"

#include <algorithm>

namespace tw {

namespace {

QString field(QChar letter, qsizetype count) {
    const auto repeat = [](char c, qsizetype n) { return QString(n, QLatin1Char(c)); };
    switch (letter.unicode()) {
    case 'y':
    case 'Y':
    case 'u':
        return count == 2 ? repeat('y', 2) : repeat('y', 4);
    case 'M':
    case 'L':
        return repeat('M', std::min<qsizetype>(count == 5 ? 3 : count, 4));
    case 'd':
        return repeat('d', std::min<qsizetype>(count, 2));
    case 'E':
        return repeat('d', count == 4 ? 4 : 3);
    case 'c':
    case 'e':
        return count >= 3 ? repeat('d', count == 4 ? 4 : 3) : QString();
    case 'a':
    case 'b':
    case 'B':
        return QStringLiteral("AP");
    case 'h':
    case 'K':
        return repeat('h', std::min<qsizetype>(count, 2));
    case 'H':
    case 'k':
        return repeat('H', std::min<qsizetype>(count, 2));
    case 'm':
        return repeat('m', std::min<qsizetype>(count, 2));
    case 's':
        return repeat('s', std::min<qsizetype>(count, 2));
    case 'S':
        return count == 1 ? QStringLiteral("z") : QStringLiteral("zzz");
    case 'z':
    case 'Z':
    case 'O':
    case 'v':
    case 'V':
    case 'x':
    case 'X':
        return QStringLiteral("t");
    default:
        return {};
    }
}

bool isAsciiLetter(QChar c) {
    return (c >= QLatin1Char('a') && c <= QLatin1Char('z')) ||
           (c >= QLatin1Char('A') && c <= QLatin1Char('Z'));
}

} // namespace

QString CustomDatePattern::qtFormat(QStringView pattern) {
    QString format;
    qsizetype at = 0;
    while (at < pattern.size()) {
        const QChar c = pattern[at];
        if (c == QLatin1Char('\'')) {
            // Both spell a literal the same way: quoted, with '' for the quote itself.
            qsizetype end = at + 1;
            while (end < pattern.size()) {
                if (pattern[end] == QLatin1Char('\'')) {
                    if (end + 1 < pattern.size() && pattern[end + 1] == QLatin1Char('\'') &&
                        end != at + 1) {
                        end += 2;
                        continue;
                    }
                    break;
                }
                ++end;
            }
            format += pattern.sliced(at, std::min(end + 1, pattern.size()) - at);
            at = end + 1;
        } else if (isAsciiLetter(c)) {
            qsizetype end = at;
            while (end < pattern.size() && pattern[end] == c) {
                ++end;
            }
            format += field(c, end - at);
            at = end;
        } else {
            format += c;
            ++at;
        }
    }
    return format;
}

} // namespace tw
