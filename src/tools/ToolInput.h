// How the keyboard and the clicks on a calculator or converter tile change its state: the pure
// part of their behaviour, so that it is tested without a desktop.
#pragma once

#include "tools/CalculatorState.h"
#include "tools/ConverterState.h"

#include <Qt>

namespace tw {

namespace ToolInput {

enum class Outcome {
    // The state changed: draw it again.
    changed,
    // Handled, nothing to draw (a key with no effect here).
    unchanged,
    // The tile's result should go to the clipboard.
    copy,
    // The clipboard's text should be typed in.
    paste,
    // Not for this tile: the desktop may do with it what it does.
    ignored,
};

// Digits, operators, ( ) % . , and Enter or = for the result, Backspace, Delete and Escape to
// clear (Escape on an empty entry is left to the desktop), Ctrl+C and Ctrl+V.
Outcome calculatorKey(CalculatorState& state, int key, Qt::KeyboardModifiers modifiers,
                      const QString& text, int decimals);
// "type:<c>", "paren", "back", "clear", "equals", "copy", "tape:<n>" (that sum's result typed in).
Outcome calculatorCommand(CalculatorState& state, const QString& command, int decimals);

// Digits, operators, "-" for the sign, Backspace, Escape (closes a list, then clears), Up and
// Down for the target unit, with Shift for the source unit, Page Up and Down for the category,
// Tab to swap, Enter or Ctrl+C to copy, Ctrl+V.
Outcome converterKey(ConverterState& state, int key, Qt::KeyboardModifiers modifiers,
                     const QString& text);
// "pick:category|from|to", "choose:<id>", "close", "swap", "copy", "edit", "type:<c>", "back",
// "clear".
Outcome converterCommand(ConverterState& state, const QString& command);

} // namespace ToolInput

} // namespace tw
