// "On the desktop": the tiles standing there now, each by its kind's name (and what tells copies
// apart) and its size, each opening its own page. Follows the grid as it changes.
#pragma once

#include "config/SettingsPage.h"

#include <QUuid>

namespace tw {

struct ConfigContext;
class SettingsCard;

class DesktopWidgetsPage final : public SettingsPage {
    Q_OBJECT
public:
    // `context` must have a grid and a registry.
    explicit DesktopWidgetsPage(ConfigContext& context, QWidget* parent = nullptr);

    // The rows' titles as shown, in order, for tests and pictures.
    QStringList rowTitles() const;

Q_SIGNALS:
    void widgetChosen(const QUuid& id);

private:
    void rebuild();

    ConfigContext& m_context;
    SettingsCard* m_card;
};

} // namespace tw
