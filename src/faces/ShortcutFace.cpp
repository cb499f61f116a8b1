#include "faces/ShortcutFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/LaunchKit.h"
#include "faces/ReadingKit.h"
#include "launch/Shortcut.h"
#include "launch/ShortcutBehaviour.h"
#include "text/L.h"

#include <QPainter>

namespace tw {

namespace {

struct Shown {
    Shortcut shortcut;
    ShortcutLook look;
};

Shown shownOn(const FaceContext& context) {
    Shortcut shortcut = Shortcut::fromSettings(context.settings);
    const ShortcutBehaviour* behaviour = context.behaviour<ShortcutBehaviour>();
    if (behaviour != nullptr) {
        return {shortcut, behaviour->look(context.instanceID).value_or(ShortcutLook{})};
    }
    // Pictures and previews: what the settings say, else a folder most people have.
    if (!shortcut.isSet()) {
        shortcut = {Shortcut::Type::file, QStringLiteral("~/Downloads"), {}};
    }
    // An app is named by the last part of its id there ("org.gnome.Terminal": Terminal).
    return {shortcut,
            {shortcut.title(shortcut.target.section(QLatin1Char('.'), -1)), QString(),
             ShortcutBehaviour::symbolOf(shortcut.type), QString()}};
}

// What exactly opens, in the words of its type.
QString detailOf(const Shortcut& shortcut) {
    switch (shortcut.type) {
    case Shortcut::Type::app:
        return L("shortcut.kind.app", QStringLiteral("App"));
    case Shortcut::Type::url:
        return shortcut.target;
    case Shortcut::Type::file:
        return shortcut.target;
    case Shortcut::Type::command:
        return QStringLiteral("$ ") + shortcut.target;
    }
    return {};
}

} // namespace

std::optional<TimeGrain> ShortcutFace::grain(WidgetSize, const WidgetSettings&) const {
    return std::nullopt;
}

void ShortcutFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const Shown shown = shownOn(context);
    if (!shown.shortcut.isSet()) {
        ReadingKit::drawNotice(painter, context, rect, QStringLiteral("wand.and.rays"),
                               L("shortcut.choose", QStringLiteral("Choose what to open")),
                               L("shortcut.choose.detail",
                                 QStringLiteral("An app, a web address, a file or a command.")));
        return;
    }
    const LaunchKit::Icon icon{.file = shown.look.iconFile,
                               .symbol =
                                   shown.look.iconFile.isEmpty() ? shown.look.symbol : QString(),
                               .name = shown.look.title,
                               .faint = !shown.look.problem.isEmpty()};
    const QString detail =
        shown.look.problem.isEmpty() ? detailOf(shown.shortcut) : shown.look.problem;
    const QColor detailColor =
        shown.look.problem.isEmpty() ? context.secondary() : ReadingKit::warning(context);
    const qreal w = rect.width();
    const qreal h = rect.height();
    if (w >= h * 1.6) {
        // Wide and banner: the icon at the left, title and detail beside it.
        const qreal side = std::min(h, 64.0);
        const QRectF box(rect.left(), rect.center().y() - side / 2, side, side);
        LaunchKit::drawIcon(painter, context, box, icon);
        const QRectF text(box.right() + 14, rect.top(), rect.right() - box.right() - 14, h);
        FaceKit::drawFitted(painter, context,
                            QRectF(text.left(), text.center().y() - 26, text.width(), 26),
                            shown.look.title, QFont::DemiBold, context.primary(),
                            Qt::AlignLeft | Qt::AlignBottom, 20);
        FaceKit::drawElided(painter, context,
                            QRectF(text.left(), text.center().y() + 3, text.width(), 18), detail,
                            FaceKit::font(12), detailColor, Qt::AlignLeft | Qt::AlignTop);
        return;
    }
    const bool large = h > 150;
    const qreal titleH = large ? 24 : 16;
    const qreal detailH = large ? 18 : 0;
    const qreal side = std::min(w * (large ? 0.52 : 0.62), h - titleH - detailH - 8);
    const qreal top = rect.top() + (h - side - 6 - titleH - detailH) / 2;
    LaunchKit::drawIcon(painter, context, QRectF(rect.center().x() - side / 2, top, side, side),
                        icon);
    const QRectF title(rect.left(), top + side + 6, w, titleH);
    FaceKit::drawFitted(painter, context, title, shown.look.title, QFont::DemiBold,
                        context.primary(), Qt::AlignHCenter | Qt::AlignVCenter, large ? 19 : 13);
    if (large) {
        FaceKit::drawElided(painter, context, QRectF(rect.left(), title.bottom(), w, detailH),
                            detail, FaceKit::font(12), detailColor,
                            Qt::AlignHCenter | Qt::AlignVCenter);
    }
}

bool ShortcutFace::opensSettingsOnClick(const FaceContext& context) const {
    return !shownOn(context).shortcut.isSet();
}

WidgetFace::Spot ShortcutFace::spotAt(const QRectF&, QPointF, const FaceContext& context) const {
    Spot spot;
    const Shown shown = shownOn(context);
    if (shown.shortcut.isSet()) {
        spot.command = QStringLiteral("open");
        spot.help = L("shortcut.help", QStringLiteral("Open %1")).arg(shown.look.title);
    }
    return spot;
}

} // namespace tw
