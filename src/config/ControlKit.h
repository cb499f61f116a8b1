// Every control the window's pages use, in each of its states, on one sheet in one look: what a
// change to the window's style is checked against before it reaches the pages.
#pragma once

#include "platform/ColorSchemeWatcher.h"

#include <QWidget>

namespace tw {

class ControlKit final : public QWidget {
    Q_OBJECT
public:
    explicit ControlKit(ColorScheme scheme, QWidget* parent = nullptr);
};

} // namespace tw
