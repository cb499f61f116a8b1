// Draws the catalogue's symbol names with the Material Design icon font of the Debian package
// fonts-material-design-icons-iconfont.
#pragma once

#include "platform/SymbolProvider.h"

#include <QString>
#include <QStringList>

namespace tw {

class MaterialSymbolProvider final : public SymbolProvider {
public:
    // Where Debian installs the font.
    static QString defaultFontPath();

    // Loads the font into the application's font database; needs a QGuiApplication.
    explicit MaterialSymbolProvider(const QString& fontPath = defaultFontPath());

    bool hasSymbol(const QString& name) const override;
    bool drawSymbol(QPainter& painter, const QString& name, const QRectF& rect,
                    const QColor& color) const override;

    // Whether the font was found and loaded.
    bool isLoaded() const { return !m_family.isEmpty(); }
    // The loaded font's family name, empty when it could not be loaded.
    QString family() const { return m_family; }

    // The symbol names this provider maps, and what each maps to: the icon's name in the
    // Material set and its code point in the font (0 for a name it does not map).
    static QStringList symbolNames();
    static QString materialName(const QString& symbol);
    static char16_t codepoint(const QString& symbol);

private:
    QString m_family;
};

} // namespace tw
