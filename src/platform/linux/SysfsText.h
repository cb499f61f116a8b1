// The small text files of /sys: read with a size cap, and their one value decoded leniently.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace tw::sysfs {

// The bytes of a sysfs attribute, or none when it cannot be read: missing, not a regular file,
// or failing as a sleeping disk's sensor does (EIO).
std::optional<QByteArray> read(const QString& path);

// A decimal integer with optional sign and surrounding blanks; none for anything else.
std::optional<qint64> integer(const QByteArray& bytes);
// The text of a one-line attribute without its newline and blanks, as Latin-1.
QString word(const QByteArray& bytes);

} // namespace tw::sysfs
