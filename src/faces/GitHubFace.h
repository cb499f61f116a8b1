// GitHub: a person's or a repository's activity — stars, pull requests waiting for review, the
// latest release or unread notifications as figures, and the waiting items as a list where there
// is room. The last values stay through a failure, with why in the warning hue.
#pragma once

#include "connected/GitHubState.h"
#include "connected/GitHubTarget.h"
#include "faces/WidgetFace.h"

namespace tw {

class GitHubFace final : public WidgetFace {
public:
    // What the face draws for one tile.
    struct Shown {
        // Nullopt while the tile's "target" names nobody GitHub would know.
        std::optional<GitHubTarget> target;
        GitHubState state;
    };

    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    Spot spotAt(const QRectF& rect, QPointF point, const FaceContext& context) const override;
    bool opensSettingsOnClick(const FaceContext& context) const override;

    // The tile's target and its state from the host; a made-up repository in previews.
    static Shown shownOf(const FaceContext& context);
    // What paint and spotAt do with the tile's own `shown`.
    static void paintShown(QPainter& painter, const QRectF& rect, const FaceContext& context,
                           const Shown& shown);
    static Spot spotIn(const QRectF& rect, QPointF point, const FaceContext& context,
                       const Shown& shown);
    // "987", "1.2k", "34k", "1.5M".
    static QString compactCount(int count);
};

} // namespace tw
