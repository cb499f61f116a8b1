#include "speed/SpeedTestPhase.h"

namespace tw {

QString SpeedTestPhase::name(Kind kind) {
    switch (kind) {
    case Kind::failed:
        return QStringLiteral("failed");
    case Kind::idle:
        return QStringLiteral("idle");
    case Kind::ping:
        return QStringLiteral("ping");
    case Kind::download:
        return QStringLiteral("download");
    case Kind::upload:
        return QStringLiteral("upload");
    case Kind::done:
        return QStringLiteral("done");
    }
    return {};
}

} // namespace tw
