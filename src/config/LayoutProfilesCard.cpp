#include "config/LayoutProfilesCard.h"

#include "config/SettingsCard.h"
#include "displays/LayoutProfileStore.h"
#include "text/L.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

namespace tw {

namespace {

QHBoxLayout* bareRow(QWidget* owner) {
    auto* row = new QHBoxLayout(owner);
    row->setContentsMargins(0, 0, 0, 0);
    return row;
}

} // namespace

LayoutProfilesCard::LayoutProfilesCard(SmartLayoutCoordinator& coordinator, QWidget* parent)
    : QWidget(parent)
    , m_coordinator(coordinator) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);

    auto* statusRow = new QWidget(this);
    auto* statusLine = bareRow(statusRow);
    m_status = caption(QString(), statusRow);
    m_status->setObjectName(QStringLiteral("smartStatus"));
    m_resume = new QPushButton(L("layouts.resume", QStringLiteral("Resume Rules")), statusRow);
    statusLine->addWidget(m_status, 1);
    statusLine->addWidget(m_resume);
    column->addWidget(statusRow);
    connect(m_resume, &QPushButton::clicked, this, [this] { m_coordinator.resumeAutomation(); });

    auto* list = new QWidget(this);
    m_list = new QVBoxLayout(list);
    m_list->setContentsMargins(0, 0, 0, 0);
    column->addWidget(list);

    m_undoBar = new QWidget(this);
    auto* undoLine = bareRow(m_undoBar);
    m_undoText = caption(QString(), m_undoBar);
    auto* undo = new QPushButton(L("common.undo", QStringLiteral("Undo")), m_undoBar);
    undo->setObjectName(QStringLiteral("undoDelete"));
    undoLine->addWidget(m_undoText, 1);
    undoLine->addWidget(undo);
    m_undoBar->hide();
    column->addWidget(m_undoBar);
    connect(undo, &QPushButton::clicked, this, [this] {
        if (m_deleted) {
            m_coordinator.restoreDeleted(*std::exchange(m_deleted, std::nullopt));
        }
        m_undoBar->hide();
    });

    auto* actions = new QWidget(this);
    auto* actionLine = bareRow(actions);
    m_newName = new QLineEdit(actions);
    m_newName->setPlaceholderText(
        L("layouts.newProfile.placeholder", QStringLiteral("New profile name")));
    auto* create = new QPushButton(L("layouts.newProfile", QStringLiteral("New Profile")), actions);
    auto* save =
        new QPushButton(L("layouts.saveCurrent", QStringLiteral("Save Current Layout")), actions);
    save->setToolTip(L("layouts.saveCurrent.help",
                       QStringLiteral("Keeps the desktop as it is now in the active profile.")));
    actionLine->addWidget(m_newName, 1);
    actionLine->addWidget(create);
    actionLine->addWidget(save);
    column->addWidget(actions);
    const auto makeProfile = [this] {
        m_coordinator.createProfile(m_newName->text());
        m_newName->clear();
    };
    connect(create, &QPushButton::clicked, this, makeProfile);
    connect(m_newName, &QLineEdit::returnPressed, this, makeProfile);
    connect(save, &QPushButton::clicked, this, [this] { m_coordinator.saveCurrentProfile(); });

    LayoutProfileStore& profiles = m_coordinator.profiles();
    connect(&profiles, &LayoutProfileStore::profilesChanged, this,
            &LayoutProfilesCard::refreshList);
    connect(&profiles, &LayoutProfileStore::activeProfileIDChanged, this,
            &LayoutProfilesCard::refreshList);
    connect(&m_coordinator, &SmartLayoutCoordinator::statusChanged, this,
            &LayoutProfilesCard::refreshStatus);
    refreshStatus();
    refreshList();
}

QString LayoutProfilesCard::statusText(const SmartLayoutCoordinator::Status& status) {
    using Kind = SmartLayoutCoordinator::Status::Kind;
    switch (status.kind) {
    case Kind::manualPause:
        return L("layouts.status.paused",
                 QStringLiteral("Switched by hand: smart rules wait until %1."))
            .arg(QLocale().toString(status.until.time(), QLocale::ShortFormat));
    case Kind::applied:
        return L("layouts.status.applied", QStringLiteral("“%1” chose %2."))
            .arg(status.ruleName, status.profileName);
    case Kind::idle:
        break;
    }
    return L("layouts.status.idle", QStringLiteral("No smart rule applies now."));
}

void LayoutProfilesCard::refreshStatus() {
    const SmartLayoutCoordinator::Status& status = m_coordinator.status();
    m_status->setText(statusText(status));
    m_resume->setVisible(status.kind == SmartLayoutCoordinator::Status::Kind::manualPause);
}

void LayoutProfilesCard::refreshList() {
    QList<Shown> shown;
    const LayoutProfileStore& profiles = m_coordinator.profiles();
    for (const LayoutProfile& profile : profiles.profiles()) {
        shown.append({profile.id, profile.displayName(), profile.isDefault,
                      profile.id == profiles.activeProfileID()});
    }
    if (shown == m_shown) {
        return;
    }
    m_shown = shown;
    // Later: the row whose button or field asked for the change is still in its signal.
    while (QLayoutItem* item = m_list->takeAt(0)) {
        if (QWidget* row = item->widget()) {
            row->hide();
            row->deleteLater();
        }
        delete item;
    }
    for (const Shown& profile : std::as_const(m_shown)) {
        m_list->addWidget(rowFor(profile));
    }
}

QWidget* LayoutProfilesCard::rowFor(const Shown& profile) {
    auto* row = new QWidget();
    row->setObjectName(QStringLiteral("profileRow"));
    auto* line = bareRow(row);
    auto* name = new QLineEdit(profile.name, row);
    name->setObjectName(QStringLiteral("profileName"));
    name->setAccessibleName(L("layouts.profileName", QStringLiteral("Profile name")));
    auto* active = new QLabel(
        profile.isActive ? L("layouts.active", QStringLiteral("Active")) : QString(), row);
    active->setMinimumWidth(56);
    auto* use = new QPushButton(L("layouts.switch", QStringLiteral("Switch To")), row);
    use->setEnabled(!profile.isActive);
    auto* duplicate = new QPushButton(L("layouts.duplicate", QStringLiteral("Duplicate")), row);
    auto* remove = new QPushButton(L("common.delete", QStringLiteral("Delete")), row);
    remove->setEnabled(!profile.isDefault);
    if (profile.isDefault) {
        remove->setToolTip(
            L("layouts.default.keep", QStringLiteral("The default profile is always kept.")));
    }
    line->addWidget(name, 1);
    line->addWidget(active);
    line->addWidget(use);
    line->addWidget(duplicate);
    line->addWidget(remove);

    const QUuid id = profile.id;
    connect(name, &QLineEdit::editingFinished, this, [this, name, id] {
        const auto current = m_coordinator.profiles().profile(id);
        if (!current || name->text() == current->displayName()) {
            return;
        }
        // A blank name is refused; the field shows the name that stays.
        if (!m_coordinator.profiles().renameProfile(id, name->text())) {
            name->setText(current->displayName());
        }
    });
    connect(use, &QPushButton::clicked, this, [this, id] {
        m_coordinator.activateProfile(id, SmartLayoutCoordinator::Switch::manual);
    });
    connect(duplicate, &QPushButton::clicked, this,
            [this, id] { m_coordinator.duplicateProfile(id); });
    connect(remove, &QPushButton::clicked, this,
            [this, id, shownName = profile.name] { deleteProfile(id, shownName); });
    return row;
}

void LayoutProfilesCard::deleteProfile(const QUuid& id, const QString& name) {
    m_deleted = m_coordinator.deleteProfile(id);
    if (!m_deleted) {
        return;
    }
    const qsizetype rules = m_deleted->rules.size();
    m_undoText->setText(rules == 0
                            ? L("layouts.deleted", QStringLiteral("“%1” was deleted.")).arg(name)
                            : L("layouts.deleted.rules",
                                QStringLiteral("“%1” and the rules that chose it were deleted."))
                                  .arg(name));
    m_undoBar->show();
}

} // namespace tw
