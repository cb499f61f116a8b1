// Counts which application is in front while a person uses the machine, for the app time tiles:
// only while one of them is on the desktop, every 20 seconds and at once when another app comes
// forward, stopped while the session is away. Keeps "app-usage.json" and nothing else.
#pragma once

#include "desk/AppUsageTracker.h"
#include "desk/AppUsageView.h"
#include "platform/ForegroundApplication.h"
#include "platform/ScheduledTask.h"

#include <QHash>
#include <QObject>
#include <QUuid>

#include <chrono>

namespace tw {

class AppDirectory;
class Clock;
class Scheduler;
class UserPresence;

class AppUsageService final : public QObject {
    Q_OBJECT
public:
    struct Services {
        ForegroundApplication& foreground;
        UserPresence& presence;
        const AppDirectory& apps;
        const Clock& clock;
        Scheduler& scheduler;
        // The ledger's file.
        QString path;
    };

    static constexpr std::chrono::seconds tickInterval{20};
    // A save every fifth tick: at most 100 seconds are lost to a crash.
    static constexpr int ticksPerSave = 5;

    explicit AppUsageService(const Services& services, QObject* parent = nullptr);
    // Books the running stretch and saves while counting.
    ~AppUsageService() override;

    // Counting runs while there is at least one user.
    void retain();
    void release();
    int users() const { return m_users; }

    // The tiles on the desktop and their settings: they hold the service while there are any.
    void showTiles(const QHash<QUuid, WidgetSettings>& tiles);
    // Looks at the ledger again for the tiles whose period has passed.
    void refresh();
    const AppUsageBoard& board() const { return m_board; }

    AppUsageSummary summary(int top, AppUsageRange range, bool byCategory, const QDateTime& now);
    // Forgets everything and removes the file.
    void clear();
    AppCategory category(const QString& appID) const;

    const AppUsageTracker& tracker() const { return m_tracker; }

Q_SIGNALS:
    void boardChanged();

private:
    void start();
    void stop();
    void tick();
    void halt();
    void load();
    void save();
    double now() const;
    std::optional<AppRef> frontmost() const;
    std::optional<AppRef> refOf(const std::optional<ForegroundApp>& app) const;
    AppUsageLedger currentLedger(const QDateTime& now) const;
    void updateViews(bool all);

    Services m_services;
    AppUsageTracker m_tracker;
    int m_users = 0;
    int m_ticks = 0;
    bool m_loaded = false;
    // False once the file's place holds something that is no file of ours.
    bool m_writable = true;
    bool m_heldByTiles = false;
    ScheduledTask m_timer;
    QList<QMetaObject::Connection> m_observers;
    QHash<QUuid, WidgetSettings> m_tiles;
    AppUsageBoard m_board;
};

} // namespace tw
