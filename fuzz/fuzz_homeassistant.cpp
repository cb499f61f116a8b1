// Home Assistant's states and socket frames: whatever bytes arrive, every entity has an id of the
// right shape, a brightness within 0…255, a list within its cap, and a state change an entity.
#include "Require.h"
#include "connected/HaDecoding.h"

#include <QByteArray>

#include <cstdint>

using tw::fuzz::require;

namespace {

void requireEntity(const tw::HaEntity& entity) {
    require(tw::HaEntity::isEntityId(entity.id), "an entity without a valid id");
    require(!entity.brightness || (*entity.brightness >= 0 && *entity.brightness <= 255),
            "a brightness out of range");
    require(entity.state.size() <= 120, "a state past its cap");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    if (const auto states = tw::decodeHaStates(bytes)) {
        require(states->size() <= tw::maxHaEntities, "states past the cap");
        for (const tw::HaEntity& entity : *states) {
            requireEntity(entity);
        }
    }
    const tw::HaMessage message = tw::decodeHaMessage(bytes);
    if (message.type == tw::HaMessage::Type::stateChanged) {
        require(message.entity.has_value(), "a state change without an entity");
        requireEntity(*message.entity);
    }
    return 0;
}
