#include "faces/TimerFace.h"

#include "desk/TimerState.h"
#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "text/L.h"

#include <QLocale>
#include <QPainter>

namespace tw {

namespace {

using Phase = TimerState::Phase;
using TimerKit::Control;
using TimerKit::Glyph;
using Kind = DeskAction::Kind;

struct Shown {
    TimerState state;
    Phase phase = Phase::idle;
    QDateTime now;
};

Shown shown(const FaceContext& context) {
    Shown s{TimerState::from(context.settings), Phase::idle, context.now};
    if (!s.now.isValid()) {
        s.now = QDateTime::currentDateTimeUtc();
    }
    // A preview runs, so that the gallery shows what the tile does.
    if (context.surface.showsDemoContent && !s.state.endsAt && !s.state.remainingWhenPaused) {
        s.state.endsAt = s.now.addSecs(s.state.selectedMinutes * 60 * 2 / 3);
        if (s.state.label.isEmpty()) {
            s.state.label = L("timer.demoLabel", QStringLiteral("Tea"));
        }
    }
    s.phase = s.state.phase(s.now);
    return s;
}

QColor tintOf(const FaceContext& context, Phase phase) {
    return phase == Phase::finished ? QColor(255, 149, 0) : context.accent();
}

QString statusText(const Shown& s) {
    const QLocale locale;
    switch (s.phase) {
    case Phase::idle:
        return L("timer.minutes", QStringLiteral("%1 min")).arg(s.state.selectedMinutes);
    case Phase::running:
        return L("timer.ends", QStringLiteral("Ends %1"))
            .arg(locale.toString(s.state.endsAt->toLocalTime().time(), QLocale::ShortFormat));
    case Phase::paused:
        return L("timer.paused", QStringLiteral("Paused"));
    case Phase::finished:
        return L("timer.doneAt", QStringLiteral("Done at %1"))
            .arg(locale.toString(s.state.endsAt->toLocalTime().time(), QLocale::ShortFormat));
    }
    return {};
}

Glyph primaryGlyph(Phase phase) {
    switch (phase) {
    case Phase::running:
        return Glyph::pause;
    case Phase::finished:
        return Glyph::reset;
    case Phase::idle:
    case Phase::paused:
        break;
    }
    return Glyph::play;
}

// The ring with the time in it; the ring's box is a square in `area`.
void drawDial(QPainter& painter, const FaceContext& context, const QRectF& area, const Shown& s,
              bool withStatus) {
    const qreal side = std::min(area.width(), area.height());
    const QRectF ring = TimerKit::centred(area, side);
    QColor track = context.primary();
    track.setAlphaF(0.12F);
    const QColor tint = tintOf(context, s.phase);
    if (TimerKit::isRinging(context) && s.now.time().second() % 2 == 0) {
        QColor flash = tint;
        flash.setAlphaF(0.3F);
        painter.setPen(Qt::NoPen);
        painter.setBrush(flash);
        painter.drawEllipse(ring);
    }
    const qreal line = std::max<qreal>(4, side * 0.075);
    FaceKit::drawRing(painter, ring, line,
                      s.phase == Phase::finished ? 1.0 : s.state.fraction(s.now), tint, track);
    const QRectF inner = ring.adjusted(line * 2.2, line * 2.2, -line * 2.2, -line * 2.2);
    const QString digits =
        s.phase == Phase::finished
            ? L("timer.done", QStringLiteral("Done"))
            : TimerKit::clockText(s.state.remaining(s.now), TimerKit::Rounding::up);
    if (!withStatus) {
        FaceKit::drawFitted(painter, context, inner, digits, QFont::Medium, context.primary(),
                            Qt::AlignCenter, inner.height() * 0.5);
        return;
    }
    FaceKit::drawFitted(painter, context,
                        inner.adjusted(0, inner.height() * 0.12, 0, -inner.height() * 0.42), digits,
                        QFont::Light, context.primary(), Qt::AlignHCenter | Qt::AlignBottom,
                        inner.height() * 0.42);
    FaceKit::drawFitted(painter, context,
                        inner.adjusted(0, inner.height() * 0.62, 0, -inner.height() * 0.14),
                        statusText(s), QFont::Normal, context.secondary(),
                        Qt::AlignHCenter | Qt::AlignTop, inner.height() * 0.15);
}

} // namespace

std::optional<TimeGrain> TimerFace::grain(WidgetSize, const WidgetSettings& settings) const {
    // Idle and paused faces change only with their settings, but a finished one must know the
    // time to know it finished.
    return settings.contains(QStringLiteral("endsAt")) ? TimeGrain::Seconds : TimeGrain::Minutes;
}

QRectF TimerFace::changedRect(const QRectF& rect, const FaceContext& context,
                              const QDateTime& before, const QDateTime& after) const {
    const auto end = TimerState::from(context.settings).endsAt;
    if (end && before.isValid() && *end <= before && *end <= after &&
        !TimerKit::isRinging(context)) {
        return {};
    }
    return rect;
}

QList<Control> TimerFace::controls(const QRectF& rect, const FaceContext& context) {
    const Shown s = shown(context);
    const DeskAction toggle{Kind::toggle};
    const DeskAction reset{Kind::reset};
    QList<Control> out;
    switch (context.size) {
    case WidgetSize::wide: {
        const qreal big = std::min<qreal>(38, rect.height() * 0.5);
        const qreal small = big * 0.78;
        const QRectF primary(rect.right() - big, rect.center().y() - big / 2, big, big);
        out.append(Control::primaryButton(toggle, primary, primaryGlyph(s.phase)));
        if (s.phase == Phase::paused || s.phase == Phase::running) {
            out.append(Control::button(
                reset,
                QRectF(primary.left() - 8 - small, rect.center().y() - small / 2, small, small),
                Glyph::reset));
        }
        break;
    }
    case WidgetSize::large: {
        const qreal row = std::min<qreal>(34, rect.height() * 0.18);
        const QRectF bottom(rect.left(), rect.bottom() - row, rect.width(), row);
        if (s.phase == Phase::idle) {
            const TimerState::Presets& chips = s.state.presets;
            const qreal gap = 6;
            const qreal w = (bottom.width() - gap * 3) / 4;
            for (std::size_t i = 0; i < chips.size(); ++i) {
                out.append(Control::chip(
                    {Kind::minutes, chips[i]},
                    QRectF(bottom.left() + static_cast<qreal>(i) * (w + gap), bottom.top(), w, row),
                    QString::number(chips[i]), chips[i] == s.state.selectedMinutes));
            }
        } else if (s.phase == Phase::finished) {
            out.append(Control::primaryButton(
                reset, QRectF(bottom.center().x() - row * 0.95, bottom.top(), row * 1.9, row),
                Glyph::reset));
        } else {
            out.append(Control::primaryButton(
                toggle, QRectF(bottom.center().x() + 5, bottom.top(), row * 1.9, row),
                primaryGlyph(s.phase)));
            out.append(Control::button(
                reset, QRectF(bottom.center().x() - 5 - row * 1.9, bottom.top(), row * 1.9, row),
                Glyph::reset));
        }
        // The dial itself starts and pauses too.
        out.append(Control::area(toggle, rect.adjusted(0, 0, 0, -row - 6)));
        break;
    }
    default: {
        // Small: the whole tile is the button; a paused timer offers its reset in the corner.
        if (s.phase == Phase::paused) {
            const qreal side = std::min<qreal>(24, rect.width() * 0.32);
            out.append(Control::button(
                reset, QRectF(rect.right() - side + 4, rect.bottom() - side + 4, side, side),
                Glyph::reset));
        }
        out.append(Control::area(toggle, rect));
        break;
    }
    }
    return out;
}

WidgetFace::Spot TimerFace::spotAt(const QRectF& rect, QPointF point,
                                   const FaceContext& context) const {
    return TimerKit::spotAt(controls(rect, context), point);
}

void TimerFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const Shown s = shown(context);
    const QList<Control> buttons = controls(rect, context);
    const QColor tint = tintOf(context, s.phase);
    painter.setRenderHint(QPainter::Antialiasing);
    switch (context.size) {
    case WidgetSize::wide: {
        // Too short for a dial beside the buttons: the digits, and the time left as a bar.
        qreal buttonsLeft = rect.right();
        for (const Control& c : buttons) {
            buttonsLeft = std::min(buttonsLeft, c.rect.left());
        }
        const QRectF text(rect.left(), rect.top(), buttonsLeft - rect.left() - 10, rect.height());
        const QString title = s.state.label.isEmpty()
                                  ? L("widget.timer.name", QStringLiteral("Timer"))
                                  : s.state.label;
        FaceKit::drawFitted(painter, context,
                            QRectF(text.left(), text.top(), text.width(), text.height() * 0.24),
                            title, QFont::DemiBold, tint, Qt::AlignLeft | Qt::AlignVCenter, 14);
        FaceKit::drawFitted(
            painter, context,
            QRectF(text.left(), text.top() + text.height() * 0.22, text.width(),
                   text.height() * 0.5),
            s.phase == Phase::finished
                ? L("timer.done", QStringLiteral("Done"))
                : TimerKit::clockText(s.state.remaining(s.now), TimerKit::Rounding::up),
            QFont::Light, context.primary(), Qt::AlignLeft | Qt::AlignVCenter, 36);
        FaceKit::drawFitted(painter, context,
                            QRectF(text.left(), text.top() + text.height() * 0.72, text.width(),
                                   text.height() * 0.18),
                            statusText(s), QFont::Normal, context.secondary(),
                            Qt::AlignLeft | Qt::AlignVCenter, 12);
        QColor track = context.primary();
        track.setAlphaF(0.12F);
        FaceKit::drawBar(painter, QRectF(text.left(), rect.bottom() - 3, text.width(), 3),
                         s.phase == Phase::finished ? 1.0 : s.state.fraction(s.now), tint, track);
        break;
    }
    case WidgetSize::large: {
        const qreal titleHeight =
            s.state.label.isEmpty() ? 0 : std::min<qreal>(20, rect.height() * 0.11);
        if (titleHeight > 0) {
            FaceKit::drawFitted(painter, context,
                                QRectF(rect.left(), rect.top(), rect.width(), titleHeight),
                                s.state.label, QFont::DemiBold, context.accent(),
                                Qt::AlignHCenter | Qt::AlignVCenter, titleHeight * 0.8);
        }
        const qreal row = buttons.first().rect.height();
        drawDial(painter, context,
                 rect.adjusted(0, titleHeight + (titleHeight > 0 ? 4 : 0), 0, -row - 10), s, true);
        break;
    }
    default:
        drawDial(painter, context, rect, s, false);
        break;
    }
    TimerKit::draw(painter, context, buttons, tint);
}

} // namespace tw
