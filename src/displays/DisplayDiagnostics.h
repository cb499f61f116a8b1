// The plain-text display report that the settings copy for a bug report: the screens, and where
// each widget sits on them. Anonymous: a custom widget's kind is shown as "custom".
#pragma once

#include "displays/LayoutDisplay.h"
#include "displays/LayoutWidgetPlacement.h"
#include "model/GridLayout.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QUuid>

namespace tw {

class Displays;
class TopologyMemory;

class DisplayDiagnostics {
public:
    enum class SeparateSpaces { no, yes };

    DisplayDiagnostics(const Displays& displays, const TopologyMemory& memory);

    // The report for the displays of this moment, this build and this operating system.
    QString currentReport(const GridLayout& layout) const;

    static QString report(const QList<LayoutDisplay>& displays, const GridLayout& layout,
                          int configurationCount, const QString& appVersion,
                          const QString& systemVersion, SeparateSpaces separateSpaces,
                          const QHash<QUuid, LayoutWidgetPlacement>& homes);

    // Whole points: "x,y w×h".
    static QString rect(const LayoutDisplayRect& rect);

private:
    const Displays& m_displays;
    const TopologyMemory& m_memory;
};

} // namespace tw
