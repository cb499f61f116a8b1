// The built-in desktop pictures: drawn by code at any size, so that every display gets one at its
// own pixel size and no picture file ships with the program.
#pragma once

#include <QList>
#include <QString>

class QPainter;
class QSizeF;

namespace tw {

struct Wallpaper {
    QString id;   // stable, lower case, used on the command line and in file names
    QString name; // the name people see
    // Paints the whole of `size` (in the painter's units), opaque.
    void (*draw)(QPainter& painter, const QSizeF& size);

    static const QList<Wallpaper>& all();
    // Null when no built-in has this id.
    static const Wallpaper* find(const QString& id);
};

} // namespace tw
