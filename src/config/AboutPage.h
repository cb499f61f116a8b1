// The "about" section: the version, where the data lives, and what is bundled with its licence.
#pragma once

#include "config/SettingsPage.h"
#include "platform/ScheduledTask.h"

class QLabel;

namespace tw {

struct ConfigContext;

class AboutPage final : public SettingsPage {
    Q_OBJECT
public:
    explicit AboutPage(ConfigContext& context, QWidget* parent = nullptr);

    // Reads the figures again.
    void refreshCost();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    ConfigContext& m_context;
    QLabel* m_processor = nullptr;
    QLabel* m_memory = nullptr;
    QLabel* m_tiles = nullptr;
    ScheduledTask m_refresh;
};

} // namespace tw
