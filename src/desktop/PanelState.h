// What the desktop knows of one panel beyond its tile: covered, hovered, holding the keyboard.
#pragma once

#include <QObject>

#include <functional>

namespace tw {

class PanelState final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool occluded READ occluded WRITE setOccluded NOTIFY occludedChanged)
    Q_PROPERTY(bool hovering READ hovering WRITE setHovering NOTIFY hoveringChanged)
    Q_PROPERTY(bool isKey READ isKey WRITE setKey NOTIFY isKeyChanged)
public:
    using QObject::QObject;

    bool occluded() const { return m_occluded; }
    bool hovering() const { return m_hovering; }
    bool isKey() const { return m_isKey; }

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
    void setKey(bool isKey) {
        if (isKey != m_isKey) {
            m_isKey = isKey;
            Q_EMIT isKeyChanged(isKey);
        }
    }

    // Set by the controller: a stack's arrows step it, a typed-into tile reports editing.
    std::function<void(int)> onStackStep;
    std::function<void()> onBeginEditing;
    std::function<void()> onEndEditing;

Q_SIGNALS:
    void occludedChanged(bool occluded);
    void hoveringChanged(bool hovering);
    void isKeyChanged(bool isKey);

private:
    bool m_occluded = false;
    bool m_hovering = false;
    bool m_isKey = false;
};

} // namespace tw
