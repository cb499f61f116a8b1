#include "readings/SystemSnapshot.h"

namespace tw {

double SystemSnapshot::value(SysMetric metric) const {
    switch (metric) {
    case SysMetric::cpu:
        return cpu;
    case SysMetric::gpu:
        return gpu.value_or(0);
    case SysMetric::ram:
        return ramTotal > 0 ? ramUsed / ramTotal : 0;
    case SysMetric::disk:
        return diskTotal > 0 ? (diskTotal - diskFree) / diskTotal : 0;
    }
    return 0;
}

} // namespace tw
