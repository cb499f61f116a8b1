// The "about" section: the version, where the data lives, what the program costs this machine, and
// what is bundled with its licence.
#pragma once

#include "config/SettingsPage.h"
#include "platform/ScheduledTask.h"

class QLabel;

namespace tw {

class Sparkline;
struct ConfigContext;

class AboutPage final : public SettingsPage {
    Q_OBJECT
public:
    explicit AboutPage(ConfigContext& context, QWidget* parent = nullptr);

    // Shows the meter's figures and reads the tiles' drawing again.
    void refreshCost();
    // "45 seconds", "12 minutes", "3 hours".
    static QString stretch(double seconds);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void showEnergy();

    ConfigContext& m_context;
    QLabel* m_live = nullptr;
    Sparkline* m_history = nullptr;
    QLabel* m_closed = nullptr;
    QLabel* m_closedNote = nullptr;
    QLabel* m_memory = nullptr;
    QLabel* m_tiles = nullptr;
    ScheduledTask m_refresh;
};

} // namespace tw
