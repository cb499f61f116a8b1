// A system where no media player can be reached.
#pragma once

#include "platform/MediaPlayers.h"

namespace tw {

class NullMediaPlayers final : public MediaPlayers {
public:
    using MediaPlayers::MediaPlayers;

    bool available() const override { return false; }
    void setWatching(bool) override {}
    QList<MediaPlayerState> players() const override { return {}; }
    void refresh() override {}
    void send(const QString&, MediaCommand) override {}
};

} // namespace tw
