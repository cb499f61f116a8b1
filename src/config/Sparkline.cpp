#include "config/Sparkline.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace tw {

Sparkline::Sparkline(double floor, QWidget* parent)
    : QWidget(parent)
    , m_floor(floor) {
    setMinimumHeight(sizeHint().height());
}

void Sparkline::setValues(const QList<double>& values) {
    m_values = values;
    update();
}

void Sparkline::paintEvent(QPaintEvent*) {
    if (m_values.size() < 2) {
        return;
    }
    const double top = std::max(m_floor, *std::max_element(m_values.begin(), m_values.end()));
    const QRectF area = QRectF(rect()).adjusted(1, 2, -1, -2);
    const double step = area.width() / static_cast<double>(m_values.size() - 1);
    QPainterPath line;
    for (qsizetype i = 0; i < m_values.size(); ++i) {
        const QPointF point(area.left() + step * static_cast<double>(i),
                            area.bottom() - area.height() * std::max(0.0, m_values[i]) / top);
        if (i == 0) {
            line.moveTo(point);
        } else {
            line.lineTo(point);
        }
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath fill = line;
    fill.lineTo(area.bottomRight());
    fill.lineTo(area.bottomLeft());
    QColor under = palette().color(QPalette::Highlight);
    under.setAlphaF(0.18f);
    painter.fillPath(fill, under);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 1.5));
    painter.drawPath(line);
}

} // namespace tw
