// The layouts the save-loop helper writes, one per number, so that a test can tell from a file
// exactly which layout it holds and whether it holds all of it.
#pragma once

#include "model/GridLayout.h"

#include <QUuid>

namespace tw::test {

// Layout `k`: 1 to 40 small clocks in distinct cells (already healed, so a load keeps them as
// they are), the first at posX k, with notes of varying length so that files differ in size.
inline GridLayout crashLayout(qint64 k) {
    static const QUuid space =
        QUuid::fromString(QStringLiteral("{5E1D0C55-7A3B-4C1E-9F00-6B2A1C3D4E5F}"));
    GridLayout layout;
    const int count = 1 + static_cast<int>(k % 40);
    for (int j = 0; j < count; ++j) {
        WidgetInstance instance;
        instance.id = QUuid::createUuidV5(space, QString::number(j));
        instance.kind = QStringLiteral("clock");
        instance.size = WidgetSize::small;
        instance.order = j;
        instance.col = j % 8;
        instance.row = j / 8;
        instance.posX = static_cast<double>(k);
        instance.posY = j;
        instance.settings =
            WidgetSettings{{QStringLiteral("note"),
                            QString(static_cast<int>((k * 37 + j) % 500), QLatin1Char('n'))}};
        layout.instances.append(instance);
    }
    return layout;
}

} // namespace tw::test
