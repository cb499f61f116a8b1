#include "faces/AppsFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/LaunchKit.h"
#include "faces/ReadingKit.h"
#include "launch/AppsBehaviour.h"
#include "text/L.h"

#include <QPainter>

namespace tw {

namespace {

struct Shown {
    QList<AppTileEntry> entries;
    // Drawn with a symbol on a coloured tile: the sample's.
    QStringList symbols;
};

// Everyday applications for pictures and previews, drawn with symbols.
Shown sample() {
    struct App {
        const char* name;
        const char* symbol;
    };
    static constexpr App apps[] = {
        {"Files", "folder"},
        {"Web", "globe"},
        {"Terminal", "apple.terminal.fill"},
        {"Music", "music.note"},
        {"Calendar", "calendar"},
        {"Photos", "photo.stack"},
        {"Notes", "note.text"},
        {"Mail", "tray.full"},
        {"Calculator", "plus.forwardslash.minus"},
        {"Clock", "clock"},
        {"Weather", "cloud.sun.fill"},
        {"Settings", "wrench.and.screwdriver"},
    };
    Shown shown;
    for (const App& app : apps) {
        const QString name =
            L(QByteArray("apps.sample.").append(app.name).constData(), QLatin1String(app.name));
        shown.entries.append({QLatin1String(app.name), name, QString(), true});
        shown.symbols.append(QLatin1String(app.symbol));
    }
    return shown;
}

Shown shownOn(const FaceContext& context) {
    const AppsBehaviour* behaviour = context.behaviour<AppsBehaviour>();
    if (behaviour == nullptr) {
        return sample();
    }
    return {behaviour->entries(context.instanceID), {}};
}

LaunchKit::Grid layout(const QRectF& rect, qsizetype count) {
    return LaunchKit::grid(rect, static_cast<int>(count), 24, 60);
}

} // namespace

std::optional<TimeGrain> AppsFace::grain(WidgetSize, const WidgetSettings&) const {
    return std::nullopt;
}

void AppsFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const Shown shown = shownOn(context);
    if (shown.entries.isEmpty()) {
        ReadingKit::drawNotice(
            painter, context, rect, QStringLiteral("square.grid.2x2.fill"),
            L("apps.choose", QStringLiteral("Choose apps")),
            L("apps.choose.detail", QStringLiteral("Click to pick the apps this tile starts.")));
        return;
    }
    const LaunchKit::Grid grid = layout(rect, shown.entries.size());
    for (qsizetype i = 0; i < grid.icons.size(); ++i) {
        const AppTileEntry& entry = shown.entries.at(i);
        LaunchKit::drawIcon(painter, context, grid.icons.at(i),
                            {.file = entry.iconFile,
                             .symbol = shown.symbols.value(i),
                             .name = entry.name,
                             .faint = !entry.installed});
        if (!grid.labels.at(i).isEmpty()) {
            FaceKit::drawElided(painter, context, grid.labels.at(i), entry.name,
                                FaceKit::font(grid.labelSize, QFont::Medium),
                                entry.installed ? context.primary() : context.secondary(),
                                Qt::AlignHCenter | Qt::AlignTop);
        }
    }
}

bool AppsFace::opensSettingsOnClick(const FaceContext& context) const {
    return shownOn(context).entries.isEmpty();
}

WidgetFace::Spot AppsFace::spotAt(const QRectF& rect, QPointF point,
                                  const FaceContext& context) const {
    Spot spot;
    const Shown shown = shownOn(context);
    const LaunchKit::Grid grid = layout(rect, shown.entries.size());
    for (qsizetype i = 0; i < grid.icons.size(); ++i) {
        // The icon and its name, with a little room around them.
        const QRectF target = grid.icons.at(i).united(grid.labels.at(i)).adjusted(-4, -4, 4, 4);
        if (target.contains(point)) {
            const AppTileEntry& entry = shown.entries.at(i);
            spot.command = AppsBehaviour::commandFor(entry.id);
            spot.help =
                entry.installed
                    ? L("apps.help", QStringLiteral("Open %1")).arg(entry.name)
                    : L("apps.gone", QStringLiteral("%1 is no longer installed")).arg(entry.name);
            break;
        }
    }
    return spot;
}

} // namespace tw
