// The "topology.json" and "topology.homes.json" decoders: any bytes decode or fail without harm,
// whatever decodes is written back and read again to the same records, and the resolver takes
// every decoded snapshot — however odd its numbers — without crashing.
#include "Require.h"
#include "displays/LayoutProfileResolver.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdint>

using tw::fuzz::require;

namespace {

const QList<tw::LayoutDisplay> desk{{QStringLiteral("laptop"),
                                     QStringLiteral("Built-in"),
                                     {0, 0, 1512, 982},
                                     {0, 0, 1512, 950},
                                     true},
                                    {QStringLiteral("monitor"),
                                     QStringLiteral("LG"),
                                     {1512, 0, 2560, 1440},
                                     {1512, 0, 2560, 1440},
                                     false}};

void exercise(const tw::LayoutProfileSnapshot& snapshot) {
    const auto again = tw::LayoutProfileSnapshot::fromJson(snapshot.toJson());
    require(again.has_value(), "an encoded snapshot decodes");
    require(*again == snapshot, "a round trip keeps the snapshot");
    const tw::LayoutProfileSnapshot upgraded = tw::LayoutProfileResolver::upgraded(snapshot);
    require(upgraded.placements.size() == snapshot.placements.size(),
            "upgrading keeps every placement");
    tw::LayoutProfileResolver::topologySignature(snapshot.displays);
    tw::LayoutProfileResolver::resolve(snapshot, desk);
    tw::LayoutProfileResolver::resolve(snapshot, snapshot.displays);
    const auto captured = tw::LayoutProfileResolver::snapshot(
        snapshot.layout, snapshot.displays, snapshot.placements, snapshot.capturedAt);
    require(captured.placements.size() <= snapshot.layout.instances.size(),
            "at most one placement per widget");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray text =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QJsonDocument document = QJsonDocument::fromJson(text);
    if (document.isObject()) {
        const QJsonObject object = document.object();
        for (auto it = object.begin(); it != object.end(); ++it) {
            if (const auto snapshot = tw::LayoutProfileSnapshot::fromJson(it.value())) {
                exercise(*snapshot);
            }
        }
    } else if (document.isArray()) {
        for (const QJsonValue& value : document.array()) {
            if (const auto placement = tw::LayoutWidgetPlacement::fromJson(value)) {
                const auto again = tw::LayoutWidgetPlacement::fromJson(placement->toJson());
                require(again && *again == *placement, "a round trip keeps the placement");
                if (const auto target =
                        tw::LayoutProfileResolver::targetDisplay(*placement, desk)) {
                    tw::LayoutProfileResolver::resolvedPoint(*placement, *target, QSizeF(96, 96));
                }
            }
        }
    }
    return 0;
}
