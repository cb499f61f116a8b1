// What the photo tile shows at a moment: the picture, the one fading out, and the folder's state.
#pragma once

#include <QImage>
#include <QString>

namespace tw {

struct PhotosView {
    enum class State { loading, showing, noFolder, noPictures };

    State state = State::loading;
    QString folder;
    // Already at the tile's pixel size; `previous` only while a fade runs.
    QImage current;
    QImage previous;
    double fade = 1;
    // The current picture's file name, for the caption.
    QString name;
    int pictures = 0;
    // Files that would not decode, skipped.
    int unreadable = 0;
};

} // namespace tw
