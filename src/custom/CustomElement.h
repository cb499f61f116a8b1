// One thing a custom widget draws in a row: a text, a number, a symbol, a ring, a bar, a chart,
// a picture, a divider, a space, a list or a bar chart.
#pragma once

#include "custom/CustomColorRule.h"
#include "custom/CustomElementType.h"
#include "custom/CustomTextStyle.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <optional>

namespace tw {

struct CustomElement {
    // Made afresh at every decoding and construction; never written.
    QUuid id = QUuid::createUuid();
    CustomElementType type = CustomElementType::text;
    // Tokens allowed. A caption or a reading token for `gauge` and `bar`, a reading token for
    // `sparkline`, the file path of an `image`, the line template of a `list`, the number's
    // field in each entry for `bars`.
    std::optional<QString> text;
    // Where in a source document the value lies.
    std::optional<QString> path;
    // The symbol of an `icon`.
    std::optional<QString> symbol;
    std::optional<CustomTextStyle> style;
    std::optional<QString> color;
    // 0 to 6 after clean-up.
    std::optional<int> decimals;
    std::optional<QString> prefix;
    std::optional<QString> suffix;
    std::optional<double> min;
    std::optional<double> max;
    // Lines of a `list`, 1 to 12 after clean-up.
    std::optional<int> limit;
    // At most 4 after clean-up.
    std::optional<QList<CustomColorRule>> rules;

    // An unknown or missing `type` makes a text element, an unknown `style` none, and a rule list
    // with any fault in it none; any other field of the wrong JSON type gives nullopt, which
    // fails the whole file.
    static std::optional<CustomElement> fromJson(const QJsonValue& json);
    QJsonObject toJson() const;

    // One line for the editor's lists.
    QString summary() const;
    // A non-empty `path`, or a data token in `text`.
    bool readsSourceData() const;
    // The extra sources the element reads: the one its `path` names, then those of the
    // "data.NAME:" tokens of `text`, in order, repeats kept.
    QStringList namedSourceReferences() const;

    bool operator==(const CustomElement&) const = default;
};

} // namespace tw
