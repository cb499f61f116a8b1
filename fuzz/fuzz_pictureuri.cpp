// Picture URIs and paths: any text gives an absolute path without a NUL, or nothing.
#include "platform/linux/PictureUri.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QString file = tw::PictureUri::localFile(text);
    if (!file.isEmpty() && (!file.startsWith(QLatin1Char('/')) || file.contains(QChar(0)))) {
        std::fprintf(stderr, "invariant broken: not an absolute path, or one with a NUL\n");
        std::abort();
    }
    return 0;
}
