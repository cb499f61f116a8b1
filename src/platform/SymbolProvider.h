// Draws a named symbol (the catalogue's symbol names are data) in whatever icon set the OS offers.
#pragma once

#include <QRectF>
#include <QString>

class QColor;
class QPainter;

namespace tw {

class SymbolProvider {
public:
    virtual ~SymbolProvider() = default;

    // Whether `name` maps to a glyph this provider can draw.
    virtual bool hasSymbol(const QString& name) const = 0;

    // Draws the symbol centred in `rect`, as large as its shorter side, in `color`.
    // Returns false and draws nothing for a name it cannot draw, so the caller can fall back.
    virtual bool drawSymbol(QPainter& painter, const QString& name, const QRectF& rect,
                            const QColor& color) const = 0;
};

} // namespace tw
