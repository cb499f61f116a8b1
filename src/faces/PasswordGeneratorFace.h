// The password generator: a password (or passphrase) drawn with its digits and symbols picked
// out, its strength as a bar and in bits, buttons to copy it and to make another, and on the
// larger sizes its length and character sets to change on the tile.
#pragma once

#include "faces/WidgetFace.h"
#include "tools/PasswordTile.h"

namespace tw {

class PasswordGeneratorFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;

    // The tile as its behaviour holds it, else a sample of its recipe (previews, pictures and a
    // tile whose password is not made yet).
    static PasswordTile tileOf(const FaceContext& context);
    static QString strengthText(PasswordRecipe::Strength strength);
};

} // namespace tw
