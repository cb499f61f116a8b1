// What the trash tile shows: the trash's contents and the state of its one action.
#pragma once

#include "platform/Trash.h"

#include <QString>

namespace tw {

struct TrashView {
    bool available = true;
    // Still counting for the first time.
    bool counting = false;
    Trash::Contents contents;
    // "Empty Trash…" was pressed: the tile asks before anything goes.
    bool confirming = false;
    // What the last drop or emptying did, shown for a while; `problem` when it failed.
    QString message;
    bool problem = false;

    bool operator==(const TrashView&) const = default;
};

} // namespace tw
