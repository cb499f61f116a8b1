#include "app/LaunchModes.h"
#include "live/CameraReport.h"
#include "platform/PlatformServices.h"

#include <QCameraDevice>
#include <QMediaDevices>

namespace tw {

std::optional<int> runCameraMode(LaunchContext& context) {
    QStringList cameras;
    for (const QCameraDevice& device : QMediaDevices::videoInputs()) {
        cameras.append(device.description());
    }
    context.out << cameraReport(cameras, PlatformServices::makeVideoDevices()->nodes());
    return 0;
}

} // namespace tw
