#include "faces/PomodoroFace.h"

#include "desk/PomodoroState.h"
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
    PomodoroPlan plan;
    PomodoroState state;
    QDateTime now;
};

Shown shown(const FaceContext& context) {
    Shown s{PomodoroPlan::from(context.settings), PomodoroState::from(context.settings),
            context.now};
    if (!s.now.isValid()) {
        s.now = QDateTime::currentDateTimeUtc();
    }
    // A preview is in the middle of its third focus.
    if (context.surface.showsDemoContent && !s.state.isRunning() && !s.state.remainingWhenPaused &&
        s.state.completed == 0) {
        s.state.completed = 2;
        s.state.endsAt =
            s.now.addSecs(static_cast<qint64>(s.plan.seconds(PomodoroPhase::work) * 0.62));
    }
    return s;
}

double fraction(const Shown& s) {
    const double full = s.plan.seconds(s.state.phase);
    return full > 0 ? s.state.remaining(s.plan, s.now) / full : 0;
}

// The rounds of the set as dots, the done ones filled.
void drawRounds(QPainter& painter, const FaceContext& context, const QRectF& box, const Shown& s,
                Qt::Alignment alignment) {
    const int count = s.plan.rounds;
    const int done = s.state.roundsInSet(s.plan);
    const qreal d = std::min<qreal>(box.height(), 8);
    const qreal gap = d * 0.8;
    const qreal width = count * d + (count - 1) * gap;
    qreal x = alignment & Qt::AlignLeft ? box.left() : box.center().x() - width / 2;
    painter.save();
    for (int i = 0; i < count; ++i) {
        QColor c = i < done ? PomodoroFace::color(PomodoroPhase::work) : context.primary();
        if (i >= done) {
            c.setAlphaF(0.18F);
        }
        painter.setPen(Qt::NoPen);
        painter.setBrush(c);
        painter.drawEllipse(QRectF(x, box.center().y() - d / 2, d, d));
        x += d + gap;
    }
    painter.restore();
}

void drawDial(QPainter& painter, const FaceContext& context, const QRectF& area, const Shown& s,
              bool withTitle) {
    const qreal side = std::min(area.width(), area.height());
    const QRectF ring = TimerKit::centred(area, side);
    const QColor tint = PomodoroFace::color(s.state.phase);
    QColor track = context.primary();
    track.setAlphaF(0.12F);
    const qreal line = std::max<qreal>(4, side * 0.075);
    FaceKit::drawRing(painter, ring, line, fraction(s), tint, track);
    const QRectF inner = ring.adjusted(line * 2.2, line * 2.2, -line * 2.2, -line * 2.2);
    const QString digits =
        TimerKit::clockText(s.state.remaining(s.plan, s.now), TimerKit::Rounding::up);
    if (!withTitle) {
        FaceKit::drawFitted(painter, context, inner, digits, QFont::Medium, context.primary(),
                            Qt::AlignCenter, inner.height() * 0.5);
        return;
    }
    FaceKit::drawFitted(painter, context,
                        inner.adjusted(0, inner.height() * 0.12, 0, -inner.height() * 0.42), digits,
                        QFont::Light, context.primary(), Qt::AlignHCenter | Qt::AlignBottom,
                        inner.height() * 0.42);
    const QString status = s.state.isRunning() || s.state.remainingWhenPaused
                               ? (s.state.isRunning() ? title(s.state.phase)
                                                      : L("timer.paused", QStringLiteral("Paused")))
                               : title(s.state.phase);
    FaceKit::drawFitted(painter, context,
                        inner.adjusted(0, inner.height() * 0.62, 0, -inner.height() * 0.14), status,
                        QFont::Medium, s.state.isRunning() ? tint : context.secondary(),
                        Qt::AlignHCenter | Qt::AlignTop, inner.height() * 0.15);
}

} // namespace

QColor PomodoroFace::color(PomodoroPhase phase) {
    switch (phase) {
    case PomodoroPhase::work:
        return {255, 99, 71};
    case PomodoroPhase::shortBreak:
        return {52, 199, 89};
    case PomodoroPhase::longBreak:
        return {10, 132, 255};
    }
    return {255, 99, 71};
}

std::optional<TimeGrain> PomodoroFace::grain(WidgetSize, const WidgetSettings& settings) const {
    return settings.contains(QStringLiteral("pomoEnds")) ? TimeGrain::Seconds : TimeGrain::Minutes;
}

QList<Control> PomodoroFace::controls(const QRectF& rect, const FaceContext& context) {
    const Shown s = shown(context);
    const Glyph main = s.state.isRunning() ? Glyph::pause : Glyph::play;
    const DeskAction toggle{Kind::toggle};
    const bool started = s.state.isRunning() || s.state.remainingWhenPaused ||
                         s.state.completed > 0 || s.state.phase != PomodoroPhase::work;
    QList<Control> out;
    switch (context.size) {
    case WidgetSize::wide: {
        const qreal big = std::min<qreal>(36, rect.height() * 0.48);
        const qreal small = big * 0.78;
        const QRectF primary(rect.right() - big - small - 8, rect.bottom() - big, big, big);
        out.append(Control::primaryButton(toggle, primary, main));
        out.append(Control::button(
            DeskAction{Kind::skip},
            QRectF(rect.right() - small, primary.center().y() - small / 2, small, small),
            Glyph::skip));
        break;
    }
    case WidgetSize::large: {
        const qreal row = std::min<qreal>(34, rect.height() * 0.18);
        const qreal w = row * 1.6;
        const QRectF bottom(rect.left(), rect.bottom() - row, rect.width(), row);
        out.append(Control::primaryButton(
            toggle, QRectF(bottom.center().x() - w / 2, bottom.top(), w, row), main));
        out.append(Control::button(DeskAction{Kind::skip},
                                   QRectF(bottom.center().x() + w / 2 + 10, bottom.top(), w, row),
                                   Glyph::skip));
        if (started) {
            out.append(Control::button(
                DeskAction{Kind::reset},
                QRectF(bottom.center().x() - w * 1.5 - 10, bottom.top(), w, row), Glyph::reset));
        }
        out.append(Control::area(toggle, rect.adjusted(0, 0, 0, -row - 6)));
        break;
    }
    default:
        out.append(Control::area(toggle, rect));
        break;
    }
    return out;
}

WidgetFace::Spot PomodoroFace::spotAt(const QRectF& rect, QPointF point,
                                      const FaceContext& context) const {
    return TimerKit::spotAt(controls(rect, context), point);
}

void PomodoroFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const Shown s = shown(context);
    const QList<Control> buttons = controls(rect, context);
    const QColor tint = color(s.state.phase);
    painter.setRenderHint(QPainter::Antialiasing);
    switch (context.size) {
    case WidgetSize::wide: {
        const qreal dial = rect.height();
        drawDial(painter, context, QRectF(rect.left(), rect.top(), dial, dial), s, false);
        const QRectF text(rect.left() + dial + 10, rect.top(), rect.width() - dial - 10,
                          rect.height());
        FaceKit::drawFitted(
            painter, context, QRectF(text.left(), text.top(), text.width(), text.height() * 0.26),
            title(s.state.phase), QFont::DemiBold, tint, Qt::AlignLeft | Qt::AlignVCenter, 14);
        drawRounds(painter, context,
                   QRectF(text.left(), text.top() + text.height() * 0.3, text.width(), 7), s,
                   Qt::AlignLeft);
        break;
    }
    case WidgetSize::large: {
        const qreal row = buttons.first().rect.height();
        const qreal dots = 8;
        drawDial(painter, context, rect.adjusted(0, 0, 0, -row - dots - 16), s, true);
        drawRounds(painter, context,
                   QRectF(rect.left(), rect.bottom() - row - dots - 8, rect.width(), dots), s,
                   Qt::AlignHCenter);
        break;
    }
    default:
        drawDial(painter, context, rect, s, false);
        break;
    }
    TimerKit::draw(painter, context, buttons, tint);
}

} // namespace tw
