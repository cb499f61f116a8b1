#include "faces/StopwatchFace.h"

#include "desk/DeskSettings.h"
#include "desk/StopwatchState.h"
#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "text/L.h"

#include <QPainter>

namespace tw {

namespace {

using TimerKit::Control;
using TimerKit::Glyph;
using Kind = DeskAction::Kind;

struct Shown {
    StopwatchState state;
    QDateTime now;
    bool laps = true;
};

Shown shown(const FaceContext& context) {
    Shown s{StopwatchState::from(context.settings), context.now,
            context.setting(QStringLiteral("laps"), QStringLiteral("true")) !=
                QLatin1String("false")};
    if (!s.now.isValid()) {
        s.now = QDateTime::currentDateTimeUtc();
    }
    // A preview has run a while and taken three laps.
    if (context.surface.showsDemoContent && !s.state.isRunning() && s.state.accumulated == 0) {
        s.state.laps = {41.2, 83.9, 124.6};
        s.state.accumulated = 141.37;
    }
    return s;
}

QString digits(const Shown& s, const FaceContext& context) {
    const double elapsed = s.state.elapsed(s.now);
    // A running face is drawn once a second, so hundredths would only stand still and lie.
    if (!s.state.isRunning() && StopwatchState::showsHundredths(context.settings)) {
        return TimerKit::hundredthsText(elapsed);
    }
    return TimerKit::clockText(elapsed, TimerKit::Rounding::down);
}

QString status(const Shown& s) {
    return s.state.isRunning() ? L("stopwatch.running", QStringLiteral("Running"))
                               : L("stopwatch.stopped", QStringLiteral("Stopped"));
}

} // namespace

std::optional<TimeGrain> StopwatchFace::grain(WidgetSize, const WidgetSettings& settings) const {
    return settings.contains(QStringLiteral("swAnchor")) ? TimeGrain::Seconds : TimeGrain::Minutes;
}

QList<Control> StopwatchFace::controls(const QRectF& rect, const FaceContext& context) {
    const Shown s = shown(context);
    const bool running = s.state.isRunning();
    const bool counted = running || s.state.accumulated > 0;
    const DeskAction toggle{Kind::toggle};
    const Glyph main = running ? Glyph::pause : Glyph::play;
    // Lap while running, reset once stopped.
    const Control second =
        Control::button(running ? DeskAction{Kind::lap} : DeskAction{Kind::reset}, {},
                        running ? Glyph::lap : Glyph::reset);
    QList<Control> out;
    switch (context.size) {
    case WidgetSize::wide: {
        const qreal big = std::min<qreal>(36, rect.height() * 0.48);
        const qreal small = big * 0.78;
        const QRectF primary(rect.right() - big, rect.center().y() - big / 2, big, big);
        out.append(Control::primaryButton(toggle, primary, main));
        if (counted && (running ? s.laps : true)) {
            Control c = second;
            c.rect =
                QRectF(primary.left() - 8 - small, rect.center().y() - small / 2, small, small);
            out.append(c);
        }
        break;
    }
    case WidgetSize::large: {
        const qreal row = std::min<qreal>(34, rect.height() * 0.18);
        const qreal w = row * 1.9;
        const QRectF bottom(rect.left(), rect.bottom() - row, rect.width(), row);
        out.append(Control::primaryButton(
            toggle, QRectF(bottom.center().x() + 5, bottom.top(), w, row), main));
        if (counted && (running ? s.laps : true)) {
            Control c = second;
            c.rect = QRectF(bottom.center().x() - 5 - w, bottom.top(), w, row);
            out.append(c);
        }
        break;
    }
    default:
        if (!running && counted) {
            // In place of the status line, which a stopped face needs less than its reset.
            const qreal side = std::min<qreal>(22, rect.width() * 0.3);
            out.append(Control::button(
                DeskAction{Kind::reset},
                QRectF(rect.center().x() - side / 2, rect.bottom() - side, side, side),
                Glyph::reset));
        }
        out.append(Control::area(toggle, rect));
        break;
    }
    return out;
}

WidgetFace::Spot StopwatchFace::spotAt(const QRectF& rect, QPointF point,
                                       const FaceContext& context) const {
    return TimerKit::spotAt(controls(rect, context), point);
}

void StopwatchFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const Shown s = shown(context);
    const QList<Control> buttons = controls(rect, context);
    const QColor tint = s.state.isRunning() ? QColor(255, 149, 0) : context.accent();
    const QColor statusColor = s.state.isRunning() ? tint : context.secondary();
    painter.setRenderHint(QPainter::Antialiasing);
    switch (context.size) {
    case WidgetSize::wide: {
        qreal right = rect.right();
        for (const Control& c : buttons) {
            right = std::min(right, c.rect.left());
        }
        const QRectF text(rect.left(), rect.top(), right - rect.left() - 10, rect.height());
        FaceKit::drawFitted(painter, context,
                            QRectF(text.left(), text.top() + text.height() * 0.1, text.width(),
                                   text.height() * 0.56),
                            digits(s, context), QFont::Light, context.primary(),
                            Qt::AlignLeft | Qt::AlignVCenter, 40);
        QString line = status(s);
        if (!s.state.laps.isEmpty()) {
            line += QStringLiteral(" · ") +
                    L("stopwatch.lapCount", QStringLiteral("%1 laps"))
                        .arg(s.state.lapNumber(static_cast<int>(s.state.laps.size()) - 1));
        }
        FaceKit::drawFitted(painter, context,
                            QRectF(text.left(), text.top() + text.height() * 0.7, text.width(),
                                   text.height() * 0.22),
                            line, QFont::Medium, statusColor, Qt::AlignLeft | Qt::AlignVCenter, 12);
        break;
    }
    case WidgetSize::large: {
        const qreal row = buttons.first().rect.height();
        const qreal big = rect.height() * 0.26;
        FaceKit::drawFitted(painter, context, QRectF(rect.left(), rect.top(), rect.width(), big),
                            digits(s, context), QFont::Light, context.primary(),
                            Qt::AlignHCenter | Qt::AlignVCenter, big * 0.9);
        FaceKit::drawFitted(painter, context,
                            QRectF(rect.left(), rect.top() + big, rect.width(), 16), status(s),
                            QFont::Medium, statusColor, Qt::AlignHCenter | Qt::AlignVCenter, 12);
        if (!s.laps) {
            break;
        }
        const QRectF list(rect.left(), rect.top() + big + 24, rect.width(),
                          rect.height() - big - 24 - row - 8);
        const QList<double> splits = s.state.lapSplits();
        const qreal lineHeight = 17;
        const int fit = std::max(0, static_cast<int>(list.height() / lineHeight));
        if (splits.isEmpty()) {
            FaceKit::drawFitted(painter, context, list,
                                L("stopwatch.noLaps", QStringLiteral("No laps yet")), QFont::Normal,
                                context.secondary(), Qt::AlignCenter, 12);
            break;
        }
        QColor rule = context.separator();
        for (int i = 0; i < std::min<int>(fit, static_cast<int>(splits.size())); ++i) {
            const int index = static_cast<int>(splits.size()) - 1 - i;
            const QRectF line(list.left(), list.top() + i * lineHeight, list.width(), lineHeight);
            const QFont font = FaceKit::font(12, QFont::Normal);
            FaceKit::drawText(
                painter, context, line, Qt::AlignLeft | Qt::AlignVCenter,
                L("stopwatch.lap", QStringLiteral("Lap %1 · %2"))
                    .arg(s.state.lapNumber(index))
                    .arg(TimerKit::clockText(splits[index], TimerKit::Rounding::down)),
                font, context.primary());
            FaceKit::drawText(painter, context, line, Qt::AlignRight | Qt::AlignVCenter,
                              TimerKit::clockText(s.state.laps[index], TimerKit::Rounding::down),
                              font, context.secondary());
            if (i > 0) {
                painter.setPen(QPen(rule, 0.5));
                painter.drawLine(line.topLeft(), line.topRight());
            }
        }
        break;
    }
    default: {
        FaceKit::drawFitted(painter, context,
                            rect.adjusted(0, rect.height() * 0.18, 0, -rect.height() * 0.38),
                            digits(s, context), QFont::Light, context.primary(), Qt::AlignCenter,
                            rect.height() * 0.4);
        if (buttons.size() == 1) {
            FaceKit::drawFitted(painter, context,
                                rect.adjusted(0, rect.height() * 0.64, 0, -rect.height() * 0.18),
                                status(s), QFont::Medium, statusColor, Qt::AlignCenter, 11);
        }
        break;
    }
    }
    TimerKit::draw(painter, context, buttons, tint);
}

} // namespace tw
