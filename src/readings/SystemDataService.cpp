#include "readings/SystemDataService.h"

#include "readings/SystemReader.h"

#include <memory>

namespace tw {

SystemDataService::SystemDataService(SystemSource& source, SampleRunner& runner)
    : SystemDataService([reader = std::make_shared<SystemReader>(source)](
                            const QDateTime& now) { return reader->read(now); },
                        runner) {}

SystemDataService::SystemDataService(Sampler sampler, SampleRunner& runner)
    : SharedSample(refreshInterval, std::move(sampler), runner) {}

} // namespace tw
