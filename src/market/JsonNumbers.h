// The lenient readings of JSON values the quote decoders share.
#pragma once

#include <QJsonValue>
#include <QString>

#include <optional>

namespace tw {

// A finite number above zero; prices and rates are never anything else.
std::optional<double> positiveNumber(const QJsonValue& value);
// A finite number of any sign.
std::optional<double> finiteNumber(const QJsonValue& value);
// A string cut to a length a tile can show; empty for anything else.
QString shortText(const QJsonValue& value);

} // namespace tw
