#include "readings/NetworkSnapshot.h"

namespace tw {

const InterfaceRate* NetworkSnapshot::primary() const {
    for (const InterfaceRate& rate : interfaces) {
        if (rate.up) {
            return &rate;
        }
    }
    return nullptr;
}

} // namespace tw
