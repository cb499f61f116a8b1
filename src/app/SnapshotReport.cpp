#include "app/SnapshotReport.h"

#include "app/LaunchStep.h"

#include <QImageWriter>

namespace tw {

int reportSnapshot(LaunchContext& context, const QString& mode, const QString& path,
                   const QImage& picture, QString problem, const QString& fields) {
    if (problem.isEmpty() && picture.isNull()) {
        problem = QStringLiteral("the picture could not be drawn.");
    }
    if (problem.isEmpty()) {
        QImageWriter writer(path, "PNG");
        if (!writer.write(picture)) {
            problem = QStringLiteral("cannot write %1: %2.").arg(path, writer.errorString());
        }
    }
    const bool ok = problem.isEmpty();
    context.out << mode << " ok=" << (ok ? "true" : "false") << " path=" << path << fields << '\n';
    if (!ok) {
        context.err << "tarnwick: " << problem << '\n';
    }
    return ok ? 0 : 1;
}

} // namespace tw
