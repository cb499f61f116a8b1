// The "updates" section: the version running and how new versions arrive on this system.
#pragma once

#include "config/SettingsPage.h"

namespace tw {

struct ConfigContext;

class UpdatesPage final : public SettingsPage {
    Q_OBJECT
public:
    explicit UpdatesPage(ConfigContext& context, QWidget* parent = nullptr);
};

} // namespace tw
