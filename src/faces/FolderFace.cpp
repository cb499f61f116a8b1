#include "faces/FolderFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/ReadingKit.h"
#include "faces/ReadingText.h"
#include "files/FolderBehaviour.h"
#include "text/L.h"

#include <QPainter>

namespace tw {

namespace {

FolderItem sampleItem(const char* name, const char* icon, const char* generic, bool folder) {
    return {.name = QString::fromUtf8(name),
            .path = QStringLiteral("/sample/") + QString::fromUtf8(name),
            .isFolder = folder,
            .iconName = QString::fromUtf8(icon),
            .genericIconName = QString::fromUtf8(generic),
            .size = 0,
            .modified = {}};
}

// nullopt while the first reading runs.
std::optional<FolderView> viewOf(const FaceContext& context) {
    if (const auto* folders = context.behaviour<FolderBehaviour>()) {
        return folders->view(context.instanceID);
    }
    FolderView sample;
    sample.path = QStringLiteral("/home/you/Desktop");
    sample.listing.exists = true;
    sample.listing.readable = true;
    sample.listing.items = {
        sampleItem("Projects", "folder", "folder", true),
        sampleItem("Invoices", "folder", "folder", true),
        sampleItem("Budget 2026.ods", "application-vnd.oasis.opendocument.spreadsheet",
                   "x-office-spreadsheet", false),
        sampleItem("Talk slides.pdf", "application-pdf", "x-office-document", false),
        sampleItem("Screenshot 2026-11-20.png", "image-png", "image-x-generic", false),
        sampleItem("Notes.md", "text-markdown", "text-x-generic", false),
        sampleItem("Interview.mp3", "audio-mpeg", "audio-x-generic", false),
        sampleItem("site-backup.tar.gz", "application-x-compressed-tar", "package-x-generic",
                   false),
        sampleItem("Letter.odt", "application-vnd.oasis.opendocument.text", "x-office-document",
                   false),
        sampleItem("install.sh", "application-x-shellscript", "text-x-script", false),
        sampleItem("Trailer.mp4", "video-mp4", "video-x-generic", false),
        sampleItem("Recipes", "folder", "folder", true),
    };
    std::stable_sort(
        sample.listing.items.begin(), sample.listing.items.end(),
        [](const FolderItem& a, const FolderItem& b) { return a.isFolder && !b.isFolder; });
    sample.listing.total = 23;
    return sample;
}

struct Grid {
    QRectF header;
    QRectF body;
    int columns = 1;
    int rows = 1;
    QSizeF cell;
    // Slots for items; the last one says "+ n more" when not all fit.
    int slots() const { return columns * rows; }
    QRectF cellAt(int index) const {
        return QRectF(body.left() + (index % columns) * cell.width(),
                      body.top() + (index / columns) * cell.height(), cell.width(), cell.height());
    }
};

Grid gridOf(const QRectF& rect) {
    Grid grid;
    const qreal header = 24;
    grid.header = QRectF(rect.left(), rect.top(), rect.width(), header);
    grid.body =
        QRectF(rect.left(), rect.top() + header + 6, rect.width(), rect.height() - header - 6);
    grid.columns = std::max(1, static_cast<int>(grid.body.width() / 64));
    grid.rows = std::max(1, static_cast<int>(grid.body.height() / 70));
    grid.cell = QSizeF(grid.body.width() / grid.columns, grid.body.height() / grid.rows);
    return grid;
}

int shownCount(const Grid& grid, const FolderView& view) {
    const int items = static_cast<int>(view.listing.items.size());
    const bool more = view.listing.total > std::min(items, grid.slots());
    return more ? std::min(items, grid.slots() - 1) : std::min(items, grid.slots());
}

void drawCell(QPainter& painter, const FaceContext& context, const QRectF& cell,
              const FolderItem& item) {
    const qreal icon = std::min(cell.width() * 0.56, cell.height() * 0.52);
    FileKit::drawFileIcon(painter, context,
                          QRectF(cell.center().x() - icon / 2, cell.top() + 4, icon, icon),
                          item.iconName, item.genericIconName, item.isFolder);
    const QRectF label(cell.left() + 2, cell.top() + 8 + icon, cell.width() - 4,
                       cell.bottom() - cell.top() - 8 - icon);
    const QFont font = FaceKit::font(10.5);
    const QFontMetricsF metrics(font);
    // Two lines at most, broken at a space; a name without one stays on one line, elided in the
    // middle so that its extension stays readable.
    const qreal width = label.width();
    QString first = item.name;
    QString second;
    if (metrics.horizontalAdvance(first) > width) {
        qsizetype space = item.name.lastIndexOf(QLatin1Char(' '));
        while (space > 0 && metrics.horizontalAdvance(item.name.left(space)) > width) {
            space = item.name.lastIndexOf(QLatin1Char(' '), space - 1);
        }
        if (space > 0) {
            first = item.name.left(space);
            second = metrics.elidedText(item.name.mid(space + 1), Qt::ElideMiddle, width);
        } else {
            first = metrics.elidedText(item.name, Qt::ElideMiddle, width);
        }
    }
    painter.save();
    painter.setFont(font);
    painter.setPen(context.primary());
    const qreal line = metrics.height();
    painter.drawText(QRectF(label.left(), label.top(), width, line),
                     Qt::AlignHCenter | Qt::AlignTop, first);
    if (!second.isEmpty() && label.height() >= line * 2) {
        painter.drawText(QRectF(label.left(), label.top() + line, width, line),
                         Qt::AlignHCenter | Qt::AlignTop, second);
    }
    painter.restore();
}

} // namespace

std::optional<TimeGrain> FolderFace::grain(WidgetSize, const WidgetSettings&) const {
    return std::nullopt;
}

QList<FileKit::Target> FolderFace::targets(const QRectF& rect, const FolderView& view) {
    if (!view.listing.readable) {
        return {{rect, QStringLiteral("choose"),
                 L("folder.help.choose", QStringLiteral("Choose a folder to show"))}};
    }
    const Grid grid = gridOf(rect);
    QList<FileKit::Target> targets;
    const int shown = shownCount(grid, view);
    for (int i = 0; i < shown; ++i) {
        targets.append(
            {grid.cellAt(i), QStringLiteral("open:%1").arg(i),
             L("folder.help.item", QStringLiteral("Open %1")).arg(view.listing.items.at(i).name)});
    }
    const QString openFolder =
        L("folder.help.folder", QStringLiteral("Open %1")).arg(FileKit::folderName(view.path));
    if (shown < view.listing.total) {
        targets.append({grid.cellAt(shown), QStringLiteral("folder"), openFolder});
    }
    targets.append({grid.header, QStringLiteral("folder"), openFolder});
    return targets;
}

void FolderFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const std::optional<FolderView> view = viewOf(context);
    if (!view) {
        ReadingKit::drawNotice(painter, context, rect, QStringLiteral("folder"),
                               FileKit::folderName(context.setting(QStringLiteral("path"))),
                               ReadingText::missing());
        return;
    }
    if (!view->listing.exists || !view->listing.readable) {
        ReadingKit::drawNotice(
            painter, context, rect, QStringLiteral("folder"),
            view->listing.exists ? L("folder.unreadable", QStringLiteral("Can't open this folder"))
                                 : L("folder.missing", QStringLiteral("Folder not found")),
            L("folder.chooseDetail", QStringLiteral("Click to choose a folder")));
        return;
    }
    const Grid grid = gridOf(rect);
    FaceKit::drawSymbol(painter, context, QStringLiteral("folder"),
                        QRectF(grid.header.left(), grid.header.top() + 2, 20, 20), context.accent(),
                        {});
    const QRectF count = FaceKit::drawFitted(
        painter, context,
        QRectF(grid.header.right() - 90, grid.header.top(), 90, grid.header.height()),
        FileKit::itemCount(view->listing.total), QFont::Normal, context.secondary(),
        Qt::AlignRight | Qt::AlignVCenter, 12);
    FaceKit::drawElided(painter, context,
                        QRectF(grid.header.left() + 27, grid.header.top(),
                               count.left() - grid.header.left() - 33, grid.header.height()),
                        FileKit::folderName(view->path), FaceKit::font(15, QFont::DemiBold),
                        context.primary(), Qt::AlignLeft | Qt::AlignVCenter);
    if (view->listing.items.isEmpty()) {
        FaceKit::drawFitted(painter, context, grid.body,
                            L("folder.empty", QStringLiteral("Nothing in this folder")),
                            QFont::Normal, context.secondary(), Qt::AlignCenter, 13);
        return;
    }
    const int shown = shownCount(grid, *view);
    for (int i = 0; i < shown; ++i) {
        drawCell(painter, context, grid.cellAt(i), view->listing.items.at(i));
    }
    if (shown < view->listing.total) {
        const QRectF cell = grid.cellAt(shown);
        const qreal side = std::min(cell.width() * 0.56, cell.height() * 0.52);
        const QRectF disc(cell.center().x() - side / 2, cell.top() + 4, side, side);
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(context.separator());
        painter.drawEllipse(disc);
        painter.restore();
        FaceKit::drawFitted(painter, context, disc.adjusted(4, 4, -4, -4),
                            QStringLiteral("+%1").arg(view->listing.total - shown), QFont::DemiBold,
                            context.primary(), Qt::AlignCenter, 14);
        FaceKit::drawFitted(painter, context,
                            QRectF(cell.left() + 2, disc.bottom() + 4, cell.width() - 4, 14),
                            L("folder.more", QStringLiteral("more")), QFont::Normal,
                            context.secondary(), Qt::AlignHCenter | Qt::AlignTop, 10.5);
    }
}

WidgetFace::Spot FolderFace::spotAt(const QRectF& rect, QPointF point,
                                    const FaceContext& context) const {
    const std::optional<FolderView> view = viewOf(context);
    return view ? FileKit::spotAt(targets(rect, *view), point) : Spot();
}

} // namespace tw
