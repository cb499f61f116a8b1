// Media players a test sets by hand, recording what was asked of them.
#pragma once

#include "platform/MediaPlayers.h"

#include <QPair>

namespace tw::test {

class ScriptedMediaPlayers final : public MediaPlayers {
public:
    QList<MediaPlayerState> list;
    bool reachable = true;
    bool watching = false;
    int refreshes = 0;
    QList<QPair<QString, MediaCommand>> sent;

    // Replaces the players and tells the listeners.
    void set(QList<MediaPlayerState> players) {
        list = std::move(players);
        Q_EMIT changed();
    }

    bool available() const override { return reachable; }
    void setWatching(bool on) override { watching = on; }
    QList<MediaPlayerState> players() const override {
        return watching ? list : QList<MediaPlayerState>();
    }
    void refresh() override { ++refreshes; }
    void send(const QString& playerId, MediaCommand command) override {
        sent.append({playerId, command});
    }
};

} // namespace tw::test
