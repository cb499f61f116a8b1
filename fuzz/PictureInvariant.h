// What every desktop's configuration decoder must keep, whatever bytes it read: a picture it
// chooses, for a connector name, none or a screen number, is an absolute path.
#pragma once

#include <QString>

#include <cstdio>
#include <cstdlib>

namespace tw::fuzz {

template <class Config>
void requireAbsolutePictures(const Config& config) {
    for (const QString& screen : {QStringLiteral("DP-1"), QString(), QStringLiteral("0")}) {
        if (const auto setting = config.settingFor(screen)) {
            if (!setting->file.startsWith(QLatin1Char('/'))) {
                std::fprintf(stderr, "invariant broken: a picture that is not an absolute path\n");
                std::abort();
            }
        }
    }
}

} // namespace tw::fuzz
