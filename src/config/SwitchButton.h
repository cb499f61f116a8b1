// An on/off switch: a pill with a knob, in the window's accent when on. Keyboard: Space toggles.
#pragma once

#include <QAbstractButton>

namespace tw {

class SwitchButton final : public QAbstractButton {
    Q_OBJECT
public:
    explicit SwitchButton(QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace tw
