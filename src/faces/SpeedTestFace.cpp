#include "faces/SpeedTestFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/ReadingKit.h"
#include "faces/ReadingText.h"
#include "speed/SpeedTestSchedule.h"
#include "text/L.h"

#include <QLocale>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace tw {

namespace {

using Kind = SpeedTestPhase::Kind;

bool measuring(const SpeedTestBoard& board) {
    return board.phase.kind == Kind::download || board.phase.kind == Kind::upload;
}

// What the gauge shows: the needle of the direction measured, else the last download.
double gaugeValue(const SpeedTestBoard& board) {
    return measuring(board) ? board.liveMbps : board.downMbps.value_or(0);
}

// A moment as short as it can be said: its time today, else its day.
QString shortWhen(const QDateTime& moment) {
    const QLocale locale;
    const QDateTime when = moment.toLocalTime();
    return when.date() == QDate::currentDate() ? locale.toString(when.time(), QLocale::ShortFormat)
                                               : locale.toString(when.date(), QLocale::ShortFormat);
}

QString phaseWord(const SpeedTestBoard& board, const FaceContext& context) {
    switch (board.phase.kind) {
    case Kind::ping:
        return L("speedtest.phase.ping", QStringLiteral("Ping…"));
    case Kind::download:
        return L("speedtest.phase.download", QStringLiteral("Download"));
    case Kind::upload:
        return L("speedtest.phase.upload", QStringLiteral("Upload"));
    case Kind::failed:
        return board.phase.message;
    case Kind::idle:
    case Kind::done:
        break;
    }
    if (const auto last = board.last()) {
        const QString said =
            L("speedtest.last", QStringLiteral("Last test %1")).arg(shortWhen(last->date));
        // A tile that tests on its own says when it will; a narrow one says only that.
        const std::chrono::seconds every = SpeedTestSchedule::everyOf(context.settings);
        if (every.count() == 0 || context.size == WidgetSize::small) {
            return said;
        }
        const QDateTime next = last->date.addSecs(every.count());
        const QString when =
            next > context.now ? shortWhen(next) : L("speedtest.soon", QStringLiteral("soon"));
        if (context.size == WidgetSize::wide) {
            return L("speedtest.next", QStringLiteral("Next test %1")).arg(when);
        }
        return L("speedtest.lastAndNext", QStringLiteral("%1, next %2")).arg(said, when);
    }
    return L("speedtest.never", QStringLiteral("Not measured yet"));
}

QColor phaseColor(const FaceContext& context, const SpeedTestBoard& board) {
    return board.phase.kind == Kind::failed ? ReadingKit::warning(context) : context.secondary();
}

QString pingText(std::optional<double> ms) {
    return ms ? L("speedtest.ms", QStringLiteral("%1 ms")).arg(std::lround(*ms))
              : ReadingText::missing();
}

QString figureText(std::optional<double> mbps) {
    return mbps ? SpeedTestFace::mbpsText(*mbps) : ReadingText::missing();
}

// The arc of 270° open at the bottom, filled to the value, with the figure and its unit inside.
void drawGauge(QPainter& painter, const FaceContext& context, const QRectF& area,
               const SpeedTestBoard& board) {
    const qreal side = std::min(area.width(), area.height());
    const QRectF box(area.center().x() - side / 2, area.center().y() - side / 2, side, side);
    const qreal line = side * 0.09;
    const QRectF arc = box.adjusted(line / 2, line / 2, -line / 2, -line / 2);
    const double value = gaugeValue(board);
    const double fraction = SpeedTestFace::gaugeFraction(value);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    QPen pen(ReadingKit::track(context), line, Qt::SolidLine, Qt::RoundCap);
    painter.setPen(pen);
    painter.drawArc(arc, 225 * 16, -270 * 16);
    if (fraction > 0) {
        pen.setColor(context.accent());
        painter.setPen(pen);
        painter.drawArc(arc, 225 * 16, static_cast<int>(std::lround(-270 * 16 * fraction)));
    }
    painter.restore();

    const bool shown = measuring(board) || board.downMbps.has_value();
    const QString figure = shown ? SpeedTestFace::mbpsText(value) : ReadingText::missing();
    const QRectF inner = box.adjusted(side * 0.2, side * 0.26, -side * 0.2, -side * 0.36);
    FaceKit::drawFitted(painter, context, inner, figure, QFont::DemiBold, context.primary(),
                        Qt::AlignCenter, side * 0.3);
    FaceKit::drawFitted(
        painter, context, QRectF(box.left(), inner.bottom(), box.width(), side * 0.13),
        QStringLiteral("Mbit/s"), QFont::Medium, context.secondary(), Qt::AlignCenter, side * 0.11);
    // The run's progress in the opening at the bottom of the arc.
    if (board.phase.isRunning()) {
        const qreal w = side * 0.36;
        const QRectF bar(box.center().x() - w / 2, box.bottom() - side * 0.1, w, side * 0.04);
        FaceKit::drawBar(painter, bar, board.progress, context.accent(),
                         ReadingKit::track(context));
    }
}

void drawButton(QPainter& painter, const FaceContext& context, const QRectF& rect, bool running) {
    const qreal side = std::min(rect.width(), rect.height());
    const QRectF circle(rect.center().x() - side / 2, rect.center().y() - side / 2, side, side);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QColor fill = context.accent();
    QColor ink = Qt::white;
    if (running) {
        fill = context.primary();
        fill.setAlphaF(0.14F);
        ink = context.primary();
    }
    painter.setBrush(fill);
    painter.drawEllipse(circle);
    painter.setBrush(ink);
    const QPointF c = circle.center();
    if (running) {
        const qreal s = side * 0.3;
        painter.drawRoundedRect(QRectF(c.x() - s / 2, c.y() - s / 2, s, s), s * 0.18, s * 0.18);
    } else {
        // Nudged right: a triangle's weight sits left of its box's centre.
        const qreal h = side * 0.42;
        QPainterPath path;
        path.moveTo(c.x() - h * 0.36, c.y() - h / 2);
        path.lineTo(c.x() + h * 0.5, c.y());
        path.lineTo(c.x() - h * 0.36, c.y() + h / 2);
        path.closeSubpath();
        painter.drawPath(path);
    }
    painter.restore();
}

struct Figure {
    QString label;
    QString value;
};

QList<Figure> figures(const SpeedTestBoard& board) {
    return {{L("speedtest.down", QStringLiteral("Down")), figureText(board.downMbps)},
            {L("speedtest.up", QStringLiteral("Up")), figureText(board.upMbps)},
            {L("speedtest.ping", QStringLiteral("Ping")), pingText(board.pingMs)}};
}

// The figures side by side (`across`) or one under another, each a label with its value, all
// values at one size so that no figure looks larger for being short.
void drawFigures(QPainter& painter, const FaceContext& context, const QRectF& rect,
                 const SpeedTestBoard& board, bool across) {
    const QList<Figure> all = figures(board);
    const qsizetype n = all.size();
    QList<QRectF> labels;
    QList<QRectF> values;
    for (qsizetype i = 0; i < n; ++i) {
        const qreal share = static_cast<qreal>(i) / static_cast<qreal>(n);
        if (across) {
            const QRectF cell(rect.left() + rect.width() * share, rect.top(),
                              rect.width() / static_cast<qreal>(n) - 8, rect.height());
            labels.append(QRectF(cell.topLeft(), QSizeF(cell.width(), cell.height() * 0.36)));
            values.append(cell.adjusted(0, cell.height() * 0.36, 0, 0));
        } else {
            const QRectF cell(rect.left(), rect.top() + rect.height() * share, rect.width(),
                              rect.height() / static_cast<qreal>(n));
            labels.append(QRectF(cell.topLeft(), QSizeF(cell.width() * 0.4, cell.height())));
            values.append(cell.adjusted(cell.width() * 0.4, 0, 0, 0));
        }
    }
    qreal labelSize = labels[0].height() * (across ? 0.85 : 0.42);
    qreal valueSize = values[0].height() * (across ? 0.85 : 0.56);
    for (qsizetype i = 0; i < n; ++i) {
        labelSize =
            FaceKit::fittingPixelSize(all[i].label, labels[i].size(), QFont::Medium, labelSize);
        valueSize =
            FaceKit::fittingPixelSize(all[i].value, values[i].size(), QFont::DemiBold, valueSize);
    }
    const Qt::Alignment valueAlign = (across ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter;
    for (qsizetype i = 0; i < n; ++i) {
        FaceKit::drawFitted(painter, context, labels[i], all[i].label, QFont::Medium,
                            context.secondary(), Qt::AlignLeft | Qt::AlignVCenter, labelSize);
        FaceKit::drawFitted(painter, context, values[i], all[i].value, QFont::DemiBold,
                            context.primary(), valueAlign, valueSize);
    }
}

// The downloads of the history as bars, the newest at the right.
void drawHistory(QPainter& painter, const FaceContext& context, const QRectF& rect,
                 const SpeedTestBoard& board) {
    const qsizetype slots = std::max<qsizetype>(8, static_cast<qsizetype>(rect.width() / 14));
    const QList<SpeedTestResult> shown =
        board.history.mid(std::max<qsizetype>(0, board.history.size() - slots));
    double top = 1;
    for (const SpeedTestResult& result : shown) {
        top = std::max(top, result.downMbps);
    }
    const qreal pitch = rect.width() / static_cast<qreal>(slots);
    const qreal width = pitch * 0.62;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    for (qsizetype slot = 0; slot < slots; ++slot) {
        const qsizetype index = slot - (slots - shown.size());
        const QRectF column(rect.left() + pitch * static_cast<qreal>(slot) + (pitch - width) / 2,
                            rect.top(), width, rect.height());
        painter.setBrush(ReadingKit::track(context));
        painter.drawRoundedRect(column, width / 2, width / 2);
        if (index < 0) {
            continue;
        }
        const qreal h = std::max(width, column.height() * shown[index].downMbps / top);
        QColor fill = context.accent();
        fill.setAlphaF(index == shown.size() - 1 ? 1.0F : 0.55F);
        painter.setBrush(fill);
        painter.drawRoundedRect(QRectF(column.left(), column.bottom() - h, width, h), width / 2,
                                width / 2);
    }
    painter.restore();
}

void drawStatus(QPainter& painter, const FaceContext& context, const QRectF& rect,
                const SpeedTestBoard& board, Qt::Alignment alignment) {
    // The small tile has no room for the reason, only for what happened.
    const QString text = context.size == WidgetSize::small && board.phase.kind == Kind::failed
                             ? L("speedtest.failed", QStringLiteral("No connection"))
                             : phaseWord(board, context);
    const qreal largest = rect.height() * 0.8;
    // A long reason goes on two lines rather than shrinking out of sight.
    if (FaceKit::fittingPixelSize(text, rect.size(), QFont::Medium, largest) < largest * 0.5) {
        FaceKit::drawText(painter, context, rect,
                          static_cast<int>(alignment | Qt::AlignVCenter) | Qt::TextWordWrap, text,
                          FaceKit::font(largest * 0.36, QFont::Medium), phaseColor(context, board));
        return;
    }
    FaceKit::drawFitted(painter, context, rect, text, QFont::Medium, phaseColor(context, board),
                        alignment | Qt::AlignVCenter, largest);
}

} // namespace

std::optional<TimeGrain> SpeedTestFace::grain(WidgetSize, const WidgetSettings&) const {
    return std::nullopt;
}

double SpeedTestFace::gaugeFraction(double mbps) {
    if (!(mbps > 0)) {
        return 0;
    }
    return std::min(1.0, std::log10(1 + mbps) / std::log10(1 + gaugeTop));
}

QString SpeedTestFace::mbpsText(double mbps) {
    const QLocale locale;
    return mbps >= 10 ? locale.toString(static_cast<qlonglong>(std::llround(mbps)))
                      : locale.toString(mbps, 'f', 1);
}

const SpeedTestBoard& SpeedTestFace::sampleBoard() {
    static const SpeedTestBoard board = [] {
        SpeedTestBoard sample;
        const QDateTime end(QDate(2026, 3, 14), QTime(9, 30));
        const double downs[] = {412, 455, 390, 508, 476, 521, 498, 512.4};
        for (int i = 0; i < 8; ++i) {
            sample.history.append({end.addDays(i - 7), downs[i], 44 + i * 0.6, 9.5 - i * 0.3});
        }
        sample.pingMs = sample.history.last().pingMs;
        sample.downMbps = sample.history.last().downMbps;
        sample.upMbps = sample.history.last().upMbps;
        return sample;
    }();
    return board;
}

const SpeedTestBoard& SpeedTestFace::boardOf(const FaceContext& context) {
    static const SpeedTestBoard none;
    if (context.speedTest != nullptr) {
        return *context.speedTest;
    }
    return context.surface.showsDemoContent ? sampleBoard() : none;
}

QRectF SpeedTestFace::buttonRect(const QRectF& rect, WidgetSize size) {
    const qreal h = rect.height();
    switch (size) {
    case WidgetSize::small:
        return rect;
    case WidgetSize::wide:
        return {rect.right() - h * 0.36, rect.top(), h * 0.36, h * 0.36};
    case WidgetSize::wideTall:
        return {rect.right() - h * 0.2, rect.top(), h * 0.2, h * 0.2};
    default:
        return {rect.right() - h * 0.19, rect.top(), h * 0.19, h * 0.19};
    }
}

void SpeedTestFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const SpeedTestBoard& board = boardOf(context);
    const qreal h = rect.height();
    const bool running = board.phase.isRunning();
    switch (context.size) {
    case WidgetSize::small: {
        drawGauge(painter, context, QRectF(rect.left(), rect.top(), rect.width(), h * 0.8), board);
        drawStatus(painter, context,
                   QRectF(rect.left(), rect.bottom() - h * 0.17, rect.width(), h * 0.17), board,
                   Qt::AlignHCenter);
        return;
    }
    case WidgetSize::wide: {
        drawGauge(painter, context, QRectF(rect.left(), rect.top(), h, h), board);
        const QRectF text(rect.left() + h * 1.12, rect.top(), rect.width() - h * 1.12, h);
        const QRectF button = buttonRect(rect, context.size);
        drawButton(painter, context, button, running);
        drawStatus(painter, context,
                   QRectF(text.left(), text.top() + h * 0.06,
                          button.left() - text.left() - h * 0.08, h * 0.24),
                   board, Qt::AlignLeft);
        drawFigures(painter, context,
                    QRectF(text.left(), text.top() + h * 0.44, text.width(), h * 0.56), board,
                    true);
        return;
    }
    case WidgetSize::wideTall: {
        const qreal side = h * 0.72;
        drawGauge(painter, context, QRectF(rect.left(), rect.top(), side, side), board);
        const QRectF button = buttonRect(rect, context.size);
        drawButton(painter, context, button, running);
        const QRectF text(rect.left() + side + h * 0.1, rect.top(), rect.width() - side - h * 0.1,
                          side);
        drawStatus(painter, context,
                   QRectF(text.left(), text.top(), button.left() - text.left() - h * 0.04, h * 0.2),
                   board, Qt::AlignLeft);
        drawFigures(painter, context,
                    QRectF(text.left(), text.top() + h * 0.26, text.width(), side - h * 0.26),
                    board, false);
        drawHistory(
            painter, context,
            QRectF(rect.left(), rect.top() + side + h * 0.08, rect.width(), h - side - h * 0.08),
            board);
        return;
    }
    default: {
        const QRectF button = buttonRect(rect, context.size);
        drawButton(painter, context, button, running);
        drawStatus(painter, context,
                   QRectF(rect.left(), rect.top(), button.left() - rect.left() - h * 0.04,
                          button.height()),
                   board, Qt::AlignLeft);
        drawGauge(painter, context,
                  QRectF(rect.left(), button.bottom() + h * 0.02, rect.width(),
                         h * 0.6 - button.bottom() + rect.top()),
                  board);
        drawFigures(painter, context,
                    QRectF(rect.left(), rect.top() + h * 0.62, rect.width(), h * 0.22), board,
                    true);
        drawHistory(painter, context,
                    QRectF(rect.left(), rect.top() + h * 0.88, rect.width(), h * 0.12), board);
        return;
    }
    }
}

WidgetFace::Spot SpeedTestFace::spotAt(const QRectF& rect, QPointF point,
                                       const FaceContext& context) const {
    Spot spot;
    if (!buttonRect(rect, context.size).contains(point)) {
        return spot;
    }
    const bool running = boardOf(context).phase.isRunning();
    spot.help = running ? L("speedtest.help.cancel", QStringLiteral("Cancel the speed test"))
                        : L("speedtest.help.start", QStringLiteral("Start a speed test"));
    spot.control = DeskAction{DeskAction::Kind::toggle, 0};
    return spot;
}

} // namespace tw
