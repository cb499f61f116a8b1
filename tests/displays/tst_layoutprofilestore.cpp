#include "DisplayFixtures.h"
#include "Files.h"
#include "TestRows.h"
#include "displays/LayoutProfileStore.h"
#include "model/JsonCoding.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

namespace tw {

using namespace test;

namespace {

const QList<LayoutDisplay> desk = displaysOf(QStringLiteral("main@0,0,1920x1080*"));

QUuid profileId(int n) {
    return n == 0 ? LayoutProfile::defaultID() : widgetId(1000 + n);
}

// "n:name[*]" per profile ("*" flags it default), "|" and the active one's number.
QByteArray fileOf(const QString& text) {
    QJsonArray profiles;
    const QStringList parts = text.split(QLatin1Char('|'));
    for (const QString& one : parts.at(0).split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QString name = one.section(QLatin1Char(':'), 1);
        LayoutProfile profile{.id = profileId(one.section(QLatin1Char(':'), 0, 0).toInt()),
                              .name = QString(name).remove(QLatin1Char('*')),
                              .isDefault = name.endsWith(QLatin1Char('*')),
                              .createdAt = QDateTime::fromSecsSinceEpoch(1'700'000'000),
                              .updatedAt = QDateTime::fromSecsSinceEpoch(1'700'000'000),
                              .snapshot = {}};
        profiles.append(profile.toJson());
    }
    return QJsonDocument(QJsonObject{{QStringLiteral("version"), 1},
                                     {QStringLiteral("activeProfileID"),
                                      JsonCoding::encodeUuid(profileId(parts.value(1).toInt()))},
                                     {QStringLiteral("profiles"), profiles}})
        .toJson();
}

struct Rig {
    Rig() { clock.setNow(QDateTime(QDate(2026, 5, 1), QTime(10, 0), Qt::UTC)); }
    QString path() const { return dir.filePath(QStringLiteral("layout-profiles.json")); }
    std::unique_ptr<LayoutProfileStore> store(const GridLayout& initial = {}) {
        return std::make_unique<LayoutProfileStore>(clock, displays, initial, path());
    }

    QTemporaryDir dir;
    ManualClock clock;
    FixedDisplays displays{{screenInfo(desk[0])}};
};

// "name[*]" per profile in order, then "|" and the active profile's name.
QString summary(const LayoutProfileStore& store) {
    QStringList names;
    QString active;
    for (const LayoutProfile& profile : store.profiles()) {
        names << profile.name + (profile.isDefault ? QStringLiteral("*") : QString());
        if (profile.id == store.activeProfileID()) {
            active = profile.name;
        }
    }
    return names.join(QLatin1Char(';')) + QLatin1Char('|') + active;
}

} // namespace

class TestLayoutProfileStore : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void load_data() {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<bool>("rewritten");
        QTest::addColumn<bool>("setAside");
        row("no file", QByteArray(), "Default*|Default", true, false);
        row("not JSON", QByteArray("{\"profiles\": ["), "Default*|Default", true, true);
        row("no profile left", fileOf(QStringLiteral("|0")), "Default*|Default", true, true);
        row("healthy", fileOf(QStringLiteral("0:Home*;1:Work|1")), "Home*;Work|Work", false, false);
        row("default id wins over a flag", fileOf(QStringLiteral("1:Work*;0:Home|0")),
            "Work;Home*|Home", true, false);
        row("no flag, no default id: the first", fileOf(QStringLiteral("1:Work;2:Play|1")),
            "Work*;Play|Work", true, false);
        row("active profile gone", fileOf(QStringLiteral("0:Home*;1:Work|7")), "Home*;Work|Home",
            true, false);
        row("a repeated id", fileOf(QStringLiteral("0:Home*;1:Work;1:Play|1")),
            "Home*;Work;Play|Work", true, false);
        row("a repeated id flagged default", fileOf(QStringLiteral("1:Work;1:Play*|1")),
            "Work*;Play|Work", true, false);
    }
    void load() {
        QFETCH(QByteArray, file);
        QFETCH(QString, expected);
        QFETCH(bool, rewritten);
        QFETCH(bool, setAside);
        Rig rig;
        if (!file.isEmpty()) {
            QVERIFY(writeFile(rig.path(), file));
        }
        const auto store = rig.store();
        QCOMPARE(summary(*store), expected);
        QCOMPARE(readFile(rig.path()) != file, rewritten);
        QCOMPARE(!QDir(rig.dir.path()).entryList({QStringLiteral("*.corrupt")}).isEmpty(),
                 setAside);
        QSet<QUuid> ids;
        for (const LayoutProfile& profile : store->profiles()) {
            ids.insert(profile.id);
        }
        QCOMPARE(ids.size(), store->profiles().size());
        // What was written reads back as the same store.
        QCOMPARE(rig.store()->profiles(), store->profiles());
    }

    // Names stay unique ignoring case; a profile never competes with itself.
    void names_data() {
        QTest::addColumn<QString>("operation");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("expected");
        row("create", "create", "work", "Home*;Work;work 2|work 2");
        row("create blank", "create", " \n", "Home*;Work;New Profile|New Profile");
        row("create trimmed", "create", "  Play ", "Home*;Work;Play|Play");
        row("rename in other case", "rename", "WORK", "Home*;WORK|Home");
        row("rename onto another", "rename", "home", "Home*;home 2|Home");
        row("rename to blanks", "rename", "  ", "Home*;Work|Home");
        row("rename the default", "renameDefault", "Desk", "Desk*;Work|Desk");
        row("duplicate", "duplicate", "", "Home*;Work;Work Copy|Work Copy");
        row("duplicate named", "duplicate", "Home", "Home*;Work;Home 2|Home 2");
    }
    void names() {
        QFETCH(QString, operation);
        QFETCH(QString, name);
        QFETCH(QString, expected);
        Rig rig;
        QVERIFY(writeFile(rig.path(), fileOf(QStringLiteral("0:Home*;1:Work|0"))));
        const auto store = rig.store();
        if (operation == QLatin1String("create")) {
            store->createProfile(name, {}, desk, LayoutProfileStore::Activate::yes);
        } else if (operation == QLatin1String("rename")) {
            QCOMPARE(store->renameProfile(profileId(1), name), !name.trimmed().isEmpty());
        } else if (operation == QLatin1String("renameDefault")) {
            QVERIFY(store->renameProfile(profileId(0), name));
            QCOMPARE(store->activeProfile()->displayName(), name);
        } else {
            QVERIFY(store->duplicateProfile(profileId(1), name, LayoutProfileStore::Activate::yes));
        }
        QCOMPARE(summary(*store), expected);
        QCOMPARE(summary(*rig.store()), expected);
    }

    void deleteAndRestore() {
        Rig rig;
        QVERIFY(writeFile(rig.path(), fileOf(QStringLiteral("0:Home*;1:Work;2:Play|1"))));
        const auto store = rig.store();
        QVERIFY(!store->deleteProfile(profileId(0)));
        QVERIFY(!store->deleteProfile(profileId(9)));
        const LayoutProfile work = *store->profile(profileId(1));
        QVERIFY(store->deleteProfile(profileId(1)));
        QCOMPARE(summary(*store), QStringLiteral("Home*;Play|Home"));
        QVERIFY(store->restoreProfile(work, 1));
        QVERIFY(!store->restoreProfile(work, 1));
        QCOMPARE(summary(*rig.store()), QStringLiteral("Home*;Work;Play|Home"));
    }

    // A capture follows the desktop; on the same displays the profile gives back exactly what
    // was captured, on others it is placed by its anchors.
    void captureAndActivate() {
        Rig rig;
        const GridLayout first = layoutOf(QStringLiteral("1 small 1800,1060"));
        const GridLayout second = layoutOf(QStringLiteral("2 wide 10.25,500"));
        const auto store = rig.store(first);
        const LayoutProfile work = store->createProfile(QStringLiteral("Work"), first, desk,
                                                        LayoutProfileStore::Activate::yes);
        store->captureActive(second, desk);
        QCOMPARE(store->layoutFor(work.id, desk), second);

        QList<LayoutDisplay> unusable = desk;
        unusable[0].visibleFrame.height = 0.5;
        store->captureActive(first, unusable);
        QCOMPARE(store->layoutFor(work.id, desk), second);

        QCOMPARE(store->activateProfile(LayoutProfile::defaultID(), first, desk), first);
        QCOMPARE(store->layoutFor(work.id, desk), first);
        QCOMPARE(store->activateProfile(widgetId(77), second, desk), std::nullopt);
        QCOMPARE(store->activeProfileID(), LayoutProfile::defaultID());

        const QList<LayoutDisplay> wide = displaysOf(QStringLiteral("main@0,0,3840x2160*"));
        const GridLayout moved = *store->layoutFor(work.id, wide);
        QCOMPARE(positionsIn(moved), QStringLiteral("3720,2140"));
        QCOMPARE(rig.store()->profiles(), store->profiles());
    }
};

} // namespace tw

QTEST_GUILESS_MAIN(tw::TestLayoutProfileStore)
#include "tst_layoutprofilestore.moc"
