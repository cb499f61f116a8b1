// Plasma's configuration files: any bytes, split among the three files, parse without harm, and
// whatever picture is chosen is an absolute path.
#include "PictureInvariant.h"
#include "platform/linux/PlasmaWallpaperConfig.h"

#include <QByteArray>

#include <algorithm>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray all =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    // The first two bytes say where the second and third files begin.
    const qsizetype first = all.size() > 2 ? std::uint8_t(all[0]) * all.size() / 256 : 0;
    const qsizetype second = all.size() > 2 ? std::uint8_t(all[1]) * all.size() / 256 : 0;
    const qsizetype a = std::min(first, second);
    const qsizetype b = std::max(first, second);
    const tw::PlasmaWallpaperConfig config =
        tw::PlasmaWallpaperConfig::parse(all.mid(2, a), all.mid(2 + a, b - a), all.mid(2 + b));
    tw::fuzz::requireAbsolutePictures(config);
    return 0;
}
