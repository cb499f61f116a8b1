// What a GridStore needs, on virtual time and in a temporary directory, and layouts written as
// short text, for the grid tests.
#pragma once

#include "Files.h"
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
    std::unique_ptr<GridStore> fileStore(const QString& name) {
        return std::make_unique<GridStore>(services(), dir.filePath(name));
    }

    void writeGrid(const QByteArray& bytes) const { writeFile(gridPath(), bytes); }
    void writeGrid(const GridLayout& layout) const { writeGrid(layout.toJsonText()); }
    QByteArray readGrid() const { return readFile(gridPath()); }
    // What is on disk is what is in memory.
    bool savedAsLive(const GridStore& store) const {
        return GridLayout::fromJsonText(readGrid()).value_or(GridLayout()).instances ==
               store.layout().instances;
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

inline WidgetSettings settingsOf(std::initializer_list<std::pair<const char*, const char*>> items) {
    WidgetSettings settings;
    for (const auto& [key, value] : items) {
        settings.insert(QString::fromUtf8(key), QString::fromUtf8(value));
    }
    return settings;
}

// The stack named by a letter in the text form.
inline QUuid stackNamed(QChar letter) {
    return QUuid(0xA0000000u + letter.unicode(), 0, 0x4000, 0x80, 0, 0, 0, 0, 0, 0, 0);
}

// A tile per ";"-separated part: "kind size col,row", then "p<page>", "stack <letter>#<index>",
// "index <n>", "at x,y", "lock <size>" or "#<order>". The form `dump` writes, read back.
inline GridLayout layoutOf(const QString& text) {
    GridLayout layout;
    for (const QString& part : text.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QStringList w = part.simplified().split(QLatin1Char(' '));
        WidgetInstance i;
        i.kind = w.at(0);
        i.size = widgetSizeFromRawValue(w.at(1)).value();
        i.col = w.at(2).section(QLatin1Char(','), 0, 0).toInt();
        i.row = w.at(2).section(QLatin1Char(','), 1, 1).toInt();
        for (qsizetype k = 3; k < w.size(); ++k) {
            const QString& word = w.at(k);
            if (word.startsWith(QLatin1Char('p'))) {
                i.page = word.mid(1).toInt();
            } else if (word.startsWith(QLatin1Char('#'))) {
                i.order = word.mid(1).toInt();
            } else if (word == QLatin1String("stack")) {
                i.stackID = stackNamed(w.at(++k).at(0));
                i.stackIndex = w.at(k).mid(2).toInt();
            } else if (word == QLatin1String("index")) {
                i.stackIndex = w.at(++k).toInt();
            } else if (word == QLatin1String("at")) {
                i.posX = w.at(++k).section(QLatin1Char(','), 0, 0).toDouble();
                i.posY = w.at(k).section(QLatin1Char(','), 1, 1).toDouble();
            } else if (word == QLatin1String("lock")) {
                i.settings = WidgetSettings{{QStringLiteral("lockSize"), w.at(++k)}};
            }
        }
        layout.instances << i;
    }
    return layout;
}

// The text form of a layout's tiles in array order, "; "-separated: kind, size, cell, then what
// is set of page, stack (ids named A, B, ... in order of appearance), position and lock size.
inline QString dump(const QList<WidgetInstance>& instances) {
    QList<QUuid> stacks;
    QStringList lines;
    for (const WidgetInstance& i : instances) {
        QString line =
            QStringLiteral("%1 %2 %3,%4").arg(i.kind, rawValue(i.size)).arg(i.col).arg(i.row);
        if (i.page != 0) {
            line += QStringLiteral(" p%1").arg(i.page);
        }
        if (i.stackID && !stacks.contains(*i.stackID)) {
            stacks.append(*i.stackID);
        }
        if (i.stackID) {
            line += QStringLiteral(" stack %1#%2")
                        .arg(QChar(char16_t(u'A' + stacks.indexOf(*i.stackID))))
                        .arg(i.stackIndex ? QString::number(*i.stackIndex) : QStringLiteral("-"));
        } else if (i.stackIndex) {
            line += QStringLiteral(" index %1").arg(*i.stackIndex);
        }
        if (i.posX || i.posY) {
            line += QStringLiteral(" at %1,%2")
                        .arg(i.posX ? QString::number(*i.posX) : QStringLiteral("-"),
                             i.posY ? QString::number(*i.posY) : QStringLiteral("-"));
        }
        if (const auto lock = i.setting(QStringLiteral("lockSize"))) {
            line += QStringLiteral(" lock ") + *lock;
        }
        lines << line;
    }
    return lines.join(QLatin1String("; "));
}
inline QString dump(const GridLayout& layout) {
    return dump(layout.instances);
}

} // namespace tw::test
