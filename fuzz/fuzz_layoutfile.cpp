// The layout-file decoder and the preferences inside it: any bytes decode or are refused without
// harm, and whatever decodes is written and read back to the same snapshot.
#include "Require.h"
#include "backup/LayoutBackup.h"
#include "backup/PropertyList.h"

#include <QByteArray>

#include <cstdint>

using tw::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    if (const std::optional<QVariantMap> values = tw::PropertyList::decode(bytes)) {
        require(tw::PropertyList::decode(tw::PropertyList::encode(*values)).has_value(),
                "written preferences read back");
    }
    const tw::LayoutBackup::Decoded decoded = tw::LayoutBackup::decode(bytes);
    const auto* snapshot = std::get_if<tw::LayoutBackup::Snapshot>(&decoded);
    if (!snapshot) {
        return 0;
    }
    tw::PropertyList::decode(snapshot->defaults);
    const tw::LayoutBackup::Decoded again =
        tw::LayoutBackup::decode(tw::LayoutBackup::encode(*snapshot));
    const auto* back = std::get_if<tw::LayoutBackup::Snapshot>(&again);
    require(back != nullptr, "an encoded snapshot decodes");
    require(back->files == snapshot->files && back->wallpapers == snapshot->wallpapers &&
                back->defaults == snapshot->defaults && back->appVersion == snapshot->appVersion,
            "a round trip keeps the contents");
    return 0;
}
