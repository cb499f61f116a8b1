// A group of settings on a rounded card: each row a title, an optional caption below it and a
// control at its right, with hairlines between the rows.
#pragma once

#include <QFrame>

class QLabel;
class QVBoxLayout;

namespace tw {

class SettingsCard final : public QFrame {
    Q_OBJECT
public:
    explicit SettingsCard(QWidget* parent = nullptr);

    // The card keeps `control`; a null control makes a row of text alone. Gives the row.
    QWidget* addRow(const QString& title, const QString& caption, QWidget* control);
    // One more line under the title and caption of `row`, a row this card gave; the card keeps it.
    void addLine(QWidget* row, QWidget* line);
    // A row that is one widget across the card's width.
    void addWide(QWidget* widget);

private:
    void addSeparatorIfNeeded();

    QVBoxLayout* m_layout;
};

// A heading above a card, in small bold secondary text.
QLabel* sectionHeading(const QString& text, QWidget* parent = nullptr);
// A label that wraps, in secondary text.
QLabel* caption(const QString& text, QWidget* parent = nullptr);

} // namespace tw
