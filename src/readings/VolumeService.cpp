#include "readings/VolumeService.h"

namespace tw {

VolumeService::VolumeService(SystemSource& source, SampleRunner& runner, Receiver receiver)
    : PolledSample([&source](const QDateTime&) { return source.volumes(); }, runner,
                   std::move(receiver)) {}

} // namespace tw
