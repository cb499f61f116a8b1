// A widget instance as one line of text, so that decoded and ready-made layouts compare readably.
#pragma once

#include "model/WidgetInstance.h"

#include <QVariant>

namespace tw::test {

// "kind size order page col,row posX,posY stackID stackIndex settings", "-" for what is absent and
// settings as "key=value;…".
inline QString describe(const WidgetInstance& i) {
    const auto orDash = [](const auto& value) {
        return value ? QVariant::fromValue(*value).toString() : QStringLiteral("-");
    };
    QString settings = QStringLiteral("-");
    if (i.settings) {
        QStringList pairs;
        for (auto it = i.settings->cbegin(); it != i.settings->cend(); ++it) {
            pairs << it.key() + QLatin1Char('=') + it.value();
        }
        settings = pairs.join(QLatin1Char(';'));
    }
    return QStringLiteral("%1 %2 %3 %4 %5,%6 %7,%8 %9 %10 %11")
        .arg(i.kind, rawValue(i.size))
        .arg(i.order)
        .arg(i.page)
        .arg(i.col)
        .arg(i.row)
        .arg(orDash(i.posX), orDash(i.posY), orDash(i.stackID), orDash(i.stackIndex), settings);
}

} // namespace tw::test
