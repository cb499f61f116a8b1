// The machine's video capture devices as the operating system lists them, with whether this
// user may open them: what the camera report and a mirror tile's honest states rest on.
#pragma once

#include <QList>
#include <QString>

namespace tw {

struct VideoNode {
    // Where the system keeps the device ("/dev/video0").
    QString path;
    // The driver's name for it; empty when the system gives none.
    QString name;
    bool readable = false;
    bool writable = false;

    bool operator==(const VideoNode&) const = default;
};

class VideoDevices {
public:
    VideoDevices() = default;
    virtual ~VideoDevices() = default;
    Q_DISABLE_COPY_MOVE(VideoDevices)

    // Sorted by path; empty where the system has none or lists none.
    virtual QList<VideoNode> nodes() const = 0;
};

} // namespace tw
