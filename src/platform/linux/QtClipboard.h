// The desktop's clipboard through Qt's (the X11 CLIPBOARD selection, not the primary one).
#pragma once

#include "platform/Clipboard.h"

namespace tw {

class QtClipboard final : public Clipboard {
public:
    explicit QtClipboard(QObject* parent = nullptr);

    const QMimeData* contents() const override;
    void setContents(QMimeData* data) override;
};

} // namespace tw
