#include "faces/DropZoneFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/ReadingKit.h"
#include "files/DropZoneBehaviour.h"
#include "text/L.h"

#include <QMimeDatabase>
#include <QPainter>

namespace tw {

namespace {

DropZoneView viewOf(const FaceContext& context) {
    if (const auto* zone = context.behaviour<DropZoneBehaviour>()) {
        return zone->view(context.instanceID, context.settings);
    }
    const QDateTime now = context.now.isValid() ? context.now : QDateTime::currentDateTime();
    DropZoneView sample;
    sample.folder = QStringLiteral("/home/you/Downloads");
    sample.items = {{.name = QStringLiteral("Quarterly report.pdf"),
                     .path = QStringLiteral("/r.pdf"),
                     .at = now.addSecs(-180),
                     .isFolder = false},
                    {.name = QStringLiteral("Holiday photos"),
                     .path = QStringLiteral("/h"),
                     .at = now.addSecs(-4000),
                     .isFolder = true},
                    {.name = QStringLiteral("notes.txt"),
                     .path = QStringLiteral("/n.txt"),
                     .at = now.addDays(-1),
                     .isFolder = false},
                    {.name = QStringLiteral("budget-2026.ods"),
                     .path = QStringLiteral("/b.ods"),
                     .at = now.addDays(-3),
                     .isFolder = false}};
    return sample;
}

struct Layout {
    QRectF target;
    QRectF list;
    QRectF problem;
    int rows = 0;
};

Layout layoutOf(const QRectF& rect, WidgetSize size, bool hasProblem) {
    Layout l;
    const qreal w = rect.width();
    const qreal h = rect.height();
    switch (size) {
    case WidgetSize::small:
        l.target = rect;
        return l;
    case WidgetSize::wide:
        l.target = QRectF(rect.left(), rect.top(), w * 0.42, h);
        l.list = QRectF(rect.left() + w * 0.47, rect.top(), w * 0.53, h);
        l.rows = 3;
        break;
    default: {
        const qreal targetHeight = size == WidgetSize::large ? h * 0.36 : h * 0.3;
        l.target = QRectF(rect.left(), rect.top(), w, targetHeight);
        l.list =
            QRectF(rect.left(), l.target.bottom() + 10, w, rect.bottom() - l.target.bottom() - 10);
        l.rows = std::max(1, static_cast<int>(l.list.height() / 30));
        break;
    }
    }
    if (hasProblem) {
        const qreal line = std::min(18.0, l.list.height() * 0.2);
        l.problem = QRectF(l.list.left(), l.list.bottom() - line, l.list.width(), line);
        l.list.setBottom(l.problem.top() - 2);
        l.rows = std::max(1, std::min(l.rows, static_cast<int>(l.list.height() / 24)));
    }
    return l;
}

QString modeWords(const DropZoneView& view) {
    const QString folder = FileKit::folderName(view.folder);
    return view.copies ? L("dropzone.copiesTo", QStringLiteral("Copies to %1")).arg(folder)
                       : L("dropzone.movesTo", QStringLiteral("Moves to %1")).arg(folder);
}

void drawTarget(QPainter& painter, const FaceContext& context, const QRectF& rect,
                const DropZoneView& view, bool small) {
    FileKit::drawDropTarget(painter, context, rect);
    const qreal h = rect.height();
    const qreal side = std::min(h * (small ? 0.36 : 0.34), rect.width() * 0.3);
    const bool across = !small && rect.width() > h * 2.2;
    if (across) {
        // A wide target: the symbol beside the two lines.
        const QRectF symbol(rect.left() + h * 0.3, rect.center().y() - side / 2, side, side);
        FaceKit::drawSymbol(painter, context, QStringLiteral("tray.full"), symbol, context.accent(),
                            {});
        const QRectF text(symbol.right() + side * 0.4, rect.top(),
                          rect.right() - symbol.right() - side * 0.6, h);
        FaceKit::drawFitted(
            painter, context,
            QRectF(text.left(), text.center().y() - h * 0.26, text.width(), h * 0.24),
            L("dropzone.dropHere", QStringLiteral("Drop files here")), QFont::DemiBold,
            context.primary(), Qt::AlignLeft | Qt::AlignVCenter, 17);
        FaceKit::drawFitted(
            painter, context,
            QRectF(text.left(), text.center().y() + h * 0.02, text.width(), h * 0.2),
            modeWords(view), QFont::Normal, context.secondary(), Qt::AlignLeft | Qt::AlignVCenter,
            13);
        return;
    }
    const QRectF symbol(rect.center().x() - side / 2, rect.top() + h * 0.14, side, side);
    FaceKit::drawSymbol(painter, context, QStringLiteral("tray.full"), symbol, context.accent(),
                        {});
    const qreal inset = std::min(8.0, rect.width() * 0.06);
    FaceKit::drawFitted(
        painter, context,
        QRectF(rect.left() + inset, rect.top() + h * 0.55, rect.width() - 2 * inset, h * 0.17),
        L("dropzone.dropHereShort", QStringLiteral("Drop here")), QFont::DemiBold,
        context.primary(), Qt::AlignCenter, 15);
    FaceKit::drawFitted(
        painter, context,
        QRectF(rect.left() + inset, rect.top() + h * 0.73, rect.width() - 2 * inset, h * 0.14),
        small ? QStringLiteral("→ ") + FileKit::folderName(view.folder) : modeWords(view),
        QFont::Normal, context.secondary(), Qt::AlignCenter, 12);
}

void drawItems(QPainter& painter, const FaceContext& context, const Layout& l,
               const DropZoneView& view) {
    if (view.items.isEmpty()) {
        painter.save();
        painter.setFont(FaceKit::font(std::min(12.5, l.list.height() * 0.2)));
        painter.setPen(context.secondary());
        painter.drawText(
            l.list.adjusted(4, 0, -4, 0), Qt::AlignCenter | Qt::TextWordWrap,
            L("dropzone.emptyList", QStringLiteral("What you drop shows here, a click opens it.")));
        painter.restore();
        return;
    }
    const int shown = std::min(l.rows, static_cast<int>(view.items.size()));
    const qreal rowHeight = std::min(30.0, l.list.height() / std::max(shown, 1));
    static const QMimeDatabase mimes;
    for (int i = 0; i < shown; ++i) {
        const DroppedItem& item = view.items.at(i);
        const QRectF row(l.list.left(), l.list.top() + i * rowHeight, l.list.width(), rowHeight);
        const qreal icon = rowHeight * 0.72;
        const QMimeType mime = mimes.mimeTypeForFile(item.name, QMimeDatabase::MatchExtension);
        FileKit::drawFileIcon(painter, context,
                              QRectF(row.left(), row.center().y() - icon / 2, icon, icon),
                              item.isFolder ? QStringLiteral("folder") : mime.iconName(),
                              mime.genericIconName(), item.isFolder);
        const qreal textLeft = row.left() + icon + 8;
        // A narrow list gives its room to the names.
        QRectF whenRect(row.right() + 6, row.top(), 0, rowHeight);
        if (row.width() > 160) {
            const QString when = FileKit::ago(
                item.at, context.now.isValid() ? context.now : QDateTime::currentDateTime());
            whenRect = FaceKit::drawFitted(
                painter, context, QRectF(row.right() - 70, row.top(), 70, rowHeight), when,
                QFont::Normal, context.secondary(), Qt::AlignRight | Qt::AlignVCenter,
                std::min(11.5, rowHeight * 0.4));
        }
        FaceKit::drawElided(painter, context,
                            QRectF(textLeft, row.top(), whenRect.left() - textLeft - 6, rowHeight),
                            item.name,
                            FaceKit::font(std::min(13.0, rowHeight * 0.45), QFont::Medium),
                            context.primary(), Qt::AlignLeft | Qt::AlignVCenter);
    }
}

} // namespace

std::optional<TimeGrain> DropZoneFace::grain(WidgetSize size, const WidgetSettings&) const {
    // "5 min ago" moves on with the minutes where the list shows.
    return size == WidgetSize::small ? std::nullopt : std::optional(TimeGrain::Minutes);
}

QList<FileKit::Target> DropZoneFace::targets(const QRectF& rect, WidgetSize size,
                                             const DropZoneView& view) {
    if (view.folderMissing) {
        return {{rect, QStringLiteral("choose"),
                 L("dropzone.help.choose", QStringLiteral("Choose where dropped files go"))}};
    }
    const Layout l = layoutOf(rect, size, !view.problem.isEmpty());
    QList<FileKit::Target> targets;
    const int shown = std::min(l.rows, static_cast<int>(view.items.size()));
    const qreal rowHeight = std::min(30.0, l.list.height() / std::max(shown, 1));
    for (int i = 0; i < shown; ++i) {
        targets.append(
            {QRectF(l.list.left(), l.list.top() + i * rowHeight, l.list.width(), rowHeight),
             QStringLiteral("open:%1").arg(i),
             L("dropzone.help.item", QStringLiteral("Open %1")).arg(view.items.at(i).name)});
    }
    targets.append({l.target, QStringLiteral("folder"),
                    L("dropzone.help.folder", QStringLiteral("Open %1"))
                        .arg(FileKit::folderName(view.folder))});
    return targets;
}

void DropZoneFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const DropZoneView view = viewOf(context);
    if (view.folderMissing) {
        ReadingKit::drawNotice(
            painter, context, rect, QStringLiteral("tray.full"),
            L("dropzone.noFolder", QStringLiteral("Folder not found")),
            L("dropzone.noFolderDetail", QStringLiteral("Click to choose where files go")));
        return;
    }
    const Layout l = layoutOf(rect, context.size, !view.problem.isEmpty());
    const bool small = context.size == WidgetSize::small;
    drawTarget(painter, context, l.target, view, small);
    if (small) {
        if (!view.problem.isEmpty()) {
            FaceKit::drawSymbol(painter, context, QStringLiteral("exclamationmark.triangle.fill"),
                                QRectF(rect.right() - 18, rect.top() + 2, 16, 16),
                                ReadingKit::warning(context), QStringLiteral("!"));
        }
        return;
    }
    drawItems(painter, context, l, view);
    if (!view.problem.isEmpty()) {
        FaceKit::drawElided(painter, context, l.problem, view.problem,
                            FaceKit::font(l.problem.height() * 0.68, QFont::Medium),
                            ReadingKit::warning(context), Qt::AlignLeft | Qt::AlignVCenter);
    }
}

WidgetFace::Spot DropZoneFace::spotAt(const QRectF& rect, QPointF point,
                                      const FaceContext& context) const {
    WidgetFace::Spot spot = FileKit::spotAt(targets(rect, context.size, viewOf(context)), point);
    const DropZoneView view = viewOf(context);
    if (!view.problem.isEmpty() && spot.help.isEmpty()) {
        spot.help = view.problem;
    }
    return spot;
}

} // namespace tw
