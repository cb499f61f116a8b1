// Texts the progress faces share: a percentage and a span of hours and minutes.
#pragma once

#include <QString>

#include <chrono>

namespace tw::ProgressText {

// "63%", or "63.4%" with one decimal.
QString percent(double fraction, int decimals);
// "8 h 51 m left", "51 m left".
QString remaining(std::chrono::seconds left);

} // namespace tw::ProgressText
