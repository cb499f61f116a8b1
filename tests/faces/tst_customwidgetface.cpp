// The custom widgets' face: every template drawn inside its tile with all its rows at every size
// it allows, in both shades; the state a tile shows for each state of its sources; the face
// handed out for every custom kind.
#include "FaceSpill.h"
#include "TestRows.h"
#include "custom/CustomWidgetTemplates.h"
#include "faces/CustomWidgetFace.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "look/Theme.h"
#include "platform/null/NullSymbolProvider.h"

#include <QTest>

using namespace tw;
using namespace tw::test;
using State = CustomWidgetFace::State;

namespace {

const NullSymbolProvider kSymbols;

WidgetMetadata metadataOf(const CustomWidgetDefinition& definition) {
    WidgetMetadata metadata;
    metadata.kind = definition.kind();
    metadata.displayName = definition.name;
    metadata.symbol = definition.symbol;
    metadata.allowedSizes = definition.sizes;
    metadata.defaultSize = definition.sizes.value(0, WidgetSize::small);
    return metadata;
}

FaceContext contextFor(const CustomBoard& board, const CustomWidgetDefinition& definition,
                       WidgetSize size, SurfaceFlags surface) {
    FaceContext context = FaceContext::forKind(metadataOf(definition), size);
    context.theme = Theme::defaultTheme();
    context.surface = surface;
    context.symbols = &kSymbols;
    context.now = QDateTime(QDate(2026, 3, 9), QTime(9, 41));
    context.custom = &board;
    return context;
}

CustomSourceState sourceState(bool json, bool error) {
    CustomSourceState state;
    if (json) {
        state.json = CustomJSON{QJsonValue(42)};
    }
    if (error) {
        state.error = QStringLiteral("The server answered 500.");
    }
    return state;
}

} // namespace

class TestCustomWidgetFace : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void templatesDrawEveryRowInsideTheirTile_data();
    void templatesDrawEveryRowInsideTheirTile();
    void stateFollowsTheSources_data();
    void stateFollowsTheSources();
    void everyCustomKindHasTheFace();
    void spotsOfferTheLinkAndTheMarkersHelp_data();
    void spotsOfferTheLinkAndTheMarkersHelp();
};

void TestCustomWidgetFace::templatesDrawEveryRowInsideTheirTile_data() {
    QTest::addColumn<QString>("id");
    for (const CustomWidgetTemplates::Template& entry : CustomWidgetTemplates::all()) {
        QTest::newRow(qPrintable(entry.id)) << entry.id;
    }
}

void TestCustomWidgetFace::templatesDrawEveryRowInsideTheirTile() {
    QFETCH(QString, id);
    const CustomWidgetDefinition definition = CustomWidgetTemplates::byId(id)->make();
    QCOMPARE(definition.issues(), QList<CustomWidgetIssue>());
    // Rows get fresh ids at every clean-up; the file is what stays.
    const auto secrets = CustomWidgetDefinition::Secrets::included;
    QCOMPARE(definition.sanitized().fileJSON(secrets), definition.fileJSON(secrets));
    QVERIFY(definition.kind() != CustomWidgetTemplates::byId(id)->make().kind());
    CustomBoard board;
    board.definitions.insert(definition.kind(), definition);
    const FaceRegistry faces;
    for (const WidgetSize size : definition.sizes) {
        for (const GlassLook::Shade shade : {GlassLook::Shade::Dark, GlassLook::Shade::Light}) {
            FaceContext context = contextFor(board, definition, size, SurfaceFlags::snapshot());
            context.glass.shade = shade;
            const QString where = rawValue(size);
            const QString spill = spillOf(faces.face(context.kind()), context);
            QVERIFY2(spill.isEmpty(), qPrintable(where + QLatin1Char(' ') + spill));
            const QRectF inside =
                TileRenderer::contentRect(context.points, TileShape::of(context.metadata));
            const QList<CustomWidgetFace::Placed> placed = CustomWidgetFace::layout(
                definition, inside, CustomWidgetFace::values(definition, context), context);
            QVERIFY2(!placed.isEmpty() && placed.last().row == definition.rows.size() - 1,
                     qPrintable(where + QStringLiteral(": a row left out")));
            for (const CustomWidgetFace::Placed& item : placed) {
                QVERIFY2(inside.adjusted(-0.5, -0.5, 0.5, 0.5).contains(item.rect),
                         qPrintable(where));
                // Legible: nothing shrinks below four fifths of its type.
                QVERIFY(item.scale >= 0.8);
            }
        }
    }
}

void TestCustomWidgetFace::stateFollowsTheSources_data() {
    QTest::addColumn<bool>("rows");
    QTest::addColumn<bool>("sources");
    // -1 no state, else json and error as bits.
    QTest::addColumn<int>("source");
    QTest::addColumn<bool>("sample");
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("stale");
    row("no rows", false, true, 3, false, int(State::empty), false);
    row("no rows, sample", false, false, -1, true, int(State::empty), false);
    row("never a document", true, true, 2, false, int(State::failed), false);
    row("first fetch", true, true, -1, false, int(State::loading), false);
    row("fetching", true, true, 0, false, int(State::loading), false);
    row("good", true, true, 1, false, int(State::rows), false);
    row("stale", true, true, 3, false, int(State::rows), true);
    row("no sources", true, false, -1, false, int(State::rows), false);
    row("sample of a failed source", true, true, 2, true, int(State::rows), false);
}

void TestCustomWidgetFace::stateFollowsTheSources() {
    QFETCH(bool, rows);
    QFETCH(bool, sources);
    QFETCH(int, source);
    QFETCH(bool, sample);
    QFETCH(int, state);
    QFETCH(bool, stale);
    CustomWidgetDefinition definition = CustomWidgetTemplates::apiValue();
    if (!rows) {
        definition.rows.clear();
    }
    if (!sources) {
        definition.source.reset();
    }
    CustomBoard board;
    board.definitions.insert(definition.kind(), definition);
    if (source >= 0) {
        board.sources.insert(CustomWidgetTemplates::apiValue().source->cacheKey(),
                             sourceState((source & 1) != 0, (source & 2) != 0));
    }
    const FaceContext context =
        contextFor(board, definition, WidgetSize::wide,
                   sample ? SurfaceFlags::gallery() : SurfaceFlags::desktop());
    bool isStale = !stale;
    QCOMPARE(int(CustomWidgetFace::state(definition, context, &isStale)), state);
    QCOMPARE(isStale, stale);
    // Every state draws something, and only inside the tile.
    const QString spill = spillOf(FaceRegistry().face(context.kind()), context);
    QVERIFY2(spill.isEmpty(), qPrintable(spill));
}

void TestCustomWidgetFace::everyCustomKindHasTheFace() {
    const FaceRegistry faces;
    const QString kind = CustomWidgetTemplates::blank().kind();
    QVERIFY(dynamic_cast<const CustomWidgetFace*>(&faces.face(kind)) != nullptr);
    QVERIFY(dynamic_cast<const CustomWidgetFace*>(&faces.face(QStringLiteral("custom.gone"))) !=
            nullptr);
    QVERIFY(dynamic_cast<const CustomWidgetFace*>(&faces.face(QStringLiteral("clock"))) == nullptr);
    // A kind the board doesn't know yet draws its loading symbol, inside the tile.
    CustomBoard empty;
    const QString spill =
        spillOf(faces.face(kind), contextFor(empty, CustomWidgetTemplates::blank(),
                                             WidgetSize::small, SurfaceFlags::desktop()));
    QVERIFY2(spill.isEmpty(), qPrintable(spill));
}

void TestCustomWidgetFace::spotsOfferTheLinkAndTheMarkersHelp_data() {
    QTest::addColumn<QString>("id");
    // -1 no state, else json and error as bits.
    QTest::addColumn<int>("source");
    QTest::addColumn<bool>("onMarker");
    QTest::addColumn<QString>("link");
    QTest::addColumn<QString>("help");
    const QString opens = QStringLiteral("Click to open the linked page");
    const QString stale =
        QStringLiteral("Showing the last value because the source can’t be reached.");
    row("a plain link", "headlines", -1, false, "https://news.ycombinator.com", opens);
    row("filled from the document", "release", 1, false, "https://example.com/r/1", opens);
    row("not before the document", "release", -1, false, "", "");
    row("no link", "api", 1, false, "", "");
    row("the stale marker", "headlines", 3, true, "https://news.ycombinator.com", stale);
    row("beside the stale marker", "headlines", 3, false, "https://news.ycombinator.com", opens);
    row("no marker when fresh", "api", 1, true, "", "");
}

void TestCustomWidgetFace::spotsOfferTheLinkAndTheMarkersHelp() {
    QFETCH(QString, id);
    QFETCH(int, source);
    QFETCH(bool, onMarker);
    const CustomWidgetDefinition definition = CustomWidgetTemplates::byId(id)->make();
    CustomBoard board;
    board.definitions.insert(definition.kind(), definition);
    if (source >= 0) {
        CustomSourceState state = sourceState(false, (source & 2) != 0);
        if ((source & 1) != 0) {
            state.json = CustomJSON::parse("{\"html_url\": \"https://example.com/r/1\"}");
        }
        board.sources.insert(definition.source->cacheKey(), state);
    }
    const FaceContext context =
        contextFor(board, definition, definition.sizes.first(), SurfaceFlags::desktop());
    const QRectF inside =
        TileRenderer::contentRect(context.points, TileShape::of(context.metadata));
    const QPointF point =
        onMarker ? CustomWidgetFace::markerRect(inside).center() : inside.center();
    const WidgetFace::Spot spot =
        FaceRegistry().face(context.kind()).spotAt(inside, point, context);
    QTEST(spot.link.value_or(QUrl()).toString(), "link");
    QTEST(spot.help, "help");
}

QTEST_MAIN(TestCustomWidgetFace)
#include "tst_customwidgetface.moc"
