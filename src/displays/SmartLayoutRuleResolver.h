// Picks the rule that decides the layout: the first in the user's order that holds.
#pragma once

#include "displays/SmartLayoutRule.h"

#include <QList>
#include <QSet>
#include <QUuid>

#include <optional>

namespace tw {

class SmartLayoutRuleResolver {
public:
    SmartLayoutRuleResolver() = delete;

    // A rule whose profile is gone never matches; there is no precedence but the order.
    static std::optional<SmartLayoutRule> matchingRule(const QList<SmartLayoutRule>& rules,
                                                       const QSet<QUuid>& validProfileIDs,
                                                       const SmartLayoutContext& context);
};

} // namespace tw
