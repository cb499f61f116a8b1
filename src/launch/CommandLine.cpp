#include "launch/CommandLine.h"

#include "text/L.h"

namespace tw {

namespace {

bool isShellOperator(QChar c) {
    return c == QLatin1Char('|') || c == QLatin1Char(';') || c == QLatin1Char('&') ||
           c == QLatin1Char('<') || c == QLatin1Char('>') || c == QLatin1Char('`') ||
           c == QLatin1Char('$');
}

bool isSpace(QChar c) {
    return c == QLatin1Char(' ') || c == QLatin1Char('\t') || c == QLatin1Char('\n') ||
           c == QLatin1Char('\r');
}

QString quoted(const QString& word) {
    if (word.isEmpty()) {
        return QStringLiteral("''");
    }
    for (const QChar c : word) {
        if (word.startsWith(QLatin1Char('~')) || isSpace(c) || isShellOperator(c) ||
            c == QLatin1Char('\'') || c == QLatin1Char('"') || c == QLatin1Char('\\')) {
            QString inner = word;
            inner.replace(QLatin1Char('\''), QStringLiteral("'\\''"));
            return QLatin1Char('\'') + inner + QLatin1Char('\'');
        }
    }
    return word;
}

} // namespace

QString CommandLine::text() const {
    if (isEmpty()) {
        return {};
    }
    QStringList words{quoted(program)};
    for (const QString& argument : arguments) {
        words << quoted(argument);
    }
    return words.join(QLatin1Char(' '));
}

ParsedCommand CommandLine::parse(const QString& text, const QString& home) {
    if (text.size() > maxLength) {
        return {{}, L("launch.command.long", QStringLiteral("The command is too long."))};
    }
    QStringList words;
    QString word;
    bool inWord = false;
    enum class Quote { none, single, doubled } quote = Quote::none;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (quote == Quote::single) {
            if (c == QLatin1Char('\'')) {
                quote = Quote::none;
            } else {
                word += c;
            }
            continue;
        }
        if (quote == Quote::doubled) {
            if (c == QLatin1Char('"')) {
                quote = Quote::none;
            } else if (c == QLatin1Char('\\') && i + 1 < text.size() &&
                       QStringLiteral("\"\\$`").contains(text.at(i + 1))) {
                word += text.at(++i);
            } else {
                word += c;
            }
            continue;
        }
        if (isSpace(c)) {
            if (inWord) {
                words << word;
                word.clear();
                inWord = false;
            }
            continue;
        }
        if (isShellOperator(c)) {
            return {{},
                    L("launch.command.shell",
                      QStringLiteral("“%1” needs a shell; write sh -c '…' to use one."))
                        .arg(c)};
        }
        if (!inWord && c == QLatin1Char('~') &&
            (i + 1 == text.size() || isSpace(text.at(i + 1)) ||
             text.at(i + 1) == QLatin1Char('/'))) {
            word += home;
            inWord = true;
            continue;
        }
        inWord = true;
        if (c == QLatin1Char('\'')) {
            quote = Quote::single;
        } else if (c == QLatin1Char('"')) {
            quote = Quote::doubled;
        } else if (c == QLatin1Char('\\')) {
            if (i + 1 < text.size()) {
                word += text.at(++i);
            }
        } else {
            word += c;
        }
    }
    if (quote != Quote::none) {
        return {{}, L("launch.command.quote", QStringLiteral("A quote is not closed."))};
    }
    if (inWord) {
        words << word;
    }
    if (words.isEmpty() || words.first().isEmpty()) {
        return {{}, L("launch.command.empty", QStringLiteral("There is no command to run."))};
    }
    return {{words.first(), words.mid(1)}, {}};
}

} // namespace tw
