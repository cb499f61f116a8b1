// Date patterns as people write them in a widget ("EEEE, d MMM", "HH:mm") turned into the date
// format Qt reads, which spells the same fields differently.
#pragma once

#include <QString>
#include <QStringView>

namespace tw {

struct CustomDatePattern {
    // Quoted text passes unchanged; a field Qt can't show is dropped.
    static QString qtFormat(QStringView pattern);
};

} // namespace tw
