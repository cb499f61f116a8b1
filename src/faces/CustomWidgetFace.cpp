#include "faces/CustomWidgetFace.h"

#include "custom/CustomBoard.h"
#include "faces/CustomElementPainter.h"
#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "text/L.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tw {

namespace {

// Type grows with the tile up to this, and shrinks down to `smallestScale` before rows are
// left out.
constexpr qreal largestScale = 1.6;
constexpr qreal smallestScale = 0.8;
// The height of a small tile's inside, where type has its nominal size.
constexpr qreal nominalSide = 172;

QColor accentOf(const CustomWidgetDefinition& definition, const FaceContext& context) {
    return CustomElementPainter::color(definition.accent.value_or(QString()), context,
                                       context.accent(), context.accent());
}

// A sparkline's points, or for a sample drawing a calm made-up curve.
QList<double> pointsOf(const CustomWidgetDefinition& definition, int row, int element,
                       const FaceContext& context) {
    if (context.surface.showsDemoContent) {
        QList<double> wave;
        for (int i = 0; i < 36; ++i) {
            wave << 40 + 14 * std::sin(i / 5.0) + 6 * std::sin(i / 1.7);
        }
        return wave;
    }
    return context.custom == nullptr
               ? QList<double>()
               : context.custom->history(CustomBoard::historyKey(definition, row, element));
}

struct RowPlan {
    QList<CustomElementPainter::Need> needs;
    qreal height = 0;
    bool growsTall = false;
};

struct Plan {
    QList<RowPlan> rows;
    qreal height = 0;
    qreal gap = 0;
};

Plan plan(const QList<QList<CustomElementPainter>>& painters, qreal scale) {
    Plan out;
    out.gap = 6 * scale;
    for (const auto& row : painters) {
        RowPlan r;
        for (const CustomElementPainter& p : row) {
            const CustomElementPainter::Need need = p.need(scale);
            r.needs << need;
            r.height = std::max(r.height, need.height);
            r.growsTall = r.growsTall || need.growsTall;
        }
        out.rows << r;
        out.height += r.height;
    }
    out.height += out.gap * double(std::max<qsizetype>(0, out.rows.size() - 1));
    return out;
}

// The widest a row's fixed parts may grow before they no longer fit across.
qreal widthLimit(const Plan& p, qreal width, qreal scale) {
    qreal limit = largestScale;
    for (const RowPlan& r : p.rows) {
        qreal fixed = 0;
        for (const auto& need : r.needs) {
            fixed += need.width;
        }
        fixed += 6 * scale * double(std::max<qsizetype>(0, r.needs.size() - 1));
        if (fixed > 0) {
            limit = std::min(limit, 0.95 * scale * width / fixed);
        }
    }
    return limit;
}

void placeRow(const CustomRow& row, const QList<CustomElementPainter>& painters,
              const RowPlan& plan, int index, const QRectF& band, qreal scale,
              QList<CustomWidgetFace::Placed>& out) {
    const qsizetype count = painters.size();
    const qreal spacing = std::max(0.0, row.spacing.value_or(6)) * scale;
    QList<qreal> widths;
    qreal fixed = spacing * double(count - 1);
    int growing = 0;
    for (qsizetype i = 0; i < count; ++i) {
        // A ring beside other elements leaves them at least half the row.
        const qreal w = row.elements[i].type == CustomElementType::gauge
                            ? std::min(painters[i].widthAt(band.height(), scale),
                                       count > 1 ? band.width() / 2 - spacing : band.width())
                            : plan.needs[i].width;
        widths << w;
        fixed += w;
        growing += plan.needs[i].growsWide ? 1 : 0;
    }
    qreal room = band.width() - fixed;
    if (room < 0) {
        // Texts give way first, each in proportion to its width; then everything.
        qreal shrinkable = 0;
        for (qsizetype i = 0; i < count; ++i) {
            shrinkable += plan.needs[i].shrinks ? widths[i] : 0;
        }
        const qreal keep = shrinkable > 0 ? std::max(0.0, 1 + room / shrinkable) : 1;
        fixed = spacing * double(count - 1);
        for (qsizetype i = 0; i < count; ++i) {
            widths[i] *= plan.needs[i].shrinks ? keep : 1;
            fixed += widths[i];
        }
        if (fixed > band.width() && fixed > 0) {
            const qreal all = std::max(0.0, band.width() - spacing * double(count - 1)) /
                              (fixed - spacing * double(count - 1));
            for (qreal& w : widths) {
                w *= all;
            }
        }
        room = 0;
    }
    qreal x = band.left();
    if (growing == 0) {
        const CustomAlign align = row.align.value_or(CustomAlign::leading);
        x += align == CustomAlign::center ? room / 2 : align == CustomAlign::trailing ? room : 0;
    }
    for (qsizetype i = 0; i < count; ++i) {
        const qreal w = widths[i] + (growing > 0 && plan.needs[i].growsWide ? room / growing : 0);
        const qreal h =
            plan.needs[i].growsTall ? band.height() : std::min(band.height(), plan.needs[i].height);
        const QRectF r(x, band.center().y() - h / 2, std::min(w, band.right() - x), h);
        if (row.elements[i].type != CustomElementType::spacer && r.width() > 0) {
            out.append({index, int(i), r, scale});
        }
        x += w + spacing;
    }
}

void paintNotice(QPainter& painter, const QRectF& rect, const FaceContext& context,
                 const QString& symbol, const QString& words, const QColor& tint) {
    const qreal side = std::clamp(std::min(rect.width(), rect.height()) * 0.26, 18.0, 44.0);
    const qreal line = CustomElementPainter::lineHeight(CustomTextStyle::caption, 1);
    const qreal textHeight = words.isEmpty() ? 0 : std::min(line * 3, rect.height() - side - 8);
    const qreal top = rect.center().y() - (side + 8 + textHeight) / 2;
    FaceKit::drawSymbol(painter, context, symbol,
                        QRectF(rect.center().x() - side / 2, std::max(rect.top(), top), side, side),
                        tint, context.metadata.displayName);
    if (textHeight > 0) {
        painter.setFont(CustomElementPainter::font(CustomTextStyle::caption, 1));
        painter.setPen(context.secondary());
        painter.drawText(
            QRectF(rect.left(), std::max(rect.top(), top) + side + 8, rect.width(), textHeight),
            Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, words);
    }
}

} // namespace

std::optional<TimeGrain> CustomWidgetFace::grain(WidgetSize, const WidgetSettings&) const {
    // Any text may hold the time; the runtime's own changes repaint the rest.
    return TimeGrain::Minutes;
}

CustomWidgetFace::State CustomWidgetFace::state(const CustomWidgetDefinition& definition,
                                                const FaceContext& context, bool* stale) {
    if (stale != nullptr) {
        *stale = false;
    }
    if (definition.rows.isEmpty()) {
        return State::empty;
    }
    if (context.surface.showsDemoContent) {
        return State::rows;
    }
    const std::optional<CustomSourceState> merged =
        context.custom == nullptr ? std::nullopt : context.custom->sourceState(definition);
    if (merged && !merged->json && merged->error) {
        return State::failed;
    }
    if ((!merged || !merged->json) && !definition.allSources().isEmpty()) {
        return State::loading;
    }
    if (stale != nullptr) {
        *stale = merged && merged->error;
    }
    return State::rows;
}

CustomValueBag CustomWidgetFace::values(const CustomWidgetDefinition& definition,
                                        const FaceContext& context) {
    const QDateTime now = context.now.isValid() ? context.now : QDateTime::currentDateTime();
    if (context.surface.showsDemoContent) {
        return CustomValueBag::preview(now, context.custom ? context.custom->user : QString());
    }
    if (context.custom == nullptr) {
        CustomValueBag bag;
        bag.now = now;
        return bag;
    }
    return context.custom->bag(definition, now, context.readings);
}

QRectF CustomWidgetFace::markerRect(const QRectF& rect) {
    constexpr qreal side = 12;
    return QRectF(rect.right() - side, rect.top(), side, side);
}

WidgetFace::Spot CustomWidgetFace::spotAt(const QRectF& rect, QPointF point,
                                          const FaceContext& context) const {
    const CustomWidgetDefinition* definition =
        context.custom == nullptr ? nullptr : context.custom->definition(context.kind());
    if (definition == nullptr) {
        return {};
    }
    Spot spot;
    spot.link = definition->openedLink(values(*definition, context));
    if (spot.link) {
        spot.help = L("custom.link.help", QStringLiteral("Click to open the linked page"));
    }
    bool stale = false;
    // The marker is small: the pointer need not hit it exactly.
    if (state(*definition, context, &stale) == State::rows && stale &&
        markerRect(rect).adjusted(-6, -6, 6, 6).contains(point)) {
        spot.help = L("custom.stale", QStringLiteral("Showing the last value because the source "
                                                     "can’t be reached."));
    }
    return spot;
}

QList<CustomWidgetFace::Placed> CustomWidgetFace::layout(const CustomWidgetDefinition& definition,
                                                         const QRectF& rect,
                                                         const CustomValueBag& values,
                                                         const FaceContext& context) {
    const QColor accent = accentOf(definition, context);
    QList<QList<CustomElementPainter>> painters;
    for (int r = 0; r < definition.rows.size(); ++r) {
        QList<CustomElementPainter> row;
        const QList<CustomElement>& elements = definition.rows[r].elements;
        for (int e = 0; e < elements.size(); ++e) {
            row.append(CustomElementPainter(elements[e], values, context, accent, {}));
        }
        painters << row;
    }
    // Type at the tile's nominal size, smaller where the rows don't fit, larger where a tile
    // of fixed rows would otherwise stand half empty.
    qreal scale = std::clamp(std::min(rect.width(), rect.height()) / nominalSide, 1.0, 1.25);
    Plan p = plan(painters, scale);
    const bool grows =
        std::any_of(p.rows.begin(), p.rows.end(), [](const RowPlan& r) { return r.growsTall; });
    for (int round = 0; round < 4 && p.height > rect.height() && scale > smallestScale; ++round) {
        scale = std::max(smallestScale, scale * rect.height() / p.height);
        p = plan(painters, scale);
    }
    if (!grows && p.height > 0 && p.height < rect.height() * 0.8) {
        const qreal up = std::min({scale * rect.height() * 0.8 / p.height,
                                   widthLimit(p, rect.width(), scale), largestScale});
        if (up > scale) {
            scale = up;
            p = plan(painters, scale);
        }
    }
    // Rows that still find no room go, from the bottom.
    qsizetype shown = p.rows.size();
    qreal used = p.height;
    while (shown > 0 && used > rect.height() + 0.5) {
        --shown;
        used -= p.rows[shown].height + (shown > 0 ? p.gap : 0);
    }
    qreal room = rect.height() - used;
    int tall = 0;
    for (qsizetype r = 0; r < shown; ++r) {
        tall += p.rows[r].growsTall ? 1 : 0;
    }
    qreal gap = p.gap;
    qreal y = rect.top();
    if (tall == 0 && shown > 0) {
        // Fixed rows: a little air between them, the block centred.
        const qreal extra = shown > 1 ? std::min(room / double(shown - 1), 10 * scale) : 0;
        gap += extra;
        room -= extra * double(shown - 1);
        y += room / 2;
        room = 0;
    }
    QList<Placed> out;
    for (qsizetype r = 0; r < shown; ++r) {
        const qreal h = p.rows[r].height + (p.rows[r].growsTall ? room / tall : 0);
        placeRow(definition.rows[r], painters[r], p.rows[r], int(r),
                 QRectF(rect.left(), y, rect.width(), h), scale, out);
        y += h + gap;
    }
    return out;
}

void CustomWidgetFace::paint(QPainter& painter, const QRectF& rect,
                             const FaceContext& context) const {
    const CustomWidgetDefinition* definition =
        context.custom == nullptr ? nullptr : context.custom->definition(context.kind());
    const QColor accent = definition != nullptr ? accentOf(*definition, context) : context.accent();
    if (definition == nullptr) {
        paintNotice(painter, rect, context, context.metadata.symbol, context.metadata.displayName,
                    accent);
        return;
    }
    bool stale = false;
    switch (state(*definition, context, &stale)) {
    case State::empty:
        paintNotice(painter, rect, context, definition->symbol,
                    L("custom.empty", QStringLiteral("Nothing to show yet.")), accent);
        return;
    case State::failed:
        paintNotice(painter, rect, context,
                    QStringLiteral("antenna.radiowaves.left.and.right.slash"),
                    context.custom->sourceState(*definition)->error.value_or(QString()),
                    context.secondary());
        return;
    case State::loading:
        paintNotice(painter, rect, context, definition->symbol, definition->name, accent);
        return;
    case State::rows:
        break;
    }
    const CustomValueBag bag = values(*definition, context);
    // The marker of a stale source keeps a corner of its own.
    const qreal marker = stale ? markerRect(rect).width() : 0;
    QList<Placed> placed = layout(*definition, rect, bag, context);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    const int firstRow = placed.isEmpty() ? 0 : placed.first().row;
    for (const Placed& item : placed) {
        QRectF r = item.rect;
        if (item.row == firstRow && marker > 0) {
            r.setRight(std::min(r.right(), rect.right() - marker - 4));
        }
        const CustomElement& element = definition->rows[item.row].elements[item.element];
        const QList<double> points = element.type == CustomElementType::sparkline
                                         ? pointsOf(*definition, item.row, item.element, context)
                                         : QList<double>();
        CustomElementPainter(element, bag, context, accent, points).paint(painter, r, item.scale);
    }
    if (marker > 0) {
        FaceKit::drawSymbol(
            painter, context, QStringLiteral("exclamationmark.triangle.fill"), markerRect(rect),
            CustomElementPainter::color(QStringLiteral("warning"), context, accent, accent),
            QStringLiteral("!"));
    }
    painter.restore();
}

} // namespace tw
