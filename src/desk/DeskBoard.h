// What the timer tiles show beyond their settings: which of them ring now.
#pragma once

#include <QSet>
#include <QUuid>

namespace tw {

struct DeskBoard {
    QSet<QUuid> ringing;

    bool isRinging(const QUuid& id) const { return ringing.contains(id); }
};

} // namespace tw
