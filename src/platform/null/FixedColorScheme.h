// A colour scheme set by hand: tests, off-screen pictures and desktops that publish none.
#pragma once

#include "platform/ColorSchemeWatcher.h"

namespace tw {

class FixedColorScheme final : public ColorSchemeWatcher {
    Q_OBJECT
public:
    explicit FixedColorScheme(ColorScheme scheme = ColorScheme::Dark, QObject* parent = nullptr)
        : ColorSchemeWatcher(parent)
        , m_scheme(scheme) {}

    ColorScheme colorScheme() const override { return m_scheme; }
    void setColorScheme(ColorScheme scheme) {
        if (scheme != m_scheme) {
            m_scheme = scheme;
            Q_EMIT colorSchemeChanged(scheme);
        }
    }

private:
    ColorScheme m_scheme;
};

} // namespace tw
