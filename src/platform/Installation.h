// How this copy of the program came onto the machine, which decides how a new version reaches it.
#pragma once

#include <QString>

namespace tw {

struct Installation {
    enum class Kind {
        // A package of the system's package manager: it updates the program with the rest.
        systemPackage,
        // A sandboxed application of a store that updates its own.
        sandboxed,
        // Built or unpacked by hand: a person fetches the new version themselves.
        unmanaged,
    };

    Kind kind = Kind::unmanaged;
    // What brought it, in words ("Debian package"); empty when unmanaged.
    QString source;
    // The command that brings the newest version, for a person to copy; empty when none fits.
    QString upgradeCommand;

    bool operator==(const Installation&) const = default;
};

} // namespace tw
