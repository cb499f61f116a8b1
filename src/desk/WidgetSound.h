// The sounds a timer can make, and playing one of them.
#pragma once

#include <QString>
#include <QStringView>

namespace tw {

class SoundPlayer;

// In the order the settings offer them (their names are the settings' "sound." words).
enum class WidgetSound { none, glass, ping, tink, submarine, hero, purr };

// The case of a stored value, else `fallback`.
WidgetSound resolveWidgetSound(QStringView raw, WidgetSound fallback);
// The name the sound player knows it by ("Glass"); empty for none.
QString systemName(WidgetSound sound);
// Plays the sound once at full volume; nothing for none.
void play(WidgetSound sound, SoundPlayer& player);

} // namespace tw
