#include "config/CustomJsonHighlighter.h"

#include <QColor>

namespace tw {

CustomJsonHighlighter::CustomJsonHighlighter(QTextDocument* document, ColorScheme scheme)
    : QSyntaxHighlighter(document)
    , m_scheme(scheme) {}

void CustomJsonHighlighter::setColorScheme(ColorScheme scheme) {
    if (scheme != m_scheme) {
        m_scheme = scheme;
        rehighlight();
    }
}

QTextCharFormat CustomJsonHighlighter::format(Role role) const {
    const bool dark = m_scheme == ColorScheme::Dark;
    QTextCharFormat f;
    switch (role) {
    case Role::key:
        f.setForeground(QColor(dark ? 0x8ab4ff : 0x2f5bd3));
        break;
    case Role::text:
        f.setForeground(QColor(dark ? 0x9ad89a : 0x2d7d3a));
        break;
    case Role::token:
        f.setForeground(QColor(dark ? 0xf0a8ff : 0x9a3cc0));
        f.setFontWeight(QFont::DemiBold);
        f.setBackground(QColor(dark ? QColor(240, 168, 255, 28) : QColor(154, 60, 192, 22)));
        break;
    case Role::number:
        f.setForeground(QColor(dark ? 0xffc37a : 0xb35a00));
        break;
    case Role::literal:
        f.setForeground(QColor(dark ? 0xff8fa3 : 0xc0264a));
        f.setFontWeight(QFont::DemiBold);
        break;
    case Role::punctuation:
        f.setForeground(QColor(dark ? 0x8a8f98 : 0x8a8f98));
        break;
    }
    return f;
}

void CustomJsonHighlighter::highlightBlock(const QString& text) {
    const qsizetype n = text.size();
    qsizetype i = 0;
    while (i < n) {
        const QChar c = text[i];
        if (c == u'"') {
            qsizetype end = i + 1;
            while (end < n && text[end] != u'"') {
                end += text[end] == u'\\' ? 2 : 1;
            }
            end = std::min(end + 1, n);
            // A text followed by a colon is a key.
            qsizetype after = end;
            while (after < n && text[after].isSpace()) {
                ++after;
            }
            const bool key = after < n && text[after] == u':';
            setFormat(int(i), int(end - i), format(key ? Role::key : Role::text));
            if (!key) {
                for (qsizetype open = text.indexOf(u'{', i); open >= 0 && open < end;
                     open = text.indexOf(u'{', open + 1)) {
                    const qsizetype close = text.indexOf(u'}', open);
                    if (close < 0 || close >= end) {
                        break;
                    }
                    setFormat(int(open), int(close - open + 1), format(Role::token));
                    open = close;
                }
            }
            i = end;
            continue;
        }
        if (c.isDigit() || c == u'-') {
            qsizetype end = i + 1;
            while (end < n &&
                   (text[end].isLetterOrNumber() || QStringView(u".+-").contains(text[end]))) {
                ++end;
            }
            setFormat(int(i), int(end - i), format(Role::number));
            i = end;
            continue;
        }
        if (c.isLetter()) {
            qsizetype end = i + 1;
            while (end < n && text[end].isLetter()) {
                ++end;
            }
            const QStringView word = QStringView(text).mid(i, end - i);
            if (word == u"true" || word == u"false" || word == u"null") {
                setFormat(int(i), int(end - i), format(Role::literal));
            }
            i = end;
            continue;
        }
        if (QStringView(u"{}[]:,").contains(c)) {
            setFormat(int(i), 1, format(Role::punctuation));
        }
        ++i;
    }
}

} // namespace tw
