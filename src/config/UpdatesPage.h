// The "updates" section: automatic checks, the last check and its result, a newer version's
// notes and how to bring it in on this system.
#pragma once

#include "config/SettingsPage.h"

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace tw {

struct ConfigContext;
class SettingsCard;

class UpdatesPage final : public SettingsPage {
    Q_OBJECT
public:
    explicit UpdatesPage(ConfigContext& context, QWidget* parent = nullptr);

    // "Today at 14:02: Tarnwick is up to date." and its kin, for the last-check row.
    QString lastCheckText() const;

private:
    void addChecking();
    void refresh();
    // The newer version's card: its notes and the way to install it here.
    void fillAvailable();
    QWidget* installRow();

    ConfigContext& m_context;
    QLabel* m_lastCheck = nullptr;
    QPushButton* m_checkNow = nullptr;
    QWidget* m_availableGroup = nullptr;
    QVBoxLayout* m_availableColumn = nullptr;
    QString m_shownNewest;
};

} // namespace tw
