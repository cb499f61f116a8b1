#include "config/AboutPage.h"

#include "config/ConfigContext.h"
#include "config/SettingsCard.h"
#include "platform/Scheduler.h"
#include "text/L.h"

#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QUrl>

namespace tw {

AboutPage::AboutPage(ConfigContext& context, QWidget* parent)
    : SettingsPage(L("config.about", QStringLiteral("About")), parent)
    , m_context(context) {
    SettingsCard* folder =
        addGroup(QStringLiteral("data"), L("about.tarnwick", QStringLiteral("Tarnwick")));
    folder->addRow(L("about.version", QStringLiteral("Version")), QString(),
                   new QLabel(context.version));
    auto* open = new QPushButton(L("about.data.open", QStringLiteral("Show Folder")));
    open->setEnabled(static_cast<bool>(context.open) && !context.dataDirectory.isEmpty());
    connect(open, &QPushButton::clicked, this, [this, &context] {
        if (!context.open(QUrl::fromLocalFile(context.dataDirectory))) {
            reportProblem(
                L("about.data.cannotOpen", QStringLiteral("The folder could not be opened.")));
        }
    });
    QWidget* folderRow =
        folder->addRow(L("about.data", QStringLiteral("Your data")), context.dataDirectory, open);
    if (auto* path = folderRow->findChild<QLabel*>(QStringLiteral("caption"))) {
        path->setTextInteractionFlags(Qt::TextSelectableByMouse);
    }

    if (context.cost) {
        SettingsCard* cost =
            addGroup(QStringLiteral("cost"), L("about.cost", QStringLiteral("What it costs")));
        m_processor = new QLabel();
        m_memory = new QLabel();
        cost->addRow(L("about.cost.processor", QStringLiteral("Processor")),
                     L("about.cost.processor.sub",
                       QStringLiteral("Of one core, over the last two seconds, with this window "
                                      "open: the previews here are drawn live, so this is the "
                                      "high figure.")),
                     m_processor);
        cost->addRow(L("about.cost.memory", QStringLiteral("Memory")), QString(), m_memory);
        m_tiles = caption(QString());
        m_tiles->setTextFormat(Qt::PlainText);
        cost->addRow(
            L("about.cost.tiles", QStringLiteral("Drawing each tile")),
            L("about.cost.tiles.sub", QStringLiteral("Time spent drawing in the last minute.")),
            nullptr);
        cost->addWide(m_tiles);
        refreshCost();
    }

    SettingsCard* licences =
        addGroup(QStringLiteral("licences"), L("about.licences", QStringLiteral("Made with")));
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

void AboutPage::refreshCost() {
    if (!m_context.cost) {
        return;
    }
    const ConfigContext::Cost cost = m_context.cost();
    m_processor->setText(cost.processorPercent < 0
                             ? QStringLiteral("…")
                             : QLocale().toString(cost.processorPercent, 'f', 1) +
                                   QStringLiteral(" %"));
    m_memory->setText(L("energy.usage.memory", QStringLiteral("%1 MB of memory"))
                          .arg(cost.memoryBytes / (1024 * 1024)));
    QStringList lines;
    for (const ConfigContext::Cost::Tile& tile : cost.tiles) {
        lines << L("about.cost.tile", QStringLiteral("%1: %2 ms in %n paints"))
                     .arg(tile.name, QLocale().toString(tile.milliseconds, 'f', 1))
                     .replace(QStringLiteral("%n"), QString::number(tile.paints));
    }
    m_tiles->setText(lines.isEmpty() ? L("about.cost.none",
                                         QStringLiteral("No tile has drawn in the last minute."))
                                     : lines.join(QLatin1Char('\n')));
}

void AboutPage::showEvent(QShowEvent* event) {
    SettingsPage::showEvent(event);
    if (m_context.cost && m_context.scheduler) {
        refreshCost();
        m_refresh =
            m_context.scheduler->repeating(std::chrono::seconds(2), std::chrono::milliseconds(500),
                                           this, [this] { refreshCost(); });
    }
}

void AboutPage::hideEvent(QHideEvent* event) {
    SettingsPage::hideEvent(event);
    m_refresh.cancel();
}

} // namespace tw
