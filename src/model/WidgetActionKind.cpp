#include "model/WidgetActionKind.h"

#include "platform/RawValues.h"

namespace tw {

namespace {

constexpr RawValues<WidgetActionKind, 4> rawValues{{"none", "app", "url", "shortcut"}};

} // namespace

QString rawValue(WidgetActionKind kind) {
    return rawValues.of(kind);
}

std::optional<WidgetActionKind> widgetActionKindFromRawValue(QStringView raw) {
    return rawValues.parse(raw);
}

} // namespace tw
