// One evaluation of 50 smart layout rules, as the 30-second timer runs it, when none holds (every
// rule judged) and when the last one holds; and reading the rules file of 50 rules at start.
#include "displays/SmartLayoutRuleResolver.h"
#include "displays/SmartLayoutRuleStore.h"
#include "platform/SystemClock.h"

#include <QJsonDocument>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

using namespace tw;

constexpr int ruleCount = 50;

// Schedules, applications and displays in turn; display rules name a display by its name, which
// is compared folded, the costliest comparison.
QList<SmartLayoutRule> fiftyRules() {
    QList<SmartLayoutRule> rules;
    for (int i = 0; i < ruleCount; ++i) {
        SmartLayoutRule rule;
        rule.id = QUuid::createUuid();
        rule.name = QStringLiteral("Rule %1").arg(i);
        rule.profileID = QUuid::createUuid();
        rule.trigger = static_cast<SmartLayoutRule::Trigger>(i % 3);
        rule.startMinute = 60 + i;
        rule.endMinute = 120 + i;
        rule.applicationBundleID = QStringLiteral("org.example.App%1").arg(i);
        rule.displayName = QStringLiteral("Écran de présentation %1").arg(i);
        rules.append(rule);
    }
    return rules;
}

SmartLayoutContext context() {
    const LayoutDisplayRect frame{0, 0, 1920, 1080};
    return SmartLayoutContext{
        .date = QDateTime(QDate(2026, 5, 1), QTime(12, 0), Qt::UTC),
        .activeApplicationBundleID = QStringLiteral("org.example.Editor"),
        .displays = {{QStringLiteral("eDP-1"), QStringLiteral("Built-in Display"), frame, frame,
                      true},
                     {QStringLiteral("HDMI-1"), QStringLiteral("Écran Studio"), frame, frame,
                      false}},
    };
}

QSet<QUuid> profilesOf(const QList<SmartLayoutRule>& rules) {
    QSet<QUuid> ids;
    for (const SmartLayoutRule& rule : rules) {
        ids.insert(rule.profileID);
    }
    return ids;
}

void evaluateNoneHolds(benchmark::State& state) {
    const QList<SmartLayoutRule> rules = fiftyRules();
    const QSet<QUuid> valid = profilesOf(rules);
    const SmartLayoutContext now = context();
    for (auto _ : state) {
        benchmark::DoNotOptimize(SmartLayoutRuleResolver::matchingRule(rules, valid, now));
    }
}
BENCHMARK(evaluateNoneHolds);

void evaluateLastHolds(benchmark::State& state) {
    QList<SmartLayoutRule> rules = fiftyRules();
    rules.last().trigger = SmartLayoutRule::Trigger::display;
    rules.last().displayName = QStringLiteral("ecran studio");
    const QSet<QUuid> valid = profilesOf(rules);
    const SmartLayoutContext now = context();
    for (auto _ : state) {
        benchmark::DoNotOptimize(SmartLayoutRuleResolver::matchingRule(rules, valid, now));
    }
}
BENCHMARK(evaluateLastHolds);

void loadRulesFile(benchmark::State& state) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("smart-layout-rules.json"));
    const SystemClock clock;
    {
        SmartLayoutRuleStore seed(clock, path);
        for (const SmartLayoutRule& rule : fiftyRules()) {
            seed.add(rule);
        }
    }
    for (auto _ : state) {
        const SmartLayoutRuleStore store(clock, path);
        benchmark::DoNotOptimize(store.rules().size());
    }
}
BENCHMARK(loadRulesFile)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
