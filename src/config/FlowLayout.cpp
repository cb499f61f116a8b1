#include "config/FlowLayout.h"

#include <QWidget>

#include <algorithm>

namespace tw {

FlowLayout::FlowLayout(QWidget* parent, int minimumItemWidth, int spacing)
    : QLayout(parent)
    , m_minimumItemWidth(std::max(1, minimumItemWidth))
    , m_gap(spacing) {
    setContentsMargins(0, 0, 0, 0);
}

FlowLayout::~FlowLayout() {
    while (QLayoutItem* item = takeAt(0)) {
        delete item;
    }
}

void FlowLayout::addItem(QLayoutItem* item) {
    m_items.append(item);
}

QLayoutItem* FlowLayout::itemAt(int index) const {
    return index >= 0 && index < m_items.size() ? m_items.at(index) : nullptr;
}

QLayoutItem* FlowLayout::takeAt(int index) {
    return index >= 0 && index < m_items.size() ? m_items.takeAt(index) : nullptr;
}

int FlowLayout::columnCount(int width) const {
    return std::max(1, (width + m_gap) / (m_minimumItemWidth + m_gap));
}

int FlowLayout::heightForWidth(int width) const {
    return arrange(QRect(0, 0, width, 0), Apply::No);
}

QSize FlowLayout::minimumSize() const {
    const QMargins m = contentsMargins();
    return QSize(m_minimumItemWidth + m.left() + m.right(),
                 heightForWidth(m_minimumItemWidth + m.left() + m.right()));
}

QSize FlowLayout::sizeHint() const {
    // Three columns, as a window of its natural size shows them.
    const QMargins m = contentsMargins();
    const int width = 3 * m_minimumItemWidth + 2 * m_gap + m.left() + m.right();
    return QSize(width, heightForWidth(width));
}

void FlowLayout::setGeometry(const QRect& rect) {
    QLayout::setGeometry(rect);
    arrange(rect, Apply::Yes);
}

int FlowLayout::arrange(const QRect& rect, Apply apply) const {
    const QRect area = rect.marginsRemoved(contentsMargins());
    const int columns = columnCount(area.width());
    const int itemWidth = std::max(1, (area.width() - (columns - 1) * m_gap) / columns);
    QList<QLayoutItem*> shown;
    int itemHeight = 0;
    for (QLayoutItem* item : m_items) {
        if (item->isEmpty()) {
            continue;
        }
        shown.append(item);
        itemHeight =
            std::max(itemHeight, item->hasHeightForWidth() ? item->heightForWidth(itemWidth)
                                                           : item->sizeHint().height());
    }
    if (shown.isEmpty()) {
        return 0;
    }
    const int rowCount = (static_cast<int>(shown.size()) + columns - 1) / columns;
    if (apply == Apply::Yes) {
        for (int i = 0; i < shown.size(); ++i) {
            const int column = i % columns;
            const int row = i / columns;
            shown.at(i)->setGeometry(QRect(area.x() + column * (itemWidth + m_gap),
                                           area.y() + row * (itemHeight + m_gap), itemWidth,
                                           itemHeight));
        }
    }
    const QMargins m = contentsMargins();
    return m.top() + rowCount * itemHeight + (rowCount - 1) * m_gap + m.bottom();
}

} // namespace tw
