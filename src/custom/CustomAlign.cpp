#include "custom/CustomAlign.h"

#include "platform/RawValues.h"

namespace tw {

namespace {

constexpr RawValues<CustomAlign, 3> rawValues{{"leading", "center", "trailing"}};

} // namespace

QString rawValue(CustomAlign align) {
    return rawValues.of(align);
}

std::optional<CustomAlign> customAlignFromRawValue(QStringView raw) {
    return rawValues.parse(raw);
}

} // namespace tw
