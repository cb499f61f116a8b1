// The "layout-profiles.json" decoder: any bytes decode or fail without harm; a decoded document
// repairs to one default, distinct ids and an existing active profile, survives a round trip, and
// every profile's snapshot resolves without crashing.
#include "Require.h"
#include "displays/LayoutProfile.h"
#include "displays/LayoutProfileResolver.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QSet>

#include <algorithm>
#include <cstdint>

using tw::fuzz::require;

namespace {

const QList<tw::LayoutDisplay> desk{
    {QStringLiteral("main"), QStringLiteral("Main"), {0, 0, 1920, 1080}, {0, 0, 1920, 1050}, true}};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    auto document = tw::LayoutProfilesDocument::fromJson(bytes);
    if (!document) {
        return 0;
    }
    require(!document->profiles.isEmpty(), "a decoded document has a profile");
    document->repair();
    require(!document->repair(), "a repaired document needs no second repair");
    QSet<QUuid> ids;
    for (const tw::LayoutProfile& profile : std::as_const(document->profiles)) {
        ids.insert(profile.id);
    }
    require(ids.size() == document->profiles.size(), "ids are distinct");
    require(ids.contains(document->activeProfileID), "the active profile exists");
    require(std::count_if(document->profiles.begin(), document->profiles.end(),
                          [](const tw::LayoutProfile& p) { return p.isDefault; }) == 1,
            "exactly one default");
    const auto again =
        tw::LayoutProfilesDocument::fromJson(QJsonDocument(document->toJson()).toJson());
    require(again && *again == *document, "a round trip keeps the document");
    for (const tw::LayoutProfile& profile : std::as_const(document->profiles)) {
        tw::LayoutProfileResolver::resolve(profile.snapshot, desk);
    }
    return 0;
}
