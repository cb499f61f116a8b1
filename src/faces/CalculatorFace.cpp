#include "faces/CalculatorFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/ReadingKit.h"
#include "text/L.h"
#include "tools/CalcParser.h"
#include "tools/CalculatorBehaviour.h"

#include <QFontMetricsF>
#include <QPainter>

namespace tw {

namespace {

using Style = KeyPad::Key::Style;

struct Layout {
    QRectF display;
    QRectF tape;
    QRectF pad;
};

Layout layoutOf(const QRectF& rect, WidgetSize size) {
    Layout layout;
    const qreal h = rect.height();
    if (size == WidgetSize::grand) {
        const QRectF left(rect.left(), rect.top(), rect.width() * 0.6, h);
        layout.display = QRectF(left.left(), left.top(), left.width(), h * 0.24);
        layout.pad = left.adjusted(0, h * 0.27, 0, 0);
        layout.tape =
            QRectF(left.right() + rect.width() * 0.04, rect.top(), rect.width() * 0.36, h);
    } else if (size == WidgetSize::huge) {
        layout.tape = QRectF(rect.left(), rect.top(), rect.width(), h * 0.2);
        layout.display =
            QRectF(rect.left(), layout.tape.bottom() + h * 0.01, rect.width(), h * 0.2);
        layout.pad = QRectF(rect.left(), layout.display.bottom() + h * 0.03, rect.width(),
                            rect.bottom() - layout.display.bottom() - h * 0.03);
    } else {
        layout.display = QRectF(rect.left(), rect.top(), rect.width(), h * 0.26);
        layout.pad = rect.adjusted(0, h * 0.29, 0, 0);
    }
    return layout;
}

// The tape's lines that fit, newest at the bottom, with their place.
QList<std::pair<qsizetype, QRectF>> tapeLines(const QRectF& area, const CalculatorState& state) {
    QList<std::pair<qsizetype, QRectF>> out;
    const qreal lineHeight = std::clamp(area.height() / 3, 16.0, 24.0);
    const auto fit = static_cast<qsizetype>(area.height() / lineHeight);
    const qsizetype first = std::max<qsizetype>(0, state.tape.size() - fit);
    qreal y = area.bottom() - lineHeight * static_cast<qreal>(state.tape.size() - first);
    for (qsizetype i = first; i < state.tape.size(); ++i, y += lineHeight) {
        out.append({i, QRectF(area.left(), y, area.width(), lineHeight)});
    }
    return out;
}

void drawTape(QPainter& painter, const FaceContext& context, const QRectF& area,
              const CalculatorState& state, bool column) {
    if (state.tape.isEmpty()) {
        if (column) {
            FaceKit::drawText(
                painter, context, area, Qt::AlignCenter | Qt::TextWordWrap,
                L("calculator.tape.empty", QStringLiteral("Sums you work out\nshow here")),
                FaceKit::font(11, QFont::Medium), context.secondary());
        }
        return;
    }
    const auto lines = tapeLines(area, state);
    painter.save();
    for (const auto& [index, line] : lines) {
        const CalcTapeLine& sum = state.tape[index];
        const qreal size = std::min(line.height() * 0.55, 13.0);
        const QString result = CalculatorState::displayed(CalcNumber::grouped(sum.result));
        const QFont resultFont = FaceKit::font(size, QFont::DemiBold);
        const qreal resultWidth =
            std::min(QFontMetricsF(resultFont).horizontalAdvance(result) + 2, line.width() * 0.6);
        const QRectF resultRect(line.right() - resultWidth, line.top(), resultWidth, line.height());
        FaceKit::drawElided(painter, context, resultRect, result, resultFont, context.primary(),
                            Qt::AlignRight | Qt::AlignVCenter);
        FaceKit::drawElided(
            painter, context,
            QRectF(line.left(), line.top(), line.width() - resultWidth - 6, line.height()),
            CalculatorState::displayed(sum.expression) + QStringLiteral(" ="),
            FaceKit::font(size, QFont::Normal), context.secondary(),
            Qt::AlignLeft | Qt::AlignVCenter);
        painter.setPen(QPen(context.separator(), 0.5));
        painter.drawLine(QPointF(line.left(), line.bottom()), QPointF(line.right(), line.bottom()));
    }
    painter.restore();
}

// The big line: shrunk to fit down to half its size, then cut at the left so the end shows.
void drawEntry(QPainter& painter, const FaceContext& context, const QRectF& rect,
               const QString& text, bool focused) {
    const QRectF room = rect.adjusted(0, 0, focused ? -5 : 0, 0);
    const qreal largest = room.height() * 0.86;
    const qreal size = std::max(
        largest * 0.5, FaceKit::fittingPixelSize(text, room.size(), QFont::Medium, largest));
    const QFont font = FaceKit::font(size, QFont::Medium);
    const QString shown = QFontMetricsF(font).elidedText(text, Qt::ElideLeft, room.width());
    FaceKit::drawText(painter, context, room, Qt::AlignRight | Qt::AlignVCenter, shown, font,
                      context.primary());
    if (focused) {
        painter.save();
        painter.setPen(Qt::NoPen);
        painter.setBrush(context.accent());
        painter.drawRoundedRect(
            QRectF(rect.right() - 2, rect.center().y() - size * 0.45, 2, size * 0.9), 1, 1);
        painter.restore();
    }
}

void drawDisplay(QPainter& painter, const FaceContext& context, const QRectF& rect,
                 const CalculatorTile& tile) {
    const CalculatorState& state = tile.state;
    const QRectF top(rect.left(), rect.top(), rect.width(), rect.height() * 0.34);
    const QRectF main(rect.left(), top.bottom(), rect.width(), rect.height() - top.height());
    QString note;
    QColor noteColor = context.secondary();
    if (tile.copied) {
        note = L("calculator.copied", QStringLiteral("Copied"));
        noteColor = context.accent();
    } else if (state.failure) {
        note = CalculatorFace::failureText(*state.failure);
        noteColor = ReadingKit::warning(context);
    } else if (state.evaluated && !state.tape.isEmpty()) {
        note = CalculatorState::displayed(state.tape.back().expression) + QStringLiteral(" =");
    } else if (const auto preview = state.preview()) {
        note = QStringLiteral("= ") +
               CalculatorState::displayed(CalcNumber::grouped(CalcNumber::format(*preview)));
    }
    if (!note.isEmpty()) {
        FaceKit::drawElided(painter, context, top, note,
                            FaceKit::font(std::min(top.height() * 0.8, 15.0), QFont::Medium),
                            noteColor, Qt::AlignRight | Qt::AlignVCenter);
    }
    QString text = state.entry.isEmpty() ? QStringLiteral("0") : state.entry;
    text = CalculatorState::displayed(state.evaluated ? CalcNumber::grouped(text) : text);
    drawEntry(painter, context, main, text, tile.focused);
}

} // namespace

std::optional<TimeGrain> CalculatorFace::grain(WidgetSize, const WidgetSettings&) const {
    return std::nullopt;
}

CalculatorTile CalculatorFace::tileOf(const FaceContext& context) {
    if (const auto* behaviour = context.behaviour<CalculatorBehaviour>()) {
        if (const CalculatorTile* live = behaviour->tile(context.instanceID)) {
            return *live;
        }
    }
    CalculatorTile tile = CalculatorTile::fromSettings(context.settings);
    if (context.surface.showsDemoContent && tile.state.tape.isEmpty() &&
        tile.state.entry.isEmpty()) {
        return CalculatorTile::sample();
    }
    return tile;
}

const QList<KeyPad::Key>& CalculatorFace::keys() {
    static const QList<KeyPad::Key> all = [] {
        using KeyPad::key;
        return QList<KeyPad::Key>{
            key("AC", "clear", Style::function),  key("⌫", "back", Style::function),
            key("%", "type:%", Style::function),  key("÷", "type:/", Style::operation),
            key("7", "type:7", Style::digit),     key("8", "type:8", Style::digit),
            key("9", "type:9", Style::digit),     key("×", "type:*", Style::operation),
            key("4", "type:4", Style::digit),     key("5", "type:5", Style::digit),
            key("6", "type:6", Style::digit),     key("−", "type:-", Style::operation),
            key("1", "type:1", Style::digit),     key("2", "type:2", Style::digit),
            key("3", "type:3", Style::digit),     key("+", "type:+", Style::operation),
            key("( )", "paren", Style::function), key("0", "type:0", Style::digit),
            key(".", "type:.", Style::digit),     key("=", "equals", Style::primary)};
    }();
    return all;
}

QString CalculatorFace::failureText(CalcResult::Status status) {
    switch (status) {
    case CalcResult::Status::divisionByZero:
        return L("calculator.divisionByZero", QStringLiteral("Can’t divide by zero"));
    case CalcResult::Status::overflow:
        return L("calculator.overflow", QStringLiteral("Too large to show"));
    case CalcResult::Status::undefined:
        return L("calculator.undefined", QStringLiteral("No real answer"));
    case CalcResult::Status::incomplete:
        return L("calculator.incomplete", QStringLiteral("Finish the sum first"));
    case CalcResult::Status::ok:
    case CalcResult::Status::empty:
    case CalcResult::Status::invalid:
        break;
    }
    return L("calculator.invalid", QStringLiteral("Check the sum"));
}

void CalculatorFace::paint(QPainter& painter, const QRectF& rect,
                           const FaceContext& context) const {
    const CalculatorTile tile = tileOf(context);
    const Layout layout = layoutOf(rect, context.size);
    if (!layout.tape.isEmpty()) {
        drawTape(painter, context, layout.tape, tile.state, context.size == WidgetSize::grand);
    }
    drawDisplay(painter, context, layout.display, tile);
    KeyPad::draw(painter, context, layout.pad, keys(), columns);
}

WidgetFace::Spot CalculatorFace::spotAt(const QRectF& rect, QPointF point,
                                        const FaceContext& context) const {
    Spot spot;
    const Layout layout = layoutOf(rect, context.size);
    if (const KeyPad::Key* key = KeyPad::keyAt(layout.pad, keys(), columns, point)) {
        spot.command = key->command;
        return spot;
    }
    if (layout.display.contains(point)) {
        spot.command = QStringLiteral("copy");
        spot.help = L("calculator.help.copy", QStringLiteral("Copy the result"));
        return spot;
    }
    if (layout.tape.contains(point)) {
        const CalculatorTile tile = tileOf(context);
        for (const auto& [index, line] : tapeLines(layout.tape, tile.state)) {
            if (line.contains(point)) {
                spot.command = QStringLiteral("tape:") + QString::number(index);
                spot.help = L("calculator.help.tape", QStringLiteral("Use this result"));
            }
        }
    }
    return spot;
}

} // namespace tw
