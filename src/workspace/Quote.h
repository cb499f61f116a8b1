// One quote: its words and who said or wrote them (empty when unknown).
#pragma once

#include <QString>

namespace tw {

struct Quote {
    QString text;
    QString author;

    bool operator==(const Quote&) const = default;
};

} // namespace tw
