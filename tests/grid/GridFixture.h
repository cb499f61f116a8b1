// What a GridStore needs, on virtual time and in a temporary directory, for the grid tests.
#pragma once

#include "ManualClock.h"
#include "ManualScheduler.h"
#include "grid/CustomStoreHealth.h"
#include "grid/GridStore.h"
#include "model/CustomWidgetDefinitions.h"
#include "model/WidgetRegistry.h"
#include "platform/null/FixedDisplays.h"
#include "platform/null/MemoryDefaults.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <memory>

namespace tw::test {

// Custom kinds "custom.<UUID>" defined by the test, with the sizes it gives them.
class FakeCustomWidgets final : public CustomWidgetDefinitions, public CustomStoreHealth {
public:
    std::optional<WidgetDefinition> widgetDefinition(const QString& kind) const override {
        const auto it = sizes.constFind(kind);
        if (it == sizes.cend()) {
            return std::nullopt;
        }
        WidgetDefinition definition;
        definition.metadata.kind = kind;
        definition.metadata.allowedSizes = *it;
        definition.metadata.defaultSize = it->first();
        return definition;
    }
    bool isHealthy() const override { return healthy; }

    QHash<QString, QList<WidgetSize>> sizes;
    bool healthy = true;
};

struct GridFixture {
    GridFixture()
        : scheduler(&clock)
        , registry(&custom)
        , displays(QList<ScreenInfo>{{QStringLiteral("main"), QStringLiteral("Main"),
                                      QRectF(0, 0, 1440, 900), QRectF(0, 0, 1440, 875), true}}) {
        qputenv("TKW_APP_SUPPORT_DIR", QFile::encodeName(dir.path()));
    }

    GridStore::Services services() {
        return {clock, scheduler, registry, &defaults, &displays, &custom};
    }
    QString gridPath() const { return dir.filePath(QStringLiteral("grid.json")); }
    // The application's store on "grid.json" of the temporary directory.
    std::unique_ptr<GridStore> appStore() { return std::make_unique<GridStore>(services()); }
    std::unique_ptr<GridStore> fileStore(const QString& path) {
        return std::make_unique<GridStore>(services(), path);
    }

    void writeGrid(const QByteArray& bytes) const {
        QFile file(gridPath());
        if (file.open(QIODevice::WriteOnly)) {
            file.write(bytes);
        }
    }
    void writeGrid(const GridLayout& layout) const { writeGrid(layout.toJsonText()); }
    QByteArray readGrid() const {
        QFile file(gridPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QStringList files() const { return QDir(dir.path()).entryList(QDir::Files); }

    // Moves virtual time past the burst window, so that the next change is a step of its own.
    void pause() { clock.advance(std::chrono::seconds(2)); }

    QTemporaryDir dir;
    ManualClock clock;
    ManualScheduler scheduler;
    FakeCustomWidgets custom;
    WidgetRegistry registry;
    MemoryDefaults defaults;
    FixedDisplays displays;
};

inline QStringList strings(std::initializer_list<const char*> items) {
    QStringList list;
    for (const char* item : items) {
        list << QString::fromUtf8(item);
    }
    return list;
}

inline WidgetSettings settingsOf(std::initializer_list<std::pair<const char*, const char*>> items) {
    WidgetSettings settings;
    for (const auto& [key, value] : items) {
        settings.insert(QString::fromUtf8(key), QString::fromUtf8(value));
    }
    return settings;
}

inline GridLayout layoutOf(const QList<WidgetInstance>& instances) {
    GridLayout layout;
    layout.instances = instances;
    return layout;
}

inline WidgetInstance makeInstance(const QString& kind, WidgetSize size, int col = -1, int row = -1,
                                   int order = 0) {
    WidgetInstance instance;
    instance.kind = kind;
    instance.size = size;
    instance.col = col;
    instance.row = row;
    instance.order = order;
    return instance;
}

inline WidgetInstance stacked(WidgetInstance instance, const QUuid& stackID, int index) {
    instance.stackID = stackID;
    instance.stackIndex = index;
    return instance;
}

inline WidgetInstance at(WidgetInstance instance, double x, double y) {
    instance.posX = x;
    instance.posY = y;
    return instance;
}

} // namespace tw::test
