// What a command wrote, as the lines a terminal would show: escape sequences read for their
// colours and weight (SGR), carriage returns and backspaces overwriting as on a screen, tabs
// expanded, every other control and escape sequence dropped, invalid UTF-8 as U+FFFD.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace tw {

// A colour a program asked for: one of the 256 of the terminal's palette, or a colour of its own.
struct TerminalColor {
    enum class Kind { plain, palette, rgb };
    Kind kind = Kind::plain;
    // A palette index 0…255, or 0xRRGGBB.
    quint32 value = 0;

    bool operator==(const TerminalColor&) const = default;
};

struct TerminalSpan {
    QString text;
    TerminalColor color;
    bool bold = false;

    bool operator==(const TerminalSpan&) const = default;
};

struct TerminalLine {
    QList<TerminalSpan> spans;

    bool operator==(const TerminalLine&) const = default;
    QString text() const;
};

struct TerminalText {
    QList<TerminalLine> lines;

    bool operator==(const TerminalText&) const = default;
    // The lines without their colours, joined by "\n".
    QString plain() const;

    // A trailing line end makes no empty last line. Lines longer than `maxColumns` are cut.
    static TerminalText decode(const QByteArray& bytes);
    static constexpr int maxColumns = 512;
    static constexpr int tabWidth = 8;
};

} // namespace tw
