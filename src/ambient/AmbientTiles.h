// The ambient kinds' behaviours and what they run on, made together for the composition root:
// the sound player (silent under TKW_SILENT), the ambient sound service and
// its tile, and the companions.
#pragma once

#include "ambient/AmbientSoundBehaviour.h"
#include "ambient/AmbientSoundService.h"
#include "ambient/CompanionBehaviour.h"
#include "ambient/LoopPlayer.h"
#include "platform/null/FixedPointerPosition.h"

#include <memory>

namespace tw {

class Clock;
class GridStore;
class PointerPosition;
class Scheduler;

class AmbientTiles {
public:
    struct Services {
        const Clock& clock;
        Scheduler& scheduler;
        GridStore& grid;
        // Null where the system cannot tell: the companions then look ahead.
        const PointerPosition* pointer = nullptr;
        std::unique_ptr<LoopPlayer> player;
    };

    explicit AmbientTiles(Services services);

    // A player on the sound device, or one that opens nothing.
    static std::unique_ptr<LoopPlayer> player(bool silent);

    AmbientSoundBehaviour& sound() { return m_soundTile; }
    CompanionBehaviour& companions() { return m_companions; }

private:
    std::unique_ptr<LoopPlayer> m_player;
    FixedPointerPosition m_nowhere;
    AmbientSoundService m_sound;
    AmbientSoundBehaviour m_soundTile;
    CompanionBehaviour m_companions;
};

} // namespace tw
