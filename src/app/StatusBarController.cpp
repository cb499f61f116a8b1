#include "app/StatusBarController.h"

#include "desktop/DesktopController.h"
#include "grid/GridStore.h"
#include "platform/Defaults.h"
#include "text/L.h"

#include <QApplication>
#include <QLoggingCategory>
#include <QMenu>
#include <QPainter>
#include <QSystemTrayIcon>

namespace tw {

Q_LOGGING_CATEGORY(lcStatusBar, "StatusBar")

namespace {

// "square.grid.2x2.fill": four rounded squares.
QIcon gridIcon() {
    QIcon icon;
    for (const int side : {16, 22, 32, 48}) {
        QPixmap pixmap(side, side);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(235, 235, 240));
        const qreal gap = side / 8.0;
        const qreal cell = (side - 3 * gap) / 2;
        for (int row = 0; row < 2; ++row) {
            for (int col = 0; col < 2; ++col) {
                painter.drawRoundedRect(
                    QRectF(gap + col * (cell + gap), gap + row * (cell + gap), cell, cell),
                    cell / 4, cell / 4);
            }
        }
        icon.addPixmap(pixmap);
    }
    return icon;
}

void call(const std::function<void()>& f) {
    if (f) {
        f();
    }
}

} // namespace

void StatusBarController::buildMenu(QMenu& menu, const MenuState& state,
                                    const MenuActions& actions) {
    menu.clear();
    if (state.visitorCount > 0) {
        const QString text =
            state.visitorCount == 1
                ? L("menu.visitors.one",
                    QStringLiteral("1 widget is parked here until its display is back"))
                : L("menu.visitors.many",
                    QStringLiteral("%1 widgets are parked here until their display is back"))
                      .arg(state.visitorCount);
        menu.addAction(text)->setEnabled(false);
    }
    QObject::connect(menu.addAction(L("menu.open", QStringLiteral("Open Tarnwick…"))),
                     &QAction::triggered, &menu, [f = actions.openSettings] { call(f); });
    QObject::connect(menu.addAction(L("menu.toggle", QStringLiteral("Show / Hide on Desktop"))),
                     &QAction::triggered, &menu, [f = actions.toggleBoard] { call(f); });
    QAction* undo = menu.addAction(L("menu.layoutUndo", QStringLiteral("Undo Layout Change")));
    undo->setEnabled(state.canUndo);
    QObject::connect(undo, &QAction::triggered, &menu, [f = actions.undo] { call(f); });
    QAction* redo = menu.addAction(L("menu.layoutRedo", QStringLiteral("Redo Layout Change")));
    redo->setEnabled(state.canRedo);
    QObject::connect(redo, &QAction::triggered, &menu, [f = actions.redo] { call(f); });
    QObject::connect(menu.addAction(L("menu.update.check", QStringLiteral("Check for Updates…"))),
                     &QAction::triggered, &menu, [f = actions.checkForUpdates] { call(f); });
    menu.addSeparator();
    QObject::connect(menu.addAction(L("menu.quit", QStringLiteral("Quit Tarnwick"))),
                     &QAction::triggered, &menu, [f = actions.quit] { call(f); });
}

StatusBarController::StatusBarController(DesktopController& controller, GridStore& grid,
                                         std::function<void()> openConfig,
                                         std::function<void()> openUpdates, QObject* parent)
    : QObject(parent)
    , m_controller(controller)
    , m_grid(grid)
    , m_openConfig(std::move(openConfig))
    , m_openUpdates(std::move(openUpdates))
    , m_menu(std::make_unique<QMenu>()) {
    attach(*m_menu);
    if (!QSystemTrayIcon::isSystemTrayAvailable()) {
        qCInfo(lcStatusBar,
               "no system tray on this desktop: the menu is in the configuration window");
        return;
    }
    m_item = new QSystemTrayIcon(gridIcon(), this);
    m_item->setToolTip(QStringLiteral("Tarnwick"));
    m_item->setContextMenu(m_menu.get());
    connect(m_item, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason r) {
        if (r == QSystemTrayIcon::Trigger) {
            call(m_openConfig);
        }
    });
    m_item->show();
}

StatusBarController::~StatusBarController() = default;

bool StatusBarController::showHintIfPending(Defaults& defaults) {
    if (m_item == nullptr || !defaults.value(hintPendingKey).toBool()) {
        return false;
    }
    m_item->showMessage(QStringLiteral("Tarnwick"),
                        L("menu.hint", QStringLiteral("Click the icon for settings, to show or "
                                                      "hide your widgets and to quit.")),
                        gridIcon());
    defaults.setValue(hintPendingKey, false);
    return true;
}

bool StatusBarController::hasTray() const {
    return m_item != nullptr;
}

void StatusBarController::attach(QMenu& menu) {
    // Something must be in the menu before it first opens, or some trays never open it.
    buildMenu(menu, state(), actions());
    connect(&menu, &QMenu::aboutToShow, this,
            [this, target = &menu] { buildMenu(*target, state(), actions()); });
}

StatusBarController::MenuState StatusBarController::state() const {
    return {m_controller.displayFollower().visitorCount(), m_grid.canUndo(), m_grid.canRedo()};
}

StatusBarController::MenuActions StatusBarController::actions() {
    return {
        .openSettings = m_openConfig,
        .toggleBoard = [this] { m_controller.toggle(); },
        .undo = [this] { m_grid.undo(); },
        .redo = [this] { m_grid.redo(); },
        .checkForUpdates = m_openUpdates,
        .quit = [] { QCoreApplication::quit(); },
    };
}

} // namespace tw
