// A small line of recent values in the accent colour, scaled to the largest of them.
#pragma once

#include <QList>
#include <QWidget>

namespace tw {

class Sparkline final : public QWidget {
    Q_OBJECT
public:
    // Values below `floor` at most fill the height up to it, so that a quiet line stays low.
    explicit Sparkline(double floor, QWidget* parent = nullptr);

    void setValues(const QList<double>& values);
    const QList<double>& values() const { return m_values; }

    QSize sizeHint() const override { return {160, 28}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double m_floor;
    QList<double> m_values;
};

} // namespace tw
