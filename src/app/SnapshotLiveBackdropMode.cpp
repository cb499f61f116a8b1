#include "app/LaunchModes.h"
#include "app/SnapshotReport.h"
#include "app/SnapshotWidgetOptions.h"
#include "desktop/PaneInk.h"
#include "faces/FaceKit.h"
#include "faces/Wallpaper.h"
#include "faces/WallpaperRenderer.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace tw {

namespace {

constexpr int frameCount = 6;
constexpr int perRow = 3;
constexpr QSizeF frame(320, 200);
constexpr double gap = 12;
constexpr double padding = 16;
constexpr double caption = 24;

// A number modifier that must be finite and, when `positive`, above zero; `what` says what it
// counts.
std::optional<double> number(const LaunchArguments& arguments, const QString& flag, bool positive,
                             const QString& what, double fallback, QString& problem) {
    const std::optional<QString> text = arguments.value(flag);
    if (!text) {
        return fallback;
    }
    bool ok = false;
    const double value = text->toDouble(&ok);
    if (ok && std::isfinite(value) && (!positive || value > 0)) {
        return value;
    }
    if (problem.isEmpty()) {
        problem = QStringLiteral("%1 needs %2, not \"%3\".").arg(flag, what, *text);
    }
    return std::nullopt;
}

QString clockText(double seconds) {
    const auto whole = static_cast<long long>(std::floor(seconds));
    return QStringLiteral("%1:%2")
        .arg(whole / 60)
        .arg(std::abs(whole % 60), 2, 10, QLatin1Char('0'));
}

QString movingIds() {
    QStringList ids;
    for (const Wallpaper& wallpaper : Wallpaper::all()) {
        if (wallpaper.moves()) {
            ids << wallpaper.id;
        }
    }
    return ids.join(QLatin1String(", "));
}

} // namespace

std::optional<int> runSnapshotLiveBackdropMode(LaunchContext& context) {
    const QString path = context.values.value(0);
    const QString scene = context.arguments.secondValue(QStringLiteral("--snapshot-livebg"))
                              .value_or(QStringLiteral("aurora"));
    const SnapshotWidgetOptions options = SnapshotWidgetOptions::parse(context.arguments);
    QString problem = options.problem;
    const Wallpaper* wallpaper = Wallpaper::find(scene);
    if (problem.isEmpty() && (wallpaper == nullptr || !wallpaper->moves())) {
        problem =
            QStringLiteral("\"%1\" is no moving backdrop; they are %2.").arg(scene, movingIds());
    }
    const double period = wallpaper != nullptr && wallpaper->moves() ? wallpaper->period : 1;
    // By default the frames spread evenly over one loop.
    const std::optional<double> fps =
        number(context.arguments, QStringLiteral("--fps"), true,
               QStringLiteral("a number of frames a second above 0"), frameCount / period, problem);
    const std::optional<double> start = number(context.arguments, QStringLiteral("--start"), false,
                                               QStringLiteral("a number of seconds"), 0, problem);
    QImage picture;
    if (problem.isEmpty()) {
        const double ratio = options.devicePixelRatio;
        const PaneInk ink = PaneInk::of(options.shade);
        const int rows = (frameCount + perRow - 1) / perRow;
        const QSizeF sheet(2 * padding + perRow * frame.width() + (perRow - 1) * gap,
                           2 * padding + rows * (frame.height() + caption) + (rows - 1) * gap);
        picture = QImage((sheet * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
        picture.fill(ink.background);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(ratio, ratio);
        painter.setFont(FaceKit::font(13, QFont::Medium));
        for (int i = 0; i < frameCount; ++i) {
            const double seconds = *start + i / *fps;
            const QPointF corner(padding + (i % perRow) * (frame.width() + gap),
                                 padding + (i / perRow) * (frame.height() + caption + gap));
            const QRectF target(corner, frame);
            QPainterPath rounded;
            rounded.addRoundedRect(target, 10, 10);
            painter.save();
            painter.setClipPath(rounded);
            painter.drawImage(
                target, WallpaperRenderer::render(*wallpaper, (frame * ratio).toSize(), seconds));
            painter.restore();
            painter.setPen(ink.secondary);
            painter.drawText(QRectF(corner.x(), target.bottom(), frame.width(), caption),
                             Qt::AlignLeft | Qt::AlignVCenter, clockText(seconds));
        }
        painter.end();
        picture.setDevicePixelRatio(ratio);
    }
    return reportSnapshot(
        context, QStringLiteral("snapshot-livebg"), path, picture, problem,
        QStringLiteral(" scene=%1 frames=%2").arg(scene).arg(problem.isEmpty() ? frameCount : 0));
}

} // namespace tw
