// The "about" section: the version, where the data lives, and what is bundled with its licence.
#pragma once

#include "config/SettingsPage.h"

namespace tw {

struct ConfigContext;

class AboutPage final : public SettingsPage {
    Q_OBJECT
public:
    explicit AboutPage(ConfigContext& context, QWidget* parent = nullptr);
};

} // namespace tw
