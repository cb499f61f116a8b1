// The options a kind offers on its settings page, beyond the size and scale every tile has: each a
// settings key the kind's face reads, with its title, its kind of control and its default.
#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace tw {

struct WidgetOption {
    // `place`: where the tile is about, one of `choices` ("" where the machine is, "custom" a city
    // found by name and kept beside the key, in "locName", "locLat", "locLon" and "locCountry").
    // `source`: one of `choices` or a calendar or list the host finds on the machine, by its id.
    // `quote`: a share's symbol, a coin or a list of currencies, kept only once the service
    // has answered for it.
    // `folder`: a folder of this machine, typed or chosen with the desktop's dialog; empty is the
    // default the kind names in `defaultValue`'s place.
    // `app`: one installed application by its desktop-entry id; `apps`: several, in the
    // person's order, separated by ";". Both chosen from those the host finds.
    // `lines`: text of several lines (a list, one item a line).
    enum class Type { choice, toggle, text, date, place, source, quote, folder, app, apps, lines };

    struct Choice {
        QString value;
        QString title;

        bool operator==(const Choice&) const = default;
    };

    // Another option of the kind having this value.
    struct Condition {
        QString key;
        QString value;

        bool operator==(const Condition&) const = default;
    };

    QString key;
    QString title;
    Type type = Type::choice;
    // For a choice, in the order shown; a toggle stores "true" or "false", a date its ISO 8601
    // day ("2027-01-01").
    QList<Choice> choices;
    // What the face does when the key is absent; empty for a text that starts blank.
    QString defaultValue;
    // The option counts only while another one of the kind has this value (its default when
    // absent); the page dims it otherwise. None: always.
    std::optional<Condition> activeWhen = {};

    bool operator==(const WidgetOption&) const = default;

    // The kind's options in the order the page shows them; empty for a kind with none.
    static QList<WidgetOption> of(const QString& kind);
};

} // namespace tw
