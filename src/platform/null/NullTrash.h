// A desktop without a trash: nothing in it, nothing goes in.
#pragma once

#include "platform/Trash.h"

namespace tw {

class NullTrash final : public Trash {
public:
    bool isAvailable() const override { return false; }
    QStringList watchedFolders() const override { return {}; }
    Contents contents() const override { return {}; }
    Result moveToTrash(const QStringList& paths) override {
        Q_UNUSED(paths)
        return {.done = 0, .error = unavailable()};
    }
    Result empty() override { return {.done = 0, .error = unavailable()}; }
    QUrl location() const override { return {}; }

private:
    static QString unavailable() { return QStringLiteral("This desktop has no trash."); }
};

} // namespace tw
