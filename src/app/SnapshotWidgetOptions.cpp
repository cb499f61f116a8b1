#include "app/SnapshotWidgetOptions.h"

#include "app/LaunchArguments.h"
#include "faces/FaceContext.h"
#include "faces/Wallpaper.h"
#include "faces/WallpaperRenderer.h"
#include "look/Theme.h"
#include "text/L.h"

#include <QImageReader>

#include <algorithm>
#include <cmath>

namespace tw {

SnapshotWidgetOptions SnapshotWidgetOptions::parse(const LaunchArguments& arguments) {
    SnapshotWidgetOptions options;
    options.kind = arguments.value(QStringLiteral("--kind")).value_or(QString());
    options.templateId = arguments.value(QStringLiteral("--template")).value_or(QString());
    options.size = arguments.value(QStringLiteral("--size")).value_or(QString());
    options.themeId = arguments.value(QStringLiteral("--theme")).value_or(QString());
    options.wallpaper = arguments.value(QStringLiteral("--wallpaper")).value_or(QString());
    if (!options.themeId.isEmpty() && !Theme::builtIn(options.themeId)) {
        QStringList ids;
        for (const Theme& theme : Theme::builtIns()) {
            ids << theme.id;
        }
        options.problem = QStringLiteral("unknown --theme \"%1\"; the themes are %2.")
                              .arg(options.themeId, ids.join(QLatin1String(", ")));
    }
    // Dark glass is the default; --light wins when both are given.
    if (arguments.has(QStringLiteral("--light"))) {
        options.shade = GlassLook::Shade::Light;
    }
    if (const std::optional<QString> scale = arguments.value(QStringLiteral("--scale"))) {
        bool ok = false;
        const double value = scale->toDouble(&ok);
        if (ok && std::isfinite(value)) {
            options.devicePixelRatio = std::clamp(value, 0.5, 4.0);
        } else if (options.problem.isEmpty()) {
            options.problem = QStringLiteral("--scale needs a number of pixels per point, not "
                                             "\"%1\".")
                                  .arg(*scale);
        }
    }
    if (const std::optional<QString> style = arguments.value(QStringLiteral("--style"))) {
        options.settings.insert(QStringLiteral("style"), *style);
    }
    const QStringList& all = arguments.all();
    for (qsizetype i = 0; i + 1 < all.size(); ++i) {
        if (all.at(i) != QLatin1String("--set")) {
            continue;
        }
        const QString& pair = all.at(i + 1);
        const qsizetype equals = pair.indexOf(QLatin1Char('='));
        if (equals > 0) {
            options.settings.insert(pair.left(equals), pair.mid(equals + 1));
        }
    }
    return options;
}

FaceContext SnapshotWidgetOptions::baseContext(const SymbolProvider& symbols,
                                               const QDateTime& now) const {
    FaceContext base;
    base.theme = Theme::builtIn(themeId).value_or(Theme::defaultTheme());
    base.glass.shade = shade;
    base.devicePixelRatio = devicePixelRatio;
    base.now = now;
    base.surface = SurfaceFlags::snapshot();
    base.pace = AnimationPace::paused();
    base.symbols = &symbols;
    return base;
}

QImage SnapshotWidgetOptions::wallpaperPicture(const QSize& pixels, QString& why) const {
    const QString fallback =
        shade == GlassLook::Shade::Light ? QStringLiteral("dawn") : QStringLiteral("lagoon");
    const QString& choice = wallpaper.isEmpty() ? fallback : wallpaper;
    if (const Wallpaper* builtIn = Wallpaper::find(choice)) {
        return WallpaperRenderer::render(*builtIn, pixels);
    }
    QImageReader reader(choice);
    reader.setAutoTransform(true);
    const QImage picture = reader.read();
    if (picture.isNull()) {
        QStringList ids;
        for (const Wallpaper& builtIn : Wallpaper::all()) {
            ids << builtIn.id;
        }
        why = QStringLiteral("--wallpaper %1 is neither a built-in (%2) nor a readable "
                             "picture: %3.")
                  .arg(choice, ids.join(QLatin1String(", ")), reader.errorString());
    }
    return picture;
}

QList<SceneLook> SnapshotWidgetOptions::sceneLooks(QString& why) const {
    const QList<SceneLook> all{
        {GlassLook::Finish::Frosted, QStringLiteral("frosted"),
         L("appearance.frosted", QStringLiteral("Frosted"))},
        {GlassLook::Finish::Clear, QStringLiteral("clear"),
         L("appearance.clear", QStringLiteral("Clear"))},
        {GlassLook::Finish::Liquid, QStringLiteral("liquid"),
         L("appearance.liquid", QStringLiteral("Liquid"))},
    };
    const auto style = settings.constFind(QStringLiteral("style"));
    if (style == settings.cend()) {
        return all;
    }
    QList<SceneLook> kept;
    std::copy_if(all.begin(), all.end(), std::back_inserter(kept),
                 [&](const SceneLook& look) { return look.id == *style; });
    if (kept.isEmpty() && why.isEmpty()) {
        why = QStringLiteral("unknown --style \"%1\"; the looks are frosted, clear, liquid.")
                  .arg(*style);
    }
    return kept;
}

QString SnapshotWidgetOptions::darkField() const {
    return shade == GlassLook::Shade::Dark ? QStringLiteral("true") : QStringLiteral("false");
}

} // namespace tw
