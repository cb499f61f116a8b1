// Video4Linux's capture nodes: /dev/video*, named by sysfs, with this user's access to each.
#pragma once

#include "platform/VideoDevices.h"

namespace tw {

class V4lVideoDevices final : public VideoDevices {
public:
    // The roots are there for tests, which build both in a temporary directory.
    explicit V4lVideoDevices(QString devices = QStringLiteral("/dev"),
                             QString sysfs = QStringLiteral("/sys/class/video4linux"));

    QList<VideoNode> nodes() const override;

private:
    QString m_devices;
    QString m_sysfs;
};

} // namespace tw
