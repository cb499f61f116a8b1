// A clipboard of this process alone: tests, and pictures drawn without the host.
#pragma once

#include "platform/Clipboard.h"

#include <QMimeData>

#include <memory>

namespace tw {

class MemoryClipboard final : public Clipboard {
public:
    using Clipboard::Clipboard;

    const QMimeData* contents() const override { return m_data.get(); }
    void setContents(QMimeData* data) override {
        m_data.reset(data);
        Q_EMIT changed();
    }

private:
    std::unique_ptr<QMimeData> m_data;
};

} // namespace tw
