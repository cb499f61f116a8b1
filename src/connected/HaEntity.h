// One Home Assistant entity as a smart home tile shows it: its id, name and state.
#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

namespace tw {

struct HaEntity {
    // "light.kitchen": the domain, a dot, the object id.
    QString id;
    // The friendly name; the object id where there is none.
    QString name;
    // "on", "off", "21.5", "unavailable", ...
    QString state;
    QString unit;
    // "temperature", "door", "motion", ...
    QString deviceClass;
    // A light's brightness, 0…255, while on and where the light dims.
    std::optional<int> brightness;
    QDateTime changed;

    // "light", "switch", "sensor", ...
    QString domain() const;
    // Lights, switches, fans and helpers a click turns on and off.
    bool isToggleable() const;
    bool isOn() const;
    // Home Assistant knows the entity but not its state now.
    bool isUnavailable() const;

    bool operator==(const HaEntity&) const = default;

    // Whether `id` has the shape of an entity id.
    static bool isEntityId(const QString& id);
};

} // namespace tw
