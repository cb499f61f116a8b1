// Pictures from a camera as they come, and why they stopped coming. The mirror's session drives
// one; Qt Multimedia's camera is the real one, tests give their own.
#pragma once

#include <QImage>
#include <QObject>

namespace tw {

class CameraFeed : public QObject {
    Q_OBJECT

public:
    enum class Problem {
        noCamera,    // the system lists none
        inUse,       // another program holds it
        denied,      // this user may not open it
        disappeared, // unplugged or switched off while it ran
        failed,      // anything else the driver said
    };

    using QObject::QObject;

    // Whether the system lists a camera now.
    virtual bool hasCamera() const = 0;
    // Opens the default camera; pictures follow, or a problem.
    virtual void start() = 0;
    // Closes it; no picture follows.
    virtual void stop() = 0;

Q_SIGNALS:
    void frame(const QImage& picture);
    void problem(tw::CameraFeed::Problem problem);
    // A camera was plugged in or out.
    void camerasChanged();
};

} // namespace tw
