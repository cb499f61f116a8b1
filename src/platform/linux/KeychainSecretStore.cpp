#include "platform/linux/KeychainSecretStore.h"

#include <QLoggingCategory>
#include <qt6keychain/keychain.h>

namespace tw {

Q_LOGGING_CATEGORY(lcKeychain, "Keychain")

namespace {

const QString kService = QStringLiteral("com.tarnwick.Tarnwick");

void logFailure(const QKeychain::Job* job, const char* what) {
    if (job->error() != QKeychain::NoError && job->error() != QKeychain::EntryNotFound) {
        qCWarning(lcKeychain, "%s %s: %s", what, qUtf8Printable(job->key()),
                  qUtf8Printable(job->errorString()));
    }
}

} // namespace

void KeychainSecretStore::read(const QString& key,
                               std::function<void(std::optional<QString>)> done) {
    auto* job = new QKeychain::ReadPasswordJob(kService);
    job->setKey(key);
    QObject::connect(job, &QKeychain::Job::finished, job,
                     [done = std::move(done)](QKeychain::Job* finished) {
                         logFailure(finished, "cannot read");
                         const auto* reader = static_cast<QKeychain::ReadPasswordJob*>(finished);
                         done(finished->error() == QKeychain::NoError
                                  ? std::optional<QString>(reader->textData())
                                  : std::nullopt);
                     });
    job->start();
}

void KeychainSecretStore::write(const QString& key, const QString& value) {
    auto* job = new QKeychain::WritePasswordJob(kService);
    job->setKey(key);
    job->setTextData(value);
    QObject::connect(job, &QKeychain::Job::finished, job,
                     [](QKeychain::Job* finished) { logFailure(finished, "cannot write"); });
    job->start();
}

void KeychainSecretStore::remove(const QString& key) {
    auto* job = new QKeychain::DeletePasswordJob(kService);
    job->setKey(key);
    QObject::connect(job, &QKeychain::Job::finished, job,
                     [](QKeychain::Job* finished) { logFailure(finished, "cannot remove"); });
    job->start();
}

} // namespace tw
