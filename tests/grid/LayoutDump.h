// A readable, stable text form of a layout's instances, for comparing rich results at a glance.
#pragma once

#include "model/GridLayout.h"

#include <QStringList>

namespace tw::test {

// One line per instance in array order: kind, size, cell, then what is set of stack (ids named
// A, B, ... in order of appearance), desktop position and lock size.
inline QStringList dump(const GridLayout& layout) {
    QList<QUuid> stacks;
    QStringList lines;
    for (const WidgetInstance& i : layout.instances) {
        QString line =
            QStringLiteral("%1 %2 %3,%4").arg(i.kind, rawValue(i.size)).arg(i.col).arg(i.row);
        if (i.page != 0) {
            line += QStringLiteral(" p%1").arg(i.page);
        }
        if (i.stackID) {
            if (!stacks.contains(*i.stackID)) {
                stacks.append(*i.stackID);
            }
            line += QStringLiteral(" stack %1#%2")
                        .arg(QChar(char16_t(u'A' + stacks.indexOf(*i.stackID))))
                        .arg(i.stackIndex ? QString::number(*i.stackIndex) : QStringLiteral("-"));
        }
        if (!i.stackID && i.stackIndex) {
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
    return lines;
}

} // namespace tw::test
