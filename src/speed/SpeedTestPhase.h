// Where a speed test stands: idle, one of its three measuring phases, done, or failed with why.
#pragma once

#include <QString>

namespace tw {

struct SpeedTestPhase {
    enum class Kind { failed, idle, ping, download, upload, done };

    Kind kind = Kind::idle;
    // Why it failed, for a person; empty otherwise.
    QString message;

    bool isRunning() const {
        return kind == Kind::ping || kind == Kind::download || kind == Kind::upload;
    }
    // "failed", "idle", "ping", "download", "upload", "done".
    static QString name(Kind kind);

    bool operator==(const SpeedTestPhase&) const = default;
};

} // namespace tw
