// The desktop picture of GNOME and the desktops that share its settings (Unity, Budgie), of
// Cinnamon and of MATE, read and followed through GSettings.
#pragma once

#include "platform/DesktopPicture.h"

#include <QObject>

#include <memory>
#include <optional>

struct _GSettings;

namespace tw {

class GSettingsPicture final : public QObject {
    Q_OBJECT
public:
    enum class Desktop { gnome, cinnamon, mate };

    // Null when the desktop's settings schema is not installed.
    static std::unique_ptr<GSettingsPicture> create(Desktop desktop, QObject* parent = nullptr);
    ~GSettingsPicture() override;

    // The same picture on every display; its identity left empty. Nullopt when the desktop
    // shows no picture or names no local file.
    std::optional<DesktopPicture::Setting> setting() const;
    // Makes `file` the picture, of the dark look too, zoomed to each display; false when the
    // settings refuse a key.
    bool show(const QString& file);

Q_SIGNALS:
    void changed();

private:
    struct Keys;
    GSettingsPicture(const Keys& keys, _GSettings* background, _GSettings* appearance,
                     QObject* parent);
    static void onChanged(_GSettings* settings, const char* key, void* self);
    QString read(_GSettings* settings, const char* key) const;

    const Keys& m_keys;
    _GSettings* m_background;
    // The light or dark look that chooses between two pictures; may be null.
    _GSettings* m_appearance;
};

} // namespace tw
