#include "tools/ToolBehaviours.h"

#include "market/MarketServices.h"

namespace tw {

ToolBehaviours::ToolBehaviours(GridStore& grid, Scheduler& scheduler, Clipboard& clipboard,
                               const MarketServices* market)
    : m_calculator(grid, scheduler, clipboard)
    , m_converter(grid, scheduler, clipboard,
                  [market]() -> const CurrencyBoard* {
                      return market != nullptr ? &market->board().currency : nullptr;
                  })
    , m_passwords(grid, scheduler, clipboard, RandomPick::system()) {}

void ToolBehaviours::addTo(TileBehaviours& behaviours) {
    behaviours.add(QStringLiteral("calculator"), &m_calculator);
    behaviours.add(QStringLiteral("unitconverter"), &m_converter);
    behaviours.add(QStringLiteral("passwordgenerator"), &m_passwords);
}

} // namespace tw
