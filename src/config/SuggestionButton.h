// One answer of a search as you type, under its field: a title over a line of detail, the whole
// of it a button that picks it.
#pragma once

#include <QString>

class QPushButton;

namespace tw {

QPushButton* suggestionButton(const QString& title, const QString& detail);

} // namespace tw
