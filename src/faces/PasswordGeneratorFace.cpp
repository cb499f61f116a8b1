#include "faces/PasswordGeneratorFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/ReadingKit.h"
#include "text/L.h"
#include "tools/PasswordBehaviour.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace tw {

namespace {

using Strength = PasswordRecipe::Strength;

struct Layout {
    QRectF heading;
    QRectF password;
    QRectF bar;
    QRectF label;
    QRectF copy;
    QRectF renew;
    QRectF shorter;
    QRectF longer;
    // The sets and the mode as switches (the big size).
    QList<std::pair<QString, QRectF>> toggles;
    int lines = 1;
};

Layout layoutOf(const QRectF& rect, WidgetSize size) {
    Layout l;
    const qreal w = rect.width();
    const qreal h = rect.height();
    switch (size) {
    case WidgetSize::small: {
        l.password = QRectF(rect.left(), rect.top(), w, h * 0.56);
        l.bar = QRectF(rect.left(), rect.top() + h * 0.64, w, h * 0.07);
        const qreal button = h * 0.26;
        l.renew = QRectF(rect.right() - button, rect.bottom() - button, button, button);
        l.label = QRectF(rect.left(), l.renew.top(), w - button - 4, button);
        l.lines = 3;
        return l;
    }
    case WidgetSize::wide: {
        const qreal button = h * 0.42;
        l.copy = QRectF(rect.right() - button, rect.top() + h * 0.04, button, button);
        l.renew = QRectF(rect.right() - button, rect.bottom() - button - h * 0.04, button, button);
        const qreal textWidth = w - button - 10;
        l.password = QRectF(rect.left(), rect.top(), textWidth, h * 0.6);
        l.bar = QRectF(rect.left(), rect.top() + h * 0.68, textWidth, h * 0.08);
        l.label = QRectF(rect.left(), rect.top() + h * 0.8, textWidth, h * 0.2);
        l.lines = 2;
        return l;
    }
    default: {
        const qreal left = size == WidgetSize::wideTall ? w * 0.64 : w;
        l.heading = QRectF(rect.left(), rect.top(), left, h * 0.13);
        const qreal step = h * 0.13;
        l.longer = QRectF(rect.left() + left - step, rect.top(), step, step);
        l.shorter = QRectF(l.longer.left() - step - 4, rect.top(), step, step);
        l.password = QRectF(rect.left(), rect.top() + h * 0.18, left, h * 0.42);
        l.bar = QRectF(rect.left(), rect.top() + h * 0.65, left, h * 0.045);
        l.label = QRectF(rect.left(), rect.top() + h * 0.7, left, h * 0.1);
        const qreal buttons = h * 0.16;
        l.copy = QRectF(rect.left(), rect.bottom() - buttons, left / 2 - 3, buttons);
        l.renew =
            QRectF(rect.left() + left / 2 + 3, rect.bottom() - buttons, left / 2 - 3, buttons);
        l.lines = 4;
        if (size == WidgetSize::wideTall) {
            const QStringList keys = {QStringLiteral("lower"),   QStringLiteral("upper"),
                                      QStringLiteral("digits"),  QStringLiteral("symbols"),
                                      QStringLiteral("similar"), QStringLiteral("mode")};
            const QRectF column(rect.left() + w * 0.68, rect.top(), w * 0.32, h);
            const qreal pitch = column.height() / static_cast<qreal>(keys.size());
            for (qsizetype i = 0; i < keys.size(); ++i) {
                l.toggles.append({keys[i], QRectF(column.left(),
                                                  column.top() + pitch * static_cast<qreal>(i) + 2,
                                                  column.width(), pitch - 4)});
            }
        }
        return l;
    }
    }
}

QFont monospace(qreal pixelSize) {
    QFont font(QStringLiteral("monospace"));
    font.setStyleHint(QFont::Monospace);
    font.setFixedPitch(true);
    font.setPixelSize(std::max(1, static_cast<int>(std::floor(pixelSize))));
    font.setWeight(QFont::Medium);
    return font;
}

// The password cut into lines of `perLine` characters, or for a passphrase at its words.
QStringList linesOf(const QString& password, qsizetype perLine, bool words,
                    const QString& separator) {
    QStringList lines;
    if (words && !separator.isEmpty()) {
        QString line;
        for (const QString& word : password.split(separator)) {
            const QString piece = line.isEmpty() ? word : separator + word;
            if (!line.isEmpty() && line.size() + piece.size() > perLine) {
                lines.append(line + separator);
                line = word;
            } else {
                line += piece;
            }
        }
        lines.append(line);
        return lines;
    }
    for (qsizetype at = 0; at < password.size(); at += perLine) {
        lines.append(password.mid(at, perLine));
    }
    return lines;
}

QColor charColor(const FaceContext& context, QChar c, bool words) {
    if (c.isDigit()) {
        return context.accent();
    }
    if (!c.isLetter()) {
        return words ? context.secondary() : ReadingKit::warning(context);
    }
    return context.primary();
}

void drawPassword(QPainter& painter, const FaceContext& context, const QRectF& rect,
                  const PasswordTile& tile, int maxLines) {
    const bool words = tile.recipe.mode == PasswordRecipe::Mode::words;
    const QString& text = tile.password;
    const qreal advanceAt100 = QFontMetricsF(monospace(100)).horizontalAdvance(QLatin1Char('M'));
    // The largest size at which the text fits in the lines there are.
    qreal size = std::min(rect.height() * 0.7, 30.0);
    QStringList lines;
    for (;;) {
        const qreal advance = advanceAt100 * size / 100;
        const auto perLine = std::max<qsizetype>(1, static_cast<qsizetype>(rect.width() / advance));
        lines = linesOf(text, perLine, words, tile.recipe.separator);
        const qreal lineHeight = size * 1.3;
        if ((lines.size() <= maxLines &&
             lineHeight * static_cast<qreal>(lines.size()) <= rect.height()) ||
            size <= 7) {
            break;
        }
        size *= 0.92;
    }
    if (lines.size() > maxLines) {
        lines = lines.mid(0, maxLines);
        lines.back().chop(1);
        lines.back() += QChar(0x2026);
    }
    const QFont font = monospace(size);
    const QFontMetricsF metrics(font);
    const qreal lineHeight = size * 1.3;
    qreal y = rect.center().y() - lineHeight * static_cast<qreal>(lines.size()) / 2;
    painter.save();
    painter.setFont(font);
    for (const QString& line : lines) {
        qreal x = rect.left();
        for (const QChar c : line) {
            painter.setPen(charColor(context, c, words));
            painter.drawText(
                QPointF(x, y + (lineHeight + metrics.ascent() - metrics.descent()) / 2),
                QString(c));
            x += metrics.horizontalAdvance(c);
        }
        y += lineHeight;
    }
    painter.restore();
}

QColor strengthColor(const FaceContext& context, Strength strength) {
    switch (strength) {
    case Strength::weak:
        return ReadingKit::warning(context);
    case Strength::fair:
        return {230, 162, 38};
    case Strength::strong:
    case Strength::veryStrong:
        break;
    }
    return {52, 178, 90};
}

void drawStrength(QPainter& painter, const FaceContext& context, const QRectF& rect,
                  Strength strength) {
    const int filled = static_cast<int>(strength) + 1;
    const qreal gap = 3;
    const qreal w = (rect.width() - gap * 3) / 4;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < 4; ++i) {
        painter.setBrush(i < filled ? strengthColor(context, strength)
                                    : ReadingKit::track(context));
        painter.drawRoundedRect(QRectF(rect.left() + i * (w + gap), rect.top(), w, rect.height()),
                                rect.height() / 2, rect.height() / 2);
    }
    painter.restore();
}

enum class Glyph { copy, renew, minus, plus };

void drawGlyph(QPainter& painter, const QPointF& c, qreal s, Glyph glyph, const QColor& ink) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(ink, std::max(1.3, s * 0.13), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    switch (glyph) {
    case Glyph::copy: {
        const qreal a = s * 0.56;
        painter.drawRoundedRect(QRectF(c.x() - a * 0.35, c.y() - a * 0.35, a, a), a * 0.18,
                                a * 0.18);
        QPainterPath back;
        back.moveTo(c.x() - a * 0.65, c.y() + a * 0.45);
        back.lineTo(c.x() - a * 0.65, c.y() - a * 0.65);
        back.lineTo(c.x() + a * 0.45, c.y() - a * 0.65);
        painter.drawPath(back);
        break;
    }
    case Glyph::renew: {
        const qreal r = s * 0.36;
        const QRectF box(c.x() - r, c.y() - r, 2 * r, 2 * r);
        painter.drawArc(box, 60 * 16, 290 * 16);
        // The arrow head at the arc's open end.
        const qreal angle = qDegreesToRadians(60.0);
        const QPointF end(c.x() + r * std::cos(angle), c.y() - r * std::sin(angle));
        QPainterPath head;
        head.moveTo(end + QPointF(-r * 0.55, -r * 0.12));
        head.lineTo(end);
        head.lineTo(end + QPointF(r * 0.1, r * 0.55));
        painter.drawPath(head);
        break;
    }
    case Glyph::minus:
    case Glyph::plus:
        painter.drawLine(QPointF(c.x() - s * 0.28, c.y()), QPointF(c.x() + s * 0.28, c.y()));
        if (glyph == Glyph::plus) {
            painter.drawLine(QPointF(c.x(), c.y() - s * 0.28), QPointF(c.x(), c.y() + s * 0.28));
        }
        break;
    }
    painter.restore();
}

void drawButton(QPainter& painter, const FaceContext& context, const QRectF& rect, Glyph glyph,
                const QString& text, bool accent) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QColor fill = accent ? context.accent() : context.elevated();
    painter.setBrush(fill);
    const qreal r = std::min(rect.height(), rect.width()) / 2;
    painter.drawRoundedRect(rect, r, r);
    painter.restore();
    const QColor ink = accent ? QColor(Qt::white) : context.primary();
    const qreal s = std::min(rect.height(), rect.width()) * 0.62;
    if (text.isEmpty()) {
        drawGlyph(painter, rect.center(), s, glyph, ink);
        return;
    }
    const qreal size = std::min(rect.height() * 0.42, 14.0);
    const QFont font = FaceKit::font(size, QFont::DemiBold);
    const qreal textWidth = QFontMetricsF(font).horizontalAdvance(text);
    const qreal total = s * 0.8 + 5 + textWidth;
    const qreal left = rect.center().x() - total / 2;
    drawGlyph(painter, QPointF(left + s * 0.4, rect.center().y()), s * 0.8, glyph, ink);
    FaceKit::drawText(painter, context,
                      QRectF(left + s * 0.8 + 5, rect.top(), textWidth + 2, rect.height()),
                      Qt::AlignLeft | Qt::AlignVCenter, text, font, ink);
}

bool toggleOn(const PasswordRecipe& recipe, const QString& key) {
    if (key == QLatin1String("lower")) {
        return recipe.lower;
    }
    if (key == QLatin1String("upper")) {
        return recipe.upper;
    }
    if (key == QLatin1String("digits")) {
        return recipe.digits;
    }
    if (key == QLatin1String("symbols")) {
        return recipe.symbols;
    }
    if (key == QLatin1String("similar")) {
        return recipe.avoidSimilar;
    }
    return recipe.mode == PasswordRecipe::Mode::words;
}

QString toggleTitle(const QString& key) {
    if (key == QLatin1String("lower")) {
        return QStringLiteral("a–z");
    }
    if (key == QLatin1String("upper")) {
        return QStringLiteral("A–Z");
    }
    if (key == QLatin1String("digits")) {
        return QStringLiteral("0–9");
    }
    if (key == QLatin1String("symbols")) {
        return QStringLiteral("#$&");
    }
    if (key == QLatin1String("similar")) {
        return L("password.toggle.similar", QStringLiteral("No l1O0"));
    }
    return L("password.toggle.words", QStringLiteral("Words"));
}

void drawToggle(QPainter& painter, const FaceContext& context, const QRectF& rect,
                const QString& title, bool on, bool dim) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (dim) {
        painter.setOpacity(0.4);
    }
    QColor fill = on ? context.accent() : context.elevated();
    if (on) {
        fill.setAlphaF(0.2F);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    const qreal r = rect.height() * 0.35;
    painter.drawRoundedRect(rect, r, r);
    // A check where it is on.
    const qreal d = rect.height() * 0.42;
    const QRectF box(rect.left() + rect.height() * 0.3, rect.center().y() - d / 2, d, d);
    painter.setPen(QPen(on ? context.accent() : context.secondary(), 1.3));
    painter.setBrush(on ? context.accent() : QColor(Qt::transparent));
    painter.drawRoundedRect(box, d * 0.25, d * 0.25);
    if (on) {
        QPainterPath tick;
        tick.moveTo(box.left() + d * 0.22, box.center().y());
        tick.lineTo(box.left() + d * 0.43, box.bottom() - d * 0.25);
        tick.lineTo(box.right() - d * 0.2, box.top() + d * 0.25);
        painter.setPen(QPen(Qt::white, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(Qt::NoBrush);
        painter.drawPath(tick);
    }
    painter.restore();
    painter.save();
    if (dim) {
        painter.setOpacity(0.4);
    }
    FaceKit::drawFitted(painter, context, rect.adjusted(box.right() - rect.left() + 6, 0, -4, 0),
                        title, QFont::Medium, context.primary(), Qt::AlignLeft | Qt::AlignVCenter,
                        std::min(rect.height() * 0.5, 13.0));
    painter.restore();
}

QString headingText(const PasswordRecipe& recipe) {
    return recipe.mode == PasswordRecipe::Mode::words
               ? L("password.words", QStringLiteral("%1 words")).arg(recipe.words)
               : L("password.characters", QStringLiteral("%1 characters")).arg(recipe.length);
}

} // namespace

std::optional<TimeGrain> PasswordGeneratorFace::grain(WidgetSize, const WidgetSettings&) const {
    return std::nullopt;
}

PasswordTile PasswordGeneratorFace::tileOf(const FaceContext& context) {
    if (const auto* behaviour = context.behaviour<PasswordBehaviour>()) {
        if (const PasswordTile* live = behaviour->tile(context.instanceID)) {
            return *live;
        }
    }
    return PasswordTile::sample(context.settings);
}

QString PasswordGeneratorFace::strengthText(Strength strength) {
    switch (strength) {
    case Strength::weak:
        return L("password.weak", QStringLiteral("Weak"));
    case Strength::fair:
        return L("password.fair", QStringLiteral("Fair"));
    case Strength::strong:
        return L("password.strong", QStringLiteral("Strong"));
    case Strength::veryStrong:
        break;
    }
    return L("password.veryStrong", QStringLiteral("Very strong"));
}

void PasswordGeneratorFace::paint(QPainter& painter, const QRectF& rect,
                                  const FaceContext& context) const {
    const PasswordTile tile = tileOf(context);
    const Layout l = layoutOf(rect, context.size);
    const Strength strength = PasswordRecipe::strength(tile.bits);
    drawPassword(painter, context, l.password, tile, l.lines);
    drawStrength(painter, context, l.bar, strength);
    const QString label = tile.copied ? L("password.copied", QStringLiteral("Copied"))
                          : context.size == WidgetSize::small
                              ? strengthText(strength)
                              : L("password.strength", QStringLiteral("%1 · %2 bits"))
                                    .arg(strengthText(strength))
                                    .arg(std::lround(tile.bits));
    FaceKit::drawFitted(painter, context, l.label, label, QFont::Medium,
                        tile.copied ? context.accent() : context.secondary(),
                        Qt::AlignLeft | Qt::AlignVCenter, std::min(l.label.height() * 0.7, 13.0));
    if (!l.heading.isEmpty()) {
        FaceKit::drawFitted(painter, context,
                            QRectF(l.heading.left(), l.heading.top(),
                                   l.shorter.left() - l.heading.left() - 6, l.heading.height()),
                            headingText(tile.recipe), QFont::DemiBold, context.primary(),
                            Qt::AlignLeft | Qt::AlignVCenter, l.heading.height() * 0.62);
        drawButton(painter, context, l.shorter, Glyph::minus, {}, false);
        drawButton(painter, context, l.longer, Glyph::plus, {}, false);
    }
    const bool labelled = context.size == WidgetSize::large || context.size == WidgetSize::wideTall;
    if (!l.copy.isEmpty()) {
        drawButton(painter, context, l.copy, Glyph::copy,
                   labelled ? L("password.copy", QStringLiteral("Copy")) : QString(), true);
    }
    drawButton(painter, context, l.renew, Glyph::renew,
               labelled ? L("password.new", QStringLiteral("New")) : QString(), false);
    const bool words = tile.recipe.mode == PasswordRecipe::Mode::words;
    for (const auto& [key, place] : l.toggles) {
        drawToggle(painter, context, place, toggleTitle(key), toggleOn(tile.recipe, key),
                   words && key != QLatin1String("mode"));
    }
}

WidgetFace::Spot PasswordGeneratorFace::spotAt(const QRectF& rect, QPointF point,
                                               const FaceContext& context) const {
    Spot spot;
    const Layout l = layoutOf(rect, context.size);
    const auto offer = [&spot](const char* command, const QString& help) {
        spot.command = QLatin1String(command);
        spot.help = help;
    };
    if (l.renew.contains(point)) {
        offer("new", L("password.help.new", QStringLiteral("Make another")));
    } else if (!l.shorter.isEmpty() && l.shorter.contains(point)) {
        offer("shorter", L("password.help.shorter", QStringLiteral("Shorter")));
    } else if (!l.longer.isEmpty() && l.longer.contains(point)) {
        offer("longer", L("password.help.longer", QStringLiteral("Longer")));
    } else if (l.copy.contains(point) || l.password.contains(point) ||
               context.size == WidgetSize::small) {
        offer("copy", L("password.help.copy", QStringLiteral("Copy the password")));
    }
    for (const auto& [key, place] : l.toggles) {
        if (place.contains(point)) {
            spot.command = QStringLiteral("toggle:") + key;
            spot.help.clear();
        }
    }
    return spot;
}

} // namespace tw
