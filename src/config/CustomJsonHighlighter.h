// Colours a custom widget's JSON as it is typed: keys, texts, numbers and literals apart, and the
// {tokens} inside texts picked out, since they are what a widget reads.
#pragma once

#include "platform/ColorSchemeWatcher.h"

#include <QSyntaxHighlighter>
#include <QTextCharFormat>

namespace tw {

class CustomJsonHighlighter final : public QSyntaxHighlighter {
    Q_OBJECT
public:
    enum class Role { key, text, token, number, literal, punctuation };

    CustomJsonHighlighter(QTextDocument* document, ColorScheme scheme);
    void setColorScheme(ColorScheme scheme);
    QTextCharFormat format(Role role) const;

protected:
    void highlightBlock(const QString& text) override;

private:
    ColorScheme m_scheme;
};

} // namespace tw
