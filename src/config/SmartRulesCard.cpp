#include "config/SmartRulesCard.h"

#include "config/SettingsCard.h"
#include "config/SwitchButton.h"
#include "displays/LayoutProfileStore.h"
#include "displays/SmartLayoutCoordinator.h"
#include "displays/SmartLayoutRuleStore.h"
#include "text/L.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QStackedWidget>
#include <QTimeEdit>
#include <QVBoxLayout>

namespace tw {

namespace {

using Trigger = SmartLayoutRule::Trigger;

QHBoxLayout* bareRow(QWidget* owner) {
    auto* row = new QHBoxLayout(owner);
    row->setContentsMargins(0, 0, 0, 0);
    return row;
}

QString timeOf(int minute) {
    return QLocale().toString(QTime(minute / 60, minute % 60), QLocale::ShortFormat);
}

int minuteOf(const QTime& time) {
    return time.hour() * 60 + time.minute();
}

} // namespace

SmartRulesCard::SmartRulesCard(SmartLayoutCoordinator& coordinator,
                               QList<ConfigContext::Display> displays, QWidget* parent)
    : QWidget(parent)
    , m_coordinator(coordinator)
    , m_displays(std::move(displays)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(caption(
        L("layouts.rules.explain",
          QStringLiteral("The first rule that holds picks the profile; when none holds any more, "
                         "the profile from before comes back.")),
        this));
    auto* list = new QWidget(this);
    m_list = new QVBoxLayout(list);
    m_list->setContentsMargins(0, 0, 0, 0);
    column->addWidget(list);

    auto* form = new QWidget(this);
    form->setObjectName(QStringLiteral("ruleForm"));
    auto* fields = new QFormLayout(form);
    fields->setContentsMargins(0, 8, 0, 0);
    m_name = new QLineEdit(form);
    m_name->setPlaceholderText(L("layouts.rule.name.placeholder", QStringLiteral("Evenings")));
    m_trigger = new QComboBox(form);
    for (const Trigger trigger : {Trigger::schedule, Trigger::application, Trigger::display}) {
        m_trigger->addItem(SmartLayoutRule::triggerTitle(trigger), static_cast<int>(trigger));
    }
    m_triggerFields = new QStackedWidget(form);
    auto* window = new QWidget(m_triggerFields);
    auto* windowLine = bareRow(window);
    m_start = new QTimeEdit(QTime(18, 0), window);
    m_end = new QTimeEdit(QTime(23, 0), window);
    windowLine->addWidget(m_start);
    windowLine->addWidget(new QLabel(QStringLiteral("–"), window));
    windowLine->addWidget(m_end);
    windowLine->addStretch(1);
    m_application = new QLineEdit(m_triggerFields);
    m_application->setPlaceholderText(
        L("layouts.rule.app.placeholder", QStringLiteral("Application id, such as firefox")));
    m_display = new QComboBox(m_triggerFields);
    for (const ConfigContext::Display& display : std::as_const(m_displays)) {
        m_display->addItem(display.name, display.id);
    }
    m_triggerFields->addWidget(window);
    m_triggerFields->addWidget(m_application);
    m_triggerFields->addWidget(m_display);
    m_profile = new QComboBox(form);
    auto* buttons = new QWidget(form);
    auto* buttonLine = bareRow(buttons);
    m_commit = new QPushButton(buttons);
    m_commit->setObjectName(QStringLiteral("primary"));
    m_cancel = new QPushButton(L("common.cancel", QStringLiteral("Cancel")), buttons);
    buttonLine->addStretch(1);
    buttonLine->addWidget(m_cancel);
    buttonLine->addWidget(m_commit);
    fields->addRow(L("layouts.rule.name", QStringLiteral("Name")), m_name);
    fields->addRow(L("layouts.rule.when", QStringLiteral("When")), m_trigger);
    fields->addRow(QString(), m_triggerFields);
    fields->addRow(L("layouts.rule.profile", QStringLiteral("Use profile")), m_profile);
    fields->addRow(buttons);
    column->addWidget(form);

    connect(m_trigger, &QComboBox::currentIndexChanged, this, [this](int index) {
        m_triggerFields->setCurrentIndex(index);
        // The application last in front is the likely one.
        if (index == static_cast<int>(Trigger::application) && m_application->text().isEmpty()) {
            m_application->setText(
                m_coordinator.lastExternalApplicationBundleID().value_or(QString()));
        }
    });
    connect(m_commit, &QPushButton::clicked, this, &SmartRulesCard::commitForm);
    connect(m_cancel, &QPushButton::clicked, this, [this] { edit(std::nullopt); });
    connect(&m_coordinator.rules(), &SmartLayoutRuleStore::rulesChanged, this,
            &SmartRulesCard::refreshList);
    connect(&m_coordinator.profiles(), &LayoutProfileStore::profilesChanged, this,
            &SmartRulesCard::refreshProfiles);
    refreshProfiles();
    refreshList();
    edit(std::nullopt);
}

QString SmartRulesCard::describe(const SmartLayoutRule& rule) {
    switch (rule.trigger) {
    case Trigger::schedule:
        if (rule.startMinute == rule.endMinute) {
            return L("layouts.rule.allDay", QStringLiteral("All day"));
        }
        return L("layouts.rule.window", QStringLiteral("From %1 to %2"))
            .arg(timeOf(std::clamp(rule.startMinute, 0, SmartLayoutRule::minutesPerDay - 1)),
                 timeOf(std::clamp(rule.endMinute, 0, SmartLayoutRule::minutesPerDay - 1)));
    case Trigger::application:
        return L("layouts.rule.app", QStringLiteral("While %1 is in front"))
            .arg(rule.applicationBundleID);
    case Trigger::display:
        return L("layouts.rule.display", QStringLiteral("While %1 is connected"))
            .arg(rule.displayName.isEmpty() ? rule.displayID : rule.displayName);
    }
    return {};
}

void SmartRulesCard::refreshProfiles() {
    const QVariant chosen = m_profile->currentData();
    m_profile->clear();
    for (const LayoutProfile& profile : m_coordinator.profiles().profiles()) {
        m_profile->addItem(profile.displayName(), profile.id);
    }
    m_profile->setCurrentIndex(std::max(0, m_profile->findData(chosen)));
    refreshList();
}

void SmartRulesCard::refreshList() {
    // Later: the row whose button asked for the change is still in its signal.
    while (QLayoutItem* item = m_list->takeAt(0)) {
        if (QWidget* row = item->widget()) {
            row->hide();
            row->deleteLater();
        }
        delete item;
    }
    const QList<SmartLayoutRule>& rules = m_coordinator.rules().rules();
    if (rules.isEmpty()) {
        m_list->addWidget(caption(L("layouts.rules.none", QStringLiteral("No rules yet.")), this));
    }
    for (qsizetype i = 0; i < rules.size(); ++i) {
        m_list->addWidget(rowFor(rules[i], i, rules.size()));
    }
}

QWidget* SmartRulesCard::rowFor(const SmartLayoutRule& rule, qsizetype index, qsizetype count) {
    auto* row = new QWidget();
    row->setObjectName(QStringLiteral("ruleRow"));
    auto* line = bareRow(row);
    auto* enabled = new SwitchButton(row);
    enabled->setChecked(rule.isEnabled);
    enabled->setAccessibleName(L("layouts.rule.enabled", QStringLiteral("Rule on")));
    const auto profile = m_coordinator.profiles().profile(rule.profileID);
    auto* text = new QLabel(
        QStringLiteral("<b>%1</b><br>%2 → %3")
            .arg(rule.name.toHtmlEscaped(), describe(rule).toHtmlEscaped(),
                 (profile ? profile->displayName() : QStringLiteral("—")).toHtmlEscaped()),
        row);
    auto* up = new QPushButton(QStringLiteral("↑"), row);
    up->setAccessibleName(L("layouts.rule.up", QStringLiteral("Earlier")));
    up->setEnabled(index > 0);
    auto* down = new QPushButton(QStringLiteral("↓"), row);
    down->setAccessibleName(L("layouts.rule.down", QStringLiteral("Later")));
    down->setEnabled(index + 1 < count);
    auto* change = new QPushButton(L("common.edit", QStringLiteral("Edit")), row);
    auto* remove = new QPushButton(L("common.remove", QStringLiteral("Remove")), row);
    line->addWidget(enabled);
    line->addWidget(text, 1);
    line->addWidget(up);
    line->addWidget(down);
    line->addWidget(change);
    line->addWidget(remove);

    SmartLayoutRuleStore& store = m_coordinator.rules();
    const QUuid id = rule.id;
    connect(enabled, &SwitchButton::toggled, this,
            [&store, id](bool on) { store.setEnabled(id, on); });
    connect(up, &QPushButton::clicked, this, [&store, id, index] { store.move(id, index - 1); });
    connect(down, &QPushButton::clicked, this, [&store, id, index] { store.move(id, index + 1); });
    connect(change, &QPushButton::clicked, this, [this, rule] { edit(rule); });
    connect(remove, &QPushButton::clicked, this, [this, &store, id] {
        if (m_editing && m_editing->id == id) {
            edit(std::nullopt);
        }
        store.remove(id);
    });
    return row;
}

void SmartRulesCard::edit(const std::optional<SmartLayoutRule>& rule) {
    m_editing = rule;
    m_commit->setText(rule ? L("layouts.rule.save", QStringLiteral("Save Rule"))
                           : L("layouts.rule.add", QStringLiteral("Add Rule")));
    m_cancel->setVisible(rule.has_value());
    if (!rule) {
        m_name->clear();
        return;
    }
    m_name->setText(rule->name);
    m_trigger->setCurrentIndex(static_cast<int>(rule->trigger));
    m_start->setTime(QTime(0, 0).addSecs(60 * std::clamp(rule->startMinute, 0, 1439)));
    m_end->setTime(QTime(0, 0).addSecs(60 * std::clamp(rule->endMinute, 0, 1439)));
    m_application->setText(rule->applicationBundleID);
    const int display = m_display->findData(rule->displayID);
    if (display < 0 && !rule->displayID.isEmpty()) {
        // A display that is not connected now stays choosable.
        m_display->addItem(rule->displayName, rule->displayID);
    }
    m_display->setCurrentIndex(std::max(0, m_display->findData(rule->displayID)));
    m_profile->setCurrentIndex(std::max(0, m_profile->findData(rule->profileID)));
}

void SmartRulesCard::commitForm() {
    SmartLayoutRule rule = m_editing.value_or(SmartLayoutRule{});
    if (!m_editing) {
        rule.id = QUuid::createUuid();
    }
    rule.trigger = static_cast<Trigger>(m_trigger->currentData().toInt());
    rule.profileID = m_profile->currentData().toUuid();
    rule.startMinute = minuteOf(m_start->time());
    rule.endMinute = minuteOf(m_end->time());
    rule.applicationBundleID = m_application->text().trimmed();
    rule.displayID = m_display->currentData().toString();
    rule.displayName = m_display->currentText();
    rule.name = m_name->text().trimmed();
    if (rule.name.isEmpty()) {
        rule.name = describe(rule);
    }
    // A rule that could never hold is not made.
    const bool incomplete =
        (rule.trigger == Trigger::application && rule.applicationBundleID.isEmpty()) ||
        (rule.trigger == Trigger::display && rule.displayID.isEmpty());
    if (rule.profileID.isNull() || incomplete) {
        return;
    }
    if (m_editing) {
        m_coordinator.rules().update(rule);
    } else {
        m_coordinator.rules().add(rule);
    }
    edit(std::nullopt);
}

} // namespace tw
