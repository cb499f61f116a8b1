#include "desk/WidgetSound.h"

#include "platform/RawValues.h"
#include "platform/SoundPlayer.h"
#include "text/L.h"

namespace tw {

namespace {

constexpr RawValues<WidgetSound, 7> raws({"none", "glass", "ping", "tink", "submarine", "hero",
                                          "purr"});
constexpr std::array<const char*, 7> names{"",          "Glass", "Ping", "Tink",
                                           "Submarine", "Hero",  "Purr"};
constexpr std::array<const char*, 7> labels{"None",      "Glass", "Ping", "Tink",
                                            "Submarine", "Hero",  "Purr"};

std::size_t index(WidgetSound sound) {
    return static_cast<std::size_t>(sound);
}

} // namespace

QString rawValue(WidgetSound sound) {
    return raws.of(sound);
}

WidgetSound resolveWidgetSound(QStringView raw, WidgetSound fallback) {
    return raws.parse(raw.trimmed()).value_or(fallback);
}

QString systemName(WidgetSound sound) {
    return QLatin1String(names.at(index(sound)));
}

QString label(WidgetSound sound) {
    const QByteArray key = QByteArray("sound.") + raws.of(sound).toLatin1();
    return L(key.constData(), QLatin1String(labels.at(index(sound))));
}

void play(WidgetSound sound, SoundPlayer& player) {
    if (sound != WidgetSound::none) {
        player.play(systemName(sound), 1.0);
    }
}

} // namespace tw
