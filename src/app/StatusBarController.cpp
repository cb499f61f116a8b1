#include "app/StatusBarController.h"

#include "desktop/DesktopController.h"
#include "grid/GridStore.h"
#include "notices/NoticeService.h"
#include "platform/Clock.h"
#include "platform/Defaults.h"
#include "platform/Notifications.h"
#include "platform/SymbolProvider.h"
#include "text/L.h"
#include "updates/UpdateService.h"

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

// A notice's own symbol, or the megaphone, in the menu's text colour.
QIcon noticeIcon(const SymbolProvider* symbols, const QString& symbol) {
    if (symbols == nullptr) {
        return {};
    }
    QPixmap pixmap(32, 32);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor ink = QApplication::palette().color(QPalette::WindowText);
    const QRectF box(4, 4, 24, 24);
    if (!symbols->drawSymbol(painter, symbol, box, ink) &&
        !symbols->drawSymbol(painter, QStringLiteral("megaphone.fill"), box, ink)) {
        return {};
    }
    return QIcon(pixmap);
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
    for (const MenuNotice& notice : state.notices) {
        QObject::connect(menu.addAction(notice.icon, notice.title), &QAction::triggered, &menu,
                         [f = actions.noticeClicked, id = notice.id] {
                             if (f) {
                                 f(id);
                             }
                         });
    }
    if (!state.notices.isEmpty()) {
        menu.addSeparator();
    }
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
    const QString update = state.availableVersion.isEmpty()
                               ? L("menu.update.check", QStringLiteral("Check for Updates…"))
                               : L("menu.update.available", QStringLiteral("Update available: %1…"))
                                     .arg(state.availableVersion);
    QObject::connect(menu.addAction(update), &QAction::triggered, &menu,
                     [f = actions.checkForUpdates] { call(f); });
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

bool StatusBarController::showHintIfPending(Defaults& defaults, Notifications& notifications) {
    if (!defaults.value(hintPendingKey).toBool()) {
        return false;
    }
    if (m_item != nullptr) {
        m_item->showMessage(QStringLiteral("Tarnwick"),
                            L("menu.hint", QStringLiteral("Click the icon for settings, to show or "
                                                          "hide your widgets and to quit.")),
                            gridIcon());
    } else {
        notifications.notify(
            QStringLiteral("Tarnwick"),
            L("menu.hint.window", QStringLiteral("Your widgets stay on the desktop. Open Tarnwick "
                                                 "again for settings, to show or hide them and to "
                                                 "quit: its menu is in the window.")));
    }
    defaults.setValue(hintPendingKey, false);
    return true;
}

bool StatusBarController::hasTray() const {
    return m_item != nullptr;
}

void StatusBarController::attach(QMenu& menu) {
    // Something must be in the menu before it first opens, or some trays never open it.
    buildMenu(menu, state(), actions());
    connect(&menu, &QMenu::aboutToShow, this, [this, target = &menu] {
        const MenuState now = state();
        buildMenu(*target, now, actions());
        // Counted when the menu opens, once a run, not when it is made ready unseen.
        if (m_notices) {
            for (const MenuNotice& line : now.notices) {
                for (const Notice& notice :
                     m_notices->notices(Notice::Placement::menu, m_notices->clock().now())) {
                    if (notice.id == line.id) {
                        m_notices->shown(notice, m_notices->clock().now());
                    }
                }
            }
        }
    });
}

void StatusBarController::setNotices(NoticeService* notices, const SymbolProvider* symbols) {
    m_notices = notices;
    m_symbols = symbols;
}

void StatusBarController::noticeClicked(const QString& id) {
    if (!m_notices) {
        return;
    }
    for (const Notice& notice :
         m_notices->notices(Notice::Placement::menu, m_notices->clock().now())) {
        if (notice.id != id) {
            continue;
        }
        if (notice.actions.isEmpty()) {
            call(m_openConfig);
        } else {
            m_notices->perform(notice.actions.first(), notice);
        }
        return;
    }
}

StatusBarController::MenuState StatusBarController::state() const {
    const Release* newest = m_updates ? m_updates->status().available() : nullptr;
    MenuState state{.visitorCount = m_controller.displayFollower().visitorCount(),
                    .canUndo = m_grid.canUndo(),
                    .canRedo = m_grid.canRedo(),
                    .notices = {},
                    .availableVersion = newest ? newest->version.toString() : QString()};
    if (m_notices) {
        for (const Notice& notice :
             m_notices->notices(Notice::Placement::menu, m_notices->clock().now())) {
            const QString title = m_notices->text(notice.title);
            state.notices.append(
                {notice.id, title.isEmpty() ? m_notices->text(notice.body) : title,
                 noticeIcon(m_symbols, notice.symbol.value_or(QStringLiteral("megaphone.fill")))});
        }
    }
    return state;
}

StatusBarController::MenuActions StatusBarController::actions() {
    return {
        .openSettings = m_openConfig,
        .toggleBoard = [this] { m_controller.toggle(); },
        .undo = [this] { m_grid.undo(); },
        .redo = [this] { m_grid.redo(); },
        .checkForUpdates = m_openUpdates,
        .quit = [] { QCoreApplication::quit(); },
        .noticeClicked = [this](const QString& id) { noticeClicked(id); },
    };
}

} // namespace tw
