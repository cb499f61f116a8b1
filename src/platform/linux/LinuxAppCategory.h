// The app time tile's category of a Linux application: known browsers, chat and mail programs by
// their window class or desktop entry id, else the entry's freedesktop Categories.
#pragma once

#include "platform/AppCategory.h"

#include <QString>
#include <QStringList>

namespace tw {

// `ids`: the window class and the desktop entry's id, in any case, with or without ".desktop".
AppCategory linuxAppCategory(const QStringList& ids, const QStringList& categories);

// Screen lockers and savers, whose windows are in front while nobody uses the machine.
bool isLinuxScreenLocker(const QString& windowClass);

} // namespace tw
