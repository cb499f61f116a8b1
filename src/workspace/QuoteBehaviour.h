// What quote tiles do on the desktop: a click shows another quote, until the day is over.
#pragma once

#include "model/TileBehaviour.h"

namespace tw {

class Clock;
class GridStore;

class QuoteBehaviour final : public TileBehaviour {
    Q_OBJECT

public:
    QuoteBehaviour(GridStore& grid, const Clock& clock, QObject* parent = nullptr);

    bool press(const WidgetInstance& tile, const QString& command) override;
    QList<MenuItem> menuItems(const WidgetInstance& tile) const override;

private:
    GridStore& m_grid;
    const Clock& m_clock;
};

} // namespace tw
