#include "platform/linux/V4lVideoDevices.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace tw {

V4lVideoDevices::V4lVideoDevices(QString devices, QString sysfs)
    : m_devices(std::move(devices))
    , m_sysfs(std::move(sysfs)) {}

QList<VideoNode> V4lVideoDevices::nodes() const {
    QList<VideoNode> found;
    const QDir dir(m_devices);
    for (const QFileInfo& entry :
         dir.entryInfoList({QStringLiteral("video*")}, QDir::System | QDir::Files)) {
        VideoNode node;
        node.path = entry.absoluteFilePath();
        QFile name(m_sysfs + QLatin1Char('/') + entry.fileName() + QStringLiteral("/name"));
        if (name.open(QIODevice::ReadOnly)) {
            // A driver's name is one short line; anything more is not one.
            node.name =
                QString::fromUtf8(name.read(256)).section(QLatin1Char('\n'), 0, 0).trimmed();
        }
        node.readable = entry.isReadable();
        node.writable = entry.isWritable();
        found.append(node);
    }
    // video2 before video10.
    const auto number = [](const VideoNode& node) {
        return node.path.mid(node.path.lastIndexOf(QLatin1String("video")) + 5).toInt();
    };
    std::sort(found.begin(), found.end(),
              [&number](const VideoNode& a, const VideoNode& b) { return number(a) < number(b); });
    return found;
}

} // namespace tw
