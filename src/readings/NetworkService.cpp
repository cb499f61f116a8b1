#include "readings/NetworkService.h"

#include "readings/NetworkSampler.h"

#include <memory>

namespace tw {

NetworkService::NetworkService(SystemSource& source, SampleRunner& runner, Receiver receiver)
    : PolledSample([sampler = std::make_shared<NetworkSampler>(source)](
                       const QDateTime& now) { return sampler->sample(now); },
                   runner, std::move(receiver)) {}

} // namespace tw
