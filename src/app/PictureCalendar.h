// Made-up events and reminders for the pictures of the calendar and reminders tiles.
#pragma once

#include "desk/CalendarBoard.h"

#include <QDateTime>

namespace tw {

// A board in which the source the settings choose is read and holds sample content.
CalendarBoard pictureCalendar(const WidgetSettings& settings, const QDateTime& now);

} // namespace tw
