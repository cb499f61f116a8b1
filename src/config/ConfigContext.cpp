#include "config/ConfigContext.h"

#include "platform/Defaults.h"

namespace tw {

bool ConfigContext::canSave() const {
    return defaults.isWritable();
}

} // namespace tw
