// The pictures of a folder and its subfolders, in the order a person names them.
#pragma once

#include <QStringList>

namespace tw {

struct PhotoFolder {
    bool exists = false;
    // Absolute paths; hidden files and folders left out.
    QStringList pictures;
    // More were there than the limit allowed.
    bool truncated = false;

    bool operator==(const PhotoFolder&) const = default;

    static constexpr int defaultLimit = 5000;
    static constexpr int depth = 4;

    // Files with one of `suffixes` (lower case, any case on disk), at most `limit` of them,
    // sorted by path with numbers read as numbers ("img2" before "img10").
    static PhotoFolder scan(const QString& folder, const QStringList& suffixes,
                            int limit = defaultLimit);
};

} // namespace tw
