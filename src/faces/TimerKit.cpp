#include "faces/TimerKit.h"

#include "desk/DeskBoard.h"
#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "text/L.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace tw::TimerKit {

namespace {

void drawGlyph(QPainter& painter, Glyph glyph, const QRectF& box, const QColor& color) {
    const qreal s = std::min(box.width(), box.height());
    const QPointF c = box.center();
    painter.save();
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    switch (glyph) {
    case Glyph::none:
        break;
    case Glyph::play: {
        // Nudged right: a triangle's weight sits left of its box's centre.
        const qreal h = s * 0.42;
        QPainterPath path;
        path.moveTo(c.x() - h * 0.36, c.y() - h / 2);
        path.lineTo(c.x() + h * 0.5, c.y());
        path.lineTo(c.x() - h * 0.36, c.y() + h / 2);
        path.closeSubpath();
        painter.drawPath(path);
        break;
    }
    case Glyph::pause: {
        const qreal h = s * 0.38;
        const qreal w = h * 0.3;
        painter.drawRoundedRect(QRectF(c.x() - w * 1.35, c.y() - h / 2, w, h), w * 0.3, w * 0.3);
        painter.drawRoundedRect(QRectF(c.x() + w * 0.35, c.y() - h / 2, w, h), w * 0.3, w * 0.3);
        break;
    }
    case Glyph::reset: {
        const qreal r = s * 0.19;
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(color, std::max<qreal>(1.2, s * 0.075), Qt::SolidLine, Qt::RoundCap));
        painter.drawArc(QRectF(c.x() - r, c.y() - r, 2 * r, 2 * r), 100 * 16, 290 * 16);
        // The arrow head at the open end, at twelve o'clock, pointing back round.
        painter.setPen(Qt::NoPen);
        painter.setBrush(color);
        const QPointF tip(c.x() - r * 0.17, c.y() - r);
        QPainterPath head;
        head.moveTo(tip + QPointF(-r * 0.62, 0));
        head.lineTo(tip + QPointF(r * 0.12, -r * 0.55));
        head.lineTo(tip + QPointF(r * 0.12, r * 0.55));
        head.closeSubpath();
        painter.drawPath(head);
        break;
    }
    case Glyph::skip: {
        const qreal h = s * 0.36;
        QPainterPath path;
        path.moveTo(c.x() - h * 0.55, c.y() - h / 2);
        path.lineTo(c.x() + h * 0.2, c.y());
        path.lineTo(c.x() - h * 0.55, c.y() + h / 2);
        path.closeSubpath();
        painter.drawPath(path);
        painter.drawRect(QRectF(c.x() + h * 0.25, c.y() - h / 2, h * 0.16, h));
        break;
    }
    case Glyph::lap: {
        const qreal h = s * 0.4;
        const qreal left = c.x() - h * 0.35;
        painter.drawRect(QRectF(left, c.y() - h / 2, h * 0.09, h));
        QPainterPath flag;
        flag.moveTo(left, c.y() - h / 2);
        flag.lineTo(left + h * 0.72, c.y() - h * 0.28);
        flag.lineTo(left, c.y() - h * 0.04);
        flag.closeSubpath();
        painter.drawPath(flag);
        break;
    }
    }
    painter.restore();
}

// Buttons only: the areas that are the whole dial would put a word under every resting pointer.
QString help(const Control& control) {
    switch (control.glyph) {
    case Glyph::none:
        return control.text.isEmpty() ? QString()
                                      : L("timer.help.minutes", QStringLiteral("%1 minutes"))
                                            .arg(control.action.minutes);
    case Glyph::play:
        return L("timer.help.start", QStringLiteral("Start"));
    case Glyph::pause:
        return L("timer.help.pause", QStringLiteral("Pause"));
    case Glyph::reset:
        return L("timer.help.reset", QStringLiteral("Reset"));
    case Glyph::skip:
        return L("timer.help.skip", QStringLiteral("Next phase"));
    case Glyph::lap:
        return L("timer.help.lap", QStringLiteral("Lap"));
    }
    return {};
}

} // namespace

Control Control::button(DeskAction action, const QRectF& rect, Glyph glyph) {
    Control c;
    c.action = action;
    c.rect = rect;
    c.glyph = glyph;
    return c;
}

Control Control::primaryButton(DeskAction action, const QRectF& rect, Glyph glyph) {
    Control c = button(action, rect, glyph);
    c.primary = true;
    return c;
}

Control Control::chip(DeskAction action, const QRectF& rect, const QString& text, bool selected) {
    Control c = button(action, rect, Glyph::none);
    c.text = text;
    c.selected = selected;
    return c;
}

Control Control::area(DeskAction action, const QRectF& rect) {
    return button(action, rect, Glyph::none);
}

WidgetFace::Spot spotAt(const QList<Control>& controls, QPointF point) {
    for (const Control& control : controls) {
        if (control.rect.contains(point)) {
            WidgetFace::Spot spot;
            spot.help = help(control);
            spot.control = control.action;
            return spot;
        }
    }
    return {};
}

void draw(QPainter& painter, const FaceContext& context, const QList<Control>& controls,
          const QColor& tint) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    for (const Control& control : controls) {
        if (control.glyph == Glyph::none && control.text.isEmpty()) {
            continue;
        }
        QColor fill = tint;
        QColor ink = Qt::white;
        if (!control.primary) {
            fill = context.primary();
            fill.setAlphaF(control.selected ? 0.28F : 0.1F);
            ink = context.primary();
        }
        painter.setPen(Qt::NoPen);
        painter.setBrush(fill);
        const qreal radius = std::min(control.rect.width(), control.rect.height()) / 2;
        painter.drawRoundedRect(control.rect, radius, radius);
        if (!control.text.isEmpty()) {
            FaceKit::drawFitted(painter, context, control.rect.adjusted(4, 2, -4, -2), control.text,
                                control.selected ? QFont::DemiBold : QFont::Medium, ink,
                                Qt::AlignCenter, control.rect.height() * 0.5);
        } else {
            drawGlyph(painter, control.glyph, control.rect, ink);
        }
    }
    painter.restore();
}

QString clockText(double seconds, Rounding rounding) {
    const double clamped = std::clamp(seconds, 0.0, 1e9);
    const qint64 whole = static_cast<qint64>(rounding == Rounding::up ? std::ceil(clamped - 1e-6)
                                                                      : std::floor(clamped));
    const qint64 h = whole / 3600;
    const qint64 m = whole % 3600 / 60;
    const qint64 s = whole % 60;
    if (h > 0) {
        return QStringLiteral("%1:%2:%3")
            .arg(h)
            .arg(m, 2, 10, QLatin1Char('0'))
            .arg(s, 2, 10, QLatin1Char('0'));
    }
    return QStringLiteral("%1:%2").arg(m).arg(s, 2, 10, QLatin1Char('0'));
}

QString hundredthsText(double seconds) {
    const double clamped = std::clamp(seconds, 0.0, 1e9);
    const qint64 cents = static_cast<qint64>(std::floor(clamped * 100)) % 100;
    return clockText(clamped, Rounding::down) + QLatin1Char('.') +
           QStringLiteral("%1").arg(cents, 2, 10, QLatin1Char('0'));
}

bool isRinging(const FaceContext& context) {
    return context.desk != nullptr && context.desk->isRinging(context.instanceID);
}

QRectF centred(const QRectF& within, qreal side) {
    return QRectF(within.center().x() - side / 2, within.center().y() - side / 2, side, side);
}

} // namespace tw::TimerKit
