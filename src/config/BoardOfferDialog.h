// What an opened board would add, shown before anything changes: its picture, how many widgets,
// and the choice to add them, to replace the desktop with them, or to leave it.
#pragma once

#include "backup/Board.h"
#include "config/BoardPicture.h"

#include <QDialog>

class QPushButton;

namespace tw {

class BoardOfferDialog final : public QDialog {
    Q_OBJECT
public:
    enum class Choice { cancel, add, replace };

    BoardOfferDialog(const Board& board, const BoardPicture::PaintTile& paintTile,
                     const QImage& backdrop, QWidget* parent = nullptr);

    Choice choice() const { return m_choice; }
    QPushButton* addButton() const { return m_add; }
    QPushButton* replaceButton() const { return m_replace; }

private:
    Choice m_choice = Choice::cancel;
    QPushButton* m_add;
    QPushButton* m_replace;
};

} // namespace tw
