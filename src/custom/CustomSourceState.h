// Where one shared source of custom widgets stands: its last good document, the last failure, and
// the attempt under way.
#pragma once

#include "custom/CustomJSON.h"

#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>

namespace tw {

struct CustomSourceState {
    // The last good document; it outlives later failures.
    std::optional<CustomJSON> json;
    // The words of the last attempt, when it failed.
    std::optional<QString> error;
    bool loading = false;
    // When the last attempt ended, good or not.
    std::optional<QDateTime> fetchedAt;
    // When the attempt in flight began.
    std::optional<QDateTime> startedAt;

    // Several sources' states as one: the first document and the first error, loading while any
    // is; nullopt for none. One state stands for itself.
    static std::optional<CustomSourceState> merged(const QList<CustomSourceState>& states);

    bool operator==(const CustomSourceState&) const = default;
};

} // namespace tw
