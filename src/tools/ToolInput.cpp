#include "tools/ToolInput.h"

namespace tw {

namespace {

using Outcome = ToolInput::Outcome;

Outcome changedIf(bool changed) {
    return changed ? Outcome::changed : Outcome::unchanged;
}

// Letters and the like are the desktop's; the characters of a sum are always taken, even where
// they change nothing.
const QString& ownCharacters() {
    static const QString own = QStringLiteral("0123456789.,+-*/^%()xX\u00D7\u00F7\u2212");
    return own;
}

bool control(Qt::KeyboardModifiers modifiers) {
    return (modifiers & Qt::ControlModifier) != 0;
}

} // namespace

Outcome ToolInput::calculatorKey(CalculatorState& state, int key, Qt::KeyboardModifiers modifiers,
                                 const QString& text, int decimals) {
    if (control(modifiers)) {
        if (key == Qt::Key_C) {
            return Outcome::copy;
        }
        if (key == Qt::Key_V) {
            return Outcome::paste;
        }
        return Outcome::ignored;
    }
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Equal:
        return changedIf(state.equals(decimals));
    case Qt::Key_Backspace:
        return changedIf(state.backspace());
    case Qt::Key_Delete:
        return changedIf(state.clear());
    case Qt::Key_Escape:
        return state.clear() ? Outcome::changed : Outcome::ignored;
    default:
        break;
    }
    if (text.size() != 1 || !ownCharacters().contains(text.front())) {
        return Outcome::ignored;
    }
    return changedIf(state.type(text.front()));
}

Outcome ToolInput::calculatorCommand(CalculatorState& state, const QString& command, int decimals) {
    if (command.startsWith(QLatin1String("type:")) && command.size() == 6) {
        return changedIf(state.type(command.back()));
    }
    if (command == QLatin1String("paren")) {
        return changedIf(state.parenthesis());
    }
    if (command == QLatin1String("back")) {
        return changedIf(state.backspace());
    }
    if (command == QLatin1String("clear")) {
        return changedIf(state.clear());
    }
    if (command == QLatin1String("equals")) {
        return changedIf(state.equals(decimals));
    }
    if (command == QLatin1String("copy")) {
        return Outcome::copy;
    }
    if (command.startsWith(QLatin1String("tape:"))) {
        bool ok = false;
        const qsizetype index = command.mid(5).toLongLong(&ok);
        if (!ok || index < 0 || index >= state.tape.size()) {
            return Outcome::ignored;
        }
        // A result picked from the tape starts a sum, or goes in where a number may.
        if (state.evaluated) {
            state.clear();
        }
        return changedIf(state.paste(state.tape[index].result));
    }
    return Outcome::ignored;
}

Outcome ToolInput::converterKey(ConverterState& state, int key, Qt::KeyboardModifiers modifiers,
                                const QString& text) {
    using Picking = ConverterState::Picking;
    if (control(modifiers)) {
        if (key == Qt::Key_C) {
            return Outcome::copy;
        }
        if (key == Qt::Key_V) {
            return Outcome::paste;
        }
        return Outcome::ignored;
    }
    const bool shift = (modifiers & Qt::ShiftModifier) != 0;
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return Outcome::copy;
    case Qt::Key_Backspace:
        return changedIf(state.backspace());
    case Qt::Key_Escape:
        return state.escape() ? Outcome::changed : Outcome::ignored;
    case Qt::Key_Up:
    case Qt::Key_Down:
        state.cycle(shift ? Picking::from : Picking::to, key == Qt::Key_Down ? 1 : -1);
        return Outcome::changed;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        state.cycle(Picking::category, key == Qt::Key_PageDown ? 1 : -1);
        return Outcome::changed;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        state.swap();
        return Outcome::changed;
    default:
        break;
    }
    if (text.size() != 1 || !ownCharacters().contains(text.front())) {
        return Outcome::ignored;
    }
    return changedIf(state.type(text.front()));
}

Outcome ToolInput::converterCommand(ConverterState& state, const QString& command) {
    using Picking = ConverterState::Picking;
    if (command == QLatin1String("pick:category")) {
        state.picking = Picking::category;
        return Outcome::changed;
    }
    if (command == QLatin1String("pick:from") || command == QLatin1String("pick:to")) {
        state.picking = command.endsWith(QLatin1String("from")) ? Picking::from : Picking::to;
        return Outcome::changed;
    }
    if (command.startsWith(QLatin1String("choose:"))) {
        return changedIf(state.pick(command.mid(7)));
    }
    if (command == QLatin1String("close")) {
        return changedIf(state.escape());
    }
    if (command == QLatin1String("swap")) {
        state.swap();
        return Outcome::changed;
    }
    if (command == QLatin1String("copy")) {
        return Outcome::copy;
    }
    if (command == QLatin1String("edit")) {
        // Typing replaces the amount, as after choosing a unit.
        state.fresh = true;
        return Outcome::unchanged;
    }
    if (command.startsWith(QLatin1String("type:")) && command.size() == 6) {
        return changedIf(state.type(command.back()));
    }
    if (command == QLatin1String("back")) {
        return changedIf(state.backspace());
    }
    if (command == QLatin1String("clear")) {
        return changedIf(state.escape());
    }
    return Outcome::ignored;
}

} // namespace tw
