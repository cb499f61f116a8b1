// An assistant's answer, whatever it holds, read back as a custom widget and drawn: the JSON read
// out of it stands between braces inside it, and a widget that decodes is drawn at its smallest
// and largest size, from the sample values and from the answer itself as its source's document,
// in a failed and a stale state, without breaking; a click on it opens nothing but a web page.
#include "Require.h"
#include "custom/CustomAIPrompt.h"
#include "custom/CustomBoard.h"
#include "faces/CustomWidgetFace.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "faces/TileRenderer.h"
#include "look/Theme.h"
#include "platform/null/NullSymbolProvider.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <cstdint>

using namespace tw;
using tw::fuzz::require;

namespace {

void draw(const CustomWidgetDefinition& definition, const CustomBoard& board, WidgetSize size,
          SurfaceFlags surface) {
    static const NullSymbolProvider symbols;
    static const FaceRegistry faces;
    WidgetMetadata metadata;
    metadata.kind = definition.kind();
    metadata.displayName = definition.name;
    metadata.symbol = definition.symbol;
    metadata.allowedSizes = definition.sizes;
    FaceContext context = FaceContext::forKind(metadata, size);
    context.theme = Theme::defaultTheme();
    context.surface = surface;
    context.symbols = &symbols;
    context.now = QDateTime(QDate(2026, 3, 9), QTime(9, 41));
    context.custom = &board;
    QImage image(context.points.toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    const QRectF whole(QPointF(0, 0), context.points);
    const WidgetFace& face = faces.face(metadata.kind);
    face.paint(painter, whole, context);
    for (const QPointF point : {whole.center(), CustomWidgetFace::markerRect(whole).center()}) {
        const QString scheme = face.spotAt(whole, point, context).link.value_or(QUrl()).scheme();
        require(scheme.isEmpty() ||
                    scheme.compare(QLatin1String("http"), Qt::CaseInsensitive) == 0 ||
                    scheme.compare(QLatin1String("https"), Qt::CaseInsensitive) == 0,
                "a click would open something other than a web page");
    }
}

} // namespace

// Fontconfig's and Qt's font caches live as long as the process and are never given back; they
// are not leaks of a drawing.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig.so\nleak:libQt6Gui.so\n";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static int argc = 1;
    static char name[] = "fuzz_customface";
    static char* argv[] = {name, nullptr};
    static const bool offscreen = qputenv("QT_QPA_PLATFORM", "offscreen");
    static QGuiApplication app(argc, argv);
    (void)offscreen;

    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QString answer = QString::fromUtf8(bytes);
    const std::optional<QString> json = CustomAIPrompt::extractJSON(answer);
    if (!json) {
        return 0;
    }
    require(json->startsWith(QLatin1Char('{')) && json->endsWith(QLatin1Char('}')) &&
                answer.contains(*json),
            "the widget read out of an answer is not a braced part of it");
    const std::optional<CustomWidgetDefinition> decoded = CustomWidgetDefinition::decode(*json);
    if (!decoded) {
        return 0;
    }
    const CustomWidgetDefinition widget = decoded->sanitized();
    CustomBoard board;
    board.definitions.insert(widget.kind(), widget);
    CustomSourceState state;
    state.json = CustomJSON::parse(bytes);
    state.error = QStringLiteral("The server answered 500.");
    for (const CustomSource& source : widget.allSources()) {
        board.sources.insert(source.cacheKey(), state);
    }
    for (const WidgetSize drawn : {widget.sizes.first(), widget.largestSize()}) {
        draw(widget, board, drawn, SurfaceFlags::snapshot());
        draw(widget, board, drawn, SurfaceFlags::desktop());
    }
    return 0;
}
