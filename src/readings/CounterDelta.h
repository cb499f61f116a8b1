// The growth of a cumulative counter between two reads.
#pragma once

#include <QtGlobal>

#include <optional>

namespace tw {

// A 32-bit counter that passed its top and started again counts what it went through; a counter
// that went back for any other reason (a device reset, a core brought back online) gives none, so
// that no read shows a huge figure.
std::optional<quint64> counterDelta(quint64 before, quint64 after);

} // namespace tw
