#include "Files.h"
#include "ManualClock.h"
#include "ManualScheduler.h"
#include "TestRows.h"
#include "custom/CustomWidgetStore.h"
#include "grid/GridStore.h"
#include "model/GridLayout.h"
#include "model/WidgetRegistry.h"
#include "platform/null/FixedDisplays.h"
#include "platform/null/MemoryDefaults.h"
#include "platform/null/MemorySecretStore.h"

#include <QDirIterator>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;
using namespace tw::test;
using namespace Qt::StringLiterals;

namespace {

const QString kSecret = QStringLiteral("Bearer s3cret-7f2a");

// JSON written with ' for ", so that documents read as they stand.
QByteArray j(const char* text) {
    return QByteArray(text).replace('\'', '"');
}

CustomWidgetDefinition widget(const QString& name) {
    const QByteArray json = j("{'name':'NAME','sizes':['small','wide'],"
                              "'source':{'url':'https://example.org/a.json',"
                              "'headers':{'Authorization':'KEY'}},"
                              "'sources':[{'name':'b','url':'https://example.org/b.json'}],"
                              "'rows':[{'elements':[{'type':'value','path':'price'}]}]}")
                                .replace("NAME", name.toUtf8())
                                .replace("KEY", kSecret.toUtf8());
    return CustomWidgetDefinition::decode(json)->sanitized();
}

// Everything but the ids of rows and elements, which every reading makes afresh.
QJsonObject content(const CustomWidgetDefinition& definition) {
    return definition.toJson(CustomWidgetDefinition::Secrets::included);
}

QList<QJsonObject> contents(const QList<CustomWidgetDefinition>& definitions) {
    QList<QJsonObject> all;
    for (const CustomWidgetDefinition& definition : definitions) {
        all.append(content(definition));
    }
    return all;
}

struct Fixture {
    CustomWidgetStore::Services services() { return {clock, secrets, dir.path()}; }
    std::unique_ptr<CustomWidgetStore> store() {
        return std::make_unique<CustomWidgetStore>(services());
    }
    QString path(const QString& name = CustomWidgetStore::fileName()) const {
        return dir.filePath(name);
    }
    // Every byte under the data directory, one file after another.
    QByteArray everything() const {
        QByteArray all;
        QDirIterator files(dir.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            all += readFile(files.next());
        }
        return all;
    }

    QTemporaryDir dir;
    ManualClock clock;
    MemorySecretStore secrets;
};

} // namespace

class TestCustomWidgetStore : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { qputenv("TKW_NO_KEYCHAIN", "1"); }

    // What stands at the file's place: the widgets read, whether the store counts as healthy,
    // whether the bytes were set aside, and whether the grid keeps a custom tile the store lacks.
    void loadsTheFile_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("directory");
        QTest::addColumn<int>("widgets");
        QTest::addColumn<bool>("healthy");
        QTest::addColumn<bool>("setAside");
        row("no file", QByteArray(), false, 0, true, false);
        row("two widgets", QByteArray(), false, 2, true, false);
        row("not JSON", QByteArray("{\"widgets\": ["), false, 0, false, true);
        row("a widget of the wrong type", j("{'schema':1,'widgets':[{'name':5}]}"), false, 0, false,
            true);
        row("a directory", QByteArray(), true, 0, false, false);
    }
    void loadsTheFile() {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, directory);
        QFETCH(int, widgets);
        QFETCH(bool, healthy);
        QFETCH(bool, setAside);
        Fixture f;
        const CustomWidgetDefinition kept = widget(QStringLiteral("Kept"));
        if (widgets > 0) {
            auto writer = f.store();
            writer->update(kept);
            writer->update(widget(QStringLiteral("Other")));
        } else if (!bytes.isEmpty()) {
            QVERIFY(writeFile(f.path(), bytes));
        } else if (directory) {
            QVERIFY(QDir(f.dir.path()).mkdir(CustomWidgetStore::fileName()));
        }
        auto store = f.store();
        QCOMPARE(store->widgets().size(), widgets);
        QCOMPARE(store->isHealthy(), healthy);
        const QStringList corrupt =
            QDir(f.dir.path()).entryList({QStringLiteral("*.corrupt")}, QDir::Files);
        QCOMPARE(corrupt.size(), setAside ? 1 : 0);
        if (setAside) {
            QCOMPARE(readFile(f.path(corrupt.first())), bytes);
        }
        if (widgets > 0) {
            QCOMPARE(content(store->widgets().first()), content(kept));
        }
        // The grid drops a custom tile without a definition only when the store could read.
        ManualScheduler scheduler(&f.clock);
        WidgetRegistry registry(store.get());
        MemoryDefaults defaults;
        FixedDisplays displays(
            QList<ScreenInfo>{{QStringLiteral("main"), QStringLiteral("Main"),
                               QRectF(0, 0, 1440, 900), QRectF(0, 0, 1440, 875), true}});
        GridLayout layout;
        WidgetInstance missing;
        missing.kind = widget(QStringLiteral("Gone")).kind();
        missing.size = WidgetSize::small;
        layout.instances = {missing};
        if (widgets > 0) {
            WidgetInstance present = missing;
            present.id = QUuid::createUuid();
            present.kind = kept.kind();
            layout.instances.append(present);
        }
        const QString gridPath = f.path(QStringLiteral("grid.json"));
        QVERIFY(writeFile(gridPath, layout.toJsonText()));
        const GridStore grid({f.clock, scheduler, registry, &defaults, &displays, store.get()},
                             gridPath);
        QStringList kinds;
        for (const WidgetInstance& instance : grid.layout().instances) {
            kinds.append(instance.kind);
        }
        QCOMPARE(kinds.contains(missing.kind), !healthy);
        QCOMPARE(kinds.contains(kept.kind()), widgets > 0);
        // A store that found a directory in its place never writes there.
        if (directory) {
            QVERIFY(!store->save());
            QVERIFY(QFileInfo(f.path()).isDir());
        }
    }

    void keepsHeadersInTheKeychainOnly() {
        Fixture f;
        const CustomWidgetDefinition original = widget(QStringLiteral("Prices"));
        f.store()->update(original);
        QVERIFY(QFile::exists(f.path()));
        QVERIFY(!f.everything().contains(kSecret.toUtf8()));
        QCOMPARE(f.secrets.values().size(), 1);
        // The next start reads them back.
        QCOMPARE(contents(f.store()->widgets()), QList<QJsonObject>{content(original)});
        // A widget that loses its headers or goes takes its entry along.
        auto store = f.store();
        CustomWidgetDefinition plain = original;
        plain.source->headers.reset();
        store->update(plain);
        QVERIFY(f.secrets.values().isEmpty());
        store->update(original);
        QSignalSpy removed(store.get(), &CustomWidgetStore::widgetRemoved);
        store->remove(original.id);
        QVERIFY(f.secrets.values().isEmpty());
        QCOMPARE(removed.value(0).value(0).toString(), original.kind());
    }

    void writesOnlyWhatChanged() {
        Fixture f;
        auto store = f.store();
        const CustomWidgetDefinition first = widget(QStringLiteral("Prices"));
        store->update(first);
        QVERIFY(QFile::remove(f.path()));
        store->update(first);
        QVERIFY(!QFile::exists(f.path()));
        CustomWidgetDefinition renamed = first;
        renamed.name = QStringLiteral("Rates");
        store->update(renamed);
        QCOMPARE(store->widgets().size(), 1);
        QCOMPARE(f.store()->widgets().value(0).name, renamed.name);
    }

    void exportsAndImports() {
        Fixture f;
        auto store = f.store();
        const CustomWidgetDefinition original = widget(QStringLiteral("Prices"));
        const QString file = f.path(original.exportFilename());
        QVERIFY(CustomWidgetStore::exportWidget(original, file).ok());
        QVERIFY(!readFile(file).contains("headers"));
        QList<QUuid> ids;
        for (int i = 0; i < 2; ++i) {
            const auto imported = store->importWidget(file);
            QVERIFY(std::holds_alternative<CustomWidgetDefinition>(imported));
            CustomWidgetDefinition back = std::get<CustomWidgetDefinition>(imported);
            ids.append(back.id);
            back.id = original.id;
            CustomWidgetDefinition withoutSecrets = original;
            withoutSecrets.source->headers.reset();
            QCOMPARE(content(back), content(withoutSecrets));
        }
        QCOMPARE(store->widgets().size(), 2);
        QVERIFY(ids.first() != ids.last());
        QCOMPARE(store->widgets().first().name, store->widgets().last().name);
    }

    void refusesFilesItCannotUse_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("message");
        row("missing", QByteArray(), u"The file couldn’t be read."_s);
        row("not a widget", QByteArray("[1,2]"), u"That isn’t valid JSON."_s);
        row("plain http to the internet",
            j("{'name':'N','sizes':['small'],'source':{'url':'http://example.org'},"
              "'rows':[{'elements':[{'type':'text','text':'x'}]}]}"),
            QString());
    }
    void refusesFilesItCannotUse() {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, message);
        Fixture f;
        auto store = f.store();
        const QString file = f.path(QStringLiteral("in.twkwidget"));
        if (!bytes.isEmpty()) {
            QVERIFY(writeFile(file, bytes));
        }
        const auto imported = store->importWidget(file);
        QVERIFY(std::holds_alternative<CustomWidgetStore::ImportError>(imported));
        const auto& error = std::get<CustomWidgetStore::ImportError>(imported);
        if (!message.isEmpty()) {
            QCOMPARE(error.message(), message);
        } else {
            QCOMPARE(error.issue.kind, CustomWidgetIssue::Kind::insecureURL);
        }
        QVERIFY(store->widgets().isEmpty());
        QVERIFY(!QFile::exists(f.path()));
    }

    void joinsTheCatalogue() {
        Fixture f;
        auto store = f.store();
        const CustomWidgetDefinition original = widget(QStringLiteral("Prices"));
        store->update(original);
        const WidgetRegistry registry(store.get());
        const std::optional<WidgetDefinition> found = registry.definition(original.kind());
        QVERIFY(found);
        QCOMPARE(found->metadata.displayName, QStringLiteral("Prices"));
        QCOMPARE(found->metadata.allowedSizes,
                 (QList<WidgetSize>{WidgetSize::small, WidgetSize::wide}));
        QCOMPARE(found->metadata.defaultSize, WidgetSize::small);
        // The gallery offers it among the tools and finds it by its name.
        QCOMPARE(registry.groupedWithCustom().size(), WidgetRegistry::grouped().size());
        for (const WidgetRegistry::CategoryGroup& group : registry.groupedWithCustom()) {
            QCOMPARE(group.widgets.last() == *found, group.category == WidgetCategory::tools);
        }
        QVERIFY(registry.searchWithCustom(QStringLiteral("pri")).contains(*found));
        QVERIFY(!registry.searchWithCustom(QStringLiteral("rates")).contains(*found));
        QVERIFY(registry.searchWithCustom(QString()).contains(*found));
        QCOMPARE(registry.definition(QStringLiteral("custom.not-a-uuid")), std::nullopt);
        // A renamed widget is not served from the cache.
        CustomWidgetDefinition renamed = original;
        renamed.name = QStringLiteral("Rates");
        store->update(renamed);
        QCOMPARE(registry.definition(original.kind())->metadata.displayName, renamed.name);
        // A duplicate is a kind of its own with a free name.
        const std::optional<CustomWidgetDefinition> copy = store->duplicate(original.id);
        QVERIFY(copy && copy->id != original.id);
        QCOMPARE(registry.definition(copy->kind())->metadata.displayName, u"Rates copy"_s);
        QCOMPARE(store->duplicate(QUuid::createUuid()), std::nullopt);
    }

    void nextCopyName_data() {
        QTest::addColumn<QStringList>("taken");
        QTest::addColumn<QString>("next");
        row("free", QStringList{u"Sun"_s}, u"Sun copy"_s);
        row("taken", QStringList{u"Sun"_s, u"Sun copy"_s}, u"Sun copy 2"_s);
        row("a gap is filled", QStringList{u"Sun copy"_s, u"Sun copy 3"_s}, u"Sun copy 2"_s);
        row("further", QStringList{u"Sun copy"_s, u"Sun copy 2"_s}, u"Sun copy 3"_s);
    }
    void nextCopyName() {
        QFETCH(QStringList, taken);
        QTEST(CustomWidgetStore::nextCopyName(QStringLiteral("Sun"),
                                              QSet<QString>(taken.begin(), taken.end())),
              "next");
    }
};

QTEST_GUILESS_MAIN(TestCustomWidgetStore)
#include "tst_customwidgetstore.moc"
