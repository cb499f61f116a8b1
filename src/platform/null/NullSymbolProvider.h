// A symbol provider that knows no symbols: callers draw their own fallback.
#pragma once

#include "platform/SymbolProvider.h"

namespace tw {

class NullSymbolProvider final : public SymbolProvider {
public:
    bool hasSymbol(const QString&) const override { return false; }
    bool drawSymbol(QPainter&, const QString&, const QRectF&, const QColor&) const override {
        return false;
    }
};

} // namespace tw
