// The sky from three lines of text: whatever they hold, reading either refuses with a sentence or
// gives a place on the globe and a moment with its offset, and the report is eight lines in their
// order with numbers in range and times on the moment's day in its offset.
#include "Require.h"
#include "weather/SkyReport.h"

#include <QByteArray>
#include <QStringList>
#include <QTimeZone>

#include <array>
#include <cmath>
#include <cstdint>

using tw::fuzz::require;

namespace {

constexpr std::array<const char*, 8> keys{"phase",        "illumination", "sunrise",
                                          "sunset",       "moonrise",     "moonset",
                                          "subsolar_lat", "subsolar_lon"};

void checkTime(const QString& value, const QDateTime& at) {
    if (value == QLatin1String("none")) {
        return;
    }
    const QDateTime time = QDateTime::fromString(value, Qt::ISODate);
    require(time.isValid(), "a time that does not read back");
    require(time.offsetFromUtc() == at.offsetFromUtc(), "a time in another offset");
    // The day's last moment may round to the next midnight.
    const qint64 since = at.date().startOfDay(QTimeZone(at.offsetFromUtc())).msecsTo(time);
    require(since >= 0 && since <= 86400000, "a time on another day");
}

void checkNumber(const QString& value, double low, double high, const char* what) {
    bool ok = false;
    const double number = value.toDouble(&ok);
    require(ok && number >= low && number <= high, what);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QStringList parts =
        QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size))
            .split(QLatin1Char('\n'));
    if (parts.size() < 3) {
        return 0;
    }
    const std::variant<tw::SkyReport::Query, QString> read =
        tw::SkyReport::read(parts.at(0), parts.at(1), parts.at(2));
    if (const QString* problem = std::get_if<QString>(&read)) {
        require(!problem->isEmpty(), "a refusal without words");
        return 0;
    }
    const tw::SkyReport::Query& query = std::get<tw::SkyReport::Query>(read);
    require(std::abs(query.latitude) <= 90 && std::abs(query.longitude) <= 180, "off the globe");
    const QStringList lines = tw::SkyReport::lines(query).split(QLatin1Char('\n'));
    require(lines.size() == int(keys.size()) + 1 && lines.last().isEmpty(), "not eight lines");
    QStringList values;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const QString prefix = QLatin1String(keys.at(i)) + QLatin1Char('=');
        require(lines.at(qsizetype(i)).startsWith(prefix), "a key out of its place");
        values.append(lines.at(qsizetype(i)).mid(prefix.size()));
    }
    checkNumber(values.at(0), 0, 1, "phase out of range");
    checkNumber(values.at(1), 0, 100, "illumination out of range");
    for (qsizetype i = 2; i < 6; ++i) {
        checkTime(values.at(i), query.at);
    }
    checkNumber(values.at(6), -23.45, 23.45, "subsolar latitude out of range");
    checkNumber(values.at(7), -180, 180, "subsolar longitude out of range");
    return 0;
}
