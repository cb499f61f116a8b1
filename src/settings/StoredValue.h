// Lenient readers of stored preferences: a value of the wrong kind reads as absent, so that the
// caller's default applies instead of a guess.
#pragma once

#include <QVariant>

#include <optional>

namespace tw::StoredValue {

// A boolean, or the words "true"/"false", or a number (non-zero is true); nullopt otherwise.
std::optional<bool> boolean(const QVariant& value);
// A finite number, or a word that reads as one; nullopt otherwise.
std::optional<double> number(const QVariant& value);
// A non-empty string, or the only member of a one-element list (how INI files return them).
std::optional<QString> word(const QVariant& value);

} // namespace tw::StoredValue
