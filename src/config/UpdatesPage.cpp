#include "config/UpdatesPage.h"

#include "config/ConfigContext.h"
#include "config/ReleaseNotesList.h"
#include "config/SettingsCard.h"
#include "config/SwitchButton.h"
#include "platform/Clock.h"
#include "text/L.h"
#include "updates/UpdateService.h"

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

namespace tw {

namespace {

QPushButton* button(const QString& text) {
    auto* made = new QPushButton(text);
    made->setAutoDefault(false);
    return made;
}

QString howNewVersionsArrive(const Installation& installation) {
    switch (installation.kind) {
    case Installation::Kind::systemPackage:
        return L("updates.how.package",
                 QStringLiteral("Tarnwick came as a %1, so your system's updates bring new "
                                "versions with everything else."))
            .arg(installation.source);
    case Installation::Kind::sandboxed:
        return L("updates.how.sandboxed",
                 QStringLiteral("Tarnwick came as a %1, which updates it with your other "
                                "applications."))
            .arg(installation.source);
    case Installation::Kind::unmanaged:
        break;
    }
    return L("updates.how.unmanaged",
             QStringLiteral("This copy of Tarnwick was built or unpacked by hand: a new version "
                            "comes from the release page."));
}

} // namespace

UpdatesPage::UpdatesPage(ConfigContext& context, QWidget* parent)
    : SettingsPage(L("config.updates", QStringLiteral("Updates")), parent)
    , m_context(context) {
    if (m_context.updates) {
        SettingsCard* available = addGroup(QStringLiteral("available"),
                                           L("updates.available", QStringLiteral("New version")));
        m_availableGroup = available->parentWidget();
        auto* holder = new QWidget();
        m_availableColumn = new QVBoxLayout(holder);
        m_availableColumn->setContentsMargins(0, 12, 0, 12);
        m_availableColumn->setSpacing(8);
        available->addWide(holder);
        addChecking();
    }

    SettingsCard* card =
        addGroup(QStringLiteral("version"), L("updates.version", QStringLiteral("This version")));
    QPushButton* whatsNew = nullptr;
    if (m_context.showWhatsNew) {
        whatsNew = button(L("updates.whatsnew", QStringLiteral("What’s New…")));
        connect(whatsNew, &QPushButton::clicked, this, [this] { m_context.showWhatsNew(); });
    }
    card->addRow(L("about.version", QStringLiteral("Version")), context.version, whatsNew);
    card->addRow(L("updates.how", QStringLiteral("New versions")),
                 howNewVersionsArrive(context.installation), nullptr);
    refresh();
}

void UpdatesPage::addChecking() {
    UpdateService& updates = *m_context.updates;
    SettingsCard* card =
        addGroup(QStringLiteral("checking"), L("updates.checking", QStringLiteral("Checking")));
    auto* automatic = new SwitchButton();
    automatic->setChecked(updates.automatic());
    const QString title = L("updates.automatic", QStringLiteral("Check for updates automatically"));
    connect(automatic, &SwitchButton::toggled, this, [this, automatic, title](bool on) {
        if (!m_context.canSave()) {
            reportNotSaved(title);
            const QSignalBlocker blocker(automatic);
            automatic->setChecked(!on);
            return;
        }
        clearReport();
        m_context.updates->setAutomatic(on);
    });
    card->addRow(title,
                 L("updates.automatic.note",
                   QStringLiteral("At start and once a day. Only the list of releases is fetched; "
                                  "nothing about you or this computer is sent.")),
                 automatic);
    m_checkNow = button(L("updates.checkNow", QStringLiteral("Check Now")));
    connect(m_checkNow, &QPushButton::clicked, this, [this] { m_context.updates->checkNow(); });
    QWidget* row =
        card->addRow(L("updates.lastCheck", QStringLiteral("Last check")), QString(), m_checkNow);
    m_lastCheck = caption(QString());
    m_lastCheck->setObjectName(QStringLiteral("caption"));
    card->addLine(row, m_lastCheck);
    connect(&updates, &UpdateService::statusChanged, this, &UpdatesPage::refresh);
}

QString UpdatesPage::lastCheckText() const {
    if (!m_context.updates) {
        return {};
    }
    const UpdateStatus& status = m_context.updates->status();
    if (status.checking) {
        return L("updates.checking.now", QStringLiteral("Checking…"));
    }
    if (!status.lastCheck) {
        return L("updates.never", QStringLiteral("Not checked yet."));
    }
    const QDateTime when = status.lastCheck->toLocalTime();
    const QDate today = m_context.clock ? m_context.clock->now().date() : QDate::currentDate();
    const QString time = QLocale().toString(when.time(), QLocale::ShortFormat);
    QString said =
        when.date() == today
            ? L("updates.when.today", QStringLiteral("Today at %1")).arg(time)
            : QLocale().toString(when.date(), QLocale::ShortFormat) + QLatin1Char(' ') + time;
    switch (status.outcome) {
    case UpdateStatus::Outcome::upToDate:
        return L("updates.result.upToDate", QStringLiteral("%1: Tarnwick is up to date."))
            .arg(said);
    case UpdateStatus::Outcome::available:
        return L("updates.result.available", QStringLiteral("%1: Tarnwick %2 is available."))
            .arg(said, status.available()->version.toString());
    case UpdateStatus::Outcome::failed:
        return L("updates.result.failed", QStringLiteral("%1: %2")).arg(said, status.failure);
    case UpdateStatus::Outcome::never:
        break;
    }
    return said;
}

void UpdatesPage::refresh() {
    if (!m_context.updates) {
        return;
    }
    const UpdateStatus& status = m_context.updates->status();
    m_lastCheck->setText(lastCheckText());
    m_checkNow->setEnabled(!status.checking);
    const Release* newest = status.available();
    m_availableGroup->setVisible(newest != nullptr);
    const QString shown = newest ? newest->version.toString() : QString();
    if (shown != m_shownNewest) {
        m_shownNewest = shown;
        fillAvailable();
    }
}

void UpdatesPage::fillAvailable() {
    while (QLayoutItem* item = m_availableColumn->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    const UpdateStatus& status = m_context.updates->status();
    if (!status.available()) {
        return;
    }
    auto* headline = new QLabel(L("updates.available.title", QStringLiteral("Tarnwick %1 is "
                                                                            "available"))
                                    .arg(status.available()->version.toString()));
    headline->setObjectName(QStringLiteral("cardName"));
    m_availableColumn->addWidget(headline);
    m_availableColumn->addWidget(
        caption(L("updates.available.sub", QStringLiteral("You have %1.")).arg(m_context.version)));
    m_availableColumn->addWidget(new ReleaseNotesList(status.newer));
    m_availableColumn->addWidget(installRow());
}

QWidget* UpdatesPage::installRow() {
    const Installation& installation = m_context.installation;
    const Release& newest = *m_context.updates->status().available();
    auto* box = new QWidget();
    auto* column = new QVBoxLayout(box);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    const bool hasCommand = !installation.upgradeCommand.isEmpty();
    column->addWidget(
        caption(hasCommand ? L("updates.install.command",
                               QStringLiteral("To update now, run this in a terminal, or let your "
                                              "system's updates do it:"))
                           : L("updates.install.page",
                               QStringLiteral("Download the new version from its release page."))));
    auto* buttons = new QHBoxLayout();
    buttons->setSpacing(8);
    if (hasCommand) {
        auto* command = new QLineEdit(installation.upgradeCommand);
        command->setReadOnly(true);
        command->setAccessibleName(L("updates.install.commandName", QStringLiteral("Command")));
        buttons->addWidget(command, 1);
        auto* copy = button(L("updates.install.copy", QStringLiteral("Copy")));
        connect(copy, &QPushButton::clicked, this,
                [command] { QApplication::clipboard()->setText(command->text()); });
        buttons->addWidget(copy);
    } else {
        buttons->addStretch(1);
    }
    const QUrl page =
        newest.page.isEmpty() ? QUrl(QStringLiteral("https://tarnwick.com/releases")) : newest.page;
    auto* open = button(L("updates.install.openPage", QStringLiteral("Release Page")));
    open->setObjectName(hasCommand ? QString() : QStringLiteral("primary"));
    open->setEnabled(static_cast<bool>(m_context.open));
    connect(open, &QPushButton::clicked, this, [this, page] {
        if (!m_context.open(page)) {
            reportProblem(L("updates.install.cannotOpen",
                            QStringLiteral("The release page could not be opened.")));
        }
    });
    buttons->addWidget(open);
    column->addLayout(buttons);
    return box;
}

} // namespace tw
