#include "platform/linux/PlasmaWallpaperConfig.h"

#include "platform/linux/PictureUri.h"

#include <QMap>
#include <QStringList>

namespace tw {

namespace {

using Group = QHash<QString, QString>;
using Config = QMap<QStringList, Group>;

QString unescape(QStringView value) {
    QString out;
    out.reserve(value.size());
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] != QLatin1Char('\\') || i + 1 == value.size()) {
            out += value[i];
            continue;
        }
        switch (value[++i].unicode()) {
        case 's':
            out += QLatin1Char(' ');
            break;
        case 't':
            out += QLatin1Char('\t');
            break;
        case 'n':
            out += QLatin1Char('\n');
            break;
        case 'r':
            out += QLatin1Char('\r');
            break;
        default:
            out += value[i];
            break;
        }
    }
    return out;
}

// KDE's configuration files: "[A][B]" headers name nested groups; a key may carry "[$e]" or a
// locale in brackets, which are dropped (the first of duplicate keys is kept, as KDE does for
// the unmarked one).
Config parseConfig(const QByteArray& text) {
    Config config;
    Group* group = &config[QStringList()];
    for (const QByteArray& raw : text.split('\n')) {
        const QString line = QString::fromUtf8(raw).trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#'))) {
            continue;
        }
        if (line.startsWith(QLatin1Char('['))) {
            QStringView inner = QStringView(line).mid(1);
            if (inner.endsWith(QLatin1Char(']'))) {
                inner.chop(1);
            }
            group = &config[inner.toString().split(QStringLiteral("]["))];
            continue;
        }
        const qsizetype equals = line.indexOf(QLatin1Char('='));
        if (equals <= 0) {
            continue;
        }
        QString key = line.left(equals).trimmed();
        const qsizetype bracket = key.indexOf(QLatin1Char('['));
        if (bracket == 0) {
            continue;
        }
        if (bracket > 0) {
            key.truncate(bracket);
        }
        if (!group->contains(key)) {
            group->insert(key, unescape(QStringView(line).mid(equals + 1).trimmed()));
        }
    }
    return config;
}

int toInt(const QString& text, int fallback) {
    bool ok = false;
    const int value = text.toInt(&ok);
    return ok ? value : fallback;
}

DesktopPicture::Fill fillOf(int mode) {
    using Fill = DesktopPicture::Fill;
    // The modes of a QML Image: Stretch, PreserveAspectFit, PreserveAspectCrop, Tile,
    // TileVertically, TileHorizontally, Pad.
    switch (mode) {
    case 0:
        return Fill::stretch;
    case 1:
        return Fill::fit;
    case 3:
    case 4:
    case 5:
        return Fill::tile;
    case 6:
        return Fill::center;
    default:
        return Fill::zoom;
    }
}

} // namespace

PlasmaWallpaperConfig PlasmaWallpaperConfig::parse(const QByteArray& appletsrc,
                                                   const QByteArray& shellrc,
                                                   const QByteArray& activitiesrc) {
    PlasmaWallpaperConfig result;
    const Config applets = parseConfig(appletsrc);
    const QString containments = QStringLiteral("Containments");
    const QString imagePlugin = QStringLiteral("org.kde.image");
    for (auto it = applets.cbegin(); it != applets.cend(); ++it) {
        const QStringList& path = it.key();
        if (path.size() != 2 || path[0] != containments) {
            continue;
        }
        const Group& main = it.value();
        // Panels carry a wallpaper plugin too; only a flat containment is a desktop.
        if (toInt(main.value(QStringLiteral("formfactor")), 0) != 0 ||
            main.value(QStringLiteral("plugin")) == QLatin1String("org.kde.panel")) {
            continue;
        }
        Desktop desktop;
        desktop.screen = toInt(main.value(QStringLiteral("lastScreen")), -1);
        desktop.activity = main.value(QStringLiteral("activityId"));
        if (main.value(QStringLiteral("wallpaperplugin"), imagePlugin) == imagePlugin) {
            const Group general = applets.value({containments, path[1], QStringLiteral("Wallpaper"),
                                                 imagePlugin, QStringLiteral("General")});
            desktop.image = PictureUri::localFile(general.value(QStringLiteral("Image")));
            desktop.fillMode = toInt(general.value(QStringLiteral("FillMode")), 2);
        }
        result.desktops.append(desktop);
    }
    const Group connectors = parseConfig(shellrc).value({QStringLiteral("ScreenConnectors")});
    for (auto it = connectors.cbegin(); it != connectors.cend(); ++it) {
        bool ok = false;
        const int number = it.key().toInt(&ok);
        if (ok && !it.value().isEmpty()) {
            result.connectors.insert(number, it.value());
        }
    }
    result.currentActivity = parseConfig(activitiesrc)
                                 .value({QStringLiteral("main")})
                                 .value(QStringLiteral("currentActivity"));
    return result;
}

std::optional<DesktopPicture::Setting>
PlasmaWallpaperConfig::settingFor(const QString& screen) const {
    int number = 0;
    for (auto it = connectors.cbegin(); it != connectors.cend(); ++it) {
        if (it.value() == screen) {
            number = it.key();
        }
    }
    const Desktop* chosen = nullptr;
    for (const Desktop& desktop : desktops) {
        if (desktop.screen != number) {
            continue;
        }
        if (chosen == nullptr ||
            (desktop.activity == currentActivity && chosen->activity != currentActivity)) {
            chosen = &desktop;
        }
    }
    if (chosen == nullptr && !desktops.isEmpty() && !connectors.values().contains(screen)) {
        chosen = &desktops.first();
    }
    if (chosen == nullptr || chosen->image.isEmpty()) {
        return std::nullopt;
    }
    return DesktopPicture::Setting{
        .file = chosen->image, .fill = fillOf(chosen->fillMode), .identity = {}};
}

} // namespace tw
