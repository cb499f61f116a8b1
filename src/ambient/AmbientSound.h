// The sounds of the ambient sound tile and the words of its "sound" setting.
#pragma once

#include <QList>
#include <QString>
#include <QStringView>

namespace tw {

enum class AmbientSound { rain, waves, cafe, white, pink, brown };

// Every sound in the order the tile offers them.
QList<AmbientSound> allAmbientSounds();
// The setting's word for `sound` ("rain"); `ambientSoundFrom` reads it back, rain for anything
// it does not know.
QString settingValue(AmbientSound sound);
AmbientSound ambientSoundFrom(QStringView value);
// The name a person reads ("Pink noise").
QString displayName(AmbientSound sound);

} // namespace tw
