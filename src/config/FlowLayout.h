// Lays its items out left to right, wrapping to a new row when the width runs out.
#pragma once

#include <QLayout>
#include <QList>

namespace tw {

class FlowLayout final : public QLayout {
    Q_OBJECT
public:
    explicit FlowLayout(QWidget* parent = nullptr, int spacing = 12);
    ~FlowLayout() override;

    void addItem(QLayoutItem* item) override;
    int count() const override { return static_cast<int>(m_items.size()); }
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    Qt::Orientations expandingDirections() const override { return {}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize minimumSize() const override;
    QSize sizeHint() const override { return minimumSize(); }
    void setGeometry(const QRect& rect) override;

private:
    enum class Apply { No, Yes };
    int arrange(const QRect& rect, Apply apply) const;

    QList<QLayoutItem*> m_items;
    int m_gap;
};

} // namespace tw
