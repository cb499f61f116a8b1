#include "faces/TrashFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/ReadingKit.h"
#include "faces/ReadingText.h"
#include "files/TrashBehaviour.h"
#include "text/L.h"

#include <QPainter>

namespace tw {

namespace {

TrashView viewOf(const FaceContext& context) {
    if (const auto* trash = context.behaviour<TrashBehaviour>()) {
        return trash->view();
    }
    TrashView sample;
    sample.contents = {.items = 14, .bytes = 1'380'000'000};
    return sample;
}

QString sizeText(const TrashView& view) {
    return view.contents.items > 0 ? ReadingText::bytes(static_cast<double>(view.contents.bytes))
                                   : L("trash.nothing", QStringLiteral("Nothing to delete"));
}

QString question(const TrashView& view) {
    return view.contents.items == 1
               ? L("trash.confirm.one", QStringLiteral("Delete 1 item for good?"))
               : L("trash.confirm.many", QStringLiteral("Delete %1 items for good?"))
                     .arg(view.contents.items);
}

struct Layout {
    QRectF symbol;
    QRectF title;
    QRectF count;
    QRectF detail;
    QRectF hint;
    QRectF emptyButton;
    QRectF confirm;
    QRectF cancel;
    QRectF question;
};

Layout layoutOf(const QRectF& rect, WidgetSize size) {
    Layout l;
    const qreal w = rect.width();
    const qreal h = rect.height();
    switch (size) {
    case WidgetSize::small: {
        const qreal side = h * 0.42;
        l.symbol = QRectF(rect.center().x() - side / 2, rect.top() + h * 0.02, side, side);
        l.count = QRectF(rect.left(), rect.top() + h * 0.5, w, h * 0.26);
        l.detail = QRectF(rect.left(), rect.top() + h * 0.78, w, h * 0.2);
        l.question = QRectF(rect.left(), rect.top(), w, h * 0.4);
        l.confirm = QRectF(rect.left(), rect.top() + h * 0.44, w, h * 0.26);
        l.cancel = QRectF(rect.left(), rect.top() + h * 0.74, w, h * 0.26);
        return l;
    }
    case WidgetSize::wide: {
        const qreal side = h * 0.62;
        l.symbol = QRectF(rect.left() + h * 0.04, rect.center().y() - side / 2, side, side);
        const qreal x = rect.left() + h * 0.84;
        l.title = QRectF(x, rect.top(), rect.right() - x, h * 0.2);
        l.count = QRectF(x, rect.top() + h * 0.22, rect.right() - x, h * 0.3);
        l.detail = QRectF(x, rect.top() + h * 0.52, rect.right() - x, h * 0.18);
        l.emptyButton =
            QRectF(rect.right() - w * 0.36, rect.bottom() - h * 0.26, w * 0.36, h * 0.26);
        l.hint = QRectF(x, rect.bottom() - h * 0.26, l.emptyButton.left() - x - 6, h * 0.26);
        l.question = QRectF(x, rect.top(), rect.right() - x, h * 0.6);
        l.cancel = QRectF(x, rect.bottom() - h * 0.3, (rect.right() - x) * 0.47, h * 0.3);
        l.confirm = QRectF(rect.right() - (rect.right() - x) * 0.47, l.cancel.top(),
                           (rect.right() - x) * 0.47, h * 0.3);
        return l;
    }
    default: {
        const qreal side = h * 0.26;
        l.symbol = QRectF(rect.left(), rect.top(), side, side);
        l.title = QRectF(rect.left() + side * 1.15, rect.top(), w - side * 1.15, side);
        l.count = QRectF(rect.left(), rect.top() + h * 0.32, w, h * 0.2);
        l.detail = QRectF(rect.left(), rect.top() + h * 0.52, w, h * 0.1);
        l.hint = QRectF(rect.left(), rect.top() + h * 0.64, w, h * 0.16);
        l.emptyButton = QRectF(rect.left(), rect.bottom() - h * 0.14, w, h * 0.14);
        l.question = QRectF(rect.left(), rect.top() + h * 0.32, w, h * 0.28);
        l.cancel = QRectF(rect.left(), rect.bottom() - h * 0.14, w * 0.47, h * 0.14);
        l.confirm = QRectF(rect.right() - w * 0.47, l.cancel.top(), w * 0.47, h * 0.14);
        return l;
    }
    }
}

void drawCount(QPainter& painter, const FaceContext& context, const Layout& l,
               const TrashView& view, Qt::Alignment alignment) {
    const QString count =
        view.counting ? ReadingText::missing() : FileKit::itemCount(view.contents.items);
    FaceKit::drawFitted(painter, context, l.count, count, QFont::DemiBold, context.primary(),
                        alignment | Qt::AlignVCenter, l.count.height() * 0.9);
    if (!view.message.isEmpty()) {
        FaceKit::drawFitted(painter, context, l.detail, view.message, QFont::Medium,
                            view.problem ? ReadingKit::warning(context) : context.secondary(),
                            alignment | Qt::AlignVCenter, l.detail.height() * 0.8);
    } else if (!view.counting) {
        FaceKit::drawFitted(painter, context, l.detail, sizeText(view), QFont::Normal,
                            context.secondary(), alignment | Qt::AlignVCenter,
                            l.detail.height() * 0.8);
    }
}

} // namespace

std::optional<TimeGrain> TrashFace::grain(WidgetSize, const WidgetSettings&) const {
    return std::nullopt;
}

QList<FileKit::Target> TrashFace::targets(const QRectF& rect, WidgetSize size,
                                          const TrashView& view) {
    const Layout l = layoutOf(rect, size);
    if (!view.available) {
        return {};
    }
    if (view.confirming) {
        return {{l.confirm, QStringLiteral("confirm"),
                 L("trash.help.confirm", QStringLiteral("Delete everything in the trash"))},
                {l.cancel, QStringLiteral("cancel"),
                 L("trash.help.cancel", QStringLiteral("Keep the trash as it is"))}};
    }
    QList<FileKit::Target> targets;
    if (!l.emptyButton.isNull() && view.contents.items > 0) {
        targets.append({l.emptyButton, QStringLiteral("empty"),
                        L("trash.help.empty", QStringLiteral("Empty the trash…"))});
    }
    targets.append(
        {rect, QStringLiteral("open"),
         L("trash.help.open", QStringLiteral("Open the trash · drop files to trash them"))});
    return targets;
}

void TrashFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const TrashView view = viewOf(context);
    if (!view.available) {
        ReadingKit::drawNotice(painter, context, rect, QStringLiteral("trash"),
                               L("trash.none", QStringLiteral("No trash")),
                               L("trash.noneDetail", QStringLiteral("This desktop has none")));
        return;
    }
    const Layout l = layoutOf(rect, context.size);
    const bool small = context.size == WidgetSize::small;
    if (view.confirming) {
        FaceKit::drawSymbol(painter, context, QStringLiteral("trash"), small ? QRectF() : l.symbol,
                            ReadingKit::warning(context), {});
        painter.save();
        painter.setFont(FaceKit::font(std::min(l.question.height() * (small ? 0.32 : 0.3), 18.0),
                                      QFont::DemiBold));
        painter.setPen(context.primary());
        painter.drawText(l.question, Qt::AlignCenter | Qt::TextWordWrap, question(view));
        painter.restore();
        FileKit::drawButton(painter, context, l.confirm, L("trash.empty", QStringLiteral("Empty")),
                            FileKit::Button::destructive);
        FileKit::drawButton(painter, context, l.cancel, L("trash.cancel", QStringLiteral("Cancel")),
                            FileKit::Button::plain);
        return;
    }
    const QColor symbolColour = view.contents.items > 0 ? context.accent() : context.secondary();
    FaceKit::drawSymbol(painter, context, QStringLiteral("trash"), l.symbol, symbolColour,
                        QStringLiteral("T"));
    if (small) {
        drawCount(painter, context, l, view, Qt::AlignHCenter);
        return;
    }
    FaceKit::drawFitted(painter, context, l.title, L("widget.trash.name", QStringLiteral("Trash")),
                        QFont::DemiBold, context.secondary(), Qt::AlignLeft | Qt::AlignVCenter,
                        std::min(l.title.height() * 0.75, 17.0));
    drawCount(painter, context, l, view, Qt::AlignLeft);
    if (context.size != WidgetSize::wide) {
        FileKit::drawDropTarget(painter, context, l.hint);
        FaceKit::drawFitted(painter, context, l.hint.adjusted(8, 0, -8, 0),
                            L("trash.dropHint", QStringLiteral("Drop files here to trash them")),
                            QFont::Normal, context.secondary(), Qt::AlignCenter,
                            l.hint.height() * 0.34);
    }
    if (view.contents.items > 0) {
        FileKit::drawButton(painter, context, l.emptyButton,
                            context.size == WidgetSize::wide
                                ? L("trash.emptyShort", QStringLiteral("Empty…"))
                                : L("trash.emptyLong", QStringLiteral("Empty Trash…")),
                            FileKit::Button::plain);
    }
}

WidgetFace::Spot TrashFace::spotAt(const QRectF& rect, QPointF point,
                                   const FaceContext& context) const {
    return FileKit::spotAt(targets(rect, context.size, viewOf(context)), point);
}

} // namespace tw
