#include "tools/CalculatorState.h"

#include "tools/CalcParser.h"

#include <QLocale>

namespace tw {

namespace {

bool isOperator(QChar c) {
    return c == QLatin1Char('+') || c == QLatin1Char('-') || c == QLatin1Char('*') ||
           c == QLatin1Char('/') || c == QLatin1Char('^');
}

bool isDigit(QChar c) {
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

// Where an operand has just ended, so that an operator, "%" or ")" may follow.
bool endsOperand(const QString& entry) {
    if (entry.isEmpty()) {
        return false;
    }
    const QChar last = entry.back();
    return isDigit(last) || last == QLatin1Char(')') || last == QLatin1Char('%') ||
           last == QLatin1Char('.');
}

QChar canonical(QChar key) {
    switch (key.unicode()) {
    case 0x2212:
    case 0x2013:
        return QLatin1Char('-');
    case 0x00D7:
    case 'x':
    case 'X':
        return QLatin1Char('*');
    case 0x00F7:
        return QLatin1Char('/');
    case ',':
        return QLatin1Char('.');
    default:
        return key;
    }
}

// The number the entry ends with, from its first digit or point.
QString trailingNumber(const QString& entry) {
    qsizetype start = entry.size();
    while (start > 0 && (isDigit(entry[start - 1]) || entry[start - 1] == QLatin1Char('.'))) {
        --start;
    }
    return entry.mid(start);
}

int openParentheses(const QString& entry) {
    return static_cast<int>(entry.count(QLatin1Char('('))) -
           static_cast<int>(entry.count(QLatin1Char(')')));
}

bool validExpression(const QString& text) {
    if (text.isEmpty() || text.size() > CalculatorState::maxEntry) {
        return false;
    }
    for (const QChar c : text) {
        if (!isDigit(c) && !isOperator(c) && c != QLatin1Char('.') && c != QLatin1Char('%') &&
            c != QLatin1Char('(') && c != QLatin1Char(')') && c != QLatin1Char('e')) {
            return false;
        }
    }
    return true;
}

} // namespace

QString CalcTape::toText(const QList<CalcTapeLine>& tape) {
    QStringList lines;
    for (const CalcTapeLine& line : tape) {
        lines.append(line.expression + QLatin1Char('=') + line.result);
    }
    return lines.join(QLatin1Char('\n'));
}

QList<CalcTapeLine> CalcTape::fromText(const QString& text) {
    QList<CalcTapeLine> tape;
    // Only the tail can be kept, so only the tail is read.
    const QStringList lines = text.right(maxLines * (CalculatorState::maxEntry + 40))
                                  .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        const qsizetype equals = line.lastIndexOf(QLatin1Char('='));
        if (equals <= 0) {
            continue;
        }
        const QString expression = line.left(equals);
        const QString result = line.mid(equals + 1);
        bool number = false;
        QLocale::c().toDouble(result, &number);
        if (!number || result.size() > 40 || !validExpression(expression)) {
            continue;
        }
        tape.append({expression, result});
    }
    if (tape.size() > maxLines) {
        tape.remove(0, tape.size() - maxLines);
    }
    return tape;
}

bool CalculatorState::type(QChar key) {
    key = canonical(key);
    failure.reset();
    if (key == QLatin1Char('(') || key == QLatin1Char(')')) {
        if (evaluated && key == QLatin1Char('(')) {
            entry.clear();
        }
        evaluated = false;
        if (key == QLatin1Char(')') && (openParentheses(entry) <= 0 || !endsOperand(entry))) {
            return false;
        }
    } else if (isDigit(key) || key == QLatin1Char('.')) {
        if (evaluated) {
            entry.clear();
            evaluated = false;
        }
        if (!entry.isEmpty() &&
            (entry.back() == QLatin1Char(')') || entry.back() == QLatin1Char('%'))) {
            return false;
        }
        if (key == QLatin1Char('.') && trailingNumber(entry).contains(QLatin1Char('.'))) {
            return false;
        }
        // "0.5" rather than ".5", and no "007".
        if (key == QLatin1Char('.') && trailingNumber(entry).isEmpty()) {
            entry += QLatin1Char('0');
        } else if (isDigit(key) && trailingNumber(entry) == QLatin1String("0")) {
            entry.chop(1);
        }
    } else if (key == QLatin1Char('%')) {
        evaluated = false;
        if (!endsOperand(entry)) {
            return false;
        }
    } else if (isOperator(key)) {
        evaluated = false;
        if (entry.isEmpty()) {
            // A sign may start an entry; another operator carries on from the last result.
            if (key != QLatin1Char('-')) {
                if (tape.isEmpty()) {
                    return false;
                }
                entry = tape.back().result;
            }
        } else if (isOperator(entry.back())) {
            const QChar last = entry.back();
            // A minus after × ÷ ^ is the sign of what follows; otherwise the new operator takes
            // the place of the last one, and of its sign ("5*-" then "+" is "5+").
            const bool sign =
                key == QLatin1Char('-') && last != QLatin1Char('-') && last != QLatin1Char('+');
            const bool afterSign = entry.size() >= 2 && isOperator(entry[entry.size() - 2]);
            if (!sign) {
                if (afterSign && key == QLatin1Char('-')) {
                    return false;
                }
                entry.chop(afterSign ? 2 : 1);
                if (entry.isEmpty() && key != QLatin1Char('-')) {
                    return true;
                }
            }
        } else if (entry.back() == QLatin1Char('(') && key != QLatin1Char('-')) {
            return false;
        }
    } else {
        return false;
    }
    if (entry.size() >= maxEntry) {
        return false;
    }
    entry += key;
    return true;
}

bool CalculatorState::parenthesis() {
    const bool closes = !evaluated && openParentheses(entry) > 0 && endsOperand(entry);
    return type(closes ? QLatin1Char(')') : QLatin1Char('('));
}

bool CalculatorState::backspace() {
    failure.reset();
    evaluated = false;
    if (entry.isEmpty()) {
        return false;
    }
    entry.chop(1);
    return true;
}

bool CalculatorState::clear() {
    failure.reset();
    evaluated = false;
    if (entry.isEmpty()) {
        return false;
    }
    entry.clear();
    return true;
}

bool CalculatorState::equals(int decimals) {
    if (entry.isEmpty() || evaluated) {
        return false;
    }
    const CalcResult result = CalcParser::evaluate(entry);
    if (!result.ok()) {
        failure = result.status;
        return true;
    }
    failure.reset();
    const QString text = CalcNumber::format(result.value, decimals);
    tape.append({entry, text});
    if (tape.size() > CalcTape::maxLines) {
        tape.removeFirst();
    }
    entry = text;
    evaluated = true;
    return true;
}

bool CalculatorState::paste(const QString& text) {
    bool changed = false;
    for (const QChar c : text.left(maxEntry)) {
        // Grouping in a pasted number ("1,234" or "1 234") is not a decimal point.
        if (c.isSpace() || c == QChar(0x2009) || c == QLatin1Char('\'')) {
            continue;
        }
        if (c == QLatin1Char(',') && text.contains(QLatin1Char('.'))) {
            continue;
        }
        changed = type(c) || changed;
    }
    return changed;
}

std::optional<double> CalculatorState::preview() const {
    if (evaluated) {
        return std::nullopt;
    }
    bool hasOperator = entry.contains(QLatin1Char('%'));
    for (qsizetype i = 1; i < entry.size() && !hasOperator; ++i) {
        hasOperator = isOperator(entry[i]);
    }
    if (!hasOperator) {
        return std::nullopt;
    }
    const CalcResult result = CalcParser::evaluate(entry);
    return result.ok() ? std::optional<double>(result.value) : std::nullopt;
}

QString CalculatorState::copyText(int decimals) const {
    if (const std::optional<double> value = preview()) {
        return CalcNumber::format(*value, decimals);
    }
    return entry;
}

QString CalculatorState::displayed(const QString& entry) {
    QString out = entry;
    out.replace(QLatin1Char('*'), QChar(0x00D7));
    out.replace(QLatin1Char('/'), QChar(0x00F7));
    out.replace(QLatin1Char('-'), QChar(0x2212));
    return out;
}

} // namespace tw
