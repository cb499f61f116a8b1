// How a picture mode ends: the picture written as PNG, one line on stdout, the reason on stderr.
#pragma once

#include <QImage>
#include <QString>

namespace tw {

struct LaunchContext;

// Writes `picture` to `path` unless `problem` already says why not, prints "<mode> ok=true|false
// path=<path>" and `fields`, and gives the exit status: 0 when the file was written, else 1.
int reportSnapshot(LaunchContext& context, const QString& mode, const QString& path,
                   const QImage& picture, QString problem, const QString& fields);

} // namespace tw
