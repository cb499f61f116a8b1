// A ledger as text for comparisons: "id=seconds …", summed over every hour, sorted by id.
#pragma once

#include "desk/AppUsageLedger.h"

#include <QMap>
#include <QStringList>

namespace tw::test {

inline QString totals(const AppUsageLedger& ledger) {
    QMap<QString, double> sums;
    for (const auto& [hour, apps] : ledger.buckets()) {
        for (auto app = apps.cbegin(); app != apps.cend(); ++app) {
            sums[app.key()] += app.value();
        }
    }
    QStringList parts;
    for (auto sum = sums.cbegin(); sum != sums.cend(); ++sum) {
        parts.append(sum.key() + QLatin1Char('=') + QString::number(sum.value()));
    }
    return parts.join(QLatin1Char(' '));
}

} // namespace tw::test
