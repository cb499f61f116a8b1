#include "ambient/AmbientTiles.h"

#include "ambient/QtLoopPlayer.h"
#include "ambient/SilentLoopPlayer.h"

namespace tw {

AmbientTiles::AmbientTiles(Services services)
    : m_player(std::move(services.player))
    , m_sound(*m_player, services.clock, services.scheduler)
    , m_soundTile(m_sound, services.grid)
    , m_companions(services.clock, services.scheduler,
                   services.pointer != nullptr ? *services.pointer : m_nowhere) {}

std::unique_ptr<LoopPlayer> AmbientTiles::player(bool silent) {
    if (silent) {
        return std::make_unique<SilentLoopPlayer>();
    }
    return std::make_unique<QtLoopPlayer>();
}

} // namespace tw
