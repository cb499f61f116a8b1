// One notice drawn to the window's standard: its symbol on the notice's own colour, the title,
// the text, a code to copy, the action buttons and a close button when it may be closed. Slim as
// the window's banner, roomier as a card on a page or over the window.
#pragma once

#include "notices/Notice.h"

#include <QStringList>
#include <QWidget>

class QHBoxLayout;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace tw {

class SymbolProvider;

class NoticeCard final : public QWidget {
    Q_OBJECT
public:
    enum class Style { banner, card };

    // What the card shows, in the person's language already.
    struct Content {
        QString title;
        QString body;
        QString code;
        QString symbol;
        QColor accent;
        QStringList actions;
        bool dismissible = true;
    };

    // The house colour of a notice without its own: the window's accent.
    static QColor accentOf(const Notice& notice, const QColor& fallback);

    // `symbols` may be null, which leaves the badge plain; it must outlive the card.
    NoticeCard(Style style, const SymbolProvider* symbols, QWidget* parent = nullptr);

    void setContent(const Content& content);
    const Content& content() const { return m_content; }

Q_SIGNALS:
    // The person chose the action at `index` of `Content::actions`.
    void actionChosen(int index);
    void closeRequested();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Style m_style;
    const SymbolProvider* m_symbols;
    Content m_content;
    QLabel* m_title;
    QLabel* m_body;
    QLabel* m_code;
    QHBoxLayout* m_buttons;
    QPushButton* m_close;
    QList<QPushButton*> m_actionButtons;
};

} // namespace tw
