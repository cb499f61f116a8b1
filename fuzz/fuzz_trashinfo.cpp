// The ".trashinfo" reader: any bytes give a path or nothing, and what it gives is written and
// read back the same.
#include "Require.h"
#include "platform/linux/TrashInfo.h"

#include <QByteArray>

#include <cstdint>

using tw::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const std::optional<tw::TrashInfo> info = tw::TrashInfo::fromBytes(bytes);
    if (!info) {
        return 0;
    }
    require(!info->path.isEmpty(), "a decoded entry has a path");
    const std::optional<tw::TrashInfo> again = tw::TrashInfo::fromBytes(info->toBytes());
    require(again.has_value() && again->path == info->path, "the path reads back the same");
    require(again->deletionDate == info->deletionDate, "the date reads back the same");
    return 0;
}
