#include "readings/ActivitySnapshot.h"

#include <numeric>

namespace tw {

double ActivitySnapshot::total() const {
    if (cores.isEmpty()) {
        return 0;
    }
    return std::accumulate(cores.begin(), cores.end(), 0.0) / double(cores.size());
}

} // namespace tw
