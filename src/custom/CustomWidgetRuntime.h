// What keeps custom widgets fed: the shared sources fetched when due, one request per cache key
// however many tiles read it, and the sparklines' short histories. No timer of its own: the host
// drives it on the tick for the definitions of the tiles in view. Nothing here is kept on disk.
#pragma once

#include "custom/CustomBoard.h"
#include "net/Endpoints.h"

#include <QObject>
#include <QStringList>
#include <QUuid>

#include <chrono>
#include <functional>

namespace tw {

class Clock;
class HttpClient;
struct HttpResponse;

class CustomWidgetRuntime final : public QObject {
    Q_OBJECT
public:
    // A request older than this counts as lost, and another may start beside it.
    static constexpr std::chrono::seconds requestTimeout{15};
    static constexpr std::chrono::seconds historyInterval{15};
    static constexpr qsizetype historyLength = 48;

    // The client, the clock and the readings (may be null) must outlive this. Requests go where
    // `endpoints` sends a widget's addresses.
    CustomWidgetRuntime(HttpClient& http, const Clock& clock, const ReadingsBoard* readings,
                        Endpoints endpoints = {}, QObject* parent = nullptr);

    const CustomBoard& board() const { return m_board; }
    // The definitions tiles draw, each under its kind; source states and histories stay.
    void setDefinitions(const QList<CustomWidgetDefinition>& definitions);
    void setMachine(const QString& host, const QString& user,
                    const std::optional<QDateTime>& bootedAt);

    // On each tick: the sources of the definitions of `kinds` fetched where due, in order, then
    // their sparklines given a point where due. Unknown kinds are passed over.
    void refresh(const QDateTime& now, const QStringList& kinds);
    void fetchIfDue(const CustomSource& source, const QDateTime& now);
    void recordHistory(const CustomWidgetDefinition& definition, const QDateTime& now);
    // What a test of a source is told: the whole answer, status and body as they came.
    using Answered = std::function<void(const HttpResponse&)>;
    // Fetches now, even beside a request in flight; the editor's test button, which also hears
    // the answer (unless `listener` is gone by then).
    void forceReload(const CustomSource& source, const QObject* listener = nullptr,
                     Answered answered = {});
    // The histories of a deleted definition go; its sources' states stay, others may share them.
    void discard(const QUuid& id);

    // Grows with every history point, so that views know to redraw.
    quint64 historyRevision() const { return m_historyRevision; }

Q_SIGNALS:
    void boardChanged();

private:
    void fetch(const CustomSource& source, const QDateTime& now, const QObject* listener,
               Answered answered);
    void finish(const QString& cacheKey, const HttpResponse& response);
    void changed();

    HttpClient& m_http;
    const Clock& m_clock;
    const ReadingsBoard* m_readings;
    Endpoints m_endpoints;
    CustomBoard m_board;
    QHash<QString, QDateTime> m_lastHistorySample;
    quint64 m_historyRevision = 0;
    // Within refresh: one boardChanged at its end, however much changed.
    bool m_batching = false;
    bool m_pending = false;
};

} // namespace tw
