// Puts something other than a regular file where a data file belongs, as a hostile or broken
// data directory can: a FIFO, a link to /dev/zero, a directory, or a link to nothing (to
// `gone/<name>` beside it).
#pragma once

#include <QString>

namespace tw::test {

// `kind` is "fifo", "zero", "dir" or "dangling"; true when it was put there.
bool placeNotAFile(const QString& kind, const QString& path);

} // namespace tw::test
