// One box pass over a picture, along its rows or its columns; three passes each way come close
// to a Gaussian. A shadow blurs its coverage alone and fades into the clear beyond its edges; a
// picture blurs its colours and repeats its edges, so that it does not darken towards them.
#pragma once

#include <QImage>

namespace tw::BoxBlur {

enum class Channels {
    alpha,  // black of varying coverage; outside the picture is clear
    colour, // an opaque picture; outside it the edge pixel repeats
};

void pass(QImage& image, int radius, Qt::Orientation orientation, Channels channels);

} // namespace tw::BoxBlur
