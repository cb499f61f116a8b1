#include "config/ConfigWindow.h"

#include "platform/Scheduler.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QMenuBar>
#include <QScreen>
#include <QVBoxLayout>

namespace tw {

ConfigWindow::ConfigWindow(Scheduler& scheduler, std::function<QWidget*()> makeContent,
                           QWidget* parent)
    : QWidget(parent, Qt::Window)
    , m_scheduler(scheduler)
    , m_makeContent(std::move(makeContent))
    , m_layout(new QVBoxLayout(this))
    , m_menuBar(new QMenuBar(this)) {
    setWindowTitle(QStringLiteral("Tarnwick"));
    setObjectName(QStringLiteral("configWindow"));
    setAttribute(Qt::WA_DeleteOnClose, false);
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setMenuBar(m_menuBar);
    m_menuBar->setVisible(false);
    resize(contentSize);
}

void ConfigWindow::installContent() {
    if (m_content) {
        return;
    }
    m_content = m_makeContent ? m_makeContent() : new QWidget();
    m_layout->addWidget(m_content);
}

void ConfigWindow::present() {
    m_drop.cancel();
    installContent();
    if (!isVisible()) {
        if (const QScreen* screen = QGuiApplication::primaryScreen()) {
            const QRect area = screen->availableGeometry();
            move(area.center() - QPoint(width() / 2, height() / 2));
        }
        show();
    }
    setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    activateWindow();
}

void ConfigWindow::closeEvent(QCloseEvent* event) {
    // Closing hides: the application lives on in its tiles and its status item.
    event->accept();
    Q_EMIT closed();
    m_drop = m_scheduler.singleShot(dropDelay, std::chrono::milliseconds(100), this, [this] {
        if (!isVisible() && m_content) {
            delete m_content;
        }
    });
}

void ConfigWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    updateOnScreen();
}

void ConfigWindow::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    // A hidden window is no longer covered by anything; the next report comes once it is back.
    m_covered = false;
    updateOnScreen();
}

void ConfigWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange) {
        updateOnScreen();
    }
}

void ConfigWindow::setCovered(bool covered) {
    m_covered = covered;
    updateOnScreen();
}

void ConfigWindow::updateOnScreen() {
    const bool onScreen = isVisible() && !isMinimized() && !m_covered;
    if (onScreen != m_onScreen) {
        m_onScreen = onScreen;
        Q_EMIT visibilityChanged(onScreen);
    }
}

} // namespace tw
