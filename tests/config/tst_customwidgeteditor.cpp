#include "LoopbackHttpServer.h"
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "config/ConfigContext.h"
#include "config/ConfigRoot.h"
#include "config/CustomPreviewStrip.h"
#include "config/CustomWidgetEditor.h"
#include "config/CustomWidgetsPage.h"
#include "custom/CustomIssueLines.h"
#include "custom/CustomWidgetRuntime.h"
#include "custom/CustomWidgetStore.h"
#include "custom/CustomWidgetTemplates.h"
#include "faces/FaceContext.h"
#include "faces/FaceRegistry.h"
#include "grid/GridStore.h"
#include "look/ThemeStore.h"
#include "model/WidgetRegistry.h"
#include "net/QtHttpClient.h"
#include "platform/null/FixedDisplays.h"
#include "platform/null/MemoryDefaults.h"
#include "platform/null/MemorySecretStore.h"
#include "platform/null/NullSymbolProvider.h"
#include "settings/AppSettings.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace std::chrono_literals;
using Kind = CustomWidgetIssue::Kind;

Q_DECLARE_METATYPE(tw::test::LoopbackHttpServer::Answer)

namespace {

// The editor over a real store, grid and runtime in a temporary directory, on virtual time.
struct Rig {
    QTemporaryDir dir;
    ManualClock clock;
    ManualScheduler scheduler{&clock};
    MemoryDefaults defaults;
    MemorySecretStore secrets;
    AppSettings settings{defaults};
    ThemeStore theme{defaults, clock, QString()};
    CustomWidgetStore store{{.clock = clock, .secrets = secrets, .directory = dir.path()}};
    WidgetRegistry registry{&store};
    FixedDisplays displays{
        QList<ScreenInfo>{{QStringLiteral("main"), QStringLiteral("Main"), QRectF(0, 0, 1440, 900),
                           QRectF(0, 0, 1440, 875), true}}};
    GridStore grid{{clock, scheduler, registry, nullptr, &displays, &store},
                   dir.filePath(QStringLiteral("grid.json"))};
    QtHttpClient http{scheduler};
    CustomWidgetRuntime runtime{http, clock, nullptr};
    FaceRegistry faces;
    NullSymbolProvider symbols;
    ConfigContext context{.settings = settings, .theme = theme, .defaults = defaults};

    Rig() {
        context.scheduler = &scheduler;
        context.grid = &grid;
        context.registry = &registry;
        context.customWidgets = &store;
        context.customRuntime = &runtime;
        context.faces = &faces;
        context.faceBase = [this] {
            FaceContext base;
            base.symbols = &symbols;
            base.now = clock.now();
            return base;
        };
    }
    CustomWidgetDefinition stored(const QString& templateId) {
        CustomWidgetDefinition definition = CustomWidgetTemplates::byId(templateId)->make();
        store.update(definition);
        return definition;
    }
};

} // namespace

class tst_CustomWidgetEditor : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void issueLine_data() {
        QTest::addColumn<QString>("json");
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("line");
        // Lines counted from 0.
        const QString row = QStringLiteral(
            R"(  "sizes": ["small"],
  "rows": [
    {"elements": [{"type": "text", "text": "Hi"}]},
    {"elements": [
      {"type": "text", "text": "x"},
      {"type": "gauge",
       "path": "a", "min": 5,
       "max": 1}
    ]}
  ])");
        QTest::newRow("empty name") << QStringLiteral("{\n  \"name\": \"  \",\n") + row + u'}'
                                    << int(Kind::missingName) << 1;
        QTest::newRow("range at its max")
            << QStringLiteral(
                   "{\n  \"name\": \"n\",\n  \"source\": {\"url\": \"https://x.example\"},\n") +
                   row + u'}'
            << int(Kind::badRange) << 10;
        QTest::newRow("data without a source, at its path")
            << QStringLiteral("{\n  \"name\": \"n\",\n") + row + u'}'
            << int(Kind::dataWithoutSource) << 8;
        QTest::newRow("plain http to the world, at the url")
            << QStringLiteral(
                   "{\"name\": \"n\", \"sizes\": [\"small\"],\n \"source\": {\n  "
                   "\"refreshSeconds\": 60,\n  \"url\": \"http://example.com/a\"\n },\n "
                   "\"rows\": [{\"elements\": [{\"type\": \"text\", \"text\": \"t\"}]}]}")
            << int(Kind::insecureURL) << 3;
        QTest::newRow("second of two names")
            << QStringLiteral(
                   "{\"name\": \"n\", \"sizes\": [\"small\"], \"sources\": [\n {\"name\": "
                   "\"a\", \"url\": \"https://x.example\"},\n {\"name\": \"a\",\n  "
                   "\"url\": \"https://y.example\"}],\n \"rows\": [{\"elements\": "
                   "[{\"type\": \"text\", \"text\": \"t\"}]}]}")
            << int(Kind::duplicateSource) << 2;
        QTest::newRow("unknown token in the second element's text")
            << QStringLiteral("{\"name\": \"n\", \"sizes\": [\"small\"], \"rows\": [{\"elements\": "
                              "[\n{\"type\": \"divider\"},\n{\"type\": \"text\",\n \"text\": "
                              "\"{nope}\"}]}]}")
            << int(Kind::unknownToken) << 3;
        QTest::newRow("icon with an empty symbol, at its symbol")
            << QStringLiteral(
                   "{\"name\": \"n\", \"sizes\": [\"small\"], \"rows\": [\n{\"elements\": "
                   "[\n\n{\"type\": \"icon\", \"symbol\": \"\"}]}]}")
            << int(Kind::emptyElement) << 3;
        QTest::newRow("unknown source in a path")
            << QStringLiteral("{\"name\": \"n\", \"sizes\": [\"small\"], \"source\": {\"url\": "
                              "\"https://x.example\"}, \"rows\": [{\"elements\": [{\"type\": "
                              "\"value\",\n\"path\": \"tokyo:temp\"}]}]}")
            << int(Kind::unknownSource) << 1;
        QTest::newRow("no rows key: the top")
            << QStringLiteral("\n\n{\"name\": \"n\", \"sizes\": [\"small\"]}")
            << int(Kind::noElements) << 0;
        QTest::newRow("escaped quote in a key does not shift the paths")
            << QStringLiteral("{\"a\\\"b\": \"x\",\n \"name\": \"\"}") << int(Kind::missingName)
            << 1;
        QTest::newRow("a comma missing: the parser's line")
            << QStringLiteral("{\n  \"name\": \"n\"\n  \"sizes\": []\n}") << int(Kind::notJSON)
            << 2;
        QTest::newRow("a wrong type parses: the top")
            << QStringLiteral("{\n  \"name\": 12\n}") << int(Kind::notJSON) << 0;
    }
    void issueLine() {
        QFETCH(QString, json);
        QFETCH(int, kind);
        QFETCH(int, line);
        Rig rig;
        CustomWidgetEditor editor(rig.context, CustomWidgetTemplates::blank(), false,
                                  ColorScheme::Light, json);
        const auto& marks = editor.marks();
        const auto mark = std::find_if(marks.begin(), marks.end(),
                                       [&](const auto& m) { return int(m.issue.kind) == kind; });
        QVERIFY2(mark != marks.end(), qPrintable(QStringLiteral("issue %1 not found").arg(kind)));
        QCOMPARE(mark->line, line);
    }

    void typingSettlesBeforeThePreviewRedraws() {
        Rig rig;
        CustomWidgetEditor editor(rig.context, rig.stored(QStringLiteral("system")), true,
                                  ColorScheme::Dark);
        const int start = editor.previewRevision();
        const QString renamed =
            editor.text().replace(QStringLiteral("\"System\""), QStringLiteral("\"Machine\""));
        editor.setText(renamed);
        rig.scheduler.advance(200ms);
        editor.setText(renamed + u' ');
        rig.scheduler.advance(299ms);
        QCOMPARE(editor.previewRevision(), start);
        rig.scheduler.advance(1ms);
        QCOMPARE(editor.previewRevision(), start + 1);
        QCOMPARE(editor.preview()->board().definitions.begin()->name, QStringLiteral("Machine"));
        QVERIFY(editor.hasUnsavedChanges());
    }

    void saveIsRefusedWhileSomethingBlocks() {
        Rig rig;
        const CustomWidgetDefinition original = rig.stored(QStringLiteral("clock"));
        CustomWidgetEditor editor(rig.context, original, true, ColorScheme::Light);
        const QString unnamed =
            editor.text().replace(QStringLiteral("\"name\": \"%1\"").arg(original.name),
                                  QStringLiteral("\"name\": \"\""));
        editor.setText(unnamed);
        QVERIFY(!editor.save());
        QVERIFY(editor.message().contains(CustomWidgetIssue::of(Kind::missingName).message()));
        QCOMPARE(rig.store.widgets().first().name, original.name);

        // A text with another id still saves as the widget being edited.
        editor.setText(
            QString(unnamed)
                .replace(QStringLiteral("\"name\": \"\""), QStringLiteral("\"name\": \"Morning\""))
                .replace(original.id.toString(QUuid::WithoutBraces).toUpper(),
                         QUuid::createUuid().toString(QUuid::WithoutBraces)));
        QVERIFY(editor.save());
        QCOMPARE(rig.store.widgets().size(), 1);
        QCOMPARE(rig.store.widgets().first().id, original.id);
        QCOMPARE(rig.store.widgets().first().name, QStringLiteral("Morning"));
        QVERIFY(!editor.hasUnsavedChanges());
    }

    void deleteAsksAndUndoPutsWidgetAndTilesBack() {
        Rig rig;
        const CustomWidgetDefinition widget = rig.stored(QStringLiteral("crypto"));
        const auto tile = rig.grid.addFree(widget.kind(), WidgetSize::wide);
        QVERIFY(tile);
        CustomWidgetsPage page(rig.context, ColorScheme::Light);
        QVERIFY(page.edit(widget.id));
        page.askDelete(widget.id);
        QCOMPARE(
            page.banner(),
            QStringLiteral("Delete “%1”?\nThis can’t be undone. Export it first if you want "
                           "to keep a copy. It is on your desktop 1 times. Those copies go too.")
                .arg(widget.name));
        QCOMPARE(rig.store.widgets().size(), 1);

        page.confirmDelete();
        QVERIFY(rig.store.widgets().isEmpty());
        QCOMPARE(rig.grid.instanceCount(widget.kind()), 0);
        QCOMPARE(page.editor(), nullptr);
        QVERIFY(page.banner().contains(QStringLiteral("is deleted")));

        page.undoDelete();
        QCOMPARE(rig.store.widgets().size(), 1);
        QCOMPARE(rig.store.widgets().first().toJson(CustomWidgetDefinition::Secrets::included),
                 widget.sanitized().toJson(CustomWidgetDefinition::Secrets::included));
        QCOMPARE(rig.grid.instance(tile->id).has_value(), true);
        QVERIFY(page.banner().isEmpty());
    }

    void unsavedTextOutlivesThePage() {
        Rig rig;
        QHash<QUuid, QString> drafts;
        rig.context.customDrafts = &drafts;
        const CustomWidgetDefinition widget = rig.stored(QStringLiteral("chart"));
        QString changed;
        {
            CustomWidgetsPage page(rig.context, ColorScheme::Dark);
            // A template looked at and left as it came is no draft.
            QVERIFY(page.editTemplate(QStringLiteral("iss")));
            page.showList();
            QVERIFY(drafts.isEmpty());
            QVERIFY(page.edit(widget.id));
            changed = page.editor()->text().replace(widget.name, QStringLiteral("Pulse"));
            page.editor()->setText(changed);
        }
        QCOMPARE(drafts.value(widget.id), changed);
        QCOMPARE(rig.store.widgets().first().name, widget.name);
        CustomWidgetsPage page(rig.context, ColorScheme::Dark);
        QVERIFY(page.edit(widget.id));
        QCOMPARE(page.editor()->text(), changed);
        QVERIFY(page.editor()->hasUnsavedChanges());
        QVERIFY(drafts.isEmpty());
    }

    void keysInTheTextStayInTheText() {
        Rig rig;
        int desktopUndos = 0;
        rig.context.undo = [&desktopUndos] { ++desktopUndos; };
        rig.settings.setHasSeenGuide(true);
        ConfigRoot root(rig.context, ColorScheme::Light);
        root.show();
        QVERIFY(QTest::qWaitForWindowExposed(&root));
        CustomWidgetsPage* page = root.customWidgets();
        QVERIFY(page->editTemplate(QStringLiteral("blank")));
        auto* text = page->editor()->findChild<QPlainTextEdit*>();
        text->setFocus();
        const QString before = page->editor()->text();
        QTest::keyClick(text, Qt::Key_X);
        QTest::keyClick(text, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(page->editor()->text(), before);
        QCOMPARE(desktopUndos, 0);
        QTest::keyClick(text, Qt::Key_Escape);
        QVERIFY(root.isVisible());
    }

    void testShowsTheAnswerAndPreviewsIt_data() {
        QTest::addColumn<LoopbackHttpServer::Answer>("answer");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<bool>("hasDocument");
        QTest::newRow("good") << LoopbackHttpServer::ok(R"({"value": 42})") << "HTTP 200" << true;
        QTest::newRow("server error")
            << LoopbackHttpServer::status(500, "down for a nap") << "HTTP 500" << false;
    }
    void testShowsTheAnswerAndPreviewsIt() {
        QFETCH(LoopbackHttpServer::Answer, answer);
        QFETCH(QString, shown);
        QFETCH(bool, hasDocument);
        LoopbackHttpServer server;
        server.route("/v", answer);
        Rig rig;
        CustomWidgetDefinition widget = CustomWidgetTemplates::apiValue();
        widget.source->url = server.url(QStringLiteral("/v")).toString();
        CustomWidgetEditor editor(rig.context, widget, false, ColorScheme::Light);
        QVERIFY(editor.preview()->isSample());
        editor.testSources();
        QTRY_VERIFY(editor.testResult().contains(shown));
        QVERIFY(editor.testResult().contains(QString::fromUtf8(answer.body)));
        QVERIFY(!editor.preview()->isSample());
        QCOMPARE(
            editor.preview()->board().sources.value(widget.source->cacheKey()).json.has_value(),
            hasDocument);
    }

    void pastedAnswers_data() {
        QTest::addColumn<QString>("clipboard");
        QTest::addColumn<QString>("said");
        QTest::addColumn<QString>("name");
        QTest::newRow("empty") << "  "
                               << "The clipboard is empty."
                               << "Blank";
        QTest::newRow("prose") << "Sorry, I can't."
                               << "That doesn't look like a widget."
                               << "Blank";
        QTest::newRow("fenced") << "Here:\n```json\n{\"name\": \"Tide\"}\n```\nEnjoy"
                                << "The answer is in."
                                << "Tide";
    }
    void pastedAnswers() {
        QFETCH(QString, clipboard);
        QFETCH(QString, said);
        QFETCH(QString, name);
        Rig rig;
        CustomWidgetEditor editor(rig.context, CustomWidgetTemplates::blank(), false,
                                  ColorScheme::Light);
        QGuiApplication::clipboard()->setText(clipboard);
        editor.pasteAnswer();
        QVERIFY2(editor.message().startsWith(said), qPrintable(editor.message()));
        QCOMPARE(CustomWidgetDefinition::decode(editor.text())->name, name);
    }

    void exportLeavesHeadersOutAndSaysSo() {
        Rig rig;
        CustomWidgetDefinition widget = CustomWidgetTemplates::apiValue();
        widget.source->headers =
            QMap<QString, QString>{{QStringLiteral("X-Key"), QStringLiteral("s3cret")}};
        CustomWidgetEditor editor(rig.context, widget, false, ColorScheme::Light);
        const QString path = rig.dir.filePath(QStringLiteral("out.twkwidget"));
        QVERIFY(editor.exportTo(path));
        QCOMPARE(editor.message(), CustomWidgetStore::headersDroppedMessage());
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(!file.readAll().contains("s3cret"));
    }
};

QTEST_MAIN(tst_CustomWidgetEditor)
#include "tst_customwidgeteditor.moc"
