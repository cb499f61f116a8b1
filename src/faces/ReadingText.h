// Texts the faces of the machine's readings share: amounts of bytes, rates and spans of time.
#pragma once

#include <QString>

#include <optional>

namespace tw::ReadingText {

// What a face draws where a reading is missing.
QString missing();

// Decimal units, three significant figures at most: "0 B", "1.5 KB", "12 MB", "931 GB";
// "—" for a negative or non-finite amount.
QString bytes(double amount);
// The same per second: "1.5 KB/s".
QString rate(double bytesPerSecond);
// "2 h 10 min", "40 min", "3 h"; "—" for a negative span.
QString duration(int minutes);
// A fraction as a whole percentage, "23%", clamped to 0...100; "—" for none or not a number.
QString percent(std::optional<double> fraction);

} // namespace tw::ReadingText
