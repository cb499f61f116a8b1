#include "custom/CustomWidgetRuntime.h"

#include "custom/CustomTokens.h"
#include "model/JsonCoding.h"
#include "net/HttpClient.h"
#include "platform/Clock.h"
#include "text/L.h"

#include <QLoggingCategory>
#include <QPointer>

namespace tw {

namespace {

Q_LOGGING_CATEGORY(lcCustom, "Custom")

// The words for an answer that gave no document, judged in this order.
QString failure(const HttpResponse& response) {
    if (response.error == HttpError::TooLarge || response.body.size() > CustomJSON::maximumBytes) {
        return L("custom.error.tooBig", QStringLiteral("The answer is too large to show."));
    }
    if (response.error != HttpError::None || response.status == 0) {
        return L("custom.error.unreachable", QStringLiteral("Couldn’t reach the server."));
    }
    if (!response.isSuccess()) {
        return L("custom.error.status", QStringLiteral("The server answered %1."))
            .arg(response.status);
    }
    return L("custom.error.notJSON", QStringLiteral("The answer isn’t JSON."));
}

QList<HttpHeader> requestHeaders(const CustomSource& source) {
    QList<HttpHeader> headers{{"Accept", "application/json"}};
    for (auto [name, value] : source.headers.value_or(QMap<QString, QString>()).asKeyValueRange()) {
        const QByteArray key = name.toUtf8();
        const auto same = std::find_if(headers.begin(), headers.end(), [&](const HttpHeader& h) {
            return h.first.compare(key, Qt::CaseInsensitive) == 0;
        });
        if (same != headers.end()) {
            same->second = value.toUtf8();
        } else {
            headers.append({key, value.toUtf8()});
        }
    }
    return headers;
}

} // namespace

CustomWidgetRuntime::CustomWidgetRuntime(HttpClient& http, const Clock& clock,
                                         const ReadingsBoard* readings, Endpoints endpoints,
                                         QObject* parent)
    : QObject(parent)
    , m_http(http)
    , m_clock(clock)
    , m_readings(readings)
    , m_endpoints(std::move(endpoints)) {}

void CustomWidgetRuntime::setDefinitions(const QList<CustomWidgetDefinition>& definitions) {
    QHash<QString, CustomWidgetDefinition> byKind;
    for (const CustomWidgetDefinition& definition : definitions) {
        byKind.insert(definition.kind(), definition);
    }
    if (byKind != m_board.definitions) {
        m_board.definitions = std::move(byKind);
        changed();
    }
}

void CustomWidgetRuntime::setMachine(const QString& host, const QString& user,
                                     const std::optional<QDateTime>& bootedAt) {
    m_board.host = host;
    m_board.user = user;
    m_board.bootedAt = bootedAt;
    changed();
}

void CustomWidgetRuntime::refresh(const QDateTime& now, const QStringList& kinds) {
    // Times are kept and compared in UTC: local ones ask the time zone at every comparison.
    const QDateTime at = now.toUTC();
    m_batching = true;
    for (const QString& kind : kinds) {
        // Answers change only the sources, never the definitions, so the reference holds.
        const CustomWidgetDefinition* found = m_board.definition(kind);
        if (found == nullptr) {
            continue;
        }
        const CustomWidgetDefinition& definition = *found;
        for (const CustomSource& source : definition.allSources()) {
            fetchIfDue(source, at);
        }
        recordHistory(definition, at);
    }
    m_batching = false;
    if (std::exchange(m_pending, false)) {
        Q_EMIT boardChanged();
    }
}

void CustomWidgetRuntime::fetchIfDue(const CustomSource& source, const QDateTime& time) {
    const QDateTime now = time.toUTC();
    const CustomSourceState state = m_board.sources.value(source.cacheKey());
    if (state.startedAt && state.startedAt->msecsTo(now) <= requestTimeout.count() * 1000) {
        return;
    }
    if (state.fetchedAt &&
        state.fetchedAt->msecsTo(now) < qint64(source.interval().count() * 1000)) {
        return;
    }
    fetch(source, now, nullptr, {});
}

void CustomWidgetRuntime::fetch(const CustomSource& source, const QDateTime& now,
                                const QObject* listener, Answered answered) {
    const QString key = source.cacheKey();
    CustomSourceState state = m_board.sources.value(key);
    const auto resolved = CustomSource::resolve(source.url);
    if (!std::holds_alternative<QUrl>(resolved)) {
        state.error = L("custom.error.address", QStringLiteral("The address isn’t valid."));
        state.loading = false;
        state.fetchedAt = now;
        m_board.sources.insert(key, state);
        changed();
        return;
    }
    state.loading = true;
    state.startedAt = now;
    m_board.sources.insert(key, state);
    changed();

    HttpRequest request;
    request.url = m_endpoints.web(std::get<QUrl>(resolved));
    request.headers = requestHeaders(source);
    request.timeout = requestTimeout;
    request.maxBytes = CustomJSON::maximumBytes;
    m_http.get(request, this,
               [this, key, listener = QPointer<const QObject>(listener),
                answered = std::move(answered)](const HttpResponse& response) {
                   finish(key, response);
                   if (answered && listener) {
                       answered(response);
                   }
               });
}

void CustomWidgetRuntime::finish(const QString& cacheKey, const HttpResponse& response) {
    CustomSourceState state = m_board.sources.value(cacheKey);
    state.loading = false;
    state.startedAt.reset();
    state.fetchedAt = m_clock.now().toUTC();
    std::optional<CustomJSON> document;
    if (response.isSuccess()) {
        document = CustomJSON::parse(response.body);
    }
    if (document) {
        state.json = std::move(document);
        state.error.reset();
    } else {
        state.error = failure(response);
        qCInfo(lcCustom, "custom source failed: %s", qUtf8Printable(*state.error));
    }
    m_board.sources.insert(cacheKey, state);
    changed();
}

void CustomWidgetRuntime::recordHistory(const CustomWidgetDefinition& definition,
                                        const QDateTime& time) {
    const QDateTime now = time.toUTC();
    std::optional<CustomValueBag> bag;
    for (qsizetype row = 0; row < definition.rows.size(); ++row) {
        const QList<CustomElement>& elements = definition.rows[row].elements;
        for (qsizetype index = 0; index < elements.size(); ++index) {
            const CustomElement& element = elements[index];
            if (element.type != CustomElementType::sparkline) {
                continue;
            }
            const QString key = CustomBoard::historyKey(definition, int(row), int(index));
            const auto last = m_lastHistorySample.constFind(key);
            if (last != m_lastHistorySample.cend() &&
                last->msecsTo(now) < qint64(historyInterval.count()) * 1000) {
                continue;
            }
            if (!bag) {
                bag = m_board.bag(definition, now, m_readings);
            }
            const auto number =
                CustomTokens::number(element.path.value_or(QString()), element.text, *bag);
            if (!number) {
                continue;
            }
            m_lastHistorySample.insert(key, now);
            QList<double>& points = m_board.histories[key];
            points.append(*number);
            if (points.size() > historyLength) {
                points.remove(0, points.size() - historyLength);
            }
            ++m_historyRevision;
            changed();
        }
    }
}

void CustomWidgetRuntime::forceReload(const CustomSource& source, const QObject* listener,
                                      Answered answered) {
    const QString key = source.cacheKey();
    const auto state = m_board.sources.find(key);
    if (state != m_board.sources.end()) {
        state->fetchedAt.reset();
        state->startedAt.reset();
    }
    fetch(source, m_clock.now().toUTC(), listener, std::move(answered));
}

void CustomWidgetRuntime::discard(const QUuid& id) {
    const QString prefix = JsonCoding::encodeUuid(id) + u'|';
    bool removed = false;
    for (auto it = m_board.histories.begin(); it != m_board.histories.end();) {
        if (it.key().startsWith(prefix)) {
            it = m_board.histories.erase(it);
            removed = true;
        } else {
            ++it;
        }
    }
    m_lastHistorySample.removeIf([&](const auto& entry) { return entry.key().startsWith(prefix); });
    if (removed) {
        changed();
    }
}

void CustomWidgetRuntime::changed() {
    if (m_batching) {
        m_pending = true;
    } else {
        Q_EMIT boardChanged();
    }
}

} // namespace tw
