// The default camera through Qt Multimedia. The open device is watched: one that leaves the
// system's list while open has disappeared. What the driver says when it fails is read for the
// two causes a person can act on (busy, permission).
#pragma once

#include "live/CameraFeed.h"

#include <QCameraDevice>

#include <memory>

class QCamera;
class QMediaCaptureSession;
class QMediaDevices;
class QVideoSink;

namespace tw {

class QtCameraFeed final : public CameraFeed {
    Q_OBJECT

public:
    explicit QtCameraFeed(QObject* parent = nullptr);
    ~QtCameraFeed() override;

    bool hasCamera() const override;
    void start() override;
    void stop() override;

    // The problem a driver's error text stands for.
    static Problem problemOf(const QString& error);

private:
    void devicesChanged();

    QMediaDevices* m_devices = nullptr;
    QCameraDevice m_device;
    std::unique_ptr<QCamera> m_camera;
    std::unique_ptr<QMediaCaptureSession> m_session;
    std::unique_ptr<QVideoSink> m_sink;
};

} // namespace tw
