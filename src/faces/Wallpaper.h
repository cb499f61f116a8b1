// The built-in desktop pictures: drawn by code at any size, so that every display gets one at its
// own pixel size and no picture file ships with the program. Some move slowly when drawn at a
// moment of their loop: a live backdrop, never a video.
#pragma once

#include <QList>
#include <QString>

class QPainter;
class QSizeF;

namespace tw {

struct Wallpaper {
    QString id;   // stable, lower case, used on the command line and in file names
    QString name; // the name people see
    // Paints the whole of `size` (in the painter's units), opaque, as it looks `seconds` into its
    // loop; at 0 it is the still picture.
    void (*draw)(QPainter& painter, const QSizeF& size, double seconds);
    // The length of the loop in seconds; 0 for a picture that does not move.
    double period;

    bool moves() const { return period > 0; }

    static const QList<Wallpaper>& all();
    // Null when no built-in has this id.
    static const Wallpaper* find(const QString& id);
};

} // namespace tw
