// The short guide shown over the configuration window at the first start: what tiles are, how
// they move, and where the status item lives. It covers its parent and follows its size.
#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace tw {

class OnboardingView final : public QWidget {
    Q_OBJECT
public:
    enum class StatusPlace { tray, menuBar };
    static constexpr int stepCount = 3;

    OnboardingView(StatusPlace place, QWidget* parent);

    int step() const { return m_step; }
    // 0 … stepCount − 1; other values are ignored.
    void showStep(int step);

public Q_SLOTS:
    // Enter: the next step, or done after the last.
    void next();
    void back();
    // Esc.
    void skip();

Q_SIGNALS:
    // Skipped or done: the guide has been seen.
    void finished();

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    // Tab and Shift+Tab go round the guide's own buttons: the window behind is veiled.
    bool focusNextPrevChild(bool next) override;

private:
    StatusPlace m_place;
    int m_step = 0;
    QWidget* m_picture;
    QLabel* m_title;
    QLabel* m_body;
    QWidget* m_dots;
    QPushButton* m_skip;
    QPushButton* m_back;
    QPushButton* m_next;
};

} // namespace tw
