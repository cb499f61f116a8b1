// A board drawn as a picture for sharing: its tiles at their places over a desktop picture, with
// its name beneath.
#pragma once

#include "backup/Board.h"

#include <QImage>

#include <functional>

class QPainter;
class QRectF;

namespace tw {

class BoardPicture {
public:
    BoardPicture() = delete;

    using PaintTile = std::function<void(QPainter&, const QRectF&, const WidgetInstance&)>;

    // Around the arrangement, and the band for the name beneath it, in points.
    static constexpr double margin = 48;
    static constexpr double footer = 64;

    // The picture's size in points for this board.
    static QSizeF size(const Board& board);
    // The tiles over `backdrop` (scaled to cover), with the name and "Tarnwick" in the footer,
    // `pixelsPerPoint` pixels for each point.
    static QImage render(const Board& board, const PaintTile& paintTile, const QImage& backdrop,
                         double pixelsPerPoint);
    // The instance a board's item stands for, as a tile draws it.
    static WidgetInstance instanceOf(const Board::Item& item);
};

} // namespace tw
