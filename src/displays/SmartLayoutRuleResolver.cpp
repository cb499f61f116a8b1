#include "displays/SmartLayoutRuleResolver.h"

namespace tw {

std::optional<SmartLayoutRule>
SmartLayoutRuleResolver::matchingRule(const QList<SmartLayoutRule>& rules,
                                      const QSet<QUuid>& validProfileIDs,
                                      const SmartLayoutContext& context) {
    for (const SmartLayoutRule& rule : rules) {
        if (validProfileIDs.contains(rule.profileID) && rule.matches(context)) {
            return rule;
        }
    }
    return std::nullopt;
}

} // namespace tw
