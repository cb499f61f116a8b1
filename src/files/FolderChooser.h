// Asks the person for a folder: the desktop's dialog in the host, a fixed answer in tests.
#pragma once

#include <QString>

#include <functional>

namespace tw {

// `title` heads the dialog, `start` is where it opens; empty when the person cancelled.
using FolderChooser = std::function<QString(const QString& title, const QString& start)>;

} // namespace tw
