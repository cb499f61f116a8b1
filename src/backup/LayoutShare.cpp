#include "backup/LayoutShare.h"

#include "grid/FreeSpot.h"
#include "grid/RectEdges.h"
#include "look/ThemeStore.h"
#include "model/WidgetRegistry.h"
#include "text/L.h"

#include <QHash>
#include <QLoggingCategory>

#include <algorithm>
#include <cmath>
#include <limits>

namespace tw {

Q_LOGGING_CATEGORY(lcLayoutShare, "LayoutShare")

namespace {

const QString tileScaleKey = QStringLiteral("tileScale");

QRectF frameOf(const WidgetInstance& instance) {
    return RectEdges::tileRect(*instance.posX, *instance.posY, instance.pixelSize());
}

QRectF frameOf(const Board::Item& item, const QPointF& origin) {
    WidgetInstance probe;
    probe.size = item.size;
    probe.settings = item.settings;
    return RectEdges::tileRect(origin.x() + item.dx, origin.y() - item.dy, probe.pixelSize());
}

QList<QRectF> occupiedOn(const GridLayout& layout, const QRectF& visibleFrame) {
    QList<QRectF> occupied;
    for (const WidgetInstance& instance : layout.instances) {
        if (instance.posX && instance.posY && frameOf(instance).intersects(visibleFrame)) {
            occupied.append(frameOf(instance));
        }
    }
    return occupied;
}

} // namespace

const QSet<QString>& LayoutShare::personalKeys() {
    static const QSet<QString> keys{
        QStringLiteral("loc"),     QStringLiteral("location"),    QStringLiteral("locLat"),
        QStringLiteral("locLon"),  QStringLiteral("locName"),     QStringLiteral("locCountry"),
        QStringLiteral("locZone"), QStringLiteral("locTimeZone"),
    };
    return keys;
}

std::optional<WidgetSettings> LayoutShare::sanitize(const QString& kind,
                                                    const std::optional<WidgetSettings>& settings) {
    if (!settings) {
        return std::nullopt;
    }
    WidgetSettings kept;
    if (kind == QLatin1String("smarthome")) {
        if (settings->contains(tileScaleKey)) {
            kept.insert(tileScaleKey, settings->value(tileScaleKey));
        }
    } else {
        const QSet<QString> content = WidgetRegistry::contentKeys(kind);
        for (auto it = settings->cbegin(); it != settings->cend(); ++it) {
            if (!content.contains(it.key()) && !personalKeys().contains(it.key())) {
                kept.insert(it.key(), it.value());
            }
        }
    }
    return kept.isEmpty() ? std::nullopt : std::optional<WidgetSettings>(kept);
}

Board::Decoded LayoutShare::makeBoard(const QString& name, const QList<WidgetInstance>& instances,
                                      const QRectF& screen, const std::optional<Board::Look>& look,
                                      const QString& appVersion, const QDateTime& now) {
    QList<WidgetInstance> standing;
    for (const WidgetInstance& instance : instances) {
        if (instance.posX && instance.posY && !WidgetRegistry::isCustomKind(instance.kind) &&
            screen.contains(RectEdges::centre(frameOf(instance)))) {
            standing.append(instance);
        }
    }
    if (standing.isEmpty()) {
        return Board::Error::empty;
    }
    // Members of a stack in their order, so that the stack comes back the same.
    std::stable_sort(standing.begin(), standing.end(),
                     [](const WidgetInstance& a, const WidgetInstance& b) {
                         return a.stackIndex.value_or(0) < b.stackIndex.value_or(0);
                     });
    QRectF bounds = frameOf(standing.first());
    for (const WidgetInstance& instance : std::as_const(standing)) {
        bounds = bounds.united(frameOf(instance));
    }
    Board board;
    board.appVersion = appVersion;
    board.name = name.trimmed();
    board.createdAt = now.toUTC();
    board.width = bounds.width();
    board.height = bounds.height();
    board.look = look;
    for (const WidgetInstance& instance : std::as_const(standing)) {
        board.items.append({.kind = instance.kind,
                            .size = instance.size,
                            .dx = *instance.posX - RectEdges::minX(bounds),
                            .dy = RectEdges::maxY(bounds) - *instance.posY,
                            .settings = sanitize(instance.kind, instance.settings)});
    }
    return board;
}

Board::Look LayoutShare::lookOf(const ThemeStore& theme) {
    return {.palette = theme.current().id,
            .glassStyle = ThemeStore::glassStyleName(theme.glassStyle()),
            .glassStrength = theme.glassStrength()};
}

LayoutShare::Plan LayoutShare::plan(const Board& board, const GridLayout& current,
                                    const WidgetRegistry& registry, const QRectF& visibleFrame,
                                    GridStore::Replacing replacing) {
    Plan plan;
    const bool replaces = replacing == GridStore::Replacing::yes;
    QHash<QString, int> counts;
    if (!replaces) {
        for (const WidgetInstance& instance : current.instances) {
            ++counts[instance.kind];
        }
    }
    QList<Board::Item> items;
    for (const Board::Item& item : board.items) {
        if (!registry.definition(item.kind)) {
            ++plan.unavailable;
        } else if (counts.value(item.kind) >= WidgetRegistry::maxInstances(item.kind)) {
            ++plan.atMaximum;
        } else {
            ++counts[item.kind];
            items.append(item);
        }
    }
    if (items.isEmpty()) {
        return plan;
    }
    QList<QRectF> occupied = replaces ? QList<QRectF>() : occupiedOn(current, visibleFrame);
    // The extent of what is placed, so that a skipped item leaves no hole to fit around.
    QRectF extent;
    for (const Board::Item& item : std::as_const(items)) {
        extent = extent.united(frameOf(item, {0, 0}));
    }
    const std::optional<QPointF> whole = FreeSpot::find(extent.size(), visibleFrame, occupied);
    const QPointF shift(RectEdges::minX(extent), RectEdges::maxY(extent));
    const auto placeKey = [](const Board::Item& item) -> QString {
        return QString::number(item.dx) + QLatin1Char(',') + QString::number(item.dy) +
               QLatin1Char(',') + rawValue(item.size);
    };
    // Items at one offset in one size were one stack, and become one again.
    QHash<QString, int> groupSizes;
    for (const Board::Item& item : std::as_const(items)) {
        ++groupSizes[placeKey(item)];
    }
    QHash<QString, std::optional<QPointF>> spots;
    QHash<QString, QUuid> stacks;
    QHash<QString, int> stackCounts;
    int order = 0;
    if (!replaces) {
        for (const WidgetInstance& instance : current.instances) {
            order = std::max(order, instance.order + 1);
        }
    }
    for (const Board::Item& item : std::as_const(items)) {
        WidgetInstance instance;
        instance.kind = item.kind;
        instance.size = item.size;
        // A board from elsewhere may carry what no board should: addresses, folders, places.
        instance.settings = sanitize(item.kind, item.settings);
        instance.order = order++;
        const QString key = placeKey(item);
        if (!spots.contains(key)) {
            const std::optional<QPointF> spot =
                whole ? std::optional<QPointF>(QPointF(whole->x() - shift.x() + item.dx,
                                                       whole->y() - shift.y() - item.dy))
                      : FreeSpot::find(instance.pixelSize(), visibleFrame, occupied);
            if (spot) {
                occupied.append(RectEdges::tileRect(spot->x(), spot->y(), instance.pixelSize()));
            }
            spots.insert(key, spot);
        }
        if (const std::optional<QPointF> spot = spots.value(key)) {
            instance.posX = spot->x();
            instance.posY = spot->y();
            if (groupSizes.value(key) > 1) {
                if (!stacks.contains(key)) {
                    stacks.insert(key, QUuid::createUuid());
                }
                instance.stackID = stacks.value(key);
                instance.stackIndex = stackCounts[key]++;
            }
        }
        plan.instances.append(instance);
    }
    return plan;
}

LayoutShare::ImportResult
LayoutShare::importBoard(const Board& board, GridStore& grid, const WidgetRegistry& registry,
                         ThemeStore* theme, GridStore::Replacing replacing, ApplyLook applyLook,
                         const QRectF& visibleFrame) {
    const Plan planned = plan(board, grid.layout(), registry, visibleFrame, replacing);
    const GridStore::AppendResult appended = grid.append(planned.instances, replacing);
    ImportResult result{.placed = int(appended.placed.size()),
                        .unavailable = planned.unavailable,
                        .atMaximum = planned.atMaximum + int(appended.refused.size()),
                        .ids = {}};
    for (const WidgetInstance& instance : appended.placed) {
        result.ids.append(instance.id);
    }
    if (theme && applyLook == ApplyLook::yes && board.look) {
        if (board.look->palette) {
            theme->selectPalette(*board.look->palette);
        }
        if (board.look->glassStyle) {
            for (const auto style : {ThemeStore::GlassStyle::Frosted, ThemeStore::GlassStyle::Clear,
                                     ThemeStore::GlassStyle::Liquid}) {
                if (ThemeStore::glassStyleName(style) == *board.look->glassStyle) {
                    theme->setGlassStyle(style);
                }
            }
        }
        if (board.look->glassStrength) {
            theme->setGlassStrength(*board.look->glassStrength);
        }
    }
    qCInfo(lcLayoutShare, "board placed %d widgets (%d unavailable, %d at their maximum)",
           result.placed, result.unavailable, result.atMaximum);
    return result;
}

QString LayoutShare::summary(const ImportResult& result) {
    QString text = L("share.done.added", QStringLiteral("%1 widgets added to your desktop."))
                       .arg(result.placed);
    if (result.unavailable > 0) {
        text += QLatin1Char(' ') +
                L("share.done.unavailable", QStringLiteral("%1 are not available in this version."))
                    .arg(result.unavailable);
    }
    if (result.atMaximum > 0) {
        text += QLatin1Char(' ') +
                L("share.done.atMaximum",
                  QStringLiteral("%1 were skipped because you already have the most of that "
                                 "widget."))
                    .arg(result.atMaximum);
    }
    return text;
}

QString LayoutShare::doneTitle() {
    return L("share.done.title", QStringLiteral("Board added"));
}

QString LayoutShare::offerTitle(const Board& board) {
    if (board.name.trimmed().isEmpty()) {
        return L("share.offer.title", QStringLiteral("Add this board?"));
    }
    return L("share.offer.titleNamed", QStringLiteral("Add the board \"%1\"?"))
        .arg(board.name.trimmed());
}

QString LayoutShare::offerBody(const Board& board) {
    return L("share.offer.body",
             QStringLiteral("%1 widgets. Your own widgets stay unless you choose to replace them."))
        .arg(board.items.size());
}

QString LayoutShare::caption(const QString& name) {
    const QString lead =
        name.trimmed().isEmpty()
            ? L("share.caption", QStringLiteral("My Mac desktop, made with Tarnwick ✨"))
            : L("share.captionNamed",
                QStringLiteral("\"%1\": my Mac desktop, made with Tarnwick ✨"))
                  .arg(name.trimmed());
    return lead + QStringLiteral("\n\n#Tarnwick") +
           L("share.caption.tags", QStringLiteral(" #macOS #desktop #widgets #setup"));
}

} // namespace tw
