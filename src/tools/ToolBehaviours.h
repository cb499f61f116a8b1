// The behaviours of the calculator, unit converter and password generator tiles, made together
// and handed to the desktop's table of behaviours.
#pragma once

#include "tools/CalculatorBehaviour.h"
#include "tools/PasswordBehaviour.h"
#include "tools/UnitConverterBehaviour.h"

namespace tw {

class MarketServices;

class ToolBehaviours {
public:
    // `market` gives the converter its currency rates; null where there is no quote service.
    ToolBehaviours(GridStore& grid, Scheduler& scheduler, Clipboard& clipboard,
                   const MarketServices* market);

    void addTo(TileBehaviours& behaviours);

private:
    CalculatorBehaviour m_calculator;
    UnitConverterBehaviour m_converter;
    PasswordBehaviour m_passwords;
};

} // namespace tw
