// The parts of the screen the system's own lock screen uses, which widgets must keep clear of.
#pragma once

#include <QRectF>
#include <QString>
#include <QStringList>

#include <array>

namespace tw {

namespace LockScreenSystemUI {

struct Region {
    QString id;
    QString titleKey;
    // Fractions of the screen, origin at the top left.
    QRectF rect;
};

const std::array<Region, 3>& all();
// The ids of the regions `unit` meets, touching included, in the order of `all`.
QStringList collisions(const QRectF& unit);

} // namespace LockScreenSystemUI

} // namespace tw
