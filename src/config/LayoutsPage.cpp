#include "config/LayoutsPage.h"

#include "config/ConfigContext.h"
#include "config/LayoutFilesCard.h"
#include "config/LayoutProfilesCard.h"
#include "config/SettingsCard.h"
#include "config/SmartRulesCard.h"
#include "text/L.h"

#include <QHBoxLayout>
#include <QPushButton>

namespace tw {

LayoutsPage::LayoutsPage(ConfigContext& context, QWidget* parent)
    : SettingsPage(L("config.layouts", QStringLiteral("Layouts")), parent) {
    SettingsCard* card = addGroup(QStringLiteral("arrangement"),
                                  L("layouts.arrangement", QStringLiteral("Your arrangement")));
    auto* buttons = new QWidget();
    auto* row = new QHBoxLayout(buttons);
    row->setContentsMargins(0, 0, 0, 0);
    auto* undo = new QPushButton(L("layouts.undo", QStringLiteral("Undo")), buttons);
    auto* redo = new QPushButton(L("layouts.redo", QStringLiteral("Redo")), buttons);
    undo->setEnabled(static_cast<bool>(context.undo));
    redo->setEnabled(static_cast<bool>(context.redo));
    row->addWidget(undo);
    row->addWidget(redo);
    connect(undo, &QPushButton::clicked, this, [&context] { context.undo(); });
    connect(redo, &QPushButton::clicked, this, [&context] { context.redo(); });
    card->addRow(L("layouts.history", QStringLiteral("Changes to the desktop")),
                 L("layouts.history.sub",
                   QStringLiteral("Every move, resize, stack and removal can be undone, also "
                                  "with Ctrl+Z and Ctrl+Shift+Z while this window is in front.")),
                 buttons);

    if (context.smartLayouts != nullptr) {
        addGroup(QStringLiteral("profiles"), L("layouts.profiles", QStringLiteral("Profiles")))
            ->addWide(new LayoutProfilesCard(*context.smartLayouts));
        addGroup(QStringLiteral("rules"), L("layouts.rules", QStringLiteral("Smart rules")))
            ->addWide(new SmartRulesCard(*context.smartLayouts, context.displays));
    }
    auto* files = new LayoutFilesCard(context);
    addWidget(files);
    addPage(QStringLiteral("backups"), files->backupsGroup());
    addPage(QStringLiteral("files"), files->filesGroup());
}

} // namespace tw
