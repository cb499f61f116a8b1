#include "config/AboutPage.h"

#include "config/ConfigContext.h"
#include "config/NoticeSlot.h"
#include "config/SettingsCard.h"
#include "config/Sparkline.h"
#include "platform/Scheduler.h"
#include "readings/AppEnergyMeter.h"
#include "text/L.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

namespace tw {

namespace {

// A figure's column: its title, then its value large; the caller adds the lines below.
QVBoxLayout* figure(QHBoxLayout* columns, const QString& title, QLabel*& value) {
    auto* column = new QVBoxLayout();
    column->setSpacing(4);
    auto* heading = new QLabel(title);
    QFont bold = heading->font();
    bold.setWeight(QFont::DemiBold);
    heading->setFont(bold);
    column->addWidget(heading);
    value = new QLabel();
    value->setObjectName(QStringLiteral("title"));
    column->addWidget(value);
    columns->addLayout(column, 1);
    return column;
}

} // namespace

AboutPage::AboutPage(ConfigContext& context, QWidget* parent)
    : SettingsPage(L("config.about", QStringLiteral("About")), parent)
    , m_context(context) {
    if (context.notices) {
        addWidget(new NoticeSlot(*context.notices, Notice::Placement::about,
                                 NoticeCard::Style::card, context.symbols));
    }
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

    if (context.energy || context.cost) {
        SettingsCard* cost =
            addGroup(QStringLiteral("cost"),
                     L("energy.usage.title", QStringLiteral("What Tarnwick uses on this Mac")));
        if (AppEnergyMeter* meter = context.energy) {
            auto* figures = new QWidget();
            auto* columns = new QHBoxLayout(figures);
            columns->setContentsMargins(0, 0, 0, 0);
            columns->setSpacing(24);
            QVBoxLayout* live = figure(
                columns, L("energy.usage.open", QStringLiteral("With this window open")), m_live);
            m_history = new Sparkline(5.0);
            live->addWidget(m_history);
            live->addWidget(caption(L("energy.usage.openNote",
                                      QStringLiteral("The previews here are drawn live, so this "
                                                     "is the high figure."))));
            QVBoxLayout* closed =
                figure(columns, L("energy.usage.closed", QStringLiteral("Desktop, window closed")),
                       m_closed);
            m_closedNote = caption(QString());
            closed->addWidget(m_closedNote);
            closed->addStretch(1);
            cost->addWide(figures);
            m_memory = caption(QString());
            cost->addWide(m_memory);
            for (auto signal : {&AppEnergyMeter::liveChanged, &AppEnergyMeter::memoryMBChanged,
                                &AppEnergyMeter::closedAverageChanged}) {
                connect(meter, signal, this, &AboutPage::showEnergy);
            }
        }
        if (context.cost) {
            m_tiles = caption(QString());
            m_tiles->setTextFormat(Qt::PlainText);
            cost->addRow(
                L("about.cost.tiles", QStringLiteral("Drawing each tile")),
                L("about.cost.tiles.sub", QStringLiteral("Time spent drawing in the last minute.")),
                nullptr);
            cost->addWide(m_tiles);
        }
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

QString AboutPage::stretch(double seconds) {
    if (seconds < 90) {
        return L("energy.usage.seconds", QStringLiteral("%1 seconds")).arg(qRound(seconds));
    }
    if (seconds < 90 * 60) {
        return L("energy.usage.minutes", QStringLiteral("%1 minutes")).arg(qRound(seconds / 60));
    }
    return L("energy.usage.hours", QStringLiteral("%1 hours")).arg(qRound(seconds / 3600));
}

void AboutPage::showEnergy() {
    const AppEnergyMeter* meter = m_context.energy;
    if (meter == nullptr) {
        return;
    }
    const auto percent = [](double value) -> QString {
        return QLocale().toString(value, 'f', 0) + QStringLiteral(" %");
    };
    m_live->setText(meter->liveHistory().isEmpty() ? QStringLiteral("…") : percent(meter->live()));
    m_history->setValues(meter->liveHistory());
    const std::optional<AppEnergyMeter::Reading> closed = meter->closedAverage();
    m_closed->setText(closed ? percent(closed->cpuPercent) : QStringLiteral("—"));
    m_closedNote->setText(
        closed ? L("energy.usage.closedNote", QStringLiteral("Average over the last %1."))
                     .arg(stretch(closed->seconds))
               : L("energy.usage.closedNone",
                   QStringLiteral("Close this window for a while and open it again to see it.")));
    m_memory->setText(
        L("energy.usage.memory", QStringLiteral("%1 MB of memory")).arg(qRound(meter->memoryMB())));
}

void AboutPage::refreshCost() {
    showEnergy();
    if (!m_context.cost) {
        return;
    }
    QStringList lines;
    for (const ConfigContext::Cost::Tile& tile : m_context.cost().tiles) {
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
    if (m_context.energy) {
        m_context.energy->startLive();
    }
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
