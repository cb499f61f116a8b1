// Boards out of the desktop and back onto it: what goes in, what stays behind, where it lands.
#pragma once

#include "backup/Board.h"
#include "grid/GridStore.h"
#include "model/GridLayout.h"
#include "platform/Displays.h"

#include <QRectF>
#include <QSet>

#include <optional>

namespace tw {

class ThemeStore;
class WidgetRegistry;

class LayoutShare {
public:
    LayoutShare() = delete;

    static inline const QString boardType = QStringLiteral("com.tarnwick.board");
    // Places and people: the location keys of every kind.
    static const QSet<QString>& personalKeys();

    // Without content keys and personal keys ("smarthome" keeps only "tileScale"); nothing when
    // nothing is left.
    static std::optional<WidgetSettings> sanitize(const QString& kind,
                                                  const std::optional<WidgetSettings>& settings);

    // The widgets that stand on `screen` (custom kinds and unplaced ones left out), their offsets
    // from the top-left of their bounding rectangle and their sanitized settings. A stack's
    // members share one offset and size. Empty: Error::empty.
    static Board::Decoded makeBoard(const QString& name, const QList<WidgetInstance>& instances,
                                    const QRectF& screen, const std::optional<Board::Look>& look,
                                    const QString& appVersion, const QDateTime& now);
    // The look of `theme` as a board carries it.
    static Board::Look lookOf(const ThemeStore& theme);

    struct Plan {
        QList<WidgetInstance> instances;
        int unavailable = 0;
        int atMaximum = 0;

        bool operator==(const Plan&) const = default;
    };
    // New instances for the board's items: unknown kinds and kinds at their maximum counted and
    // skipped, settings sanitized as when a board is made. The arrangement keeps its shape at the
    // first free place of `visibleFrame` that holds it whole; without one, each tile takes its own
    // free place, or none.
    static Plan plan(const Board& board, const GridLayout& current, const WidgetRegistry& registry,
                     const QRectF& visibleFrame, GridStore::Replacing replacing);

    struct ImportResult {
        int placed = 0;
        int unavailable = 0;
        int atMaximum = 0;
        QList<QUuid> ids;
    };
    enum class ApplyLook { no, yes };
    // Puts the plan on the desktop (replacing it when asked) in one change that can be undone, and
    // takes the look when asked.
    static ImportResult importBoard(const Board& board, GridStore& grid,
                                    const WidgetRegistry& registry, ThemeStore* theme,
                                    GridStore::Replacing replacing, ApplyLook applyLook,
                                    const QRectF& visibleFrame);

    static QString summary(const ImportResult& result);
    static QString doneTitle();
    static QString offerTitle(const Board& board);
    static QString offerBody(const Board& board);
    // The words that go beside a board's picture.
    static QString caption(const QString& name);
};

} // namespace tw
