// One message from the people who run the program, as the notice feed describes it.
#pragma once

#include <QDateTime>
#include <QJsonValue>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>
#include <variant>

namespace tw {

struct Notice {
    enum class Kind { news, tip, update, thanks, offer };
    enum class Placement { banner, sheet, about, menu };
    enum class Mode { once, everyLaunch, everyDays, always };

    // Language code to text.
    using Texts = QMap<QString, QString>;

    // Every condition is optional; an empty list or an absent value places none.
    struct Audience {
        QStringList channels;
        std::optional<QString> minVersion;
        std::optional<QString> maxVersion;
        QStringList languages;
        std::optional<int> minDaysInstalled;
        std::optional<int> maxDaysInstalled;
        QStringList hasWidgets;
        QStringList lacksWidgets;
        std::optional<int> minWidgets;
        std::optional<int> maxWidgets;

        bool operator==(const Audience&) const = default;
    };

    struct Frequency {
        Mode mode = Mode::once;
        int days = 7;
        std::optional<int> maxImpressions;

        bool operator==(const Frequency&) const = default;
    };

    struct Action {
        enum class Kind { url, pane, addWidget, guide, copy, dismiss };
        Kind kind = Kind::dismiss;
        Texts label;
        std::optional<QString> value;

        bool operator==(const Action&) const = default;
        // An action, or why the member cannot be one ("unknown action teleport").
        static std::variant<Action, QString> fromJson(const QJsonValue& json);
    };

    QString id;
    Kind kind = Kind::news;
    int priority = 0;
    std::optional<QDateTime> startsAt;
    std::optional<QDateTime> endsAt;
    QList<Placement> placements{Placement::banner};
    Audience audience;
    Frequency frequency;
    bool dismissible = true;
    std::optional<QString> symbol;
    std::optional<QString> accent;
    Texts title;
    Texts body;
    QList<Action> actions;
    std::optional<QString> code;

    bool operator==(const Notice&) const = default;

    // A notice, or why this member of a feed is lost ("empty id", "unknown kind party",
    // "no known placement", "bad date tomorrow", a field of the wrong type). Actions that cannot
    // be read are dropped one by one; the notice keeps the rest.
    static std::variant<Notice, QString> fromJson(const QJsonValue& json);

    // `startsAt` absent or reached, and `endsAt` absent or not yet reached.
    bool isRunning(const QDateTime& at) const;
    bool hasPlacement(Placement placement) const { return placements.contains(placement); }

    // The first non-empty of: the language, its part before "-", "en", any entry, "".
    static QString localized(const Texts& texts, const QString& language);
    // The program's own example: news of the App Time tile, in English and German.
    static Notice sample();
    // An ISO 8601 internet time with or without fractional seconds; nothing else.
    static std::optional<QDateTime> parseDate(const QString& text);
};

QString rawValue(Notice::Kind kind);
QString rawValue(Notice::Placement placement);
QString rawValue(Notice::Mode mode);
QString rawValue(Notice::Action::Kind kind);

} // namespace tw
