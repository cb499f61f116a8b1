#include "notices/NoticeService.h"

#include "model/WidgetRegistry.h"
#include "net/HttpClient.h"
#include "notices/NoticeEngine.h"
#include "notices/NoticePolicy.h"
#include "platform/AtomicFile.h"
#include "platform/Clock.h"
#include "platform/DataFile.h"
#include "platform/Defaults.h"
#include "platform/Scheduler.h"
#include "platform/Workspace.h"
#include "text/L.h"

#include <QFileInfo>
#include <QLoggingCategory>

namespace tw {

Q_LOGGING_CATEGORY(lcNotices, "Notices")

QUrl NoticeService::feedURL(const Endpoints& endpoints, const QString& campaignVariable) {
    if (!campaignVariable.trimmed().isEmpty()) {
        const QUrl url =
            QUrl::fromUserInput(campaignVariable.trimmed(), QString(), QUrl::AssumeLocalFile);
        if (url.isValid() && (url.isLocalFile() || !url.host().isEmpty())) {
            return url;
        }
    }
    return endpoints.url(Endpoints::Service::Notices, QStringLiteral("/campaign.json"));
}

NoticeService::NoticeService(const Services& services, Setup setup, QObject* parent)
    : QObject(parent)
    , m_services(services)
    , m_setup(std::move(setup)) {
    m_enabled = m_services.defaults.value(enabledKey, true).toBool();
    m_state = NoticeState::fromJson(m_services.defaults.value(stateKey).toByteArray())
                  .value_or(NoticeState());
    loadCache();
}

NoticeService::~NoticeService() = default;

void NoticeService::loadCache() {
    const auto take = [this](const QByteArray& bytes) {
        std::optional<QList<Notice>> decoded = NoticeEngine::decode(bytes);
        if (decoded) {
            m_feed = std::move(*decoded);
        }
        return decoded.has_value();
    };
    if (m_setup.cachePath.isEmpty()) {
        return;
    }
    // A feed being tried out leaves the real cache as it is, unreadable or not.
    if (m_setup.testing) {
        const DataFile::Contents contents = DataFile::read(m_setup.cachePath, maxFeedBytes);
        if (contents.status == DataFile::Status::regular) {
            take(contents.bytes);
        }
        return;
    }
    DataFile::load(m_setup.cachePath, m_services.clock.now(), take);
}

void NoticeService::setEnabled(bool enabled) {
    m_services.defaults.setValue(enabledKey, enabled);
    if (enabled == m_enabled) {
        return;
    }
    m_enabled = enabled;
    Q_EMIT enabledChanged(enabled);
    Q_EMIT changed();
}

void NoticeService::start() {
    if (m_started) {
        return;
    }
    m_started = true;
    if (!Notice::parseDate(m_services.defaults.value(firstSeenKey).toString())) {
        m_services.defaults.setValue(firstSeenKey,
                                     m_services.clock.now().toUTC().toString(Qt::ISODateWithMs));
    }
    refresh();
    m_timer = m_services.scheduler.repeating(refreshInterval, refreshTolerance, this,
                                             [this] { refresh(); });
}

void NoticeService::refresh() {
    if (!m_enabled || m_fetching) {
        return;
    }
    const QUrl& url = m_setup.feedUrl;
    if (url.isLocalFile()) {
        const DataFile::Contents contents = DataFile::read(url.toLocalFile(), maxFeedBytes);
        if (contents.status != DataFile::Status::regular) {
            qCInfo(lcNotices, "no notices: %s",
                   qUtf8Printable(contents.problem.isEmpty() ? url.toLocalFile() + u" is missing"
                                                             : contents.problem));
            return;
        }
        apply(contents.bytes, m_services.clock.now());
        return;
    }
    HttpRequest request;
    request.url = url;
    request.headers = {{"User-Agent", "Tarnwick"}, {"Cache-Control", "no-cache"}};
    request.timeout = fetchTimeout;
    request.maxBytes = maxFeedBytes;
    m_fetching = true;
    m_services.http.get(request, this, [this](const HttpResponse& response) {
        m_fetching = false;
        if (response.error != HttpError::None) {
            qCInfo(lcNotices, "no notices: %s", qUtf8Printable(response.message));
            return;
        }
        // Anything but a whole new answer (304, an error page) keeps what there is.
        if (response.status == 200) {
            apply(response.body, m_services.clock.now());
        }
    });
}

void NoticeService::apply(const QByteArray& feedData, const QDateTime& now) {
    QString why;
    std::optional<QList<Notice>> decoded = NoticeEngine::decode(feedData, &why);
    if (!decoded) {
        qCInfo(lcNotices, "no notices: %s", qUtf8Printable(why));
        return;
    }
    m_feed = std::move(*decoded);
    if (!m_setup.testing && !m_setup.cachePath.isEmpty()) {
        if (const AtomicFile::Result written = AtomicFile::write(m_setup.cachePath, feedData);
            !written) {
            qCInfo(lcNotices, "the notices are not cached: %s", qUtf8Printable(written.error));
        }
    }
    QSet<QString> ids;
    for (const Notice& notice : std::as_const(m_feed)) {
        ids.insert(notice.id);
    }
    m_state.prune(ids, now, keepDays);
    saveState();
    qCInfo(lcNotices, "notices: %lld in the feed", static_cast<long long>(m_feed.size()));
    Q_EMIT changed();
}

QList<Notice> NoticeService::notices(Notice::Placement placement, const QDateTime& now) const {
    if (!m_enabled || m_feed.isEmpty()) {
        return {};
    }
    QList<Notice> out = NoticeEngine::notices(m_feed, placement, context(now), m_state, m_session);
    out.removeIf([this](const Notice& n) { return m_testDismissed.contains(n.id); });
    return out;
}

std::optional<Notice> NoticeService::top(Notice::Placement placement) const {
    const QList<Notice> list = notices(placement, m_services.clock.now());
    return list.isEmpty() ? std::nullopt : std::optional<Notice>(list.first());
}

void NoticeService::shown(const Notice& notice, const QDateTime& now) {
    if (m_session.contains(notice.id)) {
        return;
    }
    m_session.insert(notice.id);
    if (!m_setup.testing) {
        m_state.noteShown(notice.id, now);
        saveState();
    }
}

void NoticeService::dismiss(const Notice& notice) {
    if (m_setup.testing) {
        m_session.remove(notice.id);
        m_testDismissed.insert(notice.id);
    } else {
        m_state.noteDismissed(notice.id);
        saveState();
    }
    Q_EMIT changed();
}

void NoticeService::perform(const Notice::Action& action, const Notice& notice) {
    using enum Notice::Action::Kind;
    const QString value = action.value.value_or(QString());
    switch (action.kind) {
    case url: {
        const QUrl address(value, QUrl::StrictMode);
        if (!action.value || !address.isValid() || address.scheme() != QLatin1String("https") ||
            address.host().isEmpty() || m_services.workspace == nullptr) {
            return;
        }
        if (const LaunchResult opened = m_services.workspace->open(address); !opened.isSuccess()) {
            qCInfo(lcNotices, "cannot open %s: %s", qUtf8Printable(address.toString()),
                   qUtf8Printable(opened.error()));
            return;
        }
        break;
    }
    case pane:
        if (value.isEmpty()) {
            return;
        }
        navigate(value);
        break;
    case addWidget:
        if (value.isEmpty() || m_services.registry == nullptr ||
            !m_services.registry->definition(value) || !addWidgetHandler) {
            return;
        }
        addWidgetHandler(m_services.registry->definition(value)->metadata.kind);
        break;
    case guide:
        if (openSettings) {
            openSettings();
        }
        Q_EMIT openGuide();
        break;
    case copy:
        // The code stays on screen to be read again: the notice is not done.
        if (notice.code && copyToClipboard) {
            copyToClipboard(*notice.code);
        }
        return;
    case dismiss:
        if (!notice.dismissible) {
            return;
        }
        break;
    }
    // The action has done the notice's work, dismissible or not.
    this->dismiss(notice);
}

QString NoticeService::text(const Notice::Texts& texts) const {
    return Notice::localized(texts, m_setup.language);
}

QString NoticeService::label(const Notice::Action& action) const {
    if (const QString own = text(action.label); !own.isEmpty()) {
        return own;
    }
    using enum Notice::Action::Kind;
    switch (action.kind) {
    case url:
        return L("notice.action.learnMore", QStringLiteral("Learn more"));
    case pane:
        return L("notice.action.open", QStringLiteral("Open"));
    case addWidget:
        return L("notice.action.addWidget", QStringLiteral("Add to Desktop"));
    case guide:
        return L("notice.action.guide", QStringLiteral("Show the guide"));
    case copy:
        return L("notice.action.copy", QStringLiteral("Copy code"));
    case dismiss:
        return L("notice.action.dismiss", QStringLiteral("Not now"));
    }
    return {};
}

QDateTime NoticeService::installDate(const QDateTime& now) const {
    if (auto seen = Notice::parseDate(m_services.defaults.value(firstSeenKey).toString())) {
        return *seen;
    }
    const QDateTime created = QFileInfo(m_setup.dataDirectory).birthTime();
    return !m_setup.dataDirectory.isEmpty() && created.isValid() ? created : now;
}

NoticeContext NoticeService::context(const QDateTime& now) const {
    const Facts facts = factsProvider ? factsProvider() : Facts{};
    // Whole calendar days where the person lives, never negative.
    const qint64 days = installDate(now).toLocalTime().date().daysTo(now.toLocalTime().date());
    return NoticeContext{
        .channel = NoticePolicy::directChannel(),
        .version = m_setup.version,
        .language = m_setup.language,
        .daysInstalled = static_cast<int>(std::clamp<qint64>(days, 0, 1'000'000)),
        .widgetKinds = facts.widgetKinds,
        .widgetCount = facts.widgetCount,
        .now = now,
        .userAllows = m_enabled,
        .testing = m_setup.testing,
    };
}

void NoticeService::resetMemory() {
    m_state = {};
    m_session.clear();
    m_testDismissed.clear();
    saveState();
    Q_EMIT changed();
}

void NoticeService::navigate(const QString& pane) {
    if (openSettings) {
        openSettings();
    }
    m_navigation = m_services.scheduler.singleShot(navigateDelay, std::chrono::milliseconds(0),
                                                   this, [this, pane] {
                                                       if (pane.startsWith(u"widget:")) {
                                                           Q_EMIT selectWidget(pane.mid(7));
                                                       } else {
                                                           Q_EMIT openPane(pane);
                                                       }
                                                   });
}

void NoticeService::saveState() {
    // A feed being tried out never touches the real memory.
    if (m_setup.testing) {
        return;
    }
    m_services.defaults.setValue(stateKey, QString::fromUtf8(m_state.toJson()));
}

} // namespace tw
