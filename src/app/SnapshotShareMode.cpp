#include "app/LaunchModes.h"
#include "app/PictureReadings.h"
#include "app/PictureWeather.h"
#include "app/SnapshotReport.h"
#include "app/SnapshotWidgetOptions.h"
#include "backup/Board.h"
#include "config/BoardPicture.h"
#include "config/LayoutFileActions.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "faces/TileRenderer.h"
#include "model/WidgetRegistry.h"
#include "platform/PlatformServices.h"
#include "tick/SnapshotClock.h"

#include <QPainter>

namespace tw {

namespace {

// A desk somebody might share: two large tiles over a wide one and a small one.
Board sampleBoard(const QDateTime& now) {
    Board board;
    board.name = QStringLiteral("Morning desk");
    board.createdAt = now;
    const auto item = [](const char* kind, WidgetSize size, double dx, double dy) {
        return Board::Item{.kind = QString::fromLatin1(kind),
                           .size = size,
                           .dx = dx,
                           .dy = dy,
                           .settings = std::nullopt};
    };
    board.items = {
        item("clock", WidgetSize::large, 0, 0), item("calendar", WidgetSize::large, 216, 0),
        item("weather", WidgetSize::wide, 0, 216), item("battery", WidgetSize::small, 216, 216),
        item("dayprogress", WidgetSize::small, 324, 216)};
    return board;
}

} // namespace

std::optional<int> runSnapshotShareMode(LaunchContext& context) {
    const QString path = context.values.value(0);
    const SnapshotWidgetOptions options = SnapshotWidgetOptions::parse(context.arguments);
    QString problem = options.problem;
    Board board = sampleBoard(context.clock.now());
    if (const std::optional<QString> file = context.arguments.value(QStringLiteral("--board"))) {
        const Board::Decoded decoded = Board::read(*file);
        if (const auto* error = std::get_if<Board::Error>(&decoded)) {
            problem = Board::message(*error);
        } else {
            board = std::get<Board>(decoded);
        }
    }
    QImage picture;
    if (problem.isEmpty()) {
        const std::unique_ptr<SymbolProvider> symbols = PlatformServices::makeSymbolProvider();
        const FaceRegistry faces;
        const WidgetRegistry registry;
        TileRenderer renderer;
        const FaceContext base = options.baseContext(*symbols, context.clock.now());
        const WeatherBoard weather = pictureWeather({}, base.now);
        const auto paintTile = [&](QPainter& painter, const QRectF& rect,
                                   const WidgetInstance& instance) {
            const std::optional<WidgetDefinition> definition = registry.definition(instance.kind);
            if (!definition) {
                return;
            }
            FaceContext face = base.sizedFor(definition->metadata, instance);
            const WidgetFace& widgetFace = faces.face(face.kind());
            const ReadingsBoard readings =
                pictureReadings(widgetFace.feeds(face.size, face.settings));
            face.readings = &readings;
            face.weather = &weather;
            face.devicePixelRatio = options.devicePixelRatio;
            renderer.paint(painter, rect, widgetFace, face);
        };
        QString why;
        const QImage backdrop = options.wallpaperPicture(BoardPicture::size(board).toSize(), why);
        picture = BoardPicture::render(board, paintTile,
                                       backdrop.isNull() ? LayoutFileActions::backdrop() : backdrop,
                                       options.devicePixelRatio);
    }
    return reportSnapshot(context, QStringLiteral("snapshot-share"), path, picture, problem,
                          QStringLiteral(" widgets=%1").arg(board.items.size()));
}

} // namespace tw
