#include "config/SizePicker.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QPushButton>

namespace tw {

SizePicker::SizePicker(const QList<WidgetSize>& sizes, WidgetSize chosen, QWidget* parent)
    : QWidget(parent)
    , m_sizes(sizes)
    , m_chosen(chosen)
    , m_group(new QButtonGroup(this)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    for (qsizetype i = 0; i < m_sizes.size(); ++i) {
        const WidgetSize size = m_sizes.at(i);
        auto* segment = new QPushButton(spanHint(size), this);
        // The style sheet rounds the outer ends of the row and fills the chosen segment.
        segment->setObjectName(QStringLiteral("segment"));
        const char* edge = m_sizes.size() == 1       ? "only"
                           : i == 0                  ? "first"
                           : i + 1 == m_sizes.size() ? "last"
                                                     : "middle";
        segment->setProperty("edge", QLatin1String(edge));
        segment->setProperty("widgetSize", rawValue(size));
        segment->setCheckable(true);
        segment->setChecked(size == chosen);
        segment->setToolTip(label(size));
        segment->setAccessibleName(label(size));
        // Nine segments share a narrow card: they may be narrower than their padding asks.
        segment->setMinimumWidth(0);
        segment->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        // Seven sizes and more take a smaller type, so that "4×3" fits its segment.
        segment->setProperty("dense", m_sizes.size() > 6);
        m_group->addButton(segment, static_cast<int>(i));
        row->addWidget(segment, 1);
    }
    m_group->setExclusive(true);
    connect(m_group, &QButtonGroup::idToggled, this, [this](int id, bool checked) {
        if (checked && m_sizes.at(id) != m_chosen) {
            m_chosen = m_sizes.at(id);
            Q_EMIT sizeChanged(m_chosen);
        }
    });
}

void SizePicker::setSize(WidgetSize size) {
    const qsizetype index = m_sizes.indexOf(size);
    if (index >= 0) {
        m_group->button(static_cast<int>(index))->setChecked(true);
    }
}

} // namespace tw
