#include "settings/StyledText.h"

#include <QStringList>

namespace tw {

namespace {

void append(QList<StyledRun>& runs, const QString& text, TextStyles style, const QString& link) {
    if (text.isEmpty()) {
        return;
    }
    if (!runs.isEmpty() && runs.last().style == style && runs.last().link == link) {
        runs.last().text += text;
        return;
    }
    runs.append({text, style, link});
}

bool isAsciiPunctuation(QChar c) {
    return c.unicode() < 128 && c.isPunct();
}

TextStyles styleOf(QStringView marker) {
    if (marker == u"~~") {
        return TextStyle::strikethrough;
    }
    switch (marker.size()) {
    case 1:
        return TextStyle::emphasis;
    case 2:
        return TextStyle::strong;
    default:
        return TextStyle::strong | TextStyle::emphasis;
    }
}

// Inline Markdown of one line, added to `runs` on top of `base`. False when a marker stays open
// or markers cross.
bool parseInline(QStringView line, TextStyles base, QList<StyledRun>& runs) {
    QList<QString> open;
    TextStyles style = base;
    QString buffer;
    const auto flush = [&] {
        append(runs, buffer, style, {});
        buffer.clear();
    };
    const qsizetype n = line.size();
    qsizetype i = 0;
    while (i < n) {
        const QChar c = line[i];
        if (c == u'\\' && i + 1 < n && isAsciiPunctuation(line[i + 1])) {
            buffer += line[i + 1];
            i += 2;
            continue;
        }
        if (c == u'`') {
            const qsizetype end = line.indexOf(u'`', i + 1);
            if (end < 0) {
                return false;
            }
            flush();
            append(runs, line.mid(i + 1, end - i - 1).toString(), style | TextStyle::code, {});
            i = end + 1;
            continue;
        }
        if (c == u'[') {
            const qsizetype close = line.indexOf(u']', i + 1);
            if (close > 0 && close + 1 < n && line[close + 1] == u'(') {
                const qsizetype end = line.indexOf(u')', close + 2);
                if (end > 0) {
                    flush();
                    append(runs, line.mid(i + 1, close - i - 1).toString(), style,
                           line.mid(close + 2, end - close - 2).trimmed().toString());
                    i = end + 1;
                    continue;
                }
            }
            buffer += c;
            ++i;
            continue;
        }
        if (c == u'*' || c == u'_' || c == u'~') {
            qsizetype length = 1;
            while (i + length < n && line[i + length] == c && length < 3) {
                ++length;
            }
            const QString marker = line.mid(i, length).toString();
            const QChar before = i > 0 ? line[i - 1] : QChar(u' ');
            const QChar after = i + length < n ? line[i + length] : QChar(u' ');
            const bool intraword =
                c == u'_' && before.isLetterOrNumber() && after.isLetterOrNumber();
            const bool canOpen = !after.isSpace();
            const bool canClose = !before.isSpace();
            if ((c == u'~' && length != 2) || intraword) {
                buffer += marker;
            } else if (canClose && !open.isEmpty() && open.last() == marker) {
                flush();
                open.removeLast();
                style &= ~styleOf(marker);
                style |= base;
                for (const QString& still : open) {
                    style |= styleOf(still);
                }
            } else if (canClose && open.contains(marker)) {
                return false;
            } else if (canOpen) {
                flush();
                open.append(marker);
                style |= styleOf(marker);
            } else {
                buffer += marker;
            }
            i += length;
            continue;
        }
        buffer += c;
        ++i;
    }
    if (!open.isEmpty()) {
        return false;
    }
    flush();
    return true;
}

} // namespace

QString StyledText::plainText() const {
    QString text;
    for (const StyledRun& run : runs) {
        text += run.text;
    }
    return text;
}

StyledText StyledText::plain(const QString& text) {
    StyledText result;
    append(result.runs, text, TextStyle::plain, {});
    return result;
}

std::optional<StyledText> StyledText::fromMarkdown(QStringView markdown) {
    StyledText result;
    const QList<QStringView> lines = markdown.split(u'\n');
    for (qsizetype index = 0; index < lines.size(); ++index) {
        if (index > 0) {
            append(result.runs, QStringLiteral("\n"), TextStyle::plain, {});
        }
        QStringView line = lines[index];
        TextStyles base = TextStyle::plain;
        const QStringView trimmed = line.trimmed();
        qsizetype hashes = 0;
        while (hashes < trimmed.size() && hashes < 6 && trimmed[hashes] == u'#') {
            ++hashes;
        }
        if (hashes > 0 && hashes < trimmed.size() && trimmed[hashes] == u' ') {
            line = trimmed.mid(hashes + 1);
            base = TextStyle::strong;
        } else if (trimmed.size() > 2 && (trimmed.startsWith(u"- ") || trimmed.startsWith(u"* ") ||
                                          trimmed.startsWith(u"+ "))) {
            append(result.runs, QStringLiteral("• "), TextStyle::plain, {});
            line = trimmed.mid(2);
        }
        if (!parseInline(line, base, result.runs)) {
            return std::nullopt;
        }
    }
    return result;
}

} // namespace tw
