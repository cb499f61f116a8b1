// Load-and-heal of "grid.json": whatever the file holds, the store starts, keeps the grid's and
// the stacks' invariants, and what it writes back loads to the very same instances.
#include "Require.h"
#include "grid/CustomStoreHealth.h"
#include "grid/GridStore.h"
#include "model/CustomWidgetDefinitions.h"
#include "model/Metrics.h"
#include "model/WidgetRegistry.h"
#include "platform/QtScheduler.h"
#include "platform/SystemClock.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QSet>
#include <QTemporaryDir>

#include <cstdint>

using tw::fuzz::require;

namespace {

// One custom kind exists; the health of the custom store is the fuzzer's choice.
class OneCustomKind final : public tw::CustomWidgetDefinitions, public tw::CustomStoreHealth {
public:
    std::optional<tw::WidgetDefinition> widgetDefinition(const QString& kind) const override {
        if (kind != QLatin1String("custom.6F1C2D1E-0B7A-4D59-9E0C-3A1B2C3D4E5F")) {
            return std::nullopt;
        }
        tw::WidgetDefinition definition;
        definition.metadata.kind = kind;
        definition.metadata.allowedSizes = {tw::WidgetSize::wide, tw::WidgetSize::huge};
        definition.metadata.defaultSize = tw::WidgetSize::wide;
        return definition;
    }
    bool isHealthy() const override { return healthy; }

    bool healthy = true;
};

void checkInvariants(const tw::GridStore& store, const tw::WidgetRegistry& registry, bool healthy) {
    QHash<int, QSet<tw::GridCell>> occupied;
    QSet<QUuid> stacks;
    for (const tw::WidgetInstance& i : store.layout().instances) {
        require(registry.definition(i.kind) ||
                    (!healthy && tw::WidgetRegistry::isCustomKind(i.kind)),
                "an unknown kind survived");
        if (const auto definition = registry.definition(i.kind)) {
            require(definition->metadata.allowedSizes.contains(i.size), "a retired size survived");
        }
        require(i.isPlaced() || (i.col == -1 && i.row == -1), "half a cell");
        if (i.isPlaced()) {
            require(i.col + tw::columns(i.size) <= tw::Metrics::gridColumns &&
                        i.row + tw::rows(i.size) <= tw::Metrics::gridRows,
                    "a cell off the grid");
            const QSet<tw::GridCell> cells = tw::GridStore::cellsCovered(i.col, i.row, i.size);
            require(!cells.intersects(occupied[i.page]), "two instances in one cell");
            occupied[i.page].unite(cells);
        }
        require(i.stackID.has_value() == i.stackIndex.has_value(), "half a stack membership");
        if (i.stackID) {
            stacks.insert(*i.stackID);
        }
    }
    for (const QUuid& id : stacks) {
        const QList<tw::WidgetInstance> members = store.stackMembers(id);
        require(members.size() >= 2, "a stack of one");
        for (qsizetype n = 0; n < members.size(); ++n) {
            require(members.at(n).stackIndex == n, "a gap in a stack");
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static QTemporaryDir dir(QDir::tempPath() + QStringLiteral("/fuzz_gridload-XXXXXX"));
    static tw::SystemClock clock;
    static tw::QtScheduler scheduler;
    static OneCustomKind custom;
    static const tw::WidgetRegistry registry(&custom);

    // The first byte chooses the custom store's health; the rest is the file.
    custom.healthy = size == 0 || (data[0] & 1) == 0;
    const QByteArray bytes = size == 0 ? QByteArray()
                                       : QByteArray(reinterpret_cast<const char*>(data + 1),
                                                    static_cast<qsizetype>(size - 1));
    const QString path = dir.filePath(QStringLiteral("grid.json"));
    for (const QString& name : QDir(dir.path()).entryList(QDir::Files)) {
        QFile::remove(dir.filePath(name));
    }
    {
        QFile file(path);
        require(file.open(QIODevice::WriteOnly), "cannot write the input");
        file.write(bytes);
    }
    const tw::GridStore::Services services{clock, scheduler, registry, nullptr, nullptr, &custom};
    tw::GridStore store(services, path);
    checkInvariants(store, registry, custom.healthy);

    store.save();
    const auto setAside = [&] {
        return QDir(dir.path()).entryList({QStringLiteral("*.corrupt")}).size();
    };
    const qsizetype before = setAside();
    const tw::GridStore again(services, path);
    require(setAside() == before, "a file the store wrote was unreadable");
    require(again.layout().instances == store.layout().instances, "healing is not stable");
    return 0;
}
