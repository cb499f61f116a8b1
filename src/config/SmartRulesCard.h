// The smart layout rules on the "layouts" section: each rule with its trigger, profile, order and
// switch, and a form that adds a rule or edits the chosen one.
#pragma once

#include "config/ConfigContext.h"
#include "displays/SmartLayoutRule.h"

#include <QWidget>

#include <optional>

class QComboBox;
class QLineEdit;
class QPushButton;
class QStackedWidget;
class QTimeEdit;
class QVBoxLayout;

namespace tw {

class SmartLayoutCoordinator;

class SmartRulesCard final : public QWidget {
    Q_OBJECT
public:
    // `displays` are offered for display rules, the connected ones first.
    SmartRulesCard(SmartLayoutCoordinator& coordinator, QList<ConfigContext::Display> displays,
                   QWidget* parent = nullptr);

    // One line on what makes the rule hold, as the list shows it.
    static QString describe(const SmartLayoutRule& rule);

private:
    void refreshList();
    void refreshProfiles();
    QWidget* rowFor(const SmartLayoutRule& rule, qsizetype index, qsizetype count);
    void edit(const std::optional<SmartLayoutRule>& rule);
    void commitForm();

    SmartLayoutCoordinator& m_coordinator;
    QList<ConfigContext::Display> m_displays;
    QVBoxLayout* m_list;
    QLineEdit* m_name;
    QComboBox* m_trigger;
    QStackedWidget* m_triggerFields;
    QTimeEdit* m_start;
    QTimeEdit* m_end;
    QLineEdit* m_application;
    QComboBox* m_display;
    QComboBox* m_profile;
    QPushButton* m_commit;
    QPushButton* m_cancel;
    // The rule the form edits; none while it makes a new one.
    std::optional<SmartLayoutRule> m_editing;
};

} // namespace tw
