// The desktop's clipboard as the tool tiles use it: plain copies, copies marked secret (so that
// clipboard keepers leave them out), and pasting text.
#pragma once

#include <QString>

#include <functional>

namespace tw {

struct TextClipboard {
    std::function<void(const QString&)> copy;
    std::function<void(const QString&)> copySecret;
    std::function<QString()> paste;
};

} // namespace tw
