#include "config/UpdatesPage.h"

#include "config/ConfigContext.h"
#include "config/SettingsCard.h"
#include "text/L.h"

#include <QLabel>

namespace tw {

UpdatesPage::UpdatesPage(ConfigContext& context, QWidget* parent)
    : SettingsPage(L("config.updates", QStringLiteral("Updates")), parent) {
    SettingsCard* card =
        addGroup(QStringLiteral("version"), L("updates.version", QStringLiteral("This version")));
    card->addRow(L("about.version", QStringLiteral("Version")), QString(),
                 new QLabel(context.version));
    card->addRow(L("updates.how", QStringLiteral("New versions")),
                 L("updates.how.sub", QStringLiteral("Tarnwick is updated by the package manager "
                                                     "that installed it, with the rest of your "
                                                     "system.")),
                 nullptr);
}

} // namespace tw
