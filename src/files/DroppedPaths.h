// The local files and folders a drag carries, as paths.
#pragma once

#include <QStringList>

class QMimeData;

namespace tw {

struct DroppedPaths {
    DroppedPaths() = delete;

    // Local files only: a drop from a web page or of remote places offers nothing to move.
    static QStringList of(const QMimeData& data);
};

} // namespace tw
