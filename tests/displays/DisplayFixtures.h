// Displays, widgets and layouts for the display tests, written as short text, in internal points
// (y up).
#pragma once

#include "ManualClock.h"
#include "ManualScheduler.h"
#include "displays/LayoutDisplay.h"
#include "displays/ScreenTopologyWatcher.h"
#include "displays/TopologyMemory.h"
#include "model/GridLayout.h"
#include "platform/Displays.h"
#include "platform/null/FixedDisplays.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QUuid>

#include <memory>

namespace tw::test {

// "id@x,y,WxH" as in the signature, then "*" for the main display, "^H" for a visible frame
// only H high, "=Name" for a name other than the id; displays separated by ";".
inline QList<LayoutDisplay> displaysOf(const QString& text) {
    static const QRegularExpression form(QStringLiteral(
        R"(^\s*([^@]+)@(\S+),(\S+),(\S+)x([^*^=\s]+)(\*?)(?:\^([^=\s]+))?(?:=(.+))?$)"));
    QList<LayoutDisplay> displays;
    for (const QString& one : text.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const auto m = form.match(one);
        if (!m.hasMatch()) {
            qFatal("not a display: %s", qPrintable(one));
        }
        const auto number = [&](int n) { return m.captured(n).toDouble(); };
        const LayoutDisplayRect frame{number(2), number(3), number(4), number(5)};
        LayoutDisplay display{m.captured(1), m.captured(1), frame, frame, !m.captured(6).isEmpty()};
        if (m.hasCaptured(7)) {
            display.visibleFrame.height = number(7);
        }
        if (m.hasCaptured(8)) {
            display.name = m.captured(8);
        }
        displays << display;
    }
    return displays;
}

inline ScreenInfo screenInfo(const LayoutDisplay& d) {
    const auto rect = [](const LayoutDisplayRect& r) {
        return QRectF(r.x, r.y, r.width, r.height);
    };
    return ScreenInfo{d.id, d.name, rect(d.frame), rect(d.visibleFrame), d.isMain};
}

inline QList<ScreenInfo> screensOf(const QString& text) {
    QList<ScreenInfo> screens;
    for (const LayoutDisplay& display : displaysOf(text)) {
        screens << screenInfo(display);
    }
    return screens;
}

// A stable id from a small number, so that dumps and failures read the same on every run.
inline QUuid widgetId(int n) {
    return QUuid(static_cast<uint>(n), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
}

// "n size x,top" ("-" for no position), then "xS" for a tile scale, "kind" for another kind than
// a clock; widgets separated by ";".
inline GridLayout layoutOf(const QString& text) {
    GridLayout layout;
    for (const QString& one : text.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QStringList words = one.simplified().split(QLatin1Char(' '));
        WidgetInstance widget;
        widget.id = widgetId(words.at(0).toInt());
        widget.order = words.at(0).toInt();
        widget.size = *widgetSizeFromRawValue(words.at(1));
        widget.kind = QStringLiteral("clock");
        if (words.at(2) != QLatin1String("-")) {
            widget.posX = words.at(2).section(QLatin1Char(','), 0, 0).toDouble();
            widget.posY = words.at(2).section(QLatin1Char(','), 1, 1).toDouble();
        }
        for (const QString& word : words.mid(3)) {
            if (word.startsWith(QLatin1Char('x'))) {
                widget.settings = WidgetSettings{{QStringLiteral("tileScale"), word.mid(1)}};
            } else {
                widget.kind = word;
            }
        }
        layout.instances << widget;
    }
    return layout;
}

inline const WidgetInstance& widgetIn(const GridLayout& layout, int n) {
    for (const WidgetInstance& widget : layout.instances) {
        if (widget.id == widgetId(n)) {
            return widget;
        }
    }
    qFatal("no widget %d in the layout", n);
}

// "x,top" of each widget in order, ";"-separated, in the layout's own form.
inline QString positionsIn(const GridLayout& layout) {
    QStringList points;
    for (const WidgetInstance& w : layout.instances) {
        points << (w.posX ? QStringLiteral("%1,%2").arg(*w.posX).arg(*w.posY)
                          : QStringLiteral("-"));
    }
    return points.join(QLatin1String("; "));
}

// A topology memory over the given screens, on virtual time, its files in a temporary directory;
// the watcher started.
struct MemoryRig {
    explicit MemoryRig(const QList<ScreenInfo>& screens)
        : displays(screens) {
        watcher.start();
    }
    QString path(const char* name) const { return dir.filePath(QLatin1String(name)); }
    std::unique_ptr<TopologyMemory> memory() {
        return std::make_unique<TopologyMemory>(watcher, clock, path("topology.json"));
    }

    QTemporaryDir dir;
    ManualClock clock;
    ManualScheduler scheduler{&clock};
    FixedDisplays displays;
    ScreenTopologyWatcher watcher{displays, scheduler};
};

} // namespace tw::test
