// A desktop picture set by hand: tests and pictures drawn without a desktop. Without a Q_OBJECT
// of its own, so that the platform library, which has no QtGui, never compiles it.
#pragma once

#include "platform/DesktopPicture.h"

#include <QHash>
#include <QImage>

namespace tw {

class FixedDesktopPicture final : public DesktopPicture {
public:
    using DesktopPicture::DesktopPicture;

    std::optional<Setting> setting(const QString& screen) const override {
        const auto it = m_settings.constFind(screen);
        return it == m_settings.cend() ? std::nullopt : std::optional(*it);
    }
    QImage rootPicture() const override { return m_root; }

    // Sets the picture of one display and says so.
    void setSetting(const QString& screen, const Setting& setting) {
        m_settings.insert(screen, setting);
        Q_EMIT changed();
    }
    void setRootPicture(const QImage& root) {
        m_root = root;
        Q_EMIT changed();
    }

private:
    QHash<QString, Setting> m_settings;
    QImage m_root;
};

} // namespace tw
