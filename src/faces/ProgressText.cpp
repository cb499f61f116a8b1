#include "faces/ProgressText.h"

#include "text/L.h"

#include <QLocale>

#include <algorithm>
#include <cmath>

namespace tw::ProgressText {

QString percent(double fraction, int decimals) {
    const double value = std::clamp(fraction, 0.0, 1.0) * 100.0;
    // Floor, not round: 99.96 % of the way is not 100 %.
    const double factor = decimals == 0 ? 1.0 : std::pow(10.0, decimals);
    return QLocale().toString(std::floor(value * factor) / factor, 'f', decimals) +
           QLatin1Char('%');
}

QString remaining(std::chrono::seconds left) {
    const auto minutes = std::max<long long>(0, static_cast<long long>(left.count() / 60));
    const QString span = minutes >= 60 ? L("progress.hoursMinutes", QStringLiteral("%1 h %2 m"))
                                             .arg(minutes / 60)
                                             .arg(minutes % 60)
                                       : L("progress.minutes", QStringLiteral("%1 m")).arg(minutes);
    return L("progress.left", QStringLiteral("%1 left")).arg(span);
}

} // namespace tw::ProgressText
