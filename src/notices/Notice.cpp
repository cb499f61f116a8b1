#include "notices/Notice.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>

#include <array>
#include <cmath>
#include <limits>

namespace tw {

namespace {

constexpr std::array kindNames{"news", "tip", "update", "thanks", "offer"};
constexpr std::array placementNames{"banner", "sheet", "about", "menu"};
constexpr std::array modeNames{"once", "everyLaunch", "everyDays", "always"};
constexpr std::array actionNames{"url", "pane", "addWidget", "guide", "copy", "dismiss"};

template <typename Enum, std::size_t N>
std::optional<Enum> fromRaw(const std::array<const char*, N>& names, const QString& raw) {
    for (std::size_t i = 0; i < N; ++i) {
        if (raw == QLatin1String(names[i])) {
            return static_cast<Enum>(i);
        }
    }
    return std::nullopt;
}

template <typename Enum, std::size_t N>
QString toRaw(const std::array<const char*, N>& names, Enum value) {
    return QString::fromLatin1(names.at(static_cast<std::size_t>(value)));
}

// Reads the fields of one object strictly: a present field of the wrong type is the first
// problem, and the caller gives up on the whole object. Null counts as absent.
class Reader {
public:
    explicit Reader(QJsonObject object)
        : m_object(std::move(object)) {}

    bool failed() const { return !m_problem.isEmpty(); }
    const QString& problem() const { return m_problem; }
    void fail(const QString& problem) {
        if (m_problem.isEmpty()) {
            m_problem = problem;
        }
    }

    QJsonValue field(const char* key) const {
        const QJsonValue value = m_object.value(QLatin1String(key));
        return value.isNull() ? QJsonValue(QJsonValue::Undefined) : value;
    }

    std::optional<QString> string(const char* key) {
        const QJsonValue value = field(key);
        if (value.isUndefined()) {
            return std::nullopt;
        }
        if (!value.isString()) {
            wrongType(key);
            return std::nullopt;
        }
        return value.toString();
    }

    std::optional<bool> boolean(const char* key) {
        const QJsonValue value = field(key);
        if (value.isUndefined()) {
            return std::nullopt;
        }
        if (!value.isBool()) {
            wrongType(key);
            return std::nullopt;
        }
        return value.toBool();
    }

    std::optional<int> integer(const char* key) {
        const QJsonValue value = field(key);
        if (value.isUndefined()) {
            return std::nullopt;
        }
        const double number = value.toDouble(std::nan(""));
        if (!value.isDouble() || std::trunc(number) != number ||
            std::abs(number) > std::numeric_limits<int>::max()) {
            wrongType(key);
            return std::nullopt;
        }
        return static_cast<int>(number);
    }

    std::optional<QDateTime> date(const char* key) {
        const std::optional<QString> text = string(key);
        if (!text) {
            return std::nullopt;
        }
        std::optional<QDateTime> parsed = Notice::parseDate(*text);
        if (!parsed) {
            fail(QStringLiteral("bad date ") + *text);
        }
        return parsed;
    }

    std::optional<QJsonArray> array(const char* key) {
        const QJsonValue value = field(key);
        if (value.isUndefined()) {
            return std::nullopt;
        }
        if (!value.isArray()) {
            wrongType(key);
            return std::nullopt;
        }
        return value.toArray();
    }

    std::optional<QJsonObject> object(const char* key) {
        const QJsonValue value = field(key);
        if (value.isUndefined()) {
            return std::nullopt;
        }
        if (!value.isObject()) {
            wrongType(key);
            return std::nullopt;
        }
        return value.toObject();
    }

    QStringList strings(const char* key) {
        QStringList out;
        for (const QJsonValue member : array(key).value_or(QJsonArray())) {
            if (!member.isString()) {
                wrongType(key);
                return {};
            }
            out.append(member.toString());
        }
        return out;
    }

    Notice::Texts texts(const char* key) {
        Notice::Texts out;
        const QJsonObject map = object(key).value_or(QJsonObject());
        for (auto it = map.begin(); it != map.end(); ++it) {
            if (!it.value().isString()) {
                wrongType(key);
                return {};
            }
            out.insert(it.key(), it.value().toString());
        }
        return out;
    }

private:
    void wrongType(const char* key) {
        fail(QStringLiteral("wrong type for ") + QLatin1String(key));
    }

    QJsonObject m_object;
    QString m_problem;
};

Notice::Audience readAudience(Reader& notice) {
    Notice::Audience audience;
    const std::optional<QJsonObject> object = notice.object("audience");
    if (!object) {
        return audience;
    }
    Reader r(*object);
    audience.channels = r.strings("channels");
    audience.minVersion = r.string("minVersion");
    audience.maxVersion = r.string("maxVersion");
    audience.languages = r.strings("languages");
    audience.minDaysInstalled = r.integer("minDaysInstalled");
    audience.maxDaysInstalled = r.integer("maxDaysInstalled");
    audience.hasWidgets = r.strings("hasWidgets");
    audience.lacksWidgets = r.strings("lacksWidgets");
    audience.minWidgets = r.integer("minWidgets");
    audience.maxWidgets = r.integer("maxWidgets");
    if (r.failed()) {
        notice.fail(r.problem());
    }
    return audience;
}

Notice::Frequency readFrequency(Reader& notice) {
    Notice::Frequency frequency;
    const std::optional<QJsonObject> object = notice.object("frequency");
    if (!object) {
        return frequency;
    }
    Reader r(*object);
    // A mode this build does not know reads as the most careful one.
    frequency.mode = fromRaw<Notice::Mode>(modeNames, r.string("mode").value_or(QString()))
                         .value_or(Notice::Mode::once);
    frequency.days = std::max(1, r.integer("days").value_or(7));
    frequency.maxImpressions = r.integer("maxImpressions");
    if (r.failed()) {
        notice.fail(r.problem());
    }
    return frequency;
}

} // namespace

QString rawValue(Notice::Kind kind) {
    return toRaw(kindNames, kind);
}
QString rawValue(Notice::Placement placement) {
    return toRaw(placementNames, placement);
}
QString rawValue(Notice::Mode mode) {
    return toRaw(modeNames, mode);
}
QString rawValue(Notice::Action::Kind kind) {
    return toRaw(actionNames, kind);
}

std::optional<QDateTime> Notice::parseDate(const QString& text) {
    static const QRegularExpression internet(
        QStringLiteral(R"(^\d{4}-\d{2}-\d{2}T\d{2}:\d{2}:\d{2}(\.\d+)?(Z|z|[+-]\d{2}:\d{2})$)"));
    if (!internet.match(text).hasMatch()) {
        return std::nullopt;
    }
    const QDateTime parsed = QDateTime::fromString(text, Qt::ISODateWithMs);
    if (!parsed.isValid()) {
        return std::nullopt;
    }
    return parsed.toUTC();
}

std::variant<Notice::Action, QString> Notice::Action::fromJson(const QJsonValue& json) {
    if (!json.isObject()) {
        return QStringLiteral("an action is no object");
    }
    Reader r(json.toObject());
    Action action;
    const std::optional<QString> kind = r.string("kind");
    if (!kind && !r.failed()) {
        return QStringLiteral("an action without kind");
    }
    if (kind) {
        const auto known = fromRaw<Action::Kind>(actionNames, *kind);
        if (!known) {
            return QStringLiteral("unknown action ") + *kind;
        }
        action.kind = *known;
    }
    action.label = r.texts("label");
    action.value = r.string("value");
    if (r.failed()) {
        return r.problem();
    }
    return action;
}

std::variant<Notice, QString> Notice::fromJson(const QJsonValue& json) {
    if (!json.isObject()) {
        return QStringLiteral("a notice is no object");
    }
    Reader r(json.toObject());
    Notice notice;
    const std::optional<QString> id = r.string("id");
    if (!id && !r.failed()) {
        return QStringLiteral("no id");
    }
    if (id && id->isEmpty()) {
        return QStringLiteral("empty id");
    }
    notice.id = id.value_or(QString());
    if (const std::optional<QString> kind = r.string("kind")) {
        const auto known = fromRaw<Kind>(kindNames, *kind);
        if (!known) {
            return QStringLiteral("unknown kind ") + *kind;
        }
        notice.kind = *known;
    }
    notice.priority = r.integer("priority").value_or(0);
    notice.startsAt = r.date("startsAt");
    notice.endsAt = r.date("endsAt");
    if (const std::optional<QJsonArray> placements = r.array("placements")) {
        notice.placements.clear();
        for (const QJsonValue member : *placements) {
            if (!member.isString()) {
                r.fail(QStringLiteral("wrong type for placements"));
                break;
            }
            const auto known = fromRaw<Placement>(placementNames, member.toString());
            if (known && !notice.placements.contains(*known)) {
                notice.placements.append(*known);
            }
        }
        if (!r.failed() && notice.placements.isEmpty()) {
            return QStringLiteral("no known placement");
        }
    }
    notice.audience = readAudience(r);
    notice.frequency = readFrequency(r);
    notice.dismissible = r.boolean("dismissible").value_or(true);
    notice.symbol = r.string("symbol");
    notice.accent = r.string("accent");
    notice.title = r.texts("title");
    notice.body = r.texts("body");
    for (const QJsonValue member : r.array("actions").value_or(QJsonArray())) {
        auto action = Action::fromJson(member);
        if (auto* kept = std::get_if<Action>(&action)) {
            notice.actions.append(std::move(*kept));
        }
    }
    notice.code = r.string("code");
    if (r.failed()) {
        return r.problem();
    }
    return notice;
}

Notice Notice::sample() {
    Notice notice;
    notice.id = QStringLiteral("sample-notice");
    notice.kind = Kind::news;
    notice.symbol = QStringLiteral("chart.bar.xaxis");
    notice.accent = QStringLiteral("#8085F7");
    notice.title = {{QStringLiteral("en"), QStringLiteral("New: App Time")},
                    {QStringLiteral("de"), QStringLiteral("Neu: App-Zeit")}};
    notice.body = {
        {QStringLiteral("en"),
         QStringLiteral("See where your day goes: a tile that adds up the time you spend in each "
                        "application, with a daily goal if you like.")},
        {QStringLiteral("de"),
         QStringLiteral("Sieh, wohin dein Tag geht: eine Kachel, die die Zeit in jedem Programm "
                        "zusammenzählt, auf Wunsch mit einem Tagesziel.")}};
    notice.actions = {
        Action{.kind = Action::Kind::addWidget, .label = {}, .value = QStringLiteral("appusage")},
        Action{.kind = Action::Kind::pane,
               .label = {{QStringLiteral("en"), QStringLiteral("Look at it")}},
               .value = QStringLiteral("widget:appusage")}};
    return notice;
}

bool Notice::isRunning(const QDateTime& at) const {
    return (!startsAt || at >= *startsAt) && (!endsAt || at < *endsAt);
}

QString Notice::localized(const Texts& texts, const QString& language) {
    const QString base = language.section(QLatin1Char('-'), 0, 0);
    for (const QString& key : {language, base, QStringLiteral("en")}) {
        const QString text = texts.value(key);
        if (!text.isEmpty()) {
            return text;
        }
    }
    for (const QString& text : texts) {
        if (!text.isEmpty()) {
            return text;
        }
    }
    return {};
}

} // namespace tw
