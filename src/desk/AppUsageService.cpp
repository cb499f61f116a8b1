#include "desk/AppUsageService.h"

#include "platform/AppDirectory.h"
#include "platform/AtomicFile.h"
#include "platform/Clock.h"
#include "platform/DataFile.h"
#include "platform/Scheduler.h"
#include "platform/UserPresence.h"

#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

namespace tw {

namespace {

Q_LOGGING_CATEGORY(lcAppUsage, "AppUsage")

} // namespace

AppUsageService::AppUsageService(const Services& services, QObject* parent)
    : QObject(parent)
    , m_services(services) {}

AppUsageService::~AppUsageService() {
    if (m_users > 0) {
        halt();
        save();
    }
}

void AppUsageService::retain() {
    if (++m_users == 1) {
        start();
    }
}

void AppUsageService::release() {
    if (m_users == 0) {
        return;
    }
    if (--m_users == 0) {
        stop();
    }
}

void AppUsageService::start() {
    if (!m_loaded) {
        load();
    }
    const double t = now();
    m_tracker.settle(t, 0);
    m_tracker.ledger.prune(t);
    m_observers.append(connect(&m_services.foreground, &ForegroundApplication::activated, this,
                               [this] { tick(); }));
    m_observers.append(
        connect(&m_services.presence, &UserPresence::awayChanged, this, [this](bool away) {
            if (away) {
                halt();
            } else {
                tick();
            }
        }));
    m_timer = m_services.scheduler.repeating(tickInterval, std::chrono::seconds(2), this,
                                             [this] { tick(); });
    qCInfo(lcAppUsage) << "counting started";
    tick();
}

void AppUsageService::stop() {
    m_tracker.settle(now(), m_services.presence.idleSeconds());
    save();
    m_timer.cancel();
    for (const QMetaObject::Connection& observer : std::as_const(m_observers)) {
        disconnect(observer);
    }
    m_observers.clear();
    qCInfo(lcAppUsage) << "counting stopped";
}

void AppUsageService::tick() {
    // Away, nothing is in front as far as counting goes.
    const std::optional<AppRef> app = m_services.presence.isAway() ? std::nullopt : frontmost();
    m_tracker.tick(app, now(), m_services.presence.idleSeconds());
    if (++m_ticks % ticksPerSave == 0) {
        save();
    }
}

void AppUsageService::halt() {
    m_tracker.stop(now(), m_services.presence.idleSeconds());
}

void AppUsageService::load() {
    m_loaded = true;
    const DataFile::Outcome outcome =
        DataFile::load(m_services.path, m_services.clock.now(), [this](const QByteArray& bytes) {
            std::optional<AppUsageLedger> ledger = AppUsageLedger::fromJson(bytes);
            if (ledger) {
                m_tracker.ledger = std::move(*ledger);
            }
            return ledger.has_value();
        });
    m_writable = outcome != DataFile::Outcome::leftAlone;
}

void AppUsageService::save() {
    if (!m_loaded || !m_writable) {
        return;
    }
    // A failure is tried again at the next save.
    const AtomicFile::Result written =
        AtomicFile::write(m_services.path, m_tracker.ledger.toJson());
    if (!written) {
        qCWarning(lcAppUsage) << "could not save the app time:" << written.error;
    }
}

double AppUsageService::now() const {
    return static_cast<double>(m_services.clock.now().toMSecsSinceEpoch()) / 1000.0;
}

std::optional<AppRef> AppUsageService::frontmost() const {
    return refOf(m_services.foreground.frontmost());
}

std::optional<AppRef> AppUsageService::refOf(const std::optional<ForegroundApp>& app) const {
    if (!app || app->isThisProgram || app->id.isEmpty() || app->name.isEmpty()) {
        return std::nullopt;
    }
    if (m_services.apps.listing(app->id).isScreenLocker) {
        return std::nullopt;
    }
    return AppRef{.id = app->id, .name = app->name};
}

AppUsageLedger AppUsageService::currentLedger(const QDateTime& at) const {
    AppUsageTracker copy = m_tracker;
    const double seconds = static_cast<double>(at.toMSecsSinceEpoch()) / 1000.0;
    copy.settle(seconds, 0);
    copy.ledger.prune(seconds);
    return copy.ledger;
}

AppUsageSummary AppUsageService::summary(int top, AppUsageRange range, bool byCategory,
                                         const QDateTime& at) {
    if (!m_loaded) {
        load();
    }
    const AppUsageLedger ledger = currentLedger(at);
    return byCategory ? ledger.topCategories(top, at, range,
                                             [this](const QString& id) { return category(id); })
                      : ledger.top(top, at, range);
}

void AppUsageService::clear() {
    m_tracker.ledger = {};
    m_tracker.current.reset();
    if (m_writable && QFileInfo(m_services.path).isFile()) {
        QFile::remove(m_services.path);
    }
    m_loaded = true;
    updateViews(true);
}

AppCategory AppUsageService::category(const QString& appID) const {
    return m_services.apps.listing(appID).category;
}

void AppUsageService::showTiles(const QHash<QUuid, WidgetSettings>& tiles) {
    const bool hold = !tiles.isEmpty();
    if (hold != m_heldByTiles) {
        m_heldByTiles = hold;
        hold ? retain() : release();
    }
    m_tiles = tiles;
    updateViews(false);
}

void AppUsageService::refresh() {
    updateViews(false);
}

void AppUsageService::updateViews(bool all) {
    const QDateTime at = m_services.clock.now();
    AppUsageBoard board;
    std::optional<AppUsageLedger> ledger;
    for (auto tile = m_tiles.cbegin(); tile != m_tiles.cend(); ++tile) {
        const AppUsageSettings settings = AppUsageSettings::read(tile.value());
        const AppUsageView* old = m_board.viewFor(tile.key());
        const bool due = all || old == nullptr || old->settings != settings ||
                         old->at.secsTo(at) >= settings.everyMinutes * 60 || old->at.secsTo(at) < 0;
        if (!due) {
            board.views.insert(tile.key(), *old);
            continue;
        }
        if (!ledger) {
            if (!m_loaded) {
                load();
            }
            ledger = currentLedger(at);
        }
        board.views.insert(
            tile.key(),
            makeAppUsageView(
                *ledger, settings, at, [this](const QString& id) { return category(id); },
                [this](const QString& id) { return m_services.apps.listing(id).icon; }));
    }
    if (board != m_board) {
        m_board = std::move(board);
        Q_EMIT boardChanged();
    }
}

} // namespace tw
