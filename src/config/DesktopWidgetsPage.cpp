#include "config/DesktopWidgetsPage.h"

#include "config/ConfigContext.h"
#include "config/SettingsCard.h"
#include "grid/GridStore.h"
#include "model/WidgetRegistry.h"
#include "text/L.h"

#include <QLabel>
#include <QLayout>
#include <QPushButton>

#include <algorithm>

namespace tw {

DesktopWidgetsPage::DesktopWidgetsPage(ConfigContext& context, QWidget* parent)
    : SettingsPage(L("config.onDesktop", QStringLiteral("On the desktop")), parent)
    , m_context(context)
    , m_card(addGroup(QStringLiteral("tiles"),
                      L("onDesktop.heading", QStringLiteral("Widgets now on the desktop")))) {
    setObjectName(QStringLiteral("desktopWidgetsPage"));
    connect(m_context.grid, &GridStore::layoutChanged, this, &DesktopWidgetsPage::rebuild);
    rebuild();
}

void DesktopWidgetsPage::rebuild() {
    while (QLayoutItem* item = m_card->layout()->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    // In the order they were added, so that a list read twice reads the same.
    QList<WidgetInstance> tiles = m_context.grid->layout().instances;
    std::stable_sort(tiles.begin(), tiles.end(),
                     [](const auto& a, const auto& b) { return a.order < b.order; });
    if (tiles.isEmpty()) {
        m_card->addRow(
            L("onDesktop.none", QStringLiteral("No widgets are on the desktop.")),
            L("onDesktop.noneCaption", QStringLiteral("Add one from the gallery under Widgets.")),
            nullptr);
        return;
    }
    for (const WidgetInstance& tile : tiles) {
        const auto definition = m_context.registry->definition(tile.kind);
        QString title = definition ? definition->metadata.displayName : tile.kind;
        if (const auto copy = WidgetRegistry::copyLabel(tile)) {
            title += QStringLiteral(" — ") + *copy;
        }
        auto* open = new QPushButton(L("onDesktop.open", QStringLiteral("Settings…")));
        open->setCursor(Qt::PointingHandCursor);
        open->setAccessibleName(
            L("onDesktop.openName", QStringLiteral("Settings of %1")).arg(title));
        const QUuid id = tile.id;
        connect(open, &QPushButton::clicked, this, [this, id] { Q_EMIT widgetChosen(id); });
        QWidget* row = m_card->addRow(title, label(tile.size), open);
        row->setProperty("rowTitle", title);
    }
}

QStringList DesktopWidgetsPage::rowTitles() const {
    QStringList titles;
    for (const QWidget* row : m_card->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        if (row->property("rowTitle").isValid()) {
            titles << row->property("rowTitle").toString();
        }
    }
    return titles;
}

} // namespace tw
