#include "displays/DisplayDiagnostics.h"

#include "displays/LayoutProfileResolver.h"
#include "displays/TopologyMemory.h"
#include "platform/Displays.h"

#include <QCoreApplication>
#include <QStringList>
#include <QSysInfo>

#include <cmath>

namespace tw {

namespace {

QString whole(double value) {
    return std::isfinite(value) ? QString::number(std::llround(value)) : QStringLiteral("nan");
}

QString anchorText(const std::optional<LayoutAnchor>& anchor) {
    return anchor ? toString(*anchor) : QStringLiteral("-");
}

bool meetsAnyDisplay(const WidgetInstance& widget, const QList<LayoutDisplay>& displays) {
    const QSizeF size = widget.pixelSize();
    const double minX = *widget.posX;
    const double maxX = minX + size.width();
    const double maxY = *widget.posY;
    const double minY = maxY - size.height();
    return std::any_of(displays.begin(), displays.end(), [&](const LayoutDisplay& display) {
        const LayoutDisplayRect& f = display.frame;
        return minX < f.maxX() && f.minX() < maxX && minY < f.maxY() && f.minY() < maxY;
    });
}

QString positionText(const WidgetInstance& widget, const QList<LayoutDisplay>& displays) {
    if (!widget.posX || !widget.posY) {
        return QStringLiteral(" · no position yet");
    }
    QString text = QStringLiteral(" at ") + whole(*widget.posX) + QStringLiteral(", top ") +
                   whole(*widget.posY);
    if (!meetsAnyDisplay(widget, displays)) {
        return text + QStringLiteral(" · OFF SCREEN");
    }
    const auto display =
        LayoutProfileResolver::bestDisplay(widget, *widget.posX, *widget.posY, displays);
    const auto index = displays.indexOf(*display);
    return text + QStringLiteral(" · on [") + QString::number(index + 1) + QStringLiteral("]");
}

} // namespace

DisplayDiagnostics::DisplayDiagnostics(const Displays& displays, const TopologyMemory& memory)
    : m_displays(displays)
    , m_memory(memory) {}

QString DisplayDiagnostics::currentReport(const GridLayout& layout) const {
    QString appVersion = QCoreApplication::applicationVersion();
    if (appVersion.isEmpty()) {
        appVersion = QStringLiteral("?");
    }
    return report(LayoutDisplay::currentDisplays(m_displays), layout, m_memory.configurationCount(),
                  appVersion, QSysInfo::prettyProductName(),
                  m_displays.hasSeparateSpacesPerDisplay() ? SeparateSpaces::yes
                                                           : SeparateSpaces::no,
                  m_memory.homes());
}

QString DisplayDiagnostics::report(const QList<LayoutDisplay>& displays, const GridLayout& layout,
                                   int configurationCount, const QString& appVersion,
                                   const QString& systemVersion, SeparateSpaces separateSpaces,
                                   const QHash<QUuid, LayoutWidgetPlacement>& homes) {
    QStringList lines;
    lines << QStringLiteral("Tarnwick display report");
    lines << QStringLiteral("App ") + appVersion + QStringLiteral(" · ") + systemVersion +
                 QStringLiteral(" · separate Spaces per display: ") +
                 (separateSpaces == SeparateSpaces::yes ? QStringLiteral("yes")
                                                        : QStringLiteral("no"));
    lines << QStringLiteral("Remembered display configurations: ") +
                 QString::number(configurationCount);
    lines << QStringLiteral("Screens (") + QString::number(displays.size()) + QStringLiteral("):");
    for (qsizetype i = 0; i < displays.size(); ++i) {
        const LayoutDisplay& display = displays[i];
        lines << QStringLiteral("  [") + QString::number(i + 1) + QStringLiteral("] ") +
                     (display.name.isEmpty() ? QStringLiteral("(unnamed)") : display.name) +
                     QStringLiteral(" · id ") + display.id +
                     (display.isMain ? QStringLiteral(" · primary") : QString());
        lines << QStringLiteral("    frame ") + rect(display.frame);
        lines << QStringLiteral("    visible ") + rect(display.visibleFrame);
    }
    lines << QStringLiteral("Widgets (") + QString::number(layout.instances.size()) +
                 QStringLiteral("):");
    for (const WidgetInstance& widget : layout.instances) {
        // Nothing personal leaves the machine: a custom widget's kind names its definition.
        const QString kind = widget.kind.startsWith(QLatin1String("custom."))
                                 ? QStringLiteral("custom")
                                 : widget.kind;
        const auto home = homes.constFind(widget.id);
        const QString pinned =
            home == homes.constEnd()
                ? QStringLiteral("-/-")
                : anchorText(home->anchorH) + QLatin1Char('/') + anchorText(home->anchorV);
        lines << QStringLiteral("  ") + kind + QLatin1Char(' ') + rawValue(widget.size) +
                     QStringLiteral(" ×") +
                     LayoutProfileResolver::roundTripDecimal(widget.scale()) +
                     positionText(widget, displays) + QStringLiteral(", pinned ") + pinned;
    }
    return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

QString DisplayDiagnostics::rect(const LayoutDisplayRect& rect) {
    return whole(rect.x) + QLatin1Char(',') + whole(rect.y) + QLatin1Char(' ') + whole(rect.width) +
           QChar(0x00D7) + whole(rect.height);
}

} // namespace tw
