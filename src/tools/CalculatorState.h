// One calculator's entry and tape, and how keys change them: digits and operators as typed, a
// result that the next operator carries on from, the tape of recent sums.
#pragma once

#include "tools/CalcResult.h"

#include <QList>
#include <QString>

#include <optional>

namespace tw {

struct CalcTapeLine {
    QString expression;
    QString result;

    bool operator==(const CalcTapeLine&) const = default;
};

namespace CalcTape {

inline constexpr qsizetype maxLines = 20;

// One line a sum, "expression=result", newest last: how the tape is kept in the tile's settings.
QString toText(const QList<CalcTapeLine>& tape);
// Lenient: lines whose expression holds anything but the calculator's own characters, or whose
// result is no number, are left out, as are all but the newest `maxLines`.
QList<CalcTapeLine> fromText(const QString& text);

} // namespace CalcTape

struct CalculatorState {
    // Longer entries take no more keys.
    static constexpr qsizetype maxEntry = 200;

    // ASCII operators throughout ("12*3-4"); `displayed` turns them into × ÷ −.
    QString entry;
    // The entry is the result of the last "=": a digit starts afresh, an operator carries on.
    bool evaluated = false;
    // Why the last "=" gave no result, until the next key.
    std::optional<CalcResult::Status> failure;
    QList<CalcTapeLine> tape;

    // A digit, ".", an operator (+ - * / ^, and × ÷ −), "%", "(" or ")"; false for a key that
    // changes nothing (a second point in a number, an operator where none can go).
    bool type(QChar key);
    // "(" or ")", whichever fits: ")" after a complete operand while one is open.
    bool parenthesis();
    bool backspace();
    // Empties the entry; false when there was nothing to clear.
    bool clear();
    // Works the entry out: the result replaces it and joins the tape, or `failure` says why not.
    // `decimals` as `CalcNumber::format`.
    bool equals(int decimals = -1);
    // The calculator's own characters of `text`, typed one by one (a pasted "1,234.5" is 1234.5).
    bool paste(const QString& text);

    // What the entry comes to while it is typed: a result only for an entry with an operator
    // that works out, so that a plain number shows no echo of itself.
    std::optional<double> preview() const;
    // The text a copy gives: the result after "=", else the preview, else the entry.
    QString copyText(int decimals = -1) const;

    static QString displayed(const QString& entry);

    bool operator==(const CalculatorState&) const = default;
};

} // namespace tw
