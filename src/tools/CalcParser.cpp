#include "tools/CalcParser.h"

#include <QLocale>

#include <cmath>
#include <optional>

namespace tw {

namespace {

using Status = CalcResult::Status;

struct Value {
    double number = 0;
    // A lone percentage ("10%"), which + and − read as a share of their left side.
    bool percent = false;
};

class Parser {
public:
    explicit Parser(QStringView text)
        : m_text(text) {}

    CalcResult run() {
        skipSpaces();
        if (atEnd()) {
            return {Status::empty, 0};
        }
        const std::optional<Value> value = additive(0);
        if (!value) {
            return {m_failure, 0};
        }
        skipSpaces();
        // Parentheses left open close at the end; a stray closing one is an error.
        if (!atEnd()) {
            return {Status::invalid, 0};
        }
        return {Status::ok, value->number};
    }

private:
    bool atEnd() const { return m_pos >= m_text.size(); }

    void skipSpaces() {
        while (!atEnd() && m_text[m_pos].isSpace()) {
            ++m_pos;
        }
    }

    // The next character with the typographic operators read as their ASCII forms.
    QChar peek() {
        skipSpaces();
        if (atEnd()) {
            return {};
        }
        const QChar c = m_text[m_pos];
        switch (c.unicode()) {
        case 0x2212: // minus sign
        case 0x2013: // en dash
            return QLatin1Char('-');
        case 0x00D7: // multiplication sign
        case 0x22C5: // dot operator
            return QLatin1Char('*');
        case 0x00F7: // division sign
        case 0x2215: // division slash
            return QLatin1Char('/');
        default:
            return c;
        }
    }

    // The first failure is the one that explains the rest.
    std::nullopt_t fail(Status status) {
        if (!m_failed) {
            m_failure = status;
            m_failed = true;
        }
        return std::nullopt;
    }

    std::optional<Value> checked(double number, bool percent = false) {
        if (std::isnan(number)) {
            return fail(Status::undefined);
        }
        if (std::isinf(number)) {
            return fail(Status::overflow);
        }
        return Value{number, percent};
    }

    std::optional<Value> additive(int depth) {
        std::optional<Value> left = term(depth);
        if (!left) {
            return std::nullopt;
        }
        for (;;) {
            const QChar op = peek();
            if (op != QLatin1Char('+') && op != QLatin1Char('-')) {
                return left;
            }
            ++m_pos;
            const std::optional<Value> right = term(depth);
            if (!right) {
                return std::nullopt;
            }
            const double amount = right->percent ? left->number * right->number : right->number;
            left = checked(op == QLatin1Char('+') ? left->number + amount : left->number - amount);
            if (!left) {
                return std::nullopt;
            }
        }
    }

    std::optional<Value> term(int depth) {
        std::optional<Value> left = unary(depth);
        if (!left) {
            return std::nullopt;
        }
        for (;;) {
            QChar op = peek();
            if (op == QLatin1Char('(')) {
                // "2(3 + 4)": a number before a parenthesis multiplies it.
                op = QLatin1Char('*');
            } else if (op == QLatin1Char('*') || op == QLatin1Char('/')) {
                ++m_pos;
            } else {
                return left;
            }
            const std::optional<Value> right = unary(depth);
            if (!right) {
                return std::nullopt;
            }
            if (op == QLatin1Char('/') && right->number == 0) {
                return fail(Status::divisionByZero);
            }
            left = checked(op == QLatin1Char('*') ? left->number * right->number
                                                  : left->number / right->number);
            if (!left) {
                return std::nullopt;
            }
        }
    }

    std::optional<Value> unary(int depth) {
        if (depth > CalcParser::maxDepth) {
            return fail(Status::invalid);
        }
        const QChar sign = peek();
        if (sign == QLatin1Char('-') || sign == QLatin1Char('+')) {
            ++m_pos;
            std::optional<Value> operand = unary(depth + 1);
            if (operand && sign == QLatin1Char('-')) {
                operand->number = -operand->number;
            }
            return operand;
        }
        return power(depth);
    }

    std::optional<Value> power(int depth) {
        std::optional<Value> base = postfix(depth);
        if (!base || peek() != QLatin1Char('^')) {
            return base;
        }
        ++m_pos;
        // Right-associative, and the exponent may carry a sign: 2^-1.
        const std::optional<Value> exponent = unary(depth + 1);
        if (!exponent) {
            return std::nullopt;
        }
        if (base->number == 0 && exponent->number < 0) {
            return fail(Status::divisionByZero);
        }
        return checked(std::pow(base->number, exponent->number));
    }

    std::optional<Value> postfix(int depth) {
        std::optional<Value> value = primary(depth);
        while (value && peek() == QLatin1Char('%')) {
            ++m_pos;
            value = checked(value->number / 100, true);
        }
        return value;
    }

    std::optional<Value> primary(int depth) {
        const QChar c = peek();
        if (c.isNull()) {
            return fail(Status::incomplete);
        }
        if (c == QLatin1Char('(')) {
            ++m_pos;
            if (peek().isNull()) {
                return fail(Status::incomplete);
            }
            std::optional<Value> inner = additive(depth + 1);
            if (!inner) {
                return std::nullopt;
            }
            if (peek() == QLatin1Char(')')) {
                ++m_pos;
            } else if (!atEnd()) {
                return fail(Status::invalid);
            }
            inner->percent = false;
            return inner;
        }
        return number();
    }

    std::optional<Value> number() {
        const qsizetype start = m_pos;
        QString digits;
        bool point = false;
        bool any = false;
        while (!atEnd()) {
            const QChar c = m_text[m_pos];
            if (c >= QLatin1Char('0') && c <= QLatin1Char('9')) {
                digits += c;
                any = true;
            } else if ((c == QLatin1Char('.') || c == QLatin1Char(',')) && !point) {
                digits += QLatin1Char('.');
                point = true;
            } else {
                break;
            }
            ++m_pos;
        }
        if (!any) {
            m_pos = start;
            return fail(Status::invalid);
        }
        // An exponent only where digits follow the "e", so "2e" is not taken for one.
        if (!atEnd() && (m_text[m_pos] == QLatin1Char('e') || m_text[m_pos] == QLatin1Char('E'))) {
            qsizetype at = m_pos + 1;
            QString exponent = QStringLiteral("e");
            if (at < m_text.size() &&
                (m_text[at] == QLatin1Char('+') || m_text[at] == QLatin1Char('-'))) {
                exponent += m_text[at];
                ++at;
            }
            const qsizetype first = at;
            while (at < m_text.size() && m_text[at] >= QLatin1Char('0') &&
                   m_text[at] <= QLatin1Char('9')) {
                exponent += m_text[at];
                ++at;
            }
            if (at > first) {
                digits += exponent;
                m_pos = at;
            }
        }
        bool ok = false;
        const double value = QLocale::c().toDouble(digits, &ok);
        if (!ok) {
            // Only an exponent too large for a double gets here.
            return fail(Status::overflow);
        }
        return checked(value);
    }

    QStringView m_text;
    qsizetype m_pos = 0;
    Status m_failure = Status::invalid;
    bool m_failed = false;
};

} // namespace

CalcResult CalcParser::evaluate(QStringView text) {
    if (text.size() > maxLength) {
        return {Status::invalid, 0};
    }
    CalcResult result = Parser(text).run();
    // Minus zero reads as a mistake on a calculator.
    if (result.ok() && result.value == 0) {
        result.value = 0;
    }
    return result;
}

QString CalcNumber::format(double value, int decimals) {
    if (!std::isfinite(value)) {
        return {};
    }
    if (value == 0) {
        value = 0;
    }
    QString text;
    if (decimals >= 0 && std::fabs(value) < 1e15) {
        const int places = std::min(decimals, 12);
        text = QString::number(value, 'f', places);
        if (text.startsWith(QLatin1Char('-')) && text.mid(1) == QString::number(0.0, 'f', places)) {
            text.remove(0, 1);
        }
        return text;
    }
    // 15 significant digits hide the binary noise of 0.1 + 0.2; the form is chosen after
    // rounding, so that a number shown reads back and shows the same again.
    const double rounded = QString::number(value, 'g', 15).toDouble();
    const double magnitude = std::fabs(rounded);
    if (magnitude != 0 && (magnitude >= 1e15 || magnitude < 1e-9)) {
        text = QString::number(rounded, 'e', 14);
        const qsizetype e = text.indexOf(QLatin1Char('e'));
        QString mantissa = text.left(e);
        while (mantissa.endsWith(QLatin1Char('0'))) {
            mantissa.chop(1);
        }
        if (mantissa.endsWith(QLatin1Char('.'))) {
            mantissa.chop(1);
        }
        return mantissa + text.mid(e);
    }
    const int places =
        magnitude == 0 ? 0 : std::max(0, 14 - static_cast<int>(std::floor(std::log10(magnitude))));
    text = QString::number(rounded, 'f', places);
    if (text.contains(QLatin1Char('.'))) {
        while (text.endsWith(QLatin1Char('0'))) {
            text.chop(1);
        }
        if (text.endsWith(QLatin1Char('.'))) {
            text.chop(1);
        }
    }
    if (text == QLatin1String("-0")) {
        text = QStringLiteral("0");
    }
    return text;
}

QString CalcNumber::grouped(const QString& text) {
    qsizetype start = 0;
    while (start < text.size() && !text[start].isDigit()) {
        ++start;
    }
    qsizetype end = start;
    while (end < text.size() && text[end].isDigit()) {
        ++end;
    }
    if (end - start <= 4) {
        return text;
    }
    QString out = text.left(start);
    for (qsizetype i = start; i < end; ++i) {
        if (i > start && (end - i) % 3 == 0) {
            out += QChar(0x2009);
        }
        out += text[i];
    }
    return out + text.mid(end);
}

} // namespace tw
