// A grid of keys drawn on a tile (the calculator's and the converter's), and the key under a
// point: the same layout draws and answers clicks.
#pragma once

#include <QList>
#include <QRectF>
#include <QString>

class QPainter;

namespace tw {

struct FaceContext;

namespace KeyPad {

struct Key {
    enum class Style { digit, function, operation, primary };

    QString label;
    // What a press sends to the tile's behaviour.
    QString command;
    Style style = Style::digit;
};

// A key from its label in UTF-8 and its command, for the pads' tables.
Key key(const char* label, const char* command, Key::Style style);

// Where each of `count` keys goes in `columns` columns filling `rect`, row by row.
QList<QRectF> layout(const QRectF& rect, int columns, qsizetype count);

void draw(QPainter& painter, const FaceContext& context, const QRectF& rect, const QList<Key>& keys,
          int columns);

// The key under `point`, if any.
const Key* keyAt(const QRectF& rect, const QList<Key>& keys, int columns, QPointF point);

} // namespace KeyPad

} // namespace tw
