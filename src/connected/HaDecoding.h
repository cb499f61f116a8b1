// Lenient readers of Home Assistant's answers: the REST list of states and the messages of its
// WebSocket API. Entities without a valid id are left out; text is cut to what a tile shows.
#pragma once

#include "connected/HaEntity.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>

#include <optional>

namespace tw {

struct HaMessage {
    enum class Type {
        // Anything not understood; ignored.
        other,
        authRequired,
        authOk,
        authInvalid,
        // The answer to a command of ours, by `id`.
        result,
        // A state_changed event: `entity` holds the new state, or the id alone when removed.
        stateChanged,
    };

    Type type = Type::other;
    int id = 0;
    bool success = false;
    // Why auth or a command failed, for the log and the tile.
    QString message;
    std::optional<HaEntity> entity;
    // A state_changed event whose entity went away.
    bool removed = false;
};

// One state object ({"entity_id", "state", "attributes", "last_changed"}).
std::optional<HaEntity> decodeHaEntity(const QJsonObject& state);
// GET /api/states: every readable entity, at most `maxEntities`.
std::optional<QList<HaEntity>> decodeHaStates(const QByteArray& body);
// One text frame of /api/websocket.
HaMessage decodeHaMessage(const QByteArray& frame);

constexpr int maxHaEntities = 5000;

} // namespace tw
