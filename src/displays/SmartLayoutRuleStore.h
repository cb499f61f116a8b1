// The smart layout rules in the user's order, and "smart-layout-rules.json". Every change is
// written at once.
#pragma once

#include "displays/SmartLayoutRule.h"

#include <QList>
#include <QObject>
#include <QSet>
#include <QString>
#include <QUuid>

namespace tw {

class Clock;

class SmartLayoutRuleStore final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QList<tw::SmartLayoutRule> rules READ rules NOTIFY rulesChanged)
public:
    // "smart-layout-rules.json" in the data directory.
    static QString defaultPath();

    // Loads `filePath` (empty: the default path); an unreadable file is set aside.
    explicit SmartLayoutRuleStore(const Clock& clock, const QString& filePath = {},
                                  QObject* parent = nullptr);

    const QList<SmartLayoutRule>& rules() const { return m_rules; }
    QString fileURL() const { return m_filePath; }

    void add(const SmartLayoutRule& rule);
    // Puts a rule at `index` in the order (a removed one back where it was); false if its id is
    // taken.
    bool insert(const SmartLayoutRule& rule, qsizetype index);
    // Replaces the rule of that id; false if there is none.
    bool update(const SmartLayoutRule& rule);
    void setEnabled(const QUuid& id, bool enabled);
    // Moves a rule to `index` in the order.
    void move(const QUuid& id, qsizetype index);
    void remove(const QUuid& id);
    // Removes every rule whose profile is not among `validProfileIDs`.
    void prune(const QSet<QUuid>& validProfileIDs);

Q_SIGNALS:
    void rulesChanged();

private:
    void load();
    qsizetype indexOf(const QUuid& id) const;
    void commit(QList<SmartLayoutRule> rules);
    void save();

    const Clock& m_clock;
    QString m_filePath;
    // Something other than a data file sits at the path; it is never written over.
    bool m_fileLeftAlone = false;
    QList<SmartLayoutRule> m_rules;
};

} // namespace tw
