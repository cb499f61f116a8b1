// How the elements of a custom widget row line up.
#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace tw {

enum class CustomAlign { leading, center, trailing };

QString rawValue(CustomAlign align);
std::optional<CustomAlign> customAlignFromRawValue(QStringView raw);

} // namespace tw
