// The desktop's colour scheme from the XDG settings portal ("org.freedesktop.appearance"
// "color-scheme"), followed through its SettingChanged signal; where no portal answers, or it
// has no preference, the lightness of the application palette's window colour.
#pragma once

#include "platform/ColorSchemeWatcher.h"

#include <QDBusVariant>

#include <optional>

namespace tw {

class PortalColorScheme final : public ColorSchemeWatcher {
    Q_OBJECT
public:
    // Starts with the palette's answer and asks the portal once the event loop runs, without
    // waiting for its answer.
    explicit PortalColorScheme(QObject* parent = nullptr);

    ColorScheme colorScheme() const override;

    // The portal's value: 1 dark, 2 light, anything else (0 is "no preference") none.
    static std::optional<ColorScheme> fromPortalValue(const QVariant& value);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private Q_SLOTS:
    void onSettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void watchPortal();
    void read(const QString& method);
    void setPortalScheme(std::optional<ColorScheme> scheme);
    void update();

    std::optional<ColorScheme> m_portal;
    ColorScheme m_scheme;
};

} // namespace tw
