#include "readings/ActivityService.h"

#include "readings/ActivitySampler.h"

#include <memory>

namespace tw {

ActivityService::ActivityService(SystemSource& source, SampleRunner& runner, Receiver receiver)
    : PolledSample([sampler = std::make_shared<ActivitySampler>(source)](
                       const QDateTime& now) { return sampler->sample(now); },
                   runner, std::move(receiver)) {}

} // namespace tw
