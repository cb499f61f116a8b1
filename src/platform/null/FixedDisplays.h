// Displays given by the caller: tests, and pictures drawn without a display.
#pragma once

#include "platform/Displays.h"

namespace tw {

class FixedDisplays final : public Displays {
    Q_OBJECT
public:
    explicit FixedDisplays(QList<ScreenInfo> screens = {}, QObject* parent = nullptr)
        : Displays(parent)
        , m_screens(std::move(screens)) {}

    QList<ScreenInfo> screens() const override { return m_screens; }

    // Replaces the set and announces it, as a plugged or unplugged monitor would.
    void setScreens(QList<ScreenInfo> screens) {
        m_screens = std::move(screens);
        Q_EMIT screensChanged();
    }

private:
    QList<ScreenInfo> m_screens;
};

} // namespace tw
