#include "faces/SystemFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/ReadingKit.h"
#include "faces/ReadingText.h"
#include "readings/ReadingsBoard.h"
#include "text/L.h"

#include <QFontMetricsF>
#include <QLocale>
#include <QPainter>

#include <algorithm>
#include <array>

namespace tw {

namespace {

constexpr std::array allMetrics{SysMetric::cpu, SysMetric::gpu, SysMetric::ram, SysMetric::disk};

QString rawName(SysMetric metric) {
    switch (metric) {
    case SysMetric::cpu:
        return QStringLiteral("cpu");
    case SysMetric::gpu:
        return QStringLiteral("gpu");
    case SysMetric::ram:
        return QStringLiteral("ram");
    case SysMetric::disk:
        return QStringLiteral("disk");
    }
    return {};
}

QString title(SysMetric metric) {
    switch (metric) {
    case SysMetric::cpu:
        return L("system.cpu", QStringLiteral("CPU"));
    case SysMetric::gpu:
        return L("system.gpu", QStringLiteral("GPU"));
    case SysMetric::ram:
        return L("system.ram", QStringLiteral("Memory"));
    case SysMetric::disk:
        return L("system.disk", QStringLiteral("Disk"));
    }
    return {};
}

// The name in a ring's column, where a word of four letters is all there is room for.
QString shortTitle(SysMetric metric) {
    return metric == SysMetric::ram ? L("system.ramShort", QStringLiteral("RAM")) : title(metric);
}

// One metric as the face draws it.
struct Reading {
    SysMetric metric = SysMetric::cpu;
    QString title;
    QString shortTitle;
    // None where nothing was measured, or the machine reports no graphics load: a 0 % there
    // would claim an idle device nobody measured.
    std::optional<double> value;
    QString detail;
    // Read, and the machine said it has no figure to give.
    bool unreported = false;
    QList<double> history;
};

Reading readingOf(const ReadingsBoard* board, SysMetric metric, bool withHistory) {
    Reading r;
    r.metric = metric;
    r.title = title(metric);
    r.shortTitle = shortTitle(metric);
    const std::optional<SystemSnapshot> snapshot =
        board != nullptr ? board->system : std::optional<SystemSnapshot>();
    if (withHistory) {
        r.history = SystemFace::history(board, metric);
    }
    if (!snapshot) {
        return r;
    }
    switch (metric) {
    case SysMetric::cpu: {
        r.value = snapshot->cpu;
        const QList<double> recent = SystemFace::history(board, metric);
        if (recent.size() >= 2) {
            r.detail =
                L("system.cpuPeak", QStringLiteral("Peak %1"))
                    .arg(ReadingText::percent(*std::max_element(recent.begin(), recent.end())));
        } else {
            r.detail = L("system.cpuAll", QStringLiteral("All cores"));
        }
        break;
    }
    case SysMetric::gpu:
        r.value = snapshot->gpu;
        r.unreported = !snapshot->gpu;
        r.detail = snapshot->gpu ? L("system.gpuBusy", QStringLiteral("Graphics"))
                                 : L("system.gpuNone", QStringLiteral("Not reported"));
        break;
    case SysMetric::ram:
        if (snapshot->ramTotal > 0) {
            r.value = snapshot->value(metric);
            r.detail = L("system.ramUsed", QStringLiteral("%1 of %2"))
                           .arg(ReadingText::bytes(snapshot->ramUsed),
                                ReadingText::bytes(snapshot->ramTotal));
        }
        break;
    case SysMetric::disk:
        if (snapshot->diskTotal > 0) {
            r.value = snapshot->value(metric);
            r.detail = L("system.diskFree", QStringLiteral("%1 GB free"))
                           .arg(QLocale().toString(snapshot->diskFree / 1e9, 'f',
                                                   snapshot->diskFree < 10e9 ? 1 : 0));
        }
        break;
    }
    return r;
}

QColor fillOf(const FaceContext& context, const Reading& r) {
    return ReadingKit::level(context, r.value.value_or(0));
}

// A ring with the percentage inside and the title under it.
void drawRing(QPainter& painter, const FaceContext& context, const QRectF& cell, const Reading& r,
              bool withTitle) {
    const qreal titleHeight = withTitle ? std::clamp(cell.height() * 0.2, 10.0, 16.0) : 0;
    const qreal side = std::min(cell.width(), cell.height() - titleHeight);
    const QRectF ring(cell.center().x() - side / 2, cell.top(), side, side);
    FaceKit::drawRing(painter, ring, std::max<qreal>(3, side * 0.1), r.value.value_or(0),
                      fillOf(context, r), ReadingKit::track(context));
    const QRectF inner = ring.adjusted(side * 0.2, side * 0.3, -side * 0.2, -side * 0.3);
    FaceKit::drawFitted(painter, context, inner, ReadingText::percent(r.value), QFont::DemiBold,
                        context.primary(), Qt::AlignCenter, side * 0.3);
    if (withTitle) {
        FaceKit::drawFitted(painter, context,
                            QRectF(cell.left(), ring.bottom(), cell.width(), titleHeight),
                            r.shortTitle, QFont::DemiBold, context.secondary(), Qt::AlignCenter,
                            titleHeight * 0.85);
    }
}

// Title and percentage over a bar; the detail under the bar where the row is tall enough, else
// between title and percentage where it fits whole.
void drawBarRow(QPainter& painter, const FaceContext& context, const QRectF& row,
                const Reading& r) {
    // Stacked, the detail keeps a line of its own of at least 12 points.
    const bool stacked = row.height() >= 42;
    const qreal barHeight = std::clamp(row.height() * 0.12, 4.0, 7.0);
    const qreal textHeight = stacked ? row.height() * 0.46 : row.height() - barHeight - 3;
    const QRectF text(row.left(), row.top(), row.width(), textHeight);
    qreal size = std::min<qreal>(textHeight * 0.8, 17);
    // Title and percentage share the line; both shrink until they do not touch.
    const QString figure = ReadingText::percent(r.value);
    while (size > 9 &&
           QFontMetricsF(FaceKit::font(size, QFont::DemiBold)).horizontalAdvance(r.title) +
                   QFontMetricsF(FaceKit::font(size * 1.1, QFont::DemiBold))
                       .horizontalAdvance(figure) +
                   10 >
               row.width()) {
        size -= 0.5;
    }
    const QRectF percent =
        FaceKit::drawText(painter, context, text, Qt::AlignRight | Qt::AlignBottom, figure,
                          FaceKit::font(size * 1.1, QFont::DemiBold), context.primary());
    const QRectF name =
        FaceKit::drawText(painter, context, text, Qt::AlignLeft | Qt::AlignBottom, r.title,
                          FaceKit::font(size, QFont::DemiBold), context.primary());
    const QRectF bar(row.left(), text.bottom() + 4, row.width(), barHeight);
    FaceKit::drawBar(painter, bar, r.value.value_or(0), fillOf(context, r),
                     ReadingKit::track(context));
    if (r.detail.isEmpty()) {
        return;
    }
    // A line of text is about 1.2 times its pixel size; the detail's line fits under the bar.
    const qreal under = row.bottom() - bar.bottom() - 2;
    const QFont detailFont =
        FaceKit::font(std::min<qreal>({size * 0.75, 12.5, stacked ? under / 1.2 : 12.5}));
    if (stacked) {
        FaceKit::drawElided(
            painter, context,
            QRectF(row.left(), bar.bottom() + 2, row.width(), row.bottom() - bar.bottom() - 2),
            r.detail, detailFont, context.secondary(), Qt::AlignLeft | Qt::AlignVCenter);
        return;
    }
    const QRectF room(name.right() + 6, text.top(), percent.left() - name.right() - 12,
                      text.height());
    if (QFontMetricsF(detailFont).horizontalAdvance(r.detail) <= room.width()) {
        FaceKit::drawText(painter, context, room.adjusted(0, 0, 0, -size * 0.08),
                          Qt::AlignLeft | Qt::AlignBottom, r.detail, detailFont,
                          context.secondary());
    }
}

// The history chart, or where the machine reports none, a quiet line saying so.
void drawChart(QPainter& painter, const FaceContext& context, const QRectF& rect,
               const Reading& r) {
    if (r.unreported && r.history.isEmpty()) {
        FaceKit::drawFitted(painter, context, rect,
                            L("system.gpuNone", QStringLiteral("Not reported")), QFont::Normal,
                            context.secondary(), Qt::AlignCenter,
                            std::min<qreal>(rect.height() * 0.3, 13));
        return;
    }
    ReadingKit::drawChartField(painter, context, rect);
    ReadingKit::drawArea(painter, rect, r.history, SystemFace::historyLength, 1.0,
                         fillOf(context, r));
}

// A card: title and detail, the large percentage, and the history under or beside it.
void drawCard(QPainter& painter, const FaceContext& context, const QRectF& card, const Reading& r,
              bool chartBeside) {
    const qreal title = std::clamp(card.height() * 0.12, 14.0, 18.0);
    const QRectF head(card.left(), card.top(), card.width(), title);
    const QRectF titleUsed =
        FaceKit::drawText(painter, context, head, Qt::AlignLeft | Qt::AlignVCenter, r.title,
                          FaceKit::font(title * 0.85, QFont::DemiBold), context.secondary());
    if (chartBeside) {
        // The detail shares the title's line; the percentage stands beside the chart.
        const QRectF room = head.adjusted(titleUsed.width() + 8, 0, 0, 0);
        const QFont font = FaceKit::font(title * 0.72);
        if (QFontMetricsF(font).horizontalAdvance(r.detail) <= room.width()) {
            FaceKit::drawText(painter, context, room, Qt::AlignRight | Qt::AlignVCenter, r.detail,
                              font, context.secondary());
        }
        const QRectF body(card.left(), head.bottom() + 4, card.width(),
                          card.bottom() - head.bottom() - 4);
        const QRectF big = FaceKit::drawFitted(
            painter, context, QRectF(body.left(), body.top(), body.width() * 0.45, body.height()),
            ReadingText::percent(r.value), QFont::Light, context.primary(),
            Qt::AlignLeft | Qt::AlignVCenter, body.height() * 0.9);
        const qreal left = std::max(big.right(), body.left() + body.width() * 0.3) + 10;
        drawChart(painter, context,
                  QRectF(left, body.top() + 4, body.right() - left, body.height() - 8), r);
        return;
    }
    const qreal line = (card.height() - title) / 6;
    const QRectF big(card.left(), head.bottom(), card.width(), line * 2);
    FaceKit::drawFitted(painter, context, big, ReadingText::percent(r.value), QFont::Light,
                        context.primary(), Qt::AlignLeft | Qt::AlignVCenter, line * 1.9);
    // An unreported figure is said once, where its history would be.
    if (!r.detail.isEmpty() && !r.unreported) {
        FaceKit::drawElided(painter, context, QRectF(card.left(), big.bottom(), card.width(), line),
                            r.detail, FaceKit::font(std::min<qreal>(line * 0.7, 13)),
                            context.secondary(), Qt::AlignLeft | Qt::AlignVCenter);
    }
    const qreal chartTop = big.bottom() + line * 1.3;
    drawChart(painter, context,
              QRectF(card.left(), chartTop, card.width(), card.bottom() - chartTop), r);
}

} // namespace

std::optional<TimeGrain> SystemFace::grain(WidgetSize, const WidgetSettings&) const {
    return std::nullopt;
}

ReadingFeeds SystemFace::feeds(WidgetSize, const WidgetSettings&) const {
    return ReadingFeed::system;
}

QList<SysMetric> SystemFace::metrics(const QString& setting) {
    QList<SysMetric> out;
    for (const QString& part : setting.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        const QString name = part.trimmed().toLower();
        for (const SysMetric metric : allMetrics) {
            if (rawName(metric) == name && !out.contains(metric)) {
                out << metric;
            }
        }
    }
    return out.isEmpty() ? QList<SysMetric>(allMetrics.begin(), allMetrics.end()) : out;
}

QList<SysMetric> SystemFace::historyMetrics(WidgetSize size, const QList<SysMetric>& shown) {
    switch (size) {
    case WidgetSize::large:
        return {shown.contains(largeSparkMetric) ? largeSparkMetric : shown.value(0)};
    case WidgetSize::wideTall:
    case WidgetSize::huge:
    case WidgetSize::grand:
        return shown;
    default:
        return {};
    }
}

QList<double> SystemFace::history(const ReadingsBoard* board, SysMetric metric) {
    QList<double> out;
    if (board == nullptr) {
        return out;
    }
    const qsizetype from = std::max<qsizetype>(0, board->systemHistory.size() - historyLength);
    for (qsizetype i = from; i < board->systemHistory.size(); ++i) {
        const SystemSnapshot& s = board->systemHistory.at(i);
        if (metric != SysMetric::gpu || s.gpu) {
            out << s.value(metric);
        }
    }
    return out;
}

void SystemFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const QList<SysMetric> shown = metrics(context.setting(QStringLiteral("metrics")));
    const QList<SysMetric> charted = historyMetrics(context.size, shown);
    QList<Reading> readings;
    for (const SysMetric metric : shown) {
        readings << readingOf(context.readings, metric, charted.contains(metric));
    }
    const auto n = static_cast<int>(readings.size());

    switch (context.size) {
    case WidgetSize::small:
        // One figure that reads from across the desk: the first metric chosen.
        drawRing(painter, context, rect, readings.first(), true);
        return;
    case WidgetSize::wide: {
        if (n == 1) {
            const Reading& r = readings.first();
            const QRectF ring(rect.left(), rect.top(), rect.height(), rect.height());
            drawRing(painter, context, ring, r, false);
            const QRectF text(ring.right() + 12, rect.top(), rect.right() - ring.right() - 12,
                              rect.height());
            FaceKit::drawFitted(painter, context, text.adjusted(0, 0, 0, -text.height() / 2),
                                r.title, QFont::DemiBold, context.primary(),
                                Qt::AlignLeft | Qt::AlignBottom, 20);
            FaceKit::drawFitted(painter, context, text.adjusted(0, text.height() / 2 + 2, 0, 0),
                                r.detail, QFont::Normal, context.secondary(),
                                Qt::AlignLeft | Qt::AlignTop, 14);
            return;
        }
        const qreal w = rect.width() / n;
        for (int i = 0; i < n; ++i) {
            drawRing(painter, context,
                     QRectF(rect.left() + i * w + 3, rect.top(), w - 6, rect.height()),
                     readings.at(i), true);
        }
        return;
    }
    case WidgetSize::large: {
        // The charted metric on top, large, over its history; the others as bars below.
        qsizetype spark = 0;
        while (spark < n - 1 && readings.at(spark).metric != charted.value(0)) {
            ++spark;
        }
        const qreal top = n == 1 ? rect.height() : rect.height() * 0.42;
        drawCard(painter, context, QRectF(rect.left(), rect.top(), rect.width(), top - 8),
                 readings.at(spark), n > 1);
        QList<Reading> rest = readings;
        rest.removeAt(spark);
        if (rest.isEmpty()) {
            return;
        }
        const qreal rowHeight = std::min<qreal>((rect.height() - top) / rest.size(), 52);
        for (qsizetype i = 0; i < rest.size(); ++i) {
            drawBarRow(painter, context,
                       QRectF(rect.left(), rect.bottom() - (rest.size() - i) * rowHeight,
                              rect.width(), rowHeight - 4),
                       rest.at(i));
        }
        return;
    }
    case WidgetSize::wideTall: {
        // A row per metric: its bar on the left, its history under its detail on the right.
        const qreal rowHeight = rect.height() / n;
        const qreal split = rect.width() * 0.46;
        for (int i = 0; i < n; ++i) {
            const QRectF row(rect.left(), rect.top() + i * rowHeight, rect.width(), rowHeight);
            const qreal inset = std::max<qreal>(2, rowHeight * 0.05);
            Reading bare = readings.at(i);
            bare.detail.clear();
            drawBarRow(painter, context,
                       QRectF(row.left(), row.top() + inset, split - 12, row.height() - 2 * inset),
                       bare);
            QRectF chart(row.left() + split, row.top() + inset, row.width() - split,
                         row.height() - 2 * inset);
            if (!readings.at(i).detail.isEmpty() && !readings.at(i).unreported) {
                const qreal line = std::min<qreal>(14, chart.height() * 0.34);
                FaceKit::drawElided(painter, context,
                                    QRectF(chart.left(), chart.top(), chart.width(), line),
                                    readings.at(i).detail, FaceKit::font(line * 0.8),
                                    context.secondary(), Qt::AlignLeft | Qt::AlignVCenter);
                chart.setTop(chart.top() + line + 2);
            }
            drawChart(painter, context, chart, readings.at(i));
        }
        return;
    }
    default: {
        // Huge and grand: a card per metric, two across where there are several.
        const int cols = n == 1 ? 1 : 2;
        const int rowsCount = (n + cols - 1) / cols;
        const qreal gap = 16;
        const qreal cw = (rect.width() - gap * (cols - 1)) / cols;
        const qreal ch = (rect.height() - gap * (rowsCount - 1)) / rowsCount;
        for (int i = 0; i < n; ++i) {
            // A lone last card takes the whole row.
            const bool alone = i == n - 1 && n % cols == 1 && cols > 1;
            const QRectF card(rect.left() + (i % cols) * (cw + gap),
                              rect.top() + (i / cols) * (ch + gap), alone ? rect.width() : cw, ch);
            drawCard(painter, context, card, readings.at(i), false);
        }
        return;
    }
    }
}

} // namespace tw
