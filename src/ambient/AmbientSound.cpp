#include "ambient/AmbientSound.h"

#include "text/L.h"

namespace tw {

QList<AmbientSound> allAmbientSounds() {
    return {AmbientSound::rain,  AmbientSound::waves, AmbientSound::cafe,
            AmbientSound::white, AmbientSound::pink,  AmbientSound::brown};
}

QString settingValue(AmbientSound sound) {
    switch (sound) {
    case AmbientSound::rain:
        return QStringLiteral("rain");
    case AmbientSound::waves:
        return QStringLiteral("waves");
    case AmbientSound::cafe:
        return QStringLiteral("cafe");
    case AmbientSound::white:
        return QStringLiteral("white");
    case AmbientSound::pink:
        return QStringLiteral("pink");
    case AmbientSound::brown:
        return QStringLiteral("brown");
    }
    Q_UNREACHABLE();
}

AmbientSound ambientSoundFrom(QStringView value) {
    const QString word = value.trimmed().toString().toLower();
    for (const AmbientSound sound : allAmbientSounds()) {
        if (settingValue(sound) == word) {
            return sound;
        }
    }
    return AmbientSound::rain;
}

QString displayName(AmbientSound sound) {
    switch (sound) {
    case AmbientSound::rain:
        return L("ambient.rain", QStringLiteral("Rain"));
    case AmbientSound::waves:
        return L("ambient.waves", QStringLiteral("Waves"));
    case AmbientSound::cafe:
        return L("ambient.cafe", QStringLiteral("Café"));
    case AmbientSound::white:
        return L("ambient.white", QStringLiteral("White noise"));
    case AmbientSound::pink:
        return L("ambient.pink", QStringLiteral("Pink noise"));
    case AmbientSound::brown:
        return L("ambient.brown", QStringLiteral("Brown noise"));
    }
    Q_UNREACHABLE();
}

} // namespace tw
