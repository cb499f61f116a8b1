// The "general" section: starting at login and with the window, the energy modes, how tiles are
// handled, and the language, which takes effect at the next start.
#pragma once

#include "config/SettingsPage.h"

namespace tw {

struct ConfigContext;

class GeneralPage final : public SettingsPage {
    Q_OBJECT
public:
    explicit GeneralPage(ConfigContext& context, QWidget* parent = nullptr);

private:
    void addStartup();
    void addEnergy();
    void addInteraction();
    void addLanguage();
    // Binds a switch to a setting: a change that cannot be kept flips the switch back.
    QWidget* boundSwitch(bool value, const QString& what, std::function<void(bool)> store);

    ConfigContext& m_context;
};

} // namespace tw
