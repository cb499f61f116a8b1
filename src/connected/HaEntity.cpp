#include "connected/HaEntity.h"

#include <QRegularExpression>

namespace tw {

QString HaEntity::domain() const {
    return id.section(QLatin1Char('.'), 0, 0);
}

bool HaEntity::isToggleable() const {
    static const QStringList domains{QStringLiteral("light"),      QStringLiteral("switch"),
                                     QStringLiteral("fan"),        QStringLiteral("input_boolean"),
                                     QStringLiteral("automation"), QStringLiteral("siren"),
                                     QStringLiteral("humidifier")};
    return domains.contains(domain()) && !isUnavailable();
}

bool HaEntity::isOn() const {
    return state == QLatin1String("on") || state == QLatin1String("open") ||
           state == QLatin1String("home") || state == QLatin1String("playing") ||
           state == QLatin1String("unlocked");
}

bool HaEntity::isUnavailable() const {
    return state.isEmpty() || state == QLatin1String("unavailable") ||
           state == QLatin1String("unknown");
}

bool HaEntity::isEntityId(const QString& id) {
    static const QRegularExpression pattern(QStringLiteral("^[a-z0-9_]+\\.[a-z0-9_]+$"));
    return id.size() <= 255 && pattern.match(id).hasMatch();
}

} // namespace tw
