#include "ambient/AmbientSoundBehaviour.h"

#include "ambient/AmbientSoundSettings.h"
#include "grid/GridStore.h"
#include "text/L.h"

namespace tw {

AmbientSoundBehaviour::AmbientSoundBehaviour(AmbientSoundService& service, GridStore& grid,
                                             QObject* parent)
    : TileBehaviour(parent)
    , m_service(service)
    , m_grid(grid) {
    connect(&m_service, &AmbientSoundService::changed, this, [this] { Q_EMIT changed(m_tile); });
}

void AmbientSoundBehaviour::setTiles(const QList<BehaviourTile>& tiles) {
    if (tiles.isEmpty()) {
        m_tile = QUuid();
        m_service.pause();
        return;
    }
    const WidgetInstance& tile = tiles.front().instance;
    m_tile = tile.id;
    const auto settings = AmbientSoundSettings::from(tile.settings.value_or(WidgetSettings()));
    m_service.setSound(settings.sound);
    m_service.setVolume(settings.volume);
    m_service.setSleepLength(settings.sleep);
}

bool AmbientSoundBehaviour::press(const WidgetInstance& tile, const QString& command) {
    const auto settings = AmbientSoundSettings::from(tile.settings.value_or(WidgetSettings()));
    if (command == QLatin1String("toggle")) {
        m_service.toggle();
        return true;
    }
    if (command.startsWith(QLatin1String("sound:"))) {
        const QString value = settingValue(ambientSoundFrom(command.mid(6)));
        m_grid.setSetting(tile.id, QStringLiteral("sound"), value);
        // Picking a sound means wanting to hear it.
        m_service.setSound(ambientSoundFrom(value));
        m_service.play();
        return true;
    }
    if (command == QLatin1String("louder") || command == QLatin1String("quieter")) {
        const double volume = AmbientSoundSettings::stepped(
            settings.volume, command == QLatin1String("louder") ? 1 : -1);
        m_grid.setSetting(tile.id, QStringLiteral("volume"),
                          AmbientSoundSettings::volumeValue(volume));
        m_service.setVolume(volume);
        return true;
    }
    if (command == QLatin1String("sleep")) {
        const auto next = AmbientSoundSettings::nextSleep(settings.sleep);
        m_grid.setSetting(tile.id, QStringLiteral("sleep"), QString::number(next.count()));
        m_service.setSleepLength(next);
        return true;
    }
    return false;
}

QList<TileBehaviour::MenuItem> AmbientSoundBehaviour::menuItems(const WidgetInstance&) const {
    return {{m_service.isPlaying() ? L("ambient.pause", QStringLiteral("Pause"))
                                   : L("ambient.play", QStringLiteral("Play")),
             QStringLiteral("toggle")},
            {L("ambient.sleepNext", QStringLiteral("Next Sleep Timer Length")),
             QStringLiteral("sleep")}};
}

} // namespace tw
