#include "faces/ActivityFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/ReadingKit.h"
#include "faces/ReadingText.h"
#include "readings/ReadingsBoard.h"
#include "text/L.h"

#include <QFontMetricsF>
#include <QLocale>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace tw {

namespace {

// How many columns stand in for the cores before the first reading.
constexpr int placeholderCores = 8;

struct MemoryPart {
    QString title;
    double bytes = 0;
    QColor color;
};

QColor turned(const QColor& color, int degrees) {
    const QColor hsv = color.toHsv();
    return QColor::fromHsv((hsv.hue() + degrees + 360) % 360, hsv.saturation(), hsv.value(),
                           hsv.alpha());
}

// Application memory in the accent, wired and compressed in neighbouring hues, the cache in ink:
// it is given back whenever a program asks.
QList<MemoryPart> memoryParts(const FaceContext& context, const ActivitySnapshot* s) {
    QColor cached = context.secondary();
    cached.setAlphaF(0.45F);
    return {{L("activity.memory.app", QStringLiteral("App")), s ? s->memApp : 0, context.accent()},
            {L("activity.memory.wired", QStringLiteral("Wired")), s ? s->memWired : 0,
             turned(context.accent(), 45)},
            {L("activity.memory.compressed", QStringLiteral("Compressed")),
             s ? s->memCompressed : 0, turned(context.accent(), -60)},
            {L("activity.memory.cached", QStringLiteral("Cached")), s ? s->memCached : 0, cached}};
}

QColor pressureColor(const FaceContext& context, ActivitySnapshot::Pressure pressure) {
    return pressure == ActivitySnapshot::Pressure::normal ? context.secondary()
                                                          : ReadingKit::warning(context);
}

// Everything one paint needs, read once from the board.
struct View {
    const FaceContext& context;
    const ActivitySnapshot* snapshot = nullptr;
    QList<double> history;
    bool byMemory = false;

    QList<double> cores() const {
        return snapshot && !snapshot->cores.isEmpty() ? snapshot->cores
                                                      : QList<double>(placeholderCores, 0.0);
    }
    std::optional<double> total() const {
        return snapshot ? std::optional(snapshot->total()) : std::nullopt;
    }
    QString memoryUsed() const {
        if (!snapshot || snapshot->memTotal <= 0) {
            return ReadingText::missing();
        }
        return L("activity.memory.used", QStringLiteral("%1 of %2"))
            .arg(
                ReadingText::bytes(snapshot->memApp + snapshot->memWired + snapshot->memCompressed),
                ReadingText::bytes(snapshot->memTotal));
    }
    // The memory in use as a share of all of it.
    QString usedPercent() const {
        if (!snapshot || snapshot->memTotal <= 0) {
            return ReadingText::missing();
        }
        return ReadingText::percent(
            (snapshot->memApp + snapshot->memWired + snapshot->memCompressed) / snapshot->memTotal);
    }
    QString listTitle() const {
        return byMemory ? L("activity.list.memory", QStringLiteral("Most memory"))
                        : L("activity.list.cpu", QStringLiteral("Most CPU"));
    }
};

// The height of a header line: a title and its figure.
constexpr qreal headerLine = 15;

// A title on the left and a figure on the right of one line; the figure gives way first.
void drawHeader(QPainter& painter, const FaceContext& context, const QRectF& line,
                const QString& title, const QString& figure, const QColor& figureColor) {
    const QFont font = FaceKit::font(line.height() * 0.8, QFont::DemiBold);
    const QRectF used = FaceKit::drawText(painter, context, line, Qt::AlignLeft | Qt::AlignVCenter,
                                          title, font, context.secondary());
    if (!figure.isEmpty()) {
        FaceKit::drawFitted(painter, context,
                            QRectF(used.right() + 8, line.top(),
                                   std::max<qreal>(1, line.right() - used.right() - 8),
                                   line.height()),
                            figure, QFont::DemiBold, figureColor, Qt::AlignRight | Qt::AlignVCenter,
                            line.height() * 0.9);
    }
}

void drawCores(QPainter& painter, const View& v, const QRectF& rect) {
    drawHeader(painter, v.context, QRectF(rect.left(), rect.top(), rect.width(), headerLine),
               L("activity.cpu", QStringLiteral("CPU")), ReadingText::percent(v.total()),
               v.context.primary());
    const qreal top = rect.top() + headerLine + 5;
    ReadingKit::drawColumns(painter, v.context,
                            QRectF(rect.left(), top, rect.width(), rect.bottom() - top), v.cores());
}

// The memory's title and `figure` over the stacked bar of its split; returns the bar's bottom.
qreal drawMemoryBar(QPainter& painter, const View& v, const QRectF& rect, const QString& figure,
                    const QColor& figureColor) {
    const FaceContext& c = v.context;
    drawHeader(painter, c, QRectF(rect.left(), rect.top(), rect.width(), headerLine),
               L("activity.memory", QStringLiteral("Memory")), figure, figureColor);
    const qreal barHeight = 8;
    const QRectF bar(rect.left(), rect.top() + headerLine + 5, rect.width(), barHeight);
    painter.save();
    painter.setPen(Qt::NoPen);
    painter.setBrush(ReadingKit::track(c));
    painter.drawRoundedRect(bar, barHeight / 2, barHeight / 2);
    if (v.snapshot && v.snapshot->memTotal > 0) {
        QPainterPath clip;
        clip.addRoundedRect(bar, barHeight / 2, barHeight / 2);
        painter.setClipPath(clip, Qt::IntersectClip);
        qreal x = bar.left();
        for (const MemoryPart& part : memoryParts(c, v.snapshot)) {
            const qreal w = bar.width() * std::clamp(part.bytes / v.snapshot->memTotal, 0.0, 1.0);
            const qreal right = std::min(bar.right(), x + w);
            painter.setBrush(part.color);
            painter.drawRect(QRectF(x, bar.top(), right - x, bar.height()));
            x = right;
        }
    }
    painter.restore();
    return bar.bottom();
}

// A swatch and the part's name, with its size where `withSizes`, in `columns` columns.
void drawLegend(QPainter& painter, const View& v, const QRectF& rect, int columns, bool withSizes) {
    const QList<MemoryPart> parts = memoryParts(v.context, v.snapshot);
    const int rowsCount = (static_cast<int>(parts.size()) + columns - 1) / columns;
    const qreal w = rect.width() / columns;
    const qreal h = rect.height() / rowsCount;
    // One size for every row, small enough for the longest name beside the widest size.
    qreal size = std::min<qreal>(h * 0.78, 12);
    const qreal room = w - (columns > 1 ? 8 : 0) - std::min<qreal>(size * 0.6, 7) - 5;
    while (size > 8) {
        qreal widest = 0;
        for (const MemoryPart& part : parts) {
            widest = std::max(
                widest,
                QFontMetricsF(FaceKit::font(size)).horizontalAdvance(part.title) +
                    (withSizes ? QFontMetricsF(FaceKit::font(size, QFont::DemiBold))
                                         .horizontalAdvance(ReadingText::bytes(part.bytes)) +
                                     6
                               : 0));
        }
        if (widest <= room) {
            break;
        }
        size -= 0.5;
    }
    const QFont font = FaceKit::font(size);
    const QFont bold = FaceKit::font(size, QFont::DemiBold);
    for (int i = 0; i < parts.size(); ++i) {
        const QRectF cell(rect.left() + (i % columns) * w, rect.top() + (i / columns) * h,
                          w - (i % columns == columns - 1 ? 0 : 8), h);
        const qreal dot = std::min<qreal>(size * 0.6, 7);
        painter.setPen(Qt::NoPen);
        painter.setBrush(parts.at(i).color);
        painter.drawEllipse(QRectF(cell.left(), cell.center().y() - dot / 2, dot, dot));
        const QRectF text = cell.adjusted(dot + 5, 0, 0, 0);
        FaceKit::drawText(painter, v.context, text, Qt::AlignLeft | Qt::AlignVCenter,
                          parts.at(i).title, font, v.context.secondary());
        if (withSizes) {
            FaceKit::drawText(painter, v.context, text, Qt::AlignRight | Qt::AlignVCenter,
                              v.snapshot ? ReadingText::bytes(parts.at(i).bytes)
                                         : ReadingText::missing(),
                              bold, v.context.primary());
        }
    }
}

QString pressureText(const View& v) {
    return v.snapshot ? ActivityFace::pressureWord(v.snapshot->pressure) : ReadingText::missing();
}

QColor pressureInk(const View& v) {
    return v.snapshot ? pressureColor(v.context, v.snapshot->pressure) : v.context.secondary();
}

// "Normal pressure", where there is no room for a title of its own.
QString pressureLine(const View& v) {
    return v.snapshot ? L("activity.pressureOf", QStringLiteral("%1 pressure")).arg(pressureText(v))
                      : ReadingText::missing();
}

void drawPressure(QPainter& painter, const View& v, const QRectF& line) {
    drawHeader(painter, v.context, line, L("activity.pressure", QStringLiteral("Pressure")),
               pressureText(v), pressureInk(v));
}

// The programs of the chosen list, as many as fit: name on the left, share or size on the right.
void drawPrograms(QPainter& painter, const View& v, const QRectF& rect) {
    const FaceContext& c = v.context;
    drawHeader(painter, c, QRectF(rect.left(), rect.top(), rect.width(), headerLine), v.listTitle(),
               QString(), c.secondary());
    const qreal line = 17;
    const QFont font = FaceKit::font(12.5);
    const QFont figure = FaceKit::font(12.5, QFont::DemiBold);
    const QList<ActivityProcess> programs =
        v.snapshot ? (v.byMemory ? v.snapshot->byMemory : v.snapshot->byCPU)
                   : QList<ActivityProcess>();
    const qreal top = rect.top() + headerLine + 3;
    if (programs.isEmpty()) {
        FaceKit::drawText(painter, c, QRectF(rect.left(), top, rect.width(), line),
                          Qt::AlignLeft | Qt::AlignVCenter, ReadingText::missing(), font,
                          c.secondary());
        return;
    }
    const auto fit = static_cast<qsizetype>((rect.bottom() - top) / line);
    for (qsizetype i = 0; i < std::min(fit, programs.size()); ++i) {
        const ActivityProcess& p = programs.at(i);
        const QRectF row(rect.left(), top + line * static_cast<qreal>(i), rect.width(), line);
        const QString value = v.byMemory ? ReadingText::bytes(static_cast<double>(p.memory))
                                         : ActivityFace::coreShare(p.cpu);
        const QRectF used = FaceKit::drawText(painter, c, row, Qt::AlignRight | Qt::AlignVCenter,
                                              value, figure, c.primary());
        FaceKit::drawElided(painter, c,
                            QRectF(row.left(), row.top(),
                                   std::max<qreal>(1, used.left() - row.left() - 8), row.height()),
                            p.name, font, c.primary(), Qt::AlignLeft | Qt::AlignVCenter);
    }
}

void drawLoadHistory(QPainter& painter, const View& v, const QRectF& rect) {
    drawHeader(painter, v.context, QRectF(rect.left(), rect.top(), rect.width(), headerLine),
               L("activity.load", QStringLiteral("Load")), QString(), v.context.secondary());
    const QRectF chart = rect.adjusted(0, headerLine + 4, 0, 0);
    ReadingKit::drawChartField(painter, v.context, chart);
    ReadingKit::drawArea(painter, chart, v.history, ReadingsBoard::historyLength, 1.0,
                         v.context.accent());
}

} // namespace

std::optional<TimeGrain> ActivityFace::grain(WidgetSize, const WidgetSettings&) const {
    return std::nullopt;
}

ReadingFeeds ActivityFace::feeds(WidgetSize, const WidgetSettings&) const {
    return ReadingFeed::activity;
}

QString ActivityFace::listKey() {
    return QStringLiteral("list");
}

QString ActivityFace::byMemory() {
    return QStringLiteral("memory");
}

QString ActivityFace::toggledList(const QString& current) {
    return current == byMemory() ? QStringLiteral("cpu") : byMemory();
}

QString ActivityFace::coreShare(double fraction) {
    if (std::isnan(fraction) || fraction < 0) {
        return ReadingText::missing();
    }
    return QLocale().toString(static_cast<qlonglong>(std::llround(std::min(fraction, 1e4) * 100))) +
           QLatin1Char('%');
}

QString ActivityFace::pressureWord(ActivitySnapshot::Pressure pressure) {
    switch (pressure) {
    case ActivitySnapshot::Pressure::warning:
        return L("activity.pressure.warning", QStringLiteral("Warning"));
    case ActivitySnapshot::Pressure::critical:
        return L("activity.pressure.critical", QStringLiteral("Critical"));
    case ActivitySnapshot::Pressure::normal:
        break;
    }
    return L("activity.pressure.normal", QStringLiteral("Normal"));
}

void ActivityFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const ReadingsBoard* board = context.readings;
    View v{context, board && board->activity ? &*board->activity : nullptr,
           board ? board->activityHistory : QList<double>(),
           context.setting(listKey()) == byMemory()};

    switch (context.size) {
    case WidgetSize::small: {
        // The total load large, the cores under it.
        FaceKit::drawText(
            painter, context, QRectF(rect.left(), rect.top(), rect.width(), headerLine),
            Qt::AlignLeft | Qt::AlignVCenter, L("activity.cpu", QStringLiteral("CPU")),
            FaceKit::font(12, QFont::DemiBold), context.secondary());
        const QRectF hero(rect.left(), rect.top() + headerLine, rect.width(), rect.height() * 0.4);
        FaceKit::drawFitted(painter, context, hero, ReadingText::percent(v.total()), QFont::Light,
                            context.primary(), Qt::AlignLeft | Qt::AlignVCenter,
                            hero.height() * 0.95);
        ReadingKit::drawColumns(
            painter, context,
            QRectF(rect.left(), hero.bottom() + 3, rect.width(), rect.bottom() - hero.bottom() - 3),
            v.cores());
        return;
    }
    case WidgetSize::wide: {
        // The cores on the left; the memory, its use and its pressure on the right.
        const qreal left = (rect.width() - 16) * 0.42;
        drawCores(painter, v, QRectF(rect.left(), rect.top(), left, rect.height()));
        const QRectF right(rect.left() + left + 16, rect.top(), rect.width() - left - 16,
                           rect.height());
        const qreal barBottom =
            drawMemoryBar(painter, v, right, v.usedPercent(), context.primary());
        const qreal line = (right.bottom() - barBottom - 4) / 2;
        FaceKit::drawFitted(painter, context,
                            QRectF(right.left(), barBottom + 4, right.width(), line),
                            v.memoryUsed(), QFont::Normal, context.secondary(),
                            Qt::AlignLeft | Qt::AlignVCenter, 12);
        FaceKit::drawFitted(
            painter, context, QRectF(right.left(), barBottom + 4 + line, right.width(), line),
            pressureLine(v), QFont::DemiBold, pressureInk(v), Qt::AlignLeft | Qt::AlignVCenter, 12);
        return;
    }
    case WidgetSize::large: {
        // Cores, the memory split with its pressure, and the programs that use most.
        drawCores(painter, v, QRectF(rect.left(), rect.top(), rect.width(), 52));
        const qreal barBottom =
            drawMemoryBar(painter, v, QRectF(rect.left(), rect.top() + 62, rect.width(), 30),
                          pressureLine(v), pressureInk(v));
        drawLegend(painter, v, QRectF(rect.left(), barBottom + 4, rect.width(), 28), 2, false);
        drawPrograms(
            painter, v,
            QRectF(rect.left(), barBottom + 38, rect.width(), rect.bottom() - barBottom - 38));
        return;
    }
    case WidgetSize::wideTall: {
        const qreal colWidth = (rect.width() - 20) / 2;
        const QRectF left(rect.left(), rect.top(), colWidth, rect.height());
        drawCores(painter, v, QRectF(left.left(), left.top(), left.width(), 80));
        drawLoadHistory(painter, v,
                        QRectF(left.left(), left.top() + 92, left.width(),
                               left.height() - 92 - headerLine - 10));
        drawPressure(painter, v,
                     QRectF(left.left(), left.bottom() - headerLine, left.width(), headerLine));
        const QRectF right(rect.right() - colWidth, rect.top(), colWidth, rect.height());
        const qreal barBottom = drawMemoryBar(painter, v, right, v.memoryUsed(), context.primary());
        drawLegend(painter, v, QRectF(right.left(), barBottom + 4, right.width(), 56), 1, true);
        drawPrograms(
            painter, v,
            QRectF(right.left(), barBottom + 68, right.width(), right.bottom() - barBottom - 68));
        return;
    }
    default: {
        // Panorama: the processor, the memory and the programs side by side.
        // The legend's names and sizes want the widest column.
        const qreal gap = 18;
        const qreal inner = rect.width() - 2 * gap;
        const QRectF cpu(rect.left(), rect.top(), inner * 0.29, rect.height());
        drawCores(painter, v, QRectF(cpu.left(), cpu.top(), cpu.width(), 92));
        drawLoadHistory(painter, v,
                        QRectF(cpu.left(), cpu.top() + 104, cpu.width(), cpu.height() - 104));
        const QRectF memory(cpu.right() + gap, rect.top(), inner * 0.37, rect.height());
        const qreal barBottom =
            drawMemoryBar(painter, v, memory, v.usedPercent(), context.primary());
        FaceKit::drawFitted(painter, context,
                            QRectF(memory.left(), barBottom + 4, memory.width(), 14),
                            v.memoryUsed(), QFont::Normal, context.secondary(),
                            Qt::AlignLeft | Qt::AlignVCenter, 11.5);
        drawLegend(painter, v, QRectF(memory.left(), barBottom + 24, memory.width(), 68), 1, true);
        drawPressure(
            painter, v,
            QRectF(memory.left(), memory.bottom() - headerLine, memory.width(), headerLine));
        drawPrograms(painter, v,
                     QRectF(memory.right() + gap, rect.top(), rect.right() - memory.right() - gap,
                            rect.height()));
        return;
    }
    }
}

} // namespace tw
