#include "custom/CustomTokens.h"

#include "custom/CustomDatePattern.h"
#include "custom/CustomPath.h"
#include "custom/CustomSource.h"
#include "settings/Formatters.h"
#include "settings/Localization.h"
#include "text/L.h"

#include <algorithm>
#include <cmath>

namespace tw {

namespace {

constexpr double gigabyte = 1024.0 * 1024.0 * 1024.0;

const QString dash = QStringLiteral("—");

bool startsWith(QStringView text, const char* head) {
    return text.startsWith(QLatin1String(head));
}

QString dateText(const QString& qtFormat, const QDateTime& now) {
    return Formatters::date(qtFormat)->string(now);
}

// The readings, as the tokens name them; nothing while the reading is missing.
std::optional<double> reading(QStringView token, const CustomValueBag& values) {
    if (token == u"battery") {
        return values.battery ? std::optional<double>(values.battery->percent) : std::nullopt;
    }
    if (token == u"uptime") {
        return values.uptime.count() / 3600;
    }
    if (!values.system) {
        return std::nullopt;
    }
    const SystemSnapshot& s = *values.system;
    if (token == u"cpu") {
        return s.cpu * 100;
    }
    if (token == u"ram") {
        return s.ramTotal > 0 ? std::optional<double>(s.ramUsed / s.ramTotal * 100) : std::nullopt;
    }
    if (token == u"ram.used") {
        return s.ramUsed / gigabyte;
    }
    if (token == u"ram.total") {
        return s.ramTotal / gigabyte;
    }
    if (token == u"ram.free") {
        return (s.ramTotal - s.ramUsed) / gigabyte;
    }
    if (token == u"disk") {
        return s.diskTotal > 0
                   ? std::optional<double>((s.diskTotal - s.diskFree) / s.diskTotal * 100)
                   : std::nullopt;
    }
    if (token == u"disk.free") {
        return s.diskFree / gigabyte;
    }
    if (token == u"disk.total") {
        return s.diskTotal / gigabyte;
    }
    if (token == u"disk.used") {
        return (s.diskTotal - s.diskFree) / gigabyte;
    }
    return std::nullopt;
}

bool isPercentToken(QStringView token) {
    return token == u"battery" || token == u"cpu" || token == u"ram" || token == u"disk";
}

} // namespace

const QStringList& CustomTokens::plainNames() {
    static const QStringList names{
        QStringLiteral("time"),       QStringLiteral("date"),          QStringLiteral("weekday"),
        QStringLiteral("battery"),    QStringLiteral("battery.state"), QStringLiteral("cpu"),
        QStringLiteral("ram"),        QStringLiteral("ram.used"),      QStringLiteral("ram.total"),
        QStringLiteral("ram.free"),   QStringLiteral("disk"),          QStringLiteral("disk.free"),
        QStringLiteral("disk.total"), QStringLiteral("disk.used"),     QStringLiteral("host"),
        QStringLiteral("user"),       QStringLiteral("uptime")};
    return names;
}

const QStringList& CustomTokens::prefixed() {
    static const QStringList heads{QStringLiteral("time"), QStringLiteral("date"),
                                   QStringLiteral("data")};
    return heads;
}

QList<CustomTokens::Info> CustomTokens::systemTokens() {
    const auto info = [](const char* token, const char* key, const char* detail) {
        return Info{QString::fromUtf8(token), L(key, QString::fromUtf8(detail))};
    };
    return {
        info("time", "custom.token.time", "Time, e.g. 14:05"),
        info("time:HH:mm", "custom.token.timeFormat", "Time in your own format"),
        info("date", "custom.token.date", "Date, e.g. 12 Aug"),
        info("date:EEEE", "custom.token.dateFormat", "Date in your own format"),
        info("weekday", "custom.token.weekday", "Day of the week"),
        info("battery", "custom.token.battery", "Battery level, 0–100"),
        info("battery.state", "custom.token.batteryState", "Charging / on battery"),
        info("cpu", "custom.token.cpu", "CPU load, 0–100"),
        info("ram", "custom.token.ram", "Memory in use, 0–100"),
        info("ram.used", "custom.token.ramUsed", "Memory in use, in GB"),
        info("ram.total", "custom.token.ramTotal", "Memory installed, in GB"),
        info("disk.free", "custom.token.diskFree", "Free disk space, in GB"),
        info("disk.total", "custom.token.diskTotal", "Disk size, in GB"),
        info("disk", "custom.token.disk", "Disk in use, 0–100"),
        info("host", "custom.token.host", "This Mac’s name"),
        info("user", "custom.token.user", "Your short user name"),
        info("uptime", "custom.token.uptime", "How long the Mac has been up"),
    };
}

QList<CustomTokens::Match> CustomTokens::scan(QStringView text) {
    QList<Match> matches;
    qsizetype from = 0;
    while (true) {
        const qsizetype open = text.indexOf(QLatin1Char('{'), from);
        if (open < 0) {
            break;
        }
        const qsizetype close = text.indexOf(QLatin1Char('}'), open + 1);
        if (close < 0) {
            break;
        }
        matches.append(
            {text.sliced(open + 1, close - open - 1).toString(), open, close - open + 1});
        from = close + 1;
    }
    return matches;
}

QString CustomTokens::render(QStringView text, const CustomValueBag& values) {
    QString rendered;
    rendered.reserve(text.size());
    qsizetype copied = 0;
    for (const Match& match : scan(text)) {
        rendered += text.sliced(copied, match.start - copied);
        if (const std::optional<QString> value = resolveString(match.token, values)) {
            rendered += *value;
        } else {
            rendered += text.sliced(match.start, match.length);
        }
        copied = match.start + match.length;
    }
    rendered += text.sliced(copied);
    return rendered;
}

std::optional<QString> CustomTokens::resolveString(const QString& token,
                                                   const CustomValueBag& values) {
    if (token == u"data") {
        return std::nullopt;
    }
    if (const std::optional<DocumentPath> found = document(token, values)) {
        const std::optional<QString> text =
            found->document != nullptr ? found->document->string(found->path) : std::nullopt;
        return text.value_or(dash);
    }
    if (startsWith(token, "data:")) {
        const std::optional<QString> text =
            values.data ? values.data->string(token.sliced(5)) : std::nullopt;
        return text.value_or(dash);
    }
    if (startsWith(token, "time:") || startsWith(token, "date:")) {
        return dateText(CustomDatePattern::qtFormat(QStringView(token).sliced(5)), values.now);
    }
    if (token == u"time") {
        return dateText(Localization::locale().timeFormat(QLocale::ShortFormat), values.now);
    }
    if (token == u"date") {
        return dateText(QStringLiteral("d MMM"), values.now);
    }
    if (token == u"weekday") {
        return dateText(QStringLiteral("dddd"), values.now);
    }
    if (token == u"battery.state") {
        if (!values.battery || !values.battery->hasBattery) {
            return dash;
        }
        return values.battery->isCharging
                   ? L("custom.value.charging", QStringLiteral("Charging"))
                   : L("custom.value.onBattery", QStringLiteral("On battery"));
    }
    if (token == u"host") {
        return values.host;
    }
    if (token == u"user") {
        return values.user;
    }
    if (token == u"uptime") {
        return uptimeText(values.uptime);
    }
    const std::optional<double> value = number(token, values);
    if (!value) {
        return std::nullopt;
    }
    const QString text =
        Formatters::number(isPercentToken(token) ? 0 : 1, Grouping::on)->string(*value);
    return text.isEmpty() ? QString::number(*value) : text;
}

std::optional<double> CustomTokens::number(const QString& token, const CustomValueBag& values) {
    if (startsWith(token, "data:")) {
        return values.data ? values.data->number(token.sliced(5)) : std::nullopt;
    }
    if (const std::optional<DocumentPath> found = document(token, values)) {
        return found->document != nullptr ? found->document->number(found->path) : std::nullopt;
    }
    return reading(token, values);
}

std::optional<double> CustomTokens::number(const QString& path, const std::optional<QString>& text,
                                           const CustomValueBag& values) {
    if (!path.isEmpty()) {
        const CustomPath split = CustomPath::split(path);
        const CustomJSON* document = values.document(split.source);
        return document != nullptr ? document->number(split.path) : std::nullopt;
    }
    if (text) {
        const QList<Match> tokens = scan(*text);
        if (!tokens.isEmpty()) {
            return number(tokens.first().token, values);
        }
    }
    return std::nullopt;
}

std::optional<CustomTokens::DocumentPath> CustomTokens::document(const QString& token,
                                                                 const CustomValueBag& values) {
    const qsizetype colon = token.indexOf(QLatin1Char(':'));
    if (colon < 0) {
        return std::nullopt;
    }
    const QString path = token.sliced(colon + 1);
    if (QStringView(token).first(colon) == u"item") {
        return DocumentPath{values.item ? &*values.item : nullptr, path};
    }
    const std::optional<QString> name = namedSource(token);
    if (!name) {
        return std::nullopt;
    }
    return DocumentPath{values.document(name), path};
}

std::optional<QString> CustomTokens::namedSource(QStringView token) {
    const qsizetype colon = token.indexOf(QLatin1Char(':'));
    if (colon < 0) {
        return std::nullopt;
    }
    const QStringView head = token.first(colon);
    if (!head.startsWith(u"data.")) {
        return std::nullopt;
    }
    const QStringView name = head.sliced(5);
    if (!CustomSource::isValidName(name)) {
        return std::nullopt;
    }
    return name.toString();
}

QStringList CustomTokens::unknownTokens(QStringView text) {
    QStringList unknown;
    for (const Match& match : scan(text)) {
        const QString& token = match.token;
        if (plainNames().contains(token)) {
            continue;
        }
        const qsizetype colon = token.indexOf(QLatin1Char(':'));
        if (colon >= 0 && colon + 1 < token.size()) {
            const QString head = token.first(colon);
            if (prefixed().contains(head) || head == u"item" ||
                (head.startsWith(u"data.") &&
                 CustomSource::isValidName(QStringView(head).sliced(5)))) {
                continue;
            }
        }
        unknown.append(token);
    }
    return unknown;
}

bool CustomTokens::referencesSourceData(QStringView text) {
    return std::ranges::any_of(scan(text), [](const Match& match) {
        return match.token == u"data" || startsWith(match.token, "data:") ||
               startsWith(match.token, "data.");
    });
}

QString CustomTokens::uptimeText(std::chrono::duration<double> uptime) {
    const double raw = uptime.count();
    // Truncated to whole seconds; a negative or absurd uptime reads as none rather than overflow.
    const qint64 seconds =
        std::isfinite(raw) && raw > 0 ? static_cast<qint64>(std::min(raw, 9e15)) : 0;
    if (seconds < 3600) {
        return L("custom.value.uptimeMinutes", QStringLiteral("%1m")).arg(seconds / 60);
    }
    if (seconds < 86400) {
        return L("custom.value.uptimeHours", QStringLiteral("%1h %2m"))
            .arg(seconds / 3600)
            .arg(seconds % 3600 / 60);
    }
    return L("custom.value.uptimeDays", QStringLiteral("%1d %2h"))
        .arg(seconds / 86400)
        .arg(seconds % 86400 / 3600);
}

} // namespace tw
