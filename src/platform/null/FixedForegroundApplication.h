// A foreground application set by the caller: tests, and systems that cannot tell.
#pragma once

#include "platform/ForegroundApplication.h"

namespace tw {

class FixedForegroundApplication final : public ForegroundApplication {
    Q_OBJECT
public:
    using ForegroundApplication::ForegroundApplication;

    std::optional<ForegroundApp> frontmost() const override { return m_app; }

    // Brings `app` to the front and announces it, as the window system would.
    void activate(const ForegroundApp& app) {
        m_app = app;
        Q_EMIT activated(app);
    }

private:
    std::optional<ForegroundApp> m_app;
};

} // namespace tw
