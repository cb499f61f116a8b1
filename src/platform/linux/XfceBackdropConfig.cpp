#include "platform/linux/XfceBackdropConfig.h"

#include "platform/linux/PictureUri.h"

#include <QStringList>
#include <QXmlStreamReader>

namespace tw {

namespace {

DesktopPicture::Fill fillOf(int style) {
    using Fill = DesktopPicture::Fill;
    switch (style) {
    case 1:
        return Fill::center;
    case 2:
        return Fill::tile;
    case 3:
        return Fill::stretch;
    case 4:
        return Fill::fit;
    case 6:
        return Fill::span;
    default:
        return Fill::zoom;
    }
}

XfceBackdropConfig::Monitor& monitorNamed(QList<XfceBackdropConfig::Monitor>& monitors,
                                          const QString& name) {
    for (XfceBackdropConfig::Monitor& monitor : monitors) {
        if (monitor.name == name) {
            return monitor;
        }
    }
    XfceBackdropConfig::Monitor added;
    added.name = name;
    monitors.append(added);
    return monitors.last();
}

} // namespace

XfceBackdropConfig XfceBackdropConfig::parse(const QByteArray& xml) {
    XfceBackdropConfig result;
    QXmlStreamReader reader(xml);
    // The names of the open <property> elements, outermost first.
    QStringList path;
    const QLatin1String property("property");
    const QLatin1String monitorPrefix("monitor");
    while (!reader.atEnd()) {
        const auto token = reader.readNext();
        if (token == QXmlStreamReader::EndElement && reader.name() == property && !path.isEmpty()) {
            path.removeLast();
            continue;
        }
        if (token != QXmlStreamReader::StartElement || reader.name() != property) {
            continue;
        }
        const QXmlStreamAttributes attributes = reader.attributes();
        path.append(attributes.value(QLatin1String("name")).toString());
        if (path.size() != 5 || path[0] != QLatin1String("backdrop") ||
            path[1] != QLatin1String("screen0") || !path[2].startsWith(monitorPrefix) ||
            path[3] != QLatin1String("workspace0")) {
            continue;
        }
        const QString value = attributes.value(QLatin1String("value")).toString();
        const QString& key = path[4];
        Monitor& monitor = monitorNamed(result.monitors, path[2].mid(monitorPrefix.size()));
        if (key == QLatin1String("last-image") ||
            (key == QLatin1String("image-path") && monitor.image.isEmpty())) {
            monitor.image = PictureUri::localFile(value);
        } else if (key == QLatin1String("image-style")) {
            bool ok = false;
            const int style = value.toInt(&ok);
            monitor.style = ok ? style : monitor.style;
        } else if (key == QLatin1String("image-show") && value == QLatin1String("false")) {
            monitor.style = 0;
        }
    }
    return result;
}

std::optional<DesktopPicture::Setting> XfceBackdropConfig::settingFor(const QString& screen) const {
    const Monitor* chosen = nullptr;
    for (const Monitor& monitor : monitors) {
        if (monitor.name == screen) {
            chosen = &monitor;
            break;
        }
        if (chosen == nullptr && !monitor.image.isEmpty()) {
            chosen = &monitor;
        }
    }
    if (chosen == nullptr || chosen->image.isEmpty() || chosen->style == 0) {
        return std::nullopt;
    }
    return DesktopPicture::Setting{
        .file = chosen->image, .fill = fillOf(chosen->style), .identity = {}};
}

} // namespace tw
