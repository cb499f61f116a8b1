// The one configuration window, "Tarnwick": holds the gallery; closing it drops its view tree
// after a moment so that a closed window costs nothing, and never quits the application.
#pragma once

#include "platform/ScheduledTask.h"

#include <QPointer>
#include <QWidget>

#include <chrono>
#include <functional>

class QMenuBar;
class QVBoxLayout;

namespace tw {

class Scheduler;

class ConfigWindow final : public QWidget {
    Q_OBJECT
public:
    static constexpr QSize contentSize{980, 680};
    // How long a closed window keeps its views, in case it is opened again at once.
    static constexpr std::chrono::milliseconds dropDelay{500};

    // `makeContent` builds the view tree each time the window needs one; `scheduler` must
    // outlive the window.
    ConfigWindow(Scheduler& scheduler, std::function<QWidget*()> makeContent,
                 QWidget* parent = nullptr);

    // Shows the window (building its views if they were dropped), brings it forward, focuses it.
    void present();
    // The view tree, or null while dropped.
    QWidget* content() const { return m_content; }
    // The window's own menu bar, where the status menu lives when the desktop has no tray.
    QMenuBar* menuBar() const { return m_menuBar; }
    // Whether other windows cover all of it, as the windowing system reports.
    void setCovered(bool covered);
    // Shown, not minimised and not covered: its previews can be seen.
    bool isOnScreen() const { return m_onScreen; }

Q_SIGNALS:
    // On screen or not (hidden, minimised, covered), for AppSettings.configWindowVisible.
    void visibilityChanged(bool visible);
    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void installContent();
    void updateOnScreen();

    Scheduler& m_scheduler;
    std::function<QWidget*()> m_makeContent;
    QVBoxLayout* m_layout;
    QMenuBar* m_menuBar;
    QPointer<QWidget> m_content;
    ScheduledTask m_drop;
    bool m_covered = false;
    bool m_onScreen = false;
};

} // namespace tw
