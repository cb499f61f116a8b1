// The JSON conventions of the data files: dates as seconds since 2001-01-01 00:00:00 UTC,
// UUIDs in upper case, and lenient readers that turn a wrong type into "absent".
#pragma once

#include <QDateTime>
#include <QJsonValue>
#include <QString>
#include <QUuid>

#include <optional>

namespace tw::JsonCoding {

// Seconds from the Unix epoch to the reference date 2001-01-01 00:00:00 UTC.
inline constexpr qint64 referenceDateOffset = 978307200;

QJsonValue encodeDate(const QDateTime& date);
// A finite number of seconds within a few thousand years of the reference date, to the
// millisecond; anything else is absent.
std::optional<QDateTime> decodeDate(const QJsonValue& value);

// "E621E1F8-C36C-495A-93FC-0C247A3E6E5F".
QString encodeUuid(const QUuid& uuid);
// Any case, with or without braces; a null or malformed UUID is absent.
std::optional<QUuid> decodeUuid(const QJsonValue& value);

// An integral number that fits an int; 2.0 counts, 2.5 and "2" do not.
std::optional<int> decodeInt(const QJsonValue& value);
// Any number.
std::optional<double> decodeDouble(const QJsonValue& value);

} // namespace tw::JsonCoding
