// Xfce's desktop channel: any bytes parse without harm, and whatever picture is chosen is an
// absolute path.
#include "PictureInvariant.h"
#include "platform/linux/XfceBackdropConfig.h"

#include <QByteArray>

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray xml =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const tw::XfceBackdropConfig config = tw::XfceBackdropConfig::parse(xml);
    tw::fuzz::requireAbsolutePictures(config);
    return 0;
}
