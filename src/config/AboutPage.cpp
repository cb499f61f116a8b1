#include "config/AboutPage.h"

#include "config/ConfigContext.h"
#include "config/SettingsCard.h"
#include "text/L.h"

#include <QLabel>
#include <QPushButton>
#include <QUrl>

namespace tw {

AboutPage::AboutPage(ConfigContext& context, QWidget* parent)
    : SettingsPage(L("config.about", QStringLiteral("About")), parent) {
    SettingsCard* folder =
        addGroup(QStringLiteral("data"), L("about.tarnwick", QStringLiteral("Tarnwick")));
    folder->addRow(L("about.version", QStringLiteral("Version")), QString(),
                 new QLabel(context.version));
    auto* open = new QPushButton(L("about.data.open", QStringLiteral("Show Folder")));
    open->setEnabled(static_cast<bool>(context.open) && !context.dataDirectory.isEmpty());
    connect(open, &QPushButton::clicked, this, [this, &context] {
        if (!context.open(QUrl::fromLocalFile(context.dataDirectory))) {
            reportProblem(L("about.data.cannotOpen",
                            QStringLiteral("The folder could not be opened.")));
        }
    });
    QWidget* folderRow = folder->addRow(L("about.data", QStringLiteral("Your data")),
                                      context.dataDirectory, open);
    if (auto* path = folderRow->findChild<QLabel*>(QStringLiteral("caption"))) {
        path->setTextInteractionFlags(Qt::TextSelectableByMouse);
    }

    SettingsCard* licences = addGroup(QStringLiteral("licences"),
                                      L("about.licences", QStringLiteral("Made with")));
    const struct {
        const char* name;
        const char* licence;
    } bundled[] = {
        {"Qt 6", "LGPL-3.0"},
        {"Material Symbols", "Apache-2.0"},
        {"GLib / GIO", "LGPL-2.1"},
        {"libxcb", "MIT"},
    };
    for (const auto& item : bundled) {
        licences->addRow(QString::fromLatin1(item.name), QString::fromLatin1(item.licence),
                         nullptr);
    }
}

} // namespace tw
