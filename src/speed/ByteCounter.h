// What the transfers of one direction have done so far, read by the measuring loop. The network
// answers on the thread of its manager, the main one, so no lock is needed.
#pragma once

#include <QtGlobal>

namespace tw {

struct ByteCounter {
    qint64 bytes = 0;
    // Transfers that ended whole.
    int confirmed = 0;
    // Transfers that ended in an error or a status other than success.
    int failed = 0;
};

} // namespace tw
