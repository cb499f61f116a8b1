#include "files/NaturalOrder.h"

namespace tw {

int NaturalOrder::compare(const QString& a, const QString& b) {
    qsizetype i = 0;
    qsizetype j = 0;
    while (i < a.size() && j < b.size()) {
        if (a[i].isDigit() && b[j].isDigit()) {
            qsizetype endA = i;
            qsizetype endB = j;
            while (endA < a.size() && a[endA].isDigit()) {
                ++endA;
            }
            while (endB < b.size() && b[endB].isDigit()) {
                ++endB;
            }
            // Leading zeros do not make a number larger.
            qsizetype startA = i;
            qsizetype startB = j;
            while (startA + 1 < endA && a[startA] == QLatin1Char('0')) {
                ++startA;
            }
            while (startB + 1 < endB && b[startB] == QLatin1Char('0')) {
                ++startB;
            }
            const qsizetype lengthA = endA - startA;
            const qsizetype lengthB = endB - startB;
            if (lengthA != lengthB) {
                return lengthA < lengthB ? -1 : 1;
            }
            if (const int digits = QStringView(a)
                                       .mid(startA, lengthA)
                                       .compare(QStringView(b).mid(startB, lengthB));
                digits != 0) {
                return digits;
            }
            i = endA;
            j = endB;
            continue;
        }
        const QChar ca = a[i].toCaseFolded();
        const QChar cb = b[j].toCaseFolded();
        if (ca != cb) {
            return ca < cb ? -1 : 1;
        }
        ++i;
        ++j;
    }
    if (i < a.size() || j < b.size()) {
        return i < a.size() ? 1 : -1;
    }
    return a.compare(b);
}

} // namespace tw
