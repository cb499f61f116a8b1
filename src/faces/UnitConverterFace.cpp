#include "faces/UnitConverterFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/KeyPad.h"
#include "faces/ReadingKit.h"
#include "text/L.h"
#include "tools/CalcParser.h"
#include "tools/CalculatorState.h"
#include "tools/UnitConverterBehaviour.h"

#include <QLocale>
#include <QPainter>
#include <QPainterPath>

namespace tw {

namespace {

using Picking = ConverterState::Picking;
using Style = KeyPad::Key::Style;

struct Layout {
    QRectF category;
    QRectF from;
    QRectF to;
    QRectF swap;
    QRectF footer;
    QRectF pad;
    // The fields are cards with the amount above the unit (narrow sizes) or beside it.
    bool stacked = false;
};

Layout layoutOf(const QRectF& rect, WidgetSize size) {
    Layout l;
    const qreal w = rect.width();
    const qreal h = rect.height();
    switch (size) {
    case WidgetSize::wide:
    case WidgetSize::banner: {
        const qreal left = rect.left();
        // The category above the row: beside it, a banner's chip would be too narrow to read.
        l.category = QRectF(left, rect.top(), std::min(w * 0.6, 150.0), h * 0.26);
        const qreal top = rect.top() + h * 0.32;
        const qreal rowHeight = rect.bottom() - top;
        const qreal swapSide = std::min(rowHeight * 0.5, 26.0);
        const qreal field = (rect.right() - left - swapSide - 12) / 2;
        l.from = QRectF(left, top, field, rowHeight);
        l.swap = QRectF(l.from.right() + 6, top + (rowHeight - swapSide) / 2, swapSide, swapSide);
        l.to = QRectF(l.swap.right() + 6, top, field, rowHeight);
        l.stacked = true;
        // Beside the category: the rate on a banner; on a wide tile, only why a result is missing.
        l.footer = QRectF(l.category.right() + 8, rect.top(), rect.right() - l.category.right() - 8,
                          h * 0.26);
        return l;
    }
    case WidgetSize::wideTall: {
        const QRectF left(rect.left(), rect.top(), w * 0.56, h);
        l.pad = QRectF(left.right() + w * 0.04, rect.top(), w * 0.4, h);
        l.category = QRectF(left.left(), left.top(), left.width(), h * 0.14);
        l.from = QRectF(left.left(), left.top() + h * 0.18, left.width(), h * 0.3);
        l.swap =
            QRectF(left.center().x() - h * 0.065, l.from.bottom() + h * 0.01, h * 0.13, h * 0.13);
        l.to = QRectF(left.left(), l.swap.bottom() + h * 0.01, left.width(), h * 0.3);
        l.footer = QRectF(left.left(), rect.bottom() - h * 0.08, left.width(), h * 0.08);
        return l;
    }
    default: {
        l.category = QRectF(rect.left(), rect.top(), w, h * 0.14);
        l.from = QRectF(rect.left(), rect.top() + h * 0.18, w, h * 0.28);
        l.swap =
            QRectF(rect.center().x() - h * 0.065, l.from.bottom() + h * 0.015, h * 0.13, h * 0.13);
        l.to = QRectF(rect.left(), l.swap.bottom() + h * 0.015, w, h * 0.28);
        l.footer = QRectF(rect.left(), rect.bottom() - h * 0.09, w, h * 0.09);
        return l;
    }
    }
}

// The unit's chip inside a field: under the amount when stacked, else at the right.
QRectF unitRect(const QRectF& field, bool stacked) {
    if (stacked) {
        return {field.left(), field.top() + field.height() * 0.62, field.width(),
                field.height() * 0.36};
    }
    const qreal w = std::min(field.width() * 0.36, 76.0);
    return {field.right() - w - field.height() * 0.12, field.top() + field.height() * 0.26, w,
            field.height() * 0.48};
}

QRectF amountRect(const QRectF& field, bool stacked) {
    if (stacked) {
        return {field.left(), field.top(), field.width(), field.height() * 0.6};
    }
    const QRectF unit = unitRect(field, stacked);
    return {field.left() + field.height() * 0.16, field.top(),
            unit.left() - field.left() - field.height() * 0.24, field.height()};
}

const QList<KeyPad::Key>& padKeys() {
    static const QList<KeyPad::Key> keys = [] {
        using KeyPad::key;
        return QList<KeyPad::Key>{
            key("7", "type:7", Style::digit),   key("8", "type:8", Style::digit),
            key("9", "type:9", Style::digit),   key("⌫", "back", Style::function),
            key("4", "type:4", Style::digit),   key("5", "type:5", Style::digit),
            key("6", "type:6", Style::digit),   key("C", "clear", Style::function),
            key("1", "type:1", Style::digit),   key("2", "type:2", Style::digit),
            key("3", "type:3", Style::digit),   key("±", "type:-", Style::function),
            key("⇅", "swap", Style::operation), key("0", "type:0", Style::digit),
            key(".", "type:.", Style::digit),   key("Copy", "copy", Style::primary)};
    }();
    return keys;
}

struct Choice {
    QString id;
    QString label;
};

QList<Choice> choicesOf(const ConverterState& state) {
    QList<Choice> out;
    if (state.picking == Picking::category) {
        for (const UnitCategory& category : UnitCatalog::categories()) {
            out.append({category.id, category.name});
        }
    } else {
        for (const Unit& unit : state.unitCategory().units) {
            out.append({unit.id, unit.symbol});
        }
    }
    return out;
}

// The list over the tile: a title and the choices as chips in as many columns as fit.
struct PickerLayout {
    QRectF title;
    QList<QRectF> chips;
};

PickerLayout pickerLayout(const QRectF& rect, qsizetype count, bool words) {
    PickerLayout p;
    // A one-row tile gives all its height to the choices.
    const bool compact = rect.height() < 100;
    const qreal titleHeight = compact ? 0 : std::min(rect.height() * 0.2, 20.0);
    p.title = QRectF(rect.left(), rect.top(), rect.width(), titleHeight);
    const QRectF area = rect.adjusted(0, compact ? 0 : titleHeight + 4, 0, 0);
    const qreal minWidth = words ? (compact ? 56 : 78) : 44;
    const int columns = std::max(1, static_cast<int>(area.width() / minWidth));
    const auto rows = static_cast<int>((count + columns - 1) / columns);
    const qreal gap = 4;
    const qreal w = (area.width() - gap * (columns - 1)) / columns;
    const qreal h = std::min(26.0, (area.height() - gap * (rows - 1)) / std::max(rows, 1));
    for (qsizetype i = 0; i < count; ++i) {
        const auto col = static_cast<qreal>(i % columns);
        const auto row = static_cast<qreal>(i / columns);
        p.chips.append(QRectF(area.left() + col * (w + gap), area.top() + row * (h + gap), w, h));
    }
    return p;
}

QString pickerTitle(Picking picking) {
    switch (picking) {
    case Picking::category:
        return L("convert.pick.category", QStringLiteral("Convert"));
    case Picking::from:
        return L("convert.pick.from", QStringLiteral("From"));
    case Picking::to:
    case Picking::none:
        break;
    }
    return L("convert.pick.to", QStringLiteral("To"));
}

void drawPicker(QPainter& painter, const FaceContext& context, const QRectF& rect,
                const ConverterState& state) {
    const QList<Choice> choices = choicesOf(state);
    const PickerLayout p = pickerLayout(rect, choices.size(), state.picking == Picking::category);
    if (!p.title.isEmpty()) {
        FaceKit::drawFitted(painter, context, p.title, pickerTitle(state.picking), QFont::DemiBold,
                            context.secondary(), Qt::AlignLeft | Qt::AlignVCenter, 13);
    }
    const QString current = state.picking == Picking::category ? state.category
                            : state.picking == Picking::from   ? state.from
                                                               : state.to;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    for (qsizetype i = 0; i < choices.size(); ++i) {
        const bool chosen = choices[i].id == current;
        QColor fill = chosen ? context.accent() : context.elevated();
        painter.setPen(Qt::NoPen);
        painter.setBrush(fill);
        const qreal r = p.chips[i].height() * 0.35;
        painter.drawRoundedRect(p.chips[i], r, r);
        FaceKit::drawFitted(painter, context, p.chips[i].adjusted(4, 0, -4, 0), choices[i].label,
                            QFont::Medium, chosen ? QColor(Qt::white) : context.primary(),
                            Qt::AlignCenter, p.chips[i].height() * 0.5);
    }
    painter.restore();
}

void drawChip(QPainter& painter, const FaceContext& context, const QRectF& rect,
              const QString& text) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QColor fill = context.accent();
    fill.setAlphaF(0.18F);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    const qreal r = rect.height() * 0.4;
    painter.drawRoundedRect(rect, r, r);
    const qreal size = std::min(rect.height() * 0.58, 15.0);
    const QRectF label = rect.adjusted(rect.height() * 0.35, 0, -rect.height() * 0.8, 0);
    FaceKit::drawFitted(painter, context, label, text, QFont::DemiBold, context.accent(),
                        Qt::AlignCenter, size);
    // A small chevron: the chip opens a list.
    const qreal c = size * 0.28;
    const QPointF tip(rect.right() - rect.height() * 0.45, rect.center().y() + c * 0.5);
    QPainterPath chevron;
    chevron.moveTo(tip.x() - c, tip.y() - c);
    chevron.lineTo(tip);
    chevron.lineTo(tip.x() + c, tip.y() - c);
    painter.setPen(QPen(context.accent(), 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(chevron);
    painter.restore();
}

void drawSwap(QPainter& painter, const FaceContext& context, const QRectF& rect, bool across) {
    const qreal side = std::min(rect.width(), rect.height());
    const QRectF circle(rect.center().x() - side / 2, rect.center().y() - side / 2, side, side);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(context.elevated());
    painter.drawEllipse(circle);
    // Two arrows, one each way.
    painter.translate(circle.center());
    if (across) {
        painter.rotate(90);
    }
    const qreal a = side * 0.22;
    const qreal s = side * 0.1;
    painter.setPen(QPen(context.primary(), std::max(1.2, side * 0.07), Qt::SolidLine, Qt::RoundCap,
                        Qt::RoundJoin));
    QPainterPath path;
    path.moveTo(-s, a);
    path.lineTo(-s, -a);
    path.moveTo(-s - s * 1.2, -a + s * 1.2);
    path.lineTo(-s, -a);
    path.lineTo(-s + s * 1.2, -a + s * 1.2);
    path.moveTo(s, -a);
    path.lineTo(s, a);
    path.moveTo(s - s * 1.2, a - s * 1.2);
    path.lineTo(s, a);
    path.lineTo(s + s * 1.2, a - s * 1.2);
    painter.drawPath(path);
    painter.restore();
}

void drawField(QPainter& painter, const FaceContext& context, const QRectF& field, bool stacked,
               const QString& amount, qreal textSize, const QColor& amountColor,
               const QString& unit, bool caret) {
    if (!stacked) {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(context.elevated());
        painter.drawRoundedRect(field, field.height() * 0.22, field.height() * 0.22);
        painter.restore();
    }
    const QRectF text = amountRect(field, stacked);
    const Qt::Alignment align = Qt::AlignLeft | Qt::AlignVCenter;
    const QRectF took =
        FaceKit::drawFitted(painter, context, text.adjusted(0, 0, caret ? -4 : 0, 0), amount,
                            QFont::Medium, amountColor, align, textSize);
    if (caret) {
        painter.save();
        painter.setPen(Qt::NoPen);
        painter.setBrush(context.accent());
        painter.drawRect(
            QRectF(took.right() + 1, took.top() + took.height() * 0.12, 1.6, took.height() * 0.76));
        painter.restore();
    }
    const QRectF chip = unitRect(field, stacked);
    drawChip(painter, context,
             stacked ? QRectF(chip.left(), chip.top(), std::min(chip.width(), 72.0), chip.height())
                     : chip,
             unit);
}

QString unitSymbol(const ConverterState& state, const QString& id) {
    const std::optional<Unit> unit = UnitCatalog::unit(state.unitCategory(), id);
    return unit ? unit->symbol : id;
}

// The line under the fields: what one unit is in the other, or for money, whose rates and of
// which day, or why there are none.
QString footerText(const FaceContext& context, const ConverterState& state) {
    if (state.category == QLatin1String("currency")) {
        if (state.from == state.to) {
            return {};
        }
        const CurrencyBoard* rates = context.market ? &context.market->currency : nullptr;
        if (rates == nullptr || !UnitCatalog::currencyRate(*rates, state.from, state.to)) {
            const bool failed = rates != nullptr && rates->failed.contains(state.from);
            // A wide tile has a word's room for it.
            const bool brief = context.size == WidgetSize::wide;
            if (failed) {
                return brief ? L("convert.rates.offline.brief", QStringLiteral("Offline"))
                             : L("convert.rates.offline", QStringLiteral("Rates out of reach"));
            }
            return brief ? L("convert.rates.loading.brief", QStringLiteral("Fetching…"))
                         : L("convert.rates.loading", QStringLiteral("Fetching rates…"));
        }
        QDate day;
        for (const CurrencyRates& r : rates->latest) {
            if (r.day.isValid() && (!day.isValid() || r.day > day)) {
                day = r.day;
            }
        }
        return day.isValid() ? L("convert.rates.day", QStringLiteral("Rates of %1"))
                                   .arg(QLocale().toString(day, QStringLiteral("d MMM")))
                             : L("convert.rates", QStringLiteral("Reference rates"));
    }
    ConverterState one = state;
    one.amount = QStringLiteral("1");
    const std::optional<double> value = one.result(nullptr);
    if (!value) {
        return {};
    }
    return QStringLiteral("1 %1 = %2 %3")
        .arg(unitSymbol(state, state.from),
             CalculatorState::displayed(ConverterTile::resultText(state, *value)),
             unitSymbol(state, state.to));
}

} // namespace

std::optional<TimeGrain> UnitConverterFace::grain(WidgetSize, const WidgetSettings&) const {
    return std::nullopt;
}

ConverterTile UnitConverterFace::tileOf(const FaceContext& context) {
    if (const auto* behaviour = context.behaviour<UnitConverterBehaviour>()) {
        if (const ConverterTile* live = behaviour->tile(context.instanceID)) {
            return *live;
        }
    }
    ConverterTile tile;
    // Previews show money, which says most about what the tile can do.
    if (context.surface.showsDemoContent &&
        !context.settings.contains(QStringLiteral("category"))) {
        tile.state =
            ConverterState::fromSettings({{QStringLiteral("category"), QStringLiteral("currency")},
                                          {QStringLiteral("amount"), QStringLiteral("250")}});
        return tile;
    }
    tile.state = ConverterState::fromSettings(context.settings);
    return tile;
}

void UnitConverterFace::paint(QPainter& painter, const QRectF& rect,
                              const FaceContext& context) const {
    const ConverterTile tile = tileOf(context);
    const ConverterState& state = tile.state;
    const Layout l = layoutOf(rect, context.size);
    if (!l.pad.isEmpty()) {
        KeyPad::draw(painter, context, l.pad, padKeys(), 4);
    }
    const QRectF content =
        l.pad.isEmpty() ? rect : rect.adjusted(0, 0, -l.pad.width() - rect.width() * 0.04, 0);
    if (state.picking != Picking::none) {
        drawPicker(painter, context, content, state);
        return;
    }
    drawChip(painter, context,
             QRectF(l.category.topLeft(),
                    QSizeF(std::min(l.category.width(), 118.0), l.category.height())),
             state.unitCategory().name);

    const CurrencyBoard* rates = context.market ? &context.market->currency : nullptr;
    const std::optional<double> result = state.result(rates);
    const QString amount =
        state.amount.isEmpty() ? QStringLiteral("0") : CalculatorState::displayed(state.amount);
    const QString shown = tile.copied ? L("convert.copied", QStringLiteral("Copied"))
                          : result    ? CalculatorState::displayed(CalcNumber::grouped(
                                            ConverterTile::resultText(state, *result)))
                                      : QStringLiteral("—");
    // Both figures at one size, so that neither looks the larger for being short.
    const QRectF box = amountRect(l.from, l.stacked);
    const qreal largest = box.height() * (l.stacked ? 0.8 : 0.52);
    const qreal textSize = std::min(
        FaceKit::fittingPixelSize(amount, box.size() - QSizeF(4, 0), QFont::Medium, largest),
        FaceKit::fittingPixelSize(shown, amountRect(l.to, l.stacked).size(), QFont::Medium,
                                  largest));
    drawField(painter, context, l.from, l.stacked, amount, textSize, context.primary(),
              unitSymbol(state, state.from), tile.focused);
    drawSwap(painter, context, l.swap, l.stacked);
    drawField(painter, context, l.to, l.stacked, shown, textSize,
              tile.copied ? context.accent() : context.primary(), unitSymbol(state, state.to),
              false);
    if (!l.footer.isEmpty() && (context.size != WidgetSize::wide || !result)) {
        FaceKit::drawElided(painter, context, l.footer, footerText(context, state),
                            FaceKit::font(std::min(l.footer.height() * 0.7, 12.0), QFont::Medium),
                            context.secondary(),
                            l.stacked ? Qt::AlignRight | Qt::AlignVCenter : Qt::AlignCenter);
    }
}

WidgetFace::Spot UnitConverterFace::spotAt(const QRectF& rect, QPointF point,
                                           const FaceContext& context) const {
    Spot spot;
    const ConverterTile tile = tileOf(context);
    const Layout l = layoutOf(rect, context.size);
    if (!l.pad.isEmpty()) {
        if (const KeyPad::Key* key = KeyPad::keyAt(l.pad, padKeys(), 4, point)) {
            spot.command = key->command;
            return spot;
        }
    }
    const QRectF content =
        l.pad.isEmpty() ? rect : rect.adjusted(0, 0, -l.pad.width() - rect.width() * 0.04, 0);
    if (tile.state.picking != Picking::none) {
        const QList<Choice> choices = choicesOf(tile.state);
        const PickerLayout p =
            pickerLayout(content, choices.size(), tile.state.picking == Picking::category);
        spot.command = QStringLiteral("close");
        for (qsizetype i = 0; i < choices.size(); ++i) {
            if (p.chips[i].contains(point)) {
                spot.command = QStringLiteral("choose:") + choices[i].id;
            }
        }
        return spot;
    }
    if (l.category.contains(point)) {
        spot.command = QStringLiteral("pick:category");
        spot.help = L("convert.help.category", QStringLiteral("Choose what to convert"));
    } else if (l.swap.adjusted(-4, -4, 4, 4).contains(point)) {
        spot.command = QStringLiteral("swap");
        spot.help = L("convert.help.swap", QStringLiteral("Swap the units"));
    } else if (unitRect(l.from, l.stacked).contains(point)) {
        spot.command = QStringLiteral("pick:from");
        spot.help = L("convert.help.unit", QStringLiteral("Choose the unit"));
    } else if (unitRect(l.to, l.stacked).contains(point)) {
        spot.command = QStringLiteral("pick:to");
        spot.help = L("convert.help.unit", QStringLiteral("Choose the unit"));
    } else if (l.to.contains(point)) {
        spot.command = QStringLiteral("copy");
        spot.help = L("convert.help.copy", QStringLiteral("Copy the result"));
    } else if (l.from.contains(point)) {
        spot.command = QStringLiteral("edit");
        spot.help = L("convert.help.type", QStringLiteral("Type an amount"));
    }
    return spot;
}

} // namespace tw
