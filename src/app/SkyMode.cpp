#include "app/LaunchModes.h"
#include "weather/SkyReport.h"

namespace tw {

std::optional<int> runSkyMode(LaunchContext& context) {
    const std::optional<QStringList> values = context.arguments.values(QStringLiteral("--sky"), 3);
    if (!values) {
        context.err << "usage: tarnwick --sky LATITUDE LONGITUDE TIME, as --sky 52.52 13.40 "
                       "2026-03-20T18:30:00+01:00\n";
        return 1;
    }
    const std::variant<SkyReport::Query, QString> read =
        SkyReport::read(values->at(0), values->at(1), values->at(2));
    if (const QString* problem = std::get_if<QString>(&read)) {
        context.err << "sky: " << *problem << '\n';
        return 1;
    }
    context.out << SkyReport::lines(std::get<SkyReport::Query>(read));
    return 0;
}

} // namespace tw
