// The "smart-layout-rules.json" decoder: any bytes decode or fail without harm, a decoded list
// survives a round trip, and every rule is judged at every hour without crashing.
#include "Require.h"
#include "displays/SmartLayoutRuleResolver.h"

#include <QByteArray>
#include <QJsonDocument>

#include <cstdint>

using tw::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto document = tw::SmartLayoutRulesDocument::fromJson(bytes);
    if (!document) {
        return 0;
    }
    const auto again =
        tw::SmartLayoutRulesDocument::fromJson(QJsonDocument(document->toJson()).toJson());
    require(again && again->rules == document->rules, "a round trip keeps the rules");
    QSet<QUuid> profiles;
    for (const tw::SmartLayoutRule& rule : document->rules) {
        profiles.insert(rule.profileID);
    }
    tw::SmartLayoutContext context{
        .date = QDateTime(QDate(2026, 5, 1), QTime(0, 0), Qt::UTC),
        .activeApplicationBundleID = QStringLiteral("org.example.Editor"),
        .displays = {{QStringLiteral("HDMI-1"),
                      QStringLiteral("Écran"),
                      {0, 0, 1920, 1080},
                      {0, 0, 1920, 1080},
                      true}},
    };
    for (int hour = 0; hour < 24; ++hour) {
        context.date = context.date.addSecs(3600);
        const auto match =
            tw::SmartLayoutRuleResolver::matchingRule(document->rules, profiles, context);
        require(!match || match->isEnabled, "a disabled rule never matches");
    }
    return 0;
}
