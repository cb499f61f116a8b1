// The "layouts" section: the arrangement on the desktop and the way back through its changes.
#pragma once

#include "config/SettingsPage.h"

namespace tw {

struct ConfigContext;

class LayoutsPage final : public SettingsPage {
    Q_OBJECT
public:
    explicit LayoutsPage(ConfigContext& context, QWidget* parent = nullptr);
};

} // namespace tw
