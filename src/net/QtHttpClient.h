// The HttpClient over one QNetworkAccessManager: house headers, no cookies, no cache, a deadline
// and a size cap on every request, and a redirect policy that keeps public requests public.
#pragma once

#include "net/HttpClient.h"
#include "net/RedirectPolicy.h"

#include <QNetworkAccessManager>
#include <QObject>

#include <functional>
#include <vector>

namespace tw {

class Scheduler;

class QtHttpClient final : public QObject, public HttpClient {
    Q_OBJECT
public:
    using HostClassifier = std::function<AddressClass(QStringView host)>;

    // `classify` decides which hosts count as public for the redirect policy; only tests, which
    // have nothing but loopback, pass another.
    explicit QtHttpClient(Scheduler& scheduler, HostClassifier classify = classifyHost,
                          QObject* parent = nullptr);
    // Requests still under way end as cancelled.
    ~QtHttpClient() override;

    void get(const HttpRequest& request, const QObject* requester, Completion done) override;

private:
    class Transfer;

    void send(Transfer& transfer);
    void onReadyRead(Transfer& transfer);
    void onFinished(Transfer& transfer);
    void finish(Transfer& transfer, HttpError error, const QString& message);

    Scheduler& m_scheduler;
    HostClassifier m_classify;
    QNetworkAccessManager m_manager;
    std::vector<Transfer*> m_transfers;
};

} // namespace tw
