#include "desk/WidgetSound.h"

#include "platform/RawValues.h"
#include "platform/SoundPlayer.h"

namespace tw {

namespace {

constexpr RawValues<WidgetSound, 7> raws({"none", "glass", "ping", "tink", "submarine", "hero",
                                          "purr"});
constexpr std::array<const char*, 7> names{"",          "Glass", "Ping", "Tink",
                                           "Submarine", "Hero",  "Purr"};

std::size_t index(WidgetSound sound) {
    return static_cast<std::size_t>(sound);
}

} // namespace

WidgetSound resolveWidgetSound(QStringView raw, WidgetSound fallback) {
    return raws.parse(raw.trimmed()).value_or(fallback);
}

QString systemName(WidgetSound sound) {
    return QLatin1String(names.at(index(sound)));
}

void play(WidgetSound sound, SoundPlayer& player) {
    if (sound != WidgetSound::none) {
        player.play(systemName(sound), 1.0);
    }
}

} // namespace tw
