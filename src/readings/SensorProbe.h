// The machine's temperatures and fans as plain lines, for diagnosis from a terminal.
#pragma once

#include <QDateTime>
#include <QString>

namespace tw {

class SensorSource;

namespace SensorProbe {

struct Report {
    QString text;
    // Any temperature or fan was read.
    bool foundAnything = false;
};

// One line per kind found, the fans, then what could not be found.
Report report(const SensorSource& source, const QDateTime& now);

} // namespace SensorProbe
} // namespace tw
