// Lays its items out in rows of equal columns that fill the width: as many columns as fit at the
// least width, each item as wide as its column, every row as tall as the tallest item, so that a
// grid of cards has neither holes nor ragged rows.
#pragma once

#include <QLayout>
#include <QList>

namespace tw {

class FlowLayout final : public QLayout {
    Q_OBJECT
public:
    FlowLayout(QWidget* parent, int minimumItemWidth, int spacing);
    ~FlowLayout() override;

    // How many columns `width` holds.
    int columnCount(int width) const;

    void addItem(QLayoutItem* item) override;
    int count() const override { return static_cast<int>(m_items.size()); }
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    Qt::Orientations expandingDirections() const override { return Qt::Horizontal; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize minimumSize() const override;
    QSize sizeHint() const override;
    void setGeometry(const QRect& rect) override;

private:
    enum class Apply { No, Yes };
    int arrange(const QRect& rect, Apply apply) const;

    QList<QLayoutItem*> m_items;
    int m_minimumItemWidth;
    int m_gap;
};

} // namespace tw
