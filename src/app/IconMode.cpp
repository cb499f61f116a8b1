#include "app/LaunchModes.h"
#include "app/SnapshotReport.h"
#include "app/SnapshotWidgetOptions.h"

#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cmath>

namespace tw {

namespace {

// The icon's side in points; --scale gives the pixels of each.
constexpr double iconSide = 512;

} // namespace

std::optional<int> runIconMode(LaunchContext& context) {
    const QString path = context.values.value(0);
    const SnapshotWidgetOptions options = SnapshotWidgetOptions::parse(context.arguments);
    QString problem = options.problem;
    const int pixels = static_cast<int>(std::lround(iconSide * options.devicePixelRatio));
    QImage picture;
    if (problem.isEmpty()) {
        QSvgRenderer renderer(QStringLiteral(":/icon/com.tarnwick.Tarnwick.svg"));
        picture = QImage(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        renderer.render(&painter, QRectF(0, 0, pixels, pixels));
    }
    return reportSnapshot(context, QStringLiteral("icon"), path, picture, problem,
                          QStringLiteral(" size=%1").arg(problem.isEmpty() ? pixels : 0));
}

} // namespace tw
