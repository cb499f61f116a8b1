// The sounds a timer can make, and playing one of them.
#pragma once

#include <QString>
#include <QStringView>

#include <array>

namespace tw {

class SoundPlayer;

// In the order the settings offer them.
enum class WidgetSound { none, glass, ping, tink, submarine, hero, purr };

inline constexpr std::array<WidgetSound, 7> allWidgetSounds{
    WidgetSound::none,      WidgetSound::glass, WidgetSound::ping, WidgetSound::tink,
    WidgetSound::submarine, WidgetSound::hero,  WidgetSound::purr};

// The stored form and `id`: "none", "glass", …
QString rawValue(WidgetSound sound);
// The case of a stored value, else `fallback`.
WidgetSound resolveWidgetSound(QStringView raw, WidgetSound fallback);
// The name the sound player knows it by ("Glass"); empty for none.
QString systemName(WidgetSound sound);
// The localised name ("sound.glass").
QString label(WidgetSound sound);
// Plays the sound once at full volume; nothing for none.
void play(WidgetSound sound, SoundPlayer& player);

} // namespace tw
