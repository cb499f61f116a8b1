// A segmented control of a kind's allowed sizes: exactly one is chosen, the arrow keys move the
// choice, and each segment names its columns and rows ("2×2") with the size's name as tip.
#pragma once

#include "model/WidgetSize.h"

#include <QList>
#include <QWidget>

class QButtonGroup;

namespace tw {

class SizePicker final : public QWidget {
    Q_OBJECT
public:
    SizePicker(const QList<WidgetSize>& sizes, WidgetSize chosen, QWidget* parent = nullptr);

    WidgetSize size() const { return m_chosen; }
    // A size the kind doesn't allow changes nothing.
    void setSize(WidgetSize size);
    const QList<WidgetSize>& sizes() const { return m_sizes; }

Q_SIGNALS:
    void sizeChanged(WidgetSize size);

private:
    QList<WidgetSize> m_sizes;
    WidgetSize m_chosen;
    QButtonGroup* m_group;
};

} // namespace tw
