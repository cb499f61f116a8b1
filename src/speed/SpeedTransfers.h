// The parallel transfers of one measuring direction: downloads read and thrown away, or uploads
// of one random body, each restarted as it ends, their bytes counted as they move.
#pragma once

#include "speed/ByteCounter.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QUrl>

#include <chrono>

class QNetworkAccessManager;
class QNetworkReply;

namespace tw {

class SpeedTransfers final : public QObject {
    Q_OBJECT
public:
    struct Job {
        QUrl url;
        // Empty for downloads; the body of every upload otherwise.
        QByteArray upload;
        int parallel = 4;
        // Without a byte moving for this long a transfer fails.
        std::chrono::milliseconds timeout{15'000};
        // Failures after which nothing is restarted.
        int failureLimit = 8;
    };

    SpeedTransfers(QNetworkAccessManager& network, Job job, QObject* parent = nullptr);
    ~SpeedTransfers() override;

    void start();
    // Aborts every transfer; nothing is counted after this.
    void stop();
    const ByteCounter& counter() const { return m_counter; }

    // A request of the speed test: no cache, no cookies, no redirect followed.
    static QNetworkReply* send(QNetworkAccessManager& network, const QUrl& url,
                               const QByteArray* upload, std::chrono::milliseconds timeout);

private:
    void launch();
    void finished(QNetworkReply* reply);
    void drain(QNetworkReply* reply);

    QNetworkAccessManager& m_network;
    Job m_job;
    ByteCounter m_counter;
    QList<QNetworkReply*> m_replies;
    bool m_stopped = true;
};

} // namespace tw
