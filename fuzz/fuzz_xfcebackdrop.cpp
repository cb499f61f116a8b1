// Xfce's desktop channel: any bytes parse without harm, and whatever picture is chosen is an
// absolute path.
#include "platform/linux/XfceBackdropConfig.h"

#include <QByteArray>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray xml =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const tw::XfceBackdropConfig config = tw::XfceBackdropConfig::parse(xml);
    for (const QString screen : {QStringLiteral("DP-1"), QString(), QStringLiteral("0")}) {
        if (const auto setting = config.settingFor(screen)) {
            if (!setting->file.startsWith(QLatin1Char('/'))) {
                std::fprintf(stderr, "invariant broken: a picture that is not an absolute path\n");
                std::abort();
            }
        }
    }
    return 0;
}
