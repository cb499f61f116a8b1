// The side of the notices that touches the world: fetches the feed every six hours, keeps the
// last one on disk for offline use, remembers what was shown and dismissed, gathers the facts of
// this installation and carries out a notice's actions. The request is a plain GET of a static
// file: nothing about the person is sent.
#pragma once

#include "net/Endpoints.h"
#include "notices/Notice.h"
#include "notices/NoticeContext.h"
#include "notices/NoticeState.h"
#include "platform/ScheduledTask.h"

#include <QObject>
#include <QSet>
#include <QUrl>

#include <chrono>
#include <functional>

namespace tw {

class Clock;
class Defaults;
class HttpClient;
class Scheduler;
class WidgetRegistry;
class Workspace;

class NoticeService final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isEnabled READ isEnabled WRITE setEnabled NOTIFY enabledChanged)
public:
    // All must outlive the service; `registry` and `workspace` may be null, which refuses the
    // actions that need them.
    struct Services {
        HttpClient& http;
        const Clock& clock;
        Scheduler& scheduler;
        Defaults& defaults;
        const WidgetRegistry* registry = nullptr;
        Workspace* workspace = nullptr;
    };
    struct Setup {
        QUrl feedUrl;
        // A feed tried out through TKW_CAMPAIGN_URL: nothing is cached or remembered.
        bool testing = false;
        // "notices-cache.json" in the data directory.
        QString cachePath;
        // Its creation is the install date when the first-seen date is missing.
        QString dataDirectory;
        QString version;
        QString language;
    };
    // The kinds of the placed widgets and how many there are.
    struct Facts {
        QSet<QString> widgetKinds;
        int widgetCount = 0;
    };

    static constexpr std::chrono::hours refreshInterval{6};
    static constexpr std::chrono::minutes refreshTolerance{30};
    static constexpr std::chrono::seconds fetchTimeout{10};
    static constexpr qint64 maxFeedBytes = 1024 * 1024;
    static constexpr int keepDays = 120;
    // How long the window takes to exist before a pane can be opened in it.
    static constexpr std::chrono::milliseconds navigateDelay{350};

    static inline const QString enabledKey = QStringLiteral("tarnwick.notices.enabled");
    static inline const QString stateKey = QStringLiteral("tarnwick.notices.state");
    static inline const QString firstSeenKey = QStringLiteral("tarnwick.notices.firstSeen");
    static QString cacheFileName() { return QStringLiteral("notices-cache.json"); }

    // TKW_CAMPAIGN_URL when it reads as an address (a bare absolute path is a file), else the
    // feed endpoint's "/campaign.json".
    static QUrl feedURL(const Endpoints& endpoints, const QString& campaignVariable);
    // TKW_CAMPAIGN_URL is set and not empty.
    static bool isTesting(const QString& campaignVariable) { return !campaignVariable.isEmpty(); }

    NoticeService(const Services& services, Setup setup, QObject* parent = nullptr);
    ~NoticeService() override;

    // Set by the host.
    std::function<Facts()> factsProvider;
    std::function<void(const QString& kind)> addWidgetHandler;
    std::function<void()> openSettings;
    std::function<void(const QString& text)> copyToClipboard;

    bool isEnabled() const { return m_enabled; }
    void setEnabled(bool enabled);
    bool isTesting() const { return m_setup.testing; }
    const Clock& clock() const { return m_services.clock; }
    const QList<Notice>& feed() const { return m_feed; }
    const NoticeState& state() const { return m_state; }
    const QSet<QString>& session() const { return m_session; }

    // Once: notes the first-seen date, refreshes, and refreshes every six hours after.
    void start();
    // Fetches the feed when enabled; a fetch already under way is not repeated.
    void refresh();
    // Decodes and takes a feed document; one that cannot be read changes nothing.
    void apply(const QByteArray& feedData, const QDateTime& now);

    QList<Notice> notices(Notice::Placement placement, const QDateTime& now) const;
    std::optional<Notice> top(Notice::Placement placement) const;
    // A presentation put `notice` on screen: counted once per session, whatever shows it.
    void shown(const Notice& notice, const QDateTime& now);
    void dismiss(const Notice& notice);
    void perform(const Notice::Action& action, const Notice& notice);
    // The action's own label in the app's language, else the kind's default.
    QString label(const Notice::Action& action) const;
    QString text(const Notice::Texts& texts) const;
    NoticeContext context(const QDateTime& now) const;
    QDateTime installDate(const QDateTime& now) const;
    void resetMemory();
    // Opens the window, then the pane: "widget:<kind>" selects that kind, anything else is a
    // section or page of the window.
    void navigate(const QString& pane);

Q_SIGNALS:
    void enabledChanged(bool enabled);
    // What the placements show may have changed: the feed, the switch, a dismissal.
    void changed();
    void selectWidget(const QString& kind);
    void openPane(const QString& pane);
    void openGuide();

private:
    void saveState();
    void loadCache();

    Services m_services;
    Setup m_setup;
    bool m_enabled = true;
    QList<Notice> m_feed;
    NoticeState m_state;
    QSet<QString> m_session;
    QSet<QString> m_testDismissed;
    ScheduledTask m_timer;
    ScheduledTask m_navigation;
    bool m_started = false;
    bool m_fetching = false;
};

} // namespace tw
