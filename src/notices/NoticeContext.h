// The facts about this installation at one moment that a notice's audience is matched against.
#pragma once

#include <QDateTime>
#include <QSet>
#include <QString>

namespace tw {

struct NoticeContext {
    QString channel;
    QString version;
    // A language code as "de" or "de-AT".
    QString language;
    int daysInstalled = 0;
    // The kinds of the widgets placed, and how many widgets there are.
    QSet<QString> widgetKinds;
    int widgetCount = 0;
    QDateTime now;
    // The person's switch.
    bool userAllows = true;
    // A feed being tried out: the memory of what was shown is not consulted.
    bool testing = false;
};

} // namespace tw
