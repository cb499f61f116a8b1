#include "model/SizeReport.h"

#include "model/WidgetRegistry.h"

#include <QStringList>

#include <algorithm>

namespace tw {

namespace {

const QString filler = QStringLiteral("  .  ");

} // namespace

QString SizeReport::table() {
    QList<WidgetDefinition> definitions = WidgetRegistry::all();
    std::sort(definitions.begin(), definitions.end(),
              [](const auto& a, const auto& b) { return a.metadata.kind < b.metadata.kind; });

    qsizetype kindWidth = QStringLiteral("widget").size();
    for (const WidgetDefinition& definition : definitions) {
        kindWidth = std::max(kindWidth, definition.metadata.kind.size());
    }
    const auto columnWidth = [](WidgetSize size) {
        return std::max(filler.size(), rawValue(size).size());
    };

    QStringList lines;
    QString header = QStringLiteral("widget").leftJustified(kindWidth);
    for (const WidgetSize size : allWidgetSizes) {
        header += QLatin1Char(' ') + rawValue(size).leftJustified(columnWidth(size));
    }
    lines.append(header.trimmed());

    int filled = 0;
    for (const WidgetDefinition& definition : definitions) {
        QString line = definition.metadata.kind.leftJustified(kindWidth);
        for (const WidgetSize size : allWidgetSizes) {
            const bool allowed = definition.metadata.allowedSizes.contains(size);
            filled += allowed ? 1 : 0;
            const QString cell =
                allowed ? QLatin1Char(' ') + spanHint(size) + QLatin1Char(' ') : filler;
            line += QLatin1Char(' ') + cell.leftJustified(columnWidth(size));
        }
        lines.append(line);
    }

    const int widgets = static_cast<int>(definitions.size());
    const int possible = widgets * static_cast<int>(allWidgetSizes.size());
    const double percent = possible > 0 ? 100.0 * filled / possible : 0.0;
    lines.append(QStringLiteral("%1 widgets, %2 of %3 possible size slots filled (%4 %)")
                     .arg(widgets)
                     .arg(filled)
                     .arg(possible)
                     .arg(QString::number(percent, 'f', 0)));
    return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

QString SizeReport::listSizes() {
    QString text;
    for (const WidgetDefinition& definition : WidgetRegistry::all()) {
        QStringList sizes;
        for (const WidgetSize size : definition.metadata.allowedSizes) {
            sizes.append(rawValue(size));
        }
        text += definition.metadata.kind + QLatin1Char(':') + sizes.join(QLatin1Char(',')) +
                QLatin1Char('\n');
    }
    return text;
}

} // namespace tw
