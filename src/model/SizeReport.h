// Text reports of which sizes each built-in kind allows, for the command line.
#pragma once

#include <QString>

namespace tw {

class SizeReport {
public:
    SizeReport() = delete;

    // A matrix: a header row "widget" plus one column per size, one row per kind sorted by kind,
    // "  .  " where a kind lacks a size, then "N widgets, F of P possible size slots filled (X %)".
    static QString table();
    // One line per kind in catalogue order: "clock:small,wide,large,banner,wideTall".
    static QString listSizes();
};

} // namespace tw
