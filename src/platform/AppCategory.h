// What kind of work an application is for, as the app time tile groups them.
#pragma once

#include "platform/RawValues.h"

namespace tw {

enum class AppCategory { work, communication, web, creative, entertainment, other };

inline constexpr RawValues<AppCategory, 6> appCategoryWords({"work", "communication", "web",
                                                             "creative", "entertainment", "other"});

} // namespace tw
