// The local file a desktop's picture setting names, whether it is written as a "file:" URI
// (percent-encoded, as GSettings and Plasma keep it) or as a plain absolute path.
#pragma once

#include <QString>

namespace tw {

struct PictureUri {
    // The absolute path, or empty for anything that is not a local file: another scheme or
    // host, a relative path, an encoded NUL.
    static QString localFile(const QString& uriOrPath);
};

} // namespace tw
