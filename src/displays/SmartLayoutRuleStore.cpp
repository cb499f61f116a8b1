#include "displays/SmartLayoutRuleStore.h"

#include "platform/AppPaths.h"
#include "platform/AtomicFile.h"
#include "platform/Clock.h"
#include "platform/DataFile.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QLoggingCategory>

namespace tw {

namespace {
Q_LOGGING_CATEGORY(lcRules, "SmartLayouts")
} // namespace

QString SmartLayoutRuleStore::defaultPath() {
    return QDir(AppPaths::appSupportDir()).filePath(QStringLiteral("smart-layout-rules.json"));
}

SmartLayoutRuleStore::SmartLayoutRuleStore(const Clock& clock, const QString& filePath,
                                           QObject* parent)
    : QObject(parent)
    , m_clock(clock)
    , m_filePath(filePath.isEmpty() ? defaultPath() : filePath) {
    load();
}

void SmartLayoutRuleStore::load() {
    std::optional<SmartLayoutRulesDocument> document;
    const DataFile::Outcome outcome =
        DataFile::load(m_filePath, m_clock.now(), [&document](const QByteArray& bytes) {
            document = SmartLayoutRulesDocument::fromJson(bytes);
            return document.has_value();
        });
    m_fileLeftAlone = outcome == DataFile::Outcome::leftAlone;
    if (outcome == DataFile::Outcome::setAside || m_fileLeftAlone) {
        qCWarning(lcRules, "Failed to load smart layout rules: %s",
                  qUtf8Printable(QDir::toNativeSeparators(m_filePath)));
    }
    if (document) {
        m_rules = document->rules;
    }
}

void SmartLayoutRuleStore::add(const SmartLayoutRule& rule) {
    insert(rule, m_rules.size());
}

bool SmartLayoutRuleStore::insert(const SmartLayoutRule& rule, qsizetype index) {
    if (indexOf(rule.id) >= 0) {
        return false;
    }
    QList<SmartLayoutRule> next = m_rules;
    next.insert(std::clamp<qsizetype>(index, 0, next.size()), rule);
    commit(std::move(next));
    return true;
}

bool SmartLayoutRuleStore::update(const SmartLayoutRule& rule) {
    const qsizetype index = indexOf(rule.id);
    if (index < 0) {
        return false;
    }
    QList<SmartLayoutRule> next = m_rules;
    next[index] = rule;
    commit(std::move(next));
    return true;
}

void SmartLayoutRuleStore::setEnabled(const QUuid& id, bool enabled) {
    const qsizetype index = indexOf(id);
    if (index < 0) {
        return;
    }
    QList<SmartLayoutRule> next = m_rules;
    next[index].isEnabled = enabled;
    commit(std::move(next));
}

void SmartLayoutRuleStore::move(const QUuid& id, qsizetype index) {
    const qsizetype from = indexOf(id);
    if (from < 0) {
        return;
    }
    QList<SmartLayoutRule> next = m_rules;
    next.move(from, std::clamp<qsizetype>(index, 0, next.size() - 1));
    commit(std::move(next));
}

void SmartLayoutRuleStore::remove(const QUuid& id) {
    QList<SmartLayoutRule> next = m_rules;
    next.removeIf([&id](const SmartLayoutRule& rule) { return rule.id == id; });
    commit(std::move(next));
}

void SmartLayoutRuleStore::prune(const QSet<QUuid>& validProfileIDs) {
    QList<SmartLayoutRule> next = m_rules;
    next.removeIf([&validProfileIDs](const SmartLayoutRule& rule) {
        return !validProfileIDs.contains(rule.profileID);
    });
    commit(std::move(next));
}

qsizetype SmartLayoutRuleStore::indexOf(const QUuid& id) const {
    for (qsizetype i = 0; i < m_rules.size(); ++i) {
        if (m_rules[i].id == id) {
            return i;
        }
    }
    return -1;
}

void SmartLayoutRuleStore::commit(QList<SmartLayoutRule> rules) {
    if (rules == m_rules) {
        return;
    }
    m_rules = std::move(rules);
    save();
    Q_EMIT rulesChanged();
}

void SmartLayoutRuleStore::save() {
    if (m_fileLeftAlone) {
        return;
    }
    QDir().mkpath(QFileInfo(m_filePath).absolutePath());
    const SmartLayoutRulesDocument document{.rules = m_rules};
    const auto result = AtomicFile::write(
        m_filePath, QJsonDocument(document.toJson()).toJson(QJsonDocument::Indented));
    if (!result) {
        qCWarning(lcRules, "Failed to save smart layout rules: %s", qUtf8Printable(result.error));
    }
}

} // namespace tw
