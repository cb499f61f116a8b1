#include "faces/DiskFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/ProgressText.h"
#include "faces/ReadingKit.h"
#include "faces/ReadingText.h"
#include "text/L.h"

#include <QPainter>

namespace tw {

namespace {

QString symbolOf(const Volume& volume) {
    return volume.removable ? QStringLiteral("externaldrive") : QStringLiteral("internaldrive");
}

QString nameOf(const Volume& volume) {
    if (!volume.name.isEmpty()) {
        return volume.name;
    }
    if (volume.path == QLatin1String("/")) {
        return L("disk.system", QStringLiteral("System"));
    }
    const QString last = volume.path.section(QLatin1Char('/'), -1, -1, QString::SectionSkipEmpty);
    return last.isEmpty() ? ReadingText::missing() : last;
}

QString freeText(const Volume& volume) {
    return L("disk.free", QStringLiteral("%1 free"))
        .arg(ReadingText::bytes(static_cast<double>(volume.free)));
}

QColor barColour(const FaceContext& context, const Volume& volume) {
    return ReadingKit::level(context, DiskFace::usedFraction(volume));
}

// "Removable · 62% used of 1 TB", the marks a person reads on the larger tiles.
QString detailText(const Volume& volume) {
    QString text = L("disk.usedOf", QStringLiteral("%1 used of %2"))
                       .arg(ProgressText::percent(DiskFace::usedFraction(volume), 0),
                            ReadingText::bytes(static_cast<double>(volume.total)));
    if (volume.removable) {
        text = L("disk.removable", QStringLiteral("Removable")) + QStringLiteral(" \u00b7 ") + text;
    }
    return text;
}

// One volume as a row: symbol, name and free space over its bar, and with room, the detail.
void drawRow(QPainter& painter, const FaceContext& context, const QRectF& row,
             const Volume& volume) {
    const bool detailed = row.height() >= 44;
    const qreal label = std::min(detailed ? row.height() * 0.36 : row.height() * 0.5, 17.0);
    const qreal barHeight = std::clamp(row.height() * 0.12, 4.0, 8.0);
    // A tall row holds its lines in its middle.
    const qreal used = label * 1.25 + barHeight + (detailed ? 2 + label * 0.8 : 0);
    const QRectF head(row.left(), row.top() + std::max(0.0, (row.height() - used) / 2), row.width(),
                      label);
    FaceKit::drawSymbol(painter, context, symbolOf(volume),
                        QRectF(head.left(), head.top(), label, label),
                        volume.removable ? context.secondary() : context.accent(), nameOf(volume));
    const QRectF free =
        FaceKit::drawFitted(painter, context, head, freeText(volume), QFont::Normal,
                            context.secondary(), Qt::AlignRight | Qt::AlignVCenter, label * 0.78);
    // One size for every row's name, so that a long name does not read smaller than its
    // neighbours.
    FaceKit::drawElided(painter, context,
                        QRectF(head.left() + label * 1.3, head.top(),
                               free.left() - head.left() - label * 1.8, label),
                        nameOf(volume), FaceKit::font(label * 0.82, QFont::DemiBold),
                        context.primary(), Qt::AlignLeft | Qt::AlignVCenter);
    const QRectF bar(row.left(), head.bottom() + label * 0.25, row.width(), barHeight);
    FaceKit::drawBar(painter, bar, DiskFace::usedFraction(volume), barColour(context, volume),
                     ReadingKit::track(context));
    if (detailed) {
        const qreal line = std::min(row.bottom() - bar.bottom() - 2, label * 0.8);
        FaceKit::drawFitted(painter, context,
                            QRectF(row.left(), bar.bottom() + 2, row.width(), line),
                            detailText(volume), QFont::Normal, context.secondary(),
                            Qt::AlignLeft | Qt::AlignVCenter, line * 0.85);
    }
}

// The hero: one volume's free space, large, with its name and its bar.
void drawHero(QPainter& painter, const FaceContext& context, const QRectF& rect,
              const Volume& volume) {
    const qreal h = rect.height();
    const qreal side = h * 0.2;
    FaceKit::drawSymbol(painter, context, symbolOf(volume),
                        QRectF(rect.left(), rect.top(), side, side), context.accent(),
                        nameOf(volume));
    FaceKit::drawFitted(
        painter, context,
        QRectF(rect.left() + side * 1.25, rect.top(), rect.width() - side * 1.25, side),
        nameOf(volume), QFont::DemiBold, context.primary(), Qt::AlignLeft | Qt::AlignVCenter,
        std::min(side * 0.8, 24.0));

    FaceKit::drawFitted(painter, context,
                        QRectF(rect.left(), rect.top() + h * 0.26, rect.width(), h * 0.36),
                        ReadingText::bytes(static_cast<double>(volume.free)), QFont::DemiBold,
                        context.primary(), Qt::AlignLeft | Qt::AlignVCenter, h * 0.34);
    FaceKit::drawFitted(painter, context,
                        QRectF(rect.left(), rect.top() + h * 0.62, rect.width(), h * 0.17),
                        L("disk.freeOf", QStringLiteral("free of %1"))
                            .arg(ReadingText::bytes(static_cast<double>(volume.total))),
                        QFont::Normal, context.secondary(), Qt::AlignLeft | Qt::AlignVCenter,
                        std::min(h * 0.15, 20.0));
    const qreal bar = std::min(h * 0.1, 12.0);
    FaceKit::drawBar(painter, QRectF(rect.left(), rect.bottom() - bar, rect.width(), bar),
                     DiskFace::usedFraction(volume), barColour(context, volume),
                     ReadingKit::track(context));
}

// One volume in a narrow column: symbol and name, the bar, the free space.
void drawColumn(QPainter& painter, const FaceContext& context, const QRectF& column,
                const Volume& volume, qreal nameSize) {
    const qreal line = column.height() * 0.34;
    FaceKit::drawSymbol(painter, context, symbolOf(volume),
                        QRectF(column.left(), column.top(), line, line),
                        volume.removable ? context.secondary() : context.accent(), nameOf(volume));
    FaceKit::drawElided(
        painter, context,
        QRectF(column.left() + line * 1.25, column.top(), column.width() - line * 1.25, line),
        nameOf(volume), FaceKit::font(nameSize, QFont::DemiBold), context.primary(),
        Qt::AlignLeft | Qt::AlignVCenter);
    FaceKit::drawBar(
        painter, QRectF(column.left(), column.top() + line * 1.3, column.width(), line * 0.3),
        DiskFace::usedFraction(volume), barColour(context, volume), ReadingKit::track(context));
    FaceKit::drawFitted(painter, context,
                        QRectF(column.left(), column.bottom() - line, column.width(), line),
                        freeText(volume), QFont::Normal, context.secondary(),
                        Qt::AlignLeft | Qt::AlignVCenter, line * 0.72);
}

// The volumes that fit down `rect`, the last place saying how many more there are; rows keep
// the height `places` would give them, a few of them centred.
void drawList(QPainter& painter, const FaceContext& context, const QRectF& rect,
              const QList<Volume>& volumes, int places) {
    const auto count = static_cast<int>(volumes.size());
    const int shown = std::min(places, count);
    const bool more = count > places;
    const qreal gap = rect.height() * 0.06;
    const qreal moreLine = more ? std::clamp(rect.height() * 0.12, 11.0, 16.0) : 0;
    const qreal room = rect.height() - moreLine;
    const qreal rowHeight =
        std::min((room - gap * (shown - 1)) / shown, 1.6 * (room - gap * (places - 1)) / places);
    const qreal block = rowHeight * shown + gap * (shown - 1);
    const qreal top = more ? rect.top() : rect.center().y() - block / 2;
    for (int i = 0; i < shown; ++i) {
        drawRow(painter, context,
                QRectF(rect.left(), top + i * (rowHeight + gap), rect.width(), rowHeight),
                volumes.at(i));
    }
    if (more) {
        FaceKit::drawFitted(
            painter, context, QRectF(rect.left(), rect.bottom() - moreLine, rect.width(), moreLine),
            L("disk.more", QStringLiteral("%1 more")).arg(count - shown), QFont::Medium,
            context.secondary(), Qt::AlignRight | Qt::AlignVCenter, moreLine * 0.85);
    }
}

} // namespace

std::optional<TimeGrain> DiskFace::grain(WidgetSize, const WidgetSettings&) const {
    return std::nullopt;
}

ReadingFeeds DiskFace::feeds(WidgetSize, const WidgetSettings&) const {
    return ReadingFeed::disks;
}

QList<Volume> DiskFace::ordered(const QList<Volume>& volumes, const QString& first) {
    const QString lead = first.isEmpty() ? QStringLiteral("/") : first;
    QList<Volume> out;
    out.reserve(volumes.size());
    for (const Volume& volume : volumes) {
        if (volume.path == lead) {
            out.prepend(volume);
        } else {
            out << volume;
        }
    }
    return out;
}

double DiskFace::usedFraction(const Volume& volume) {
    if (volume.total <= 0) {
        return 0;
    }
    return std::clamp(static_cast<double>(volume.total - volume.free) /
                          static_cast<double>(volume.total),
                      0.0, 1.0);
}

void DiskFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const std::optional<QList<Volume>>* read =
        context.readings != nullptr ? &context.readings->volumes : nullptr;
    if (read == nullptr || !*read) {
        ReadingKit::drawNotice(painter, context, rect, QStringLiteral("internaldrive"),
                               L("widget.disk.name", QStringLiteral("Disks")),
                               ReadingText::missing());
        return;
    }
    if ((*read)->isEmpty()) {
        ReadingKit::drawNotice(painter, context, rect, QStringLiteral("internaldrive"),
                               L("disk.none", QStringLiteral("No volumes")),
                               L("disk.noneDetail", QStringLiteral("None reported")));
        return;
    }
    const QList<Volume> volumes = ordered(**read, context.setting(QStringLiteral("volume")));
    if (context.size == WidgetSize::small ||
        (volumes.size() == 1 && context.size != WidgetSize::wide &&
         context.size != WidgetSize::banner)) {
        drawHero(painter, context, rect, volumes.first());
        return;
    }
    switch (context.size) {
    case WidgetSize::wide:
        drawList(painter, context, rect, volumes, 2);
        return;
    case WidgetSize::banner: {
        // Side by side, as many as three.
        const int columns = std::min<int>(3, static_cast<int>(volumes.size()));
        const qreal gap = rect.width() * 0.05;
        const qreal width = (rect.width() - gap * (columns - 1)) / columns;
        const qreal height = rect.height() * 0.84;
        // The names share one size, as large as the longest allows.
        const qreal line = height * 0.34;
        qreal nameSize = line * 0.75;
        for (int i = 0; i < columns; ++i) {
            nameSize =
                std::min(nameSize, FaceKit::fittingPixelSize(nameOf(volumes.at(i)),
                                                             QSizeF(width - line * 1.25, line),
                                                             QFont::DemiBold, line * 0.75));
        }
        nameSize = std::max(nameSize, line * 0.55);
        for (int i = 0; i < columns; ++i) {
            drawColumn(painter, context,
                       QRectF(rect.left() + i * (width + gap), rect.top() + rect.height() * 0.08,
                              width, height),
                       volumes.at(i), nameSize);
        }
        return;
    }
    default:
        drawList(painter, context, rect, volumes, 4);
        return;
    }
}

} // namespace tw
