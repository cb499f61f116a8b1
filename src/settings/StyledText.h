// Text in runs of one style each: what a Markdown string of the string tables becomes, ready for
// a view to draw run by run.
#pragma once

#include <QFlags>
#include <QList>
#include <QString>
#include <QStringView>

#include <optional>

namespace tw {

enum class TextStyle : unsigned {
    plain = 0,
    strong = 1U << 0,
    emphasis = 1U << 1,
    code = 1U << 2,
    strikethrough = 1U << 3,
};
Q_DECLARE_FLAGS(TextStyles, TextStyle)
Q_DECLARE_OPERATORS_FOR_FLAGS(TextStyles)

struct StyledRun {
    QString text;
    TextStyles style;
    // The target of a link; empty for ordinary text.
    QString link;

    friend bool operator==(const StyledRun&, const StyledRun&) = default;
};

struct StyledText {
    QList<StyledRun> runs;

    // The text without any styling.
    QString plainText() const;

    // One unstyled run.
    static StyledText plain(const QString& text);
    // Parses Markdown: **strong**, *emphasis* (and the "_" forms), ***both***, ~~struck~~,
    // `code`, [links](target), backslash escapes, "#" headings (strong) and "-", "*", "+" list
    // items (shown with a bullet). Lines stay lines. Gives nullopt when a marker is left open or
    // markers cross, so the caller can keep the text as it is.
    static std::optional<StyledText> fromMarkdown(QStringView markdown);

    friend bool operator==(const StyledText&, const StyledText&) = default;
};

} // namespace tw
