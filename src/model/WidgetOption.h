// The options a kind offers on its settings page, beyond the size and scale every tile has: each a
// settings key the kind's face reads, with its title, its kind of control and its default.
#pragma once

#include <QList>
#include <QString>

namespace tw {

struct WidgetOption {
    enum class Type { choice, toggle, text, date };

    struct Choice {
        QString value;
        QString title;

        bool operator==(const Choice&) const = default;
    };

    QString key;
    QString title;
    Type type = Type::choice;
    // For a choice, in the order shown; a toggle stores "true" or "false", a date its ISO 8601
    // day ("2027-01-01").
    QList<Choice> choices;
    // What the face does when the key is absent; empty for a text that starts blank.
    QString defaultValue;

    bool operator==(const WidgetOption&) const = default;

    // The kind's options in the order the page shows them; empty for a kind with none.
    static QList<WidgetOption> of(const QString& kind);
};

} // namespace tw
