// The status item: a tray icon whose menu is rebuilt each time it opens, the user's way back in
// when no window is open. Where the desktop has no tray, the same menu lives in the configuration
// window's menu bar.
#pragma once

#include <QIcon>
#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>

class QMenu;
class QSystemTrayIcon;

namespace tw {

class Defaults;
class DesktopController;
class GridStore;
class NoticeService;
class Notifications;
class SymbolProvider;
class UpdateService;

class StatusBarController final : public QObject {
    Q_OBJECT
public:
    // What the menu shows, read at the moment it opens.
    // A notice's line at the head of the menu.
    struct MenuNotice {
        QString id;
        QString title;
        QIcon icon;
    };
    struct MenuState {
        int visitorCount = 0;
        bool canUndo = false;
        bool canRedo = false;
        QList<MenuNotice> notices = {};
        // The newest version the update check found, empty when none is newer.
        QString availableVersion = {};
    };
    struct MenuActions {
        std::function<void()> openSettings;
        std::function<void()> toggleBoard;
        std::function<void()> undo;
        std::function<void()> redo;
        std::function<void()> checkForUpdates;
        std::function<void()> quit;
        // A notice's line was chosen, by the notice's id.
        std::function<void(const QString& id)> noticeClicked = {};
    };

    // Clears `menu` and fills it, in order: the notices for the menu and a separator after them,
    // the visitors line (when widgets are parked), "Open Tarnwick…", "Show / Hide on Desktop",
    // undo and redo of the layout, "Check for Updates…" (or "Update available: 1.2.0…" once one
    // is found), a separator, "Quit Tarnwick".
    static void buildMenu(QMenu& menu, const MenuState& state, const MenuActions& actions);

    StatusBarController(DesktopController& controller, GridStore& grid,
                        std::function<void()> openConfig, std::function<void()> openUpdates,
                        QObject* parent = nullptr);
    ~StatusBarController() override;

    // Whether the icon stands in a tray; false where the desktop offers none.
    bool hasTray() const;

    // Once, after the first start: a message at the icon saying what it is for, when
    // "tarnwick.menuHint.pending" says one is due. Without a tray there is no icon to point at:
    // a notification says where the menu is instead. True when shown.
    static inline const QString hintPendingKey = QStringLiteral("tarnwick.menuHint.pending");
    bool showHintIfPending(Defaults& defaults, Notifications& notifications);
    // The notices for the menu, from the service the host keeps; `symbols` draws their icons. Both
    // must outlive the controller; without them the menu has no notices.
    void setNotices(NoticeService* notices, const SymbolProvider* symbols);
    // Runs the first action of the notice with `id` (opens the window for one without actions).
    void noticeClicked(const QString& id);
    // Where the menu learns of a newer version; without one it always offers a check.
    void setUpdateService(const UpdateService* updates) { m_updates = updates; }
    // Fills a menu that opens elsewhere (the configuration window's) the same way, on each opening.
    void attach(QMenu& menu);
    MenuState state() const;
    MenuActions actions();

private:
    DesktopController& m_controller;
    GridStore& m_grid;
    std::function<void()> m_openConfig;
    std::function<void()> m_openUpdates;
    std::unique_ptr<QMenu> m_menu;
    QSystemTrayIcon* m_item = nullptr;
    NoticeService* m_notices = nullptr;
    const SymbolProvider* m_symbols = nullptr;
    const UpdateService* m_updates = nullptr;
};

} // namespace tw
