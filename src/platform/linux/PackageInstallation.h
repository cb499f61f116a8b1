// Whether the running program came from a Debian package or a Flatpak, from their own records.
#pragma once

#include "platform/Installation.h"

#include <QString>

namespace tw {

struct PackageInstallation {
    static inline const QString packageName = QStringLiteral("tarnwick");

    // `flatpakId` is $FLATPAK_ID (set inside a Flatpak sandbox); `dpkgInfo` the folder of the
    // package manager's file lists ("/var/lib/dpkg/info"): the package is ours when its list
    // names `executable` (symbolic links resolved).
    static Installation detect(const QString& executable, const QString& dpkgInfo,
                               const QString& flatpakId);
};

} // namespace tw
