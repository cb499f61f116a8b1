// The order people expect of file names: numbers by their value ("img2" before "img10"), letters
// without regard to case. The same in every locale, the C locale included.
#pragma once

#include <QString>

namespace tw {

struct NaturalOrder {
    // Negative, zero or positive as `a` sorts before, with or after `b`.
    static int compare(const QString& a, const QString& b);
    static bool less(const QString& a, const QString& b) { return compare(a, b) < 0; }
};

} // namespace tw
