#include "live/QtCameraFeed.h"

#include <QCamera>
#include <QLoggingCategory>
#include <QMediaCaptureSession>
#include <QMediaDevices>
#include <QVideoFrame>
#include <QVideoSink>

namespace tw {

namespace {

Q_LOGGING_CATEGORY(lcCamera, "tarnwick.camera")

} // namespace

QtCameraFeed::QtCameraFeed(QObject* parent)
    : CameraFeed(parent)
    , m_devices(new QMediaDevices(this)) {
    connect(m_devices, &QMediaDevices::videoInputsChanged, this, &QtCameraFeed::devicesChanged);
}

QtCameraFeed::~QtCameraFeed() {
    stop();
}

bool QtCameraFeed::hasCamera() const {
    return !QMediaDevices::videoInputs().isEmpty();
}

CameraFeed::Problem QtCameraFeed::problemOf(const QString& error) {
    const QString text = error.toLower();
    if (text.contains(QLatin1String("busy")) || text.contains(QLatin1String("in use"))) {
        return Problem::inUse;
    }
    if (text.contains(QLatin1String("permission")) || text.contains(QLatin1String("denied")) ||
        text.contains(QLatin1String("not permitted"))) {
        return Problem::denied;
    }
    if (text.contains(QLatin1String("no such device")) ||
        text.contains(QLatin1String("disconnected"))) {
        return Problem::disappeared;
    }
    return Problem::failed;
}

void QtCameraFeed::start() {
    if (m_camera) {
        return;
    }
    m_device = QMediaDevices::defaultVideoInput();
    if (m_device.isNull()) {
        Q_EMIT problem(Problem::noCamera);
        return;
    }
    m_camera = std::make_unique<QCamera>(m_device);
    m_session = std::make_unique<QMediaCaptureSession>();
    m_sink = std::make_unique<QVideoSink>();
    m_session->setCamera(m_camera.get());
    m_session->setVideoSink(m_sink.get());
    // Pictures may be delivered on the camera's thread; they are turned into images here.
    connect(
        m_sink.get(), &QVideoSink::videoFrameChanged, this,
        [this](const QVideoFrame& frame) {
            const QImage picture = frame.toImage();
            if (!picture.isNull()) {
                Q_EMIT this->frame(picture);
            }
        },
        Qt::QueuedConnection);
    connect(
        m_camera.get(), &QCamera::errorOccurred, this,
        [this](QCamera::Error, const QString& text) {
            qCInfo(lcCamera) << "camera failed:" << text;
            const Problem kind = problemOf(text);
            stop();
            Q_EMIT problem(kind);
        },
        Qt::QueuedConnection);
    m_camera->start();
}

void QtCameraFeed::stop() {
    if (m_camera) {
        m_camera->stop();
    }
    m_session.reset();
    m_camera.reset();
    m_sink.reset();
}

void QtCameraFeed::devicesChanged() {
    Q_EMIT camerasChanged();
    if (!m_camera) {
        return;
    }
    const QList<QCameraDevice> inputs = QMediaDevices::videoInputs();
    if (!inputs.contains(m_device)) {
        qCInfo(lcCamera) << "camera left while in use";
        stop();
        Q_EMIT problem(Problem::disappeared);
    }
}

} // namespace tw
