// What the desktop knows of one panel beyond its tile: covered, hovered.
#pragma once

#include <QObject>

namespace tw {

class PanelState final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool occluded READ occluded WRITE setOccluded NOTIFY occludedChanged)
    Q_PROPERTY(bool hovering READ hovering WRITE setHovering NOTIFY hoveringChanged)
public:
    using QObject::QObject;

    bool occluded() const { return m_occluded; }
    bool hovering() const { return m_hovering; }

    void setOccluded(bool occluded) {
        if (occluded != m_occluded) {
            m_occluded = occluded;
            Q_EMIT occludedChanged(occluded);
        }
    }
    void setHovering(bool hovering) {
        if (hovering != m_hovering) {
            m_hovering = hovering;
            Q_EMIT hoveringChanged(hovering);
        }
    }

Q_SIGNALS:
    void occludedChanged(bool occluded);
    void hoveringChanged(bool hovering);

private:
    bool m_occluded = false;
    bool m_hovering = false;
};

} // namespace tw
