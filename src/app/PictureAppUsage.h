// A made-up morning of app time for the pictures of the app time tile, with the icons of this
// desktop's theme.
#pragma once

#include "desk/AppUsageView.h"

namespace tw {

class AppDirectory;

// The board the picture's tile `instance` reads.
AppUsageBoard pictureAppUsage(const QUuid& instance, const WidgetSettings& settings,
                              const QDateTime& now, const AppDirectory& apps);

} // namespace tw
