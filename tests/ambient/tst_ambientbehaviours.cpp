#include "../grid/GridFixture.h"
#include "TestRows.h"
#include "ambient/AmbientSoundBehaviour.h"
#include "ambient/AmbientSoundSettings.h"
#include "ambient/CompanionBehaviour.h"
#include "ambient/SilentLoopPlayer.h"
#include "platform/null/FixedPointerPosition.h"

#include <QSignalSpy>
#include <QTest>

using namespace tw;
using namespace std::chrono_literals;
using tw::test::GridFixture;
using tw::test::row;

namespace {

WidgetInstance tile(const QString& kind, WidgetSettings settings = {}) {
    WidgetInstance instance;
    instance.kind = kind;
    instance.size = WidgetSize::large;
    instance.posX = 100;
    instance.posY = 500;
    instance.settings = settings;
    return instance;
}

} // namespace

class TestAmbientBehaviours : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // The tile's buttons write its settings (so they survive a restart) and drive the sound at
    // once; removing the tile silences it.
    void soundTile_data() {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("written");
        QTest::addColumn<bool>("playing");
        row("play", "toggle", "", "", true);
        row("a sound chosen plays", "sound:cafe", "sound", "cafe", true);
        row("an unknown sound is rain", "sound:thunder", "sound", "rain", true);
        row("louder by a tenth", "louder", "volume", "40", false);
        row("quieter by a tenth", "quieter", "volume", "20", false);
        row("the next sleep timer", "sleep", "sleep", "30", false);
    }
    void soundTile() {
        QFETCH(QString, command);
        QFETCH(QString, key);
        QFETCH(QString, written);
        QFETCH(bool, playing);
        GridFixture grid;
        auto store = grid.appStore();
        const auto added = store->append({tile(QStringLiteral("ambientsound"),
                                               {{QStringLiteral("sound"), QStringLiteral("waves")},
                                                {QStringLiteral("volume"), QStringLiteral("30")},
                                                {QStringLiteral("sleep"), QStringLiteral("15")}})},
                                         GridStore::Replacing::yes);
        QCOMPARE(added.placed.size(), 1);
        const WidgetInstance instance = added.placed.front();
        SilentLoopPlayer player;
        AmbientSoundService service(player, grid.clock, grid.scheduler);
        AmbientSoundBehaviour behaviour(service, *store);
        behaviour.setTiles({{instance, true}});
        QCOMPARE(service.sound(), AmbientSound::waves);
        QCOMPARE(service.volume(), 0.3);
        QCOMPARE(service.sleepLength(), 15min);

        QVERIFY(behaviour.press(instance, command));
        QCOMPARE(service.isPlaying(), playing);
        if (!key.isEmpty()) {
            QCOMPARE(store->instance(instance.id)->setting(key), written);
            const auto after = AmbientSoundSettings::from(*store->instance(instance.id)->settings);
            QCOMPARE(service.volume(), after.volume);
            QCOMPARE(service.sleepLength(), after.sleep);
            QCOMPARE(service.sound(), after.sound);
        }
        QVERIFY(!behaviour.press(instance, QStringLiteral("nonsense")));
        behaviour.setTiles({});
        QVERIFY(!service.isPlaying());
    }

    // The eyes follow a pointer that moves near while the tile is in view; a covered companion
    // asks nothing of the pointer; a click is a pat.
    void companion() {
        GridFixture grid;
        FixedPointerPosition pointer;
        CompanionBehaviour companions(grid.clock, grid.scheduler, pointer);
        QSignalSpy changed(&companions, &TileBehaviour::changed);
        const WidgetInstance cat = tile(QStringLiteral("companion"));
        // The middle of a large tile at (100, 500) is (202, 398), y up.
        pointer.moveTo(QPointF(402, 448));
        companions.setTiles({{cat, false}});
        grid.scheduler.advance(5s);
        QCOMPARE(companions.look(cat.id)->mood, CompanionMind::Mood::idle);
        QVERIFY(changed.isEmpty());

        companions.setTiles({{cat, true}});
        grid.scheduler.advance(CompanionBehaviour::lookEvery);
        const auto look = companions.look(cat.id);
        QCOMPARE(look->mood, CompanionMind::Mood::watching);
        QVERIFY(look->gaze.x() > 0.5 && look->gaze.y() < -0.1);
        QCOMPARE(changed.last().at(0).toUuid(), cat.id);

        QVERIFY(companions.press(cat, QStringLiteral("poke")));
        QCOMPARE(companions.look(cat.id)->mood, CompanionMind::Mood::happy);
        QVERIFY(!companions.look(QUuid::createUuid()));
        companions.setTiles({});
        QVERIFY(!companions.look(cat.id));
    }
};

QTEST_GUILESS_MAIN(TestAmbientBehaviours)
#include "tst_ambientbehaviours.moc"
