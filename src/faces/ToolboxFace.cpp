#include "faces/ToolboxFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/LaunchKit.h"
#include "faces/ReadingKit.h"
#include "launch/ToolboxBehaviour.h"
#include "text/L.h"

#include <QPainter>

namespace tw {

namespace {

struct Button {
    SystemAction action;
    QString symbol;
    QString label;
    QString help;
    bool on = false;
};

QList<Button> buttonsOn(const FaceContext& context) {
    const ToolboxBehaviour* behaviour = context.behaviour<ToolboxBehaviour>();
    // Pictures and previews show all four, do-not-disturb off.
    const QList<SystemAction> offered =
        behaviour != nullptr ? behaviour->offered() : ToolboxBehaviour::all();
    const bool quiet = behaviour != nullptr && behaviour->doNotDisturb();
    QList<Button> buttons;
    for (const SystemAction action : offered) {
        switch (action) {
        case SystemAction::lockScreen:
            buttons.append({action, QStringLiteral("lock.fill"),
                            L("toolbox.lock", QStringLiteral("Lock")),
                            L("toolbox.lock.help", QStringLiteral("Lock the screen")), false});
            break;
        case SystemAction::displayOff:
            buttons.append({action, QStringLiteral("display.slash"),
                            L("toolbox.display", QStringLiteral("Display off")),
                            L("toolbox.display.help",
                              QStringLiteral("Turn the displays off until the mouse moves")),
                            false});
            break;
        case SystemAction::screenshot:
            buttons.append({action, QStringLiteral("camera.viewfinder"),
                            L("toolbox.screenshot", QStringLiteral("Screenshot")),
                            L("toolbox.screenshot.help", QStringLiteral("Take a screenshot")),
                            false});
            break;
        case SystemAction::doNotDisturb:
            buttons.append(
                {action, quiet ? QStringLiteral("bell.slash.fill") : QStringLiteral("bell.fill"),
                 quiet ? L("toolbox.dnd.on", QStringLiteral("Quiet on"))
                       : L("toolbox.dnd.off", QStringLiteral("Quiet")),
                 quiet
                     ? L("toolbox.dnd.on.help",
                         QStringLiteral("Notification banners are held back; click "
                                        "to show them again"))
                     : L("toolbox.dnd.off.help", QStringLiteral("Hold notification banners back")),
                 quiet});
            break;
        }
    }
    return buttons;
}

LaunchKit::Grid layout(const QRectF& rect, qsizetype count) {
    return LaunchKit::grid(rect, static_cast<int>(count), 18, 58);
}

} // namespace

std::optional<TimeGrain> ToolboxFace::grain(WidgetSize, const WidgetSettings&) const {
    return std::nullopt;
}

void ToolboxFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const QList<Button> buttons = buttonsOn(context);
    if (buttons.isEmpty()) {
        ReadingKit::drawNotice(
            painter, context, rect, QStringLiteral("wrench.adjustable.fill"),
            L("toolbox.none", QStringLiteral("Nothing to offer here")),
            L("toolbox.none.detail", QStringLiteral("This desktop lets no program lock, darken or "
                                                    "capture the screen.")));
        return;
    }
    const LaunchKit::Grid grid = layout(rect, buttons.size());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    for (qsizetype i = 0; i < grid.icons.size(); ++i) {
        const Button& button = buttons.at(i);
        const QRectF circle = grid.icons.at(i);
        painter.setPen(Qt::NoPen);
        painter.setBrush(button.on ? context.accent() : context.elevated());
        painter.drawEllipse(circle);
        const qreal inset = circle.width() * 0.26;
        FaceKit::drawSymbol(painter, context, button.symbol,
                            circle.adjusted(inset, inset, -inset, -inset),
                            button.on ? QColor(Qt::white) : context.primary(), button.label);
        if (!grid.labels.at(i).isEmpty()) {
            FaceKit::drawElided(painter, context, grid.labels.at(i), button.label,
                                FaceKit::font(grid.labelSize, QFont::Medium),
                                button.on ? context.accent() : context.secondary(),
                                Qt::AlignHCenter | Qt::AlignTop);
        }
    }
    painter.restore();
}

WidgetFace::Spot ToolboxFace::spotAt(const QRectF& rect, QPointF point,
                                     const FaceContext& context) const {
    Spot spot;
    const QList<Button> buttons = buttonsOn(context);
    const LaunchKit::Grid grid = layout(rect, buttons.size());
    for (qsizetype i = 0; i < grid.icons.size(); ++i) {
        if (grid.icons.at(i).united(grid.labels.at(i)).adjusted(-4, -4, 4, 4).contains(point)) {
            spot.command = ToolboxBehaviour::commandOf(buttons.at(i).action);
            spot.help = buttons.at(i).help;
            break;
        }
    }
    return spot;
}

} // namespace tw
