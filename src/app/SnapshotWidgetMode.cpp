#include "app/LaunchModes.h"
#include "app/PictureAppUsage.h"
#include "app/PictureCalendar.h"
#include "app/PictureReadings.h"
#include "app/PictureSpeedTest.h"
#include "app/PictureWeather.h"
#include "app/SnapshotReport.h"
#include "app/SnapshotWidgetOptions.h"
#include "custom/CustomBoard.h"
#include "custom/CustomWidgetTemplates.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "faces/TileRenderer.h"
#include "market/MarketSample.h"
#include "model/WidgetRegistry.h"
#include "platform/PlatformServices.h"
#include "tick/SnapshotClock.h"

#include <QImage>

#include <variant>

namespace tw {

namespace {

QString joined(const QList<WidgetSize>& sizes) {
    QStringList names;
    for (const WidgetSize size : sizes) {
        names << rawValue(size);
    }
    return names.join(QLatin1String(", "));
}

// The size to draw, or why the kind and size of the options make no picture.
std::variant<WidgetSize, QString> sizeToDraw(const SnapshotWidgetOptions& options,
                                             const std::optional<WidgetDefinition>& definition) {
    const QString kinds = QStringLiteral("tarnwick --list-sizes names the kinds.");
    if (options.kind.isEmpty()) {
        return QStringLiteral("--kind is missing; ") + kinds;
    }
    if (!definition) {
        return QStringLiteral("unknown --kind \"%1\"; ").arg(options.kind) + kinds;
    }
    const WidgetMetadata& metadata = definition->metadata;
    const std::optional<WidgetSize> size = options.size.isEmpty()
                                               ? std::optional(metadata.defaultSize)
                                               : widgetSizeFromRawValue(options.size);
    if (!size) {
        return QStringLiteral("unknown --size \"%1\"; the sizes are %2.")
            .arg(options.size, joined({allWidgetSizes.begin(), allWidgetSizes.end()}));
    }
    if (!metadata.allowedSizes.contains(*size)) {
        return QStringLiteral("%1 has no size %2; it has %3.")
            .arg(options.kind, options.size, joined(metadata.allowedSizes));
    }
    return *size;
}

// Why the face cannot draw the --style asked for; empty when it can or none was asked.
QString styleProblem(const SnapshotWidgetOptions& options, const FaceRegistry& faces) {
    const auto style = options.settings.constFind(QStringLiteral("style"));
    if (style != options.settings.cend()) {
        const QStringList styles = faces.face(options.kind).styles();
        if (styles.isEmpty()) {
            return QStringLiteral("%1 has only one look; leave out --style.").arg(options.kind);
        }
        if (!styles.contains(*style)) {
            return QStringLiteral("%1 has no --style \"%2\"; its styles are %3.")
                .arg(options.kind, *style, styles.join(QLatin1String(", ")));
        }
    }
    return {};
}

// The catalogue entry of a template's widget, as the store would make it.
WidgetDefinition catalogueEntry(const CustomWidgetDefinition& custom) {
    WidgetDefinition entry;
    entry.metadata.kind = custom.kind();
    entry.metadata.displayName = custom.name;
    entry.metadata.symbol = custom.symbol;
    entry.metadata.allowedSizes = custom.sizes;
    entry.metadata.defaultSize = custom.sizes.value(0, WidgetSize::small);
    return entry;
}

// The board of a --template picture: only that template's widget, with a sample user.
std::optional<CustomBoard> templateBoard(SnapshotWidgetOptions& options, QString& problem) {
    if (options.templateId.isEmpty()) {
        return std::nullopt;
    }
    const std::optional<CustomWidgetTemplates::Template> found =
        CustomWidgetTemplates::byId(options.templateId);
    if (!found) {
        QStringList ids;
        for (const CustomWidgetTemplates::Template& entry : CustomWidgetTemplates::all()) {
            ids << entry.id;
        }
        problem = QStringLiteral("unknown --template \"%1\"; the templates are %2.")
                      .arg(options.templateId, ids.join(QLatin1String(", ")));
        return std::nullopt;
    }
    const CustomWidgetDefinition custom = found->make();
    CustomBoard board;
    board.definitions.insert(custom.kind(), custom);
    board.user = QStringLiteral("robin");
    options.kind = custom.kind();
    return board;
}

} // namespace

std::optional<int> runSnapshotWidgetMode(LaunchContext& context) {
    const QString path = context.values.value(0);
    SnapshotWidgetOptions options = SnapshotWidgetOptions::parse(context.arguments);
    QString templateProblem;
    const std::optional<CustomBoard> custom = templateBoard(options, templateProblem);
    const std::optional<WidgetDefinition> definition =
        custom ? std::optional(catalogueEntry(*custom->definition(options.kind)))
               : WidgetRegistry().definition(options.kind);
    const FaceRegistry faces;
    const std::variant<WidgetSize, QString> chosen = sizeToDraw(options, definition);
    const WidgetSize* size = std::get_if<WidgetSize>(&chosen);
    QString problem = !templateProblem.isEmpty() ? templateProblem
                      : size == nullptr          ? std::get<QString>(chosen)
                                                 : styleProblem(options, faces);
    if (problem.isEmpty()) {
        problem = options.problem;
    }
    QImage picture;
    if (problem.isEmpty()) {
        const std::unique_ptr<SymbolProvider> symbols = PlatformServices::makeSymbolProvider();
        TileRenderer renderer;
        WidgetInstance instance;
        instance.kind = options.kind;
        instance.size = *size;
        instance.settings = options.settings;
        FaceContext face = options.baseContext(*symbols, context.clock.now())
                               .sizedFor(definition->metadata, instance);
        const WidgetFace& widgetFace = faces.face(face.kind());
        const ReadingsBoard readings = pictureReadings(widgetFace.feeds(face.size, face.settings));
        face.readings = &readings;
        const WeatherBoard weather = pictureWeather(face.settings, face.now);
        face.weather = &weather;
        face.custom = custom ? &*custom : nullptr;
        const CalendarBoard calendar = pictureCalendar(face.settings, face.now);
        face.calendar = &calendar;
        const SpeedTestBoard speedTest = pictureSpeedTest(face.settings);
        face.speedTest = &speedTest;
        const MarketBoard market = sampleMarket(face.now, face.settings);
        face.market = &market;
        const AppUsageBoard appUsage = pictureAppUsage(face.instanceID, face.settings, face.now,
                                                       *PlatformServices::makeAppDirectory());
        face.appUsage = &appUsage;
        picture = renderer.picture(widgetFace, face);
    }
    return reportSnapshot(
        context, QStringLiteral("snapshot-widget"), path, picture, problem,
        QStringLiteral(" %1=%2 size=%3")
            .arg(options.templateId.isEmpty() ? QStringLiteral("kind") : QStringLiteral("template"),
                 options.templateId.isEmpty() ? options.kind : options.templateId,
                 size ? rawValue(*size) : options.size));
}

} // namespace tw
