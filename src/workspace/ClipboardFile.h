// The clipboard's history on disk, for a person who keeps it: "clipboard.json" lists the
// clippings, newest first, texts in place and pictures as the names of PNG files beside it
// ("clipboard/<digest>.png").
#pragma once

#include "workspace/Clipping.h"

#include <QByteArray>
#include <QList>

namespace tw::ClipboardFile {

QByteArray encode(const QList<Clipping>& clippings);

// Lenient: an entry without a text or a well-formed picture name, or without a time, is dropped;
// pictures come back with their digest and no image, to be read from their file. At most
// `ClipboardHistory::most` entries.
QList<Clipping> decode(const QByteArray& bytes);

// The file name of a picture's PNG.
QString imageName(const Clipping& clipping);

} // namespace tw::ClipboardFile
