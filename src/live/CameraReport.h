// The text of --camera: the access this system gives, the cameras found and their device nodes.
#pragma once

#include "platform/VideoDevices.h"

#include <QStringList>

namespace tw {

// Access is "authorized" when this user may open a device, "denied" when devices exist but none
// may be opened, "unknown" when the system lists none.
QString cameraReport(const QStringList& cameras, const QList<VideoNode>& nodes);

} // namespace tw
