#include "live/CameraReport.h"

#include <algorithm>

namespace tw {

namespace {

QString access(const QList<VideoNode>& nodes) {
    if (nodes.isEmpty()) {
        return QStringLiteral("unknown");
    }
    const bool open = std::any_of(nodes.begin(), nodes.end(), [](const VideoNode& node) {
        return node.readable && node.writable;
    });
    return open ? QStringLiteral("authorized") : QStringLiteral("denied");
}

QString describe(const VideoNode& node) {
    QStringList facts;
    facts.append(node.readable ? QStringLiteral("readable") : QStringLiteral("not readable"));
    facts.append(node.writable ? QStringLiteral("writable") : QStringLiteral("not writable"));
    const QString name = node.name.isEmpty() ? QString() : node.name + QStringLiteral(", ");
    return node.path + QStringLiteral(" (") + name + facts.join(QStringLiteral(", ")) +
           QLatin1Char(')');
}

} // namespace

QString cameraReport(const QStringList& cameras, const QList<VideoNode>& nodes) {
    QString text = QStringLiteral("access:  ") + access(nodes) + QLatin1Char('\n');
    if (cameras.isEmpty()) {
        text += QStringLiteral("cameras: none\n");
    }
    for (const QString& camera : cameras) {
        text += QStringLiteral("camera:  ") + camera + QLatin1Char('\n');
    }
    if (nodes.isEmpty()) {
        text += QStringLiteral("devices: none found\n");
    }
    for (const VideoNode& node : nodes) {
        text += QStringLiteral("devices: ") + describe(node) + QLatin1Char('\n');
    }
    return text;
}

} // namespace tw
