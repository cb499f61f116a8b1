#include "workspace/QuoteBehaviour.h"

#include "grid/GridStore.h"
#include "platform/Clock.h"
#include "text/L.h"
#include "workspace/QuoteBook.h"

namespace tw {

namespace {

const QString kPick = QStringLiteral("pick");

} // namespace

QuoteBehaviour::QuoteBehaviour(GridStore& grid, const Clock& clock, QObject* parent)
    : TileBehaviour(parent)
    , m_grid(grid)
    , m_clock(clock) {}

bool QuoteBehaviour::press(const WidgetInstance& tile, const QString& command) {
    if (!command.isEmpty() && command != QLatin1String("next")) {
        return false;
    }
    const QDate today = m_clock.now().date();
    const int shift = QuoteBook::shiftOn(tile.setting(kPick).value_or(QString()), today);
    WidgetSettings settings = tile.settings.value_or(WidgetSettings());
    settings.insert(kPick, QuoteBook::pickSetting(today, shift + 1));
    // Which quote shows is the tile's running state, not a change to undo.
    m_grid.replaceSettings(tile.id, settings, GridStore::History::adopted);
    return true;
}

QList<TileBehaviour::MenuItem> QuoteBehaviour::menuItems(const WidgetInstance&) const {
    return {{L("quote.next", QStringLiteral("Another Quote")), QStringLiteral("next")}};
}

} // namespace tw
