// One running host per user and data directory: a second start hands its wish to the first one
// over a local socket and ends.
#pragma once

#include <QLocalServer>
#include <QObject>
#include <QString>

#include <memory>

namespace tw {

class SingleInstance final : public QObject {
    Q_OBJECT
public:
    // The socket name of the host that keeps its data in `appSupportDir`.
    static QString serverName(const QString& appSupportDir);

    // Claims `name`: null when another instance answered there (it has been asked to bring its
    // window forward, at `section` and `page` when given); otherwise the listening instance.
    static std::unique_ptr<SingleInstance> claim(const QString& name, const QString& section = {},
                                                 const QString& page = {});

Q_SIGNALS:
    // A second start asked for the configuration window, at a section and page or where it was
    // (both empty).
    void activationRequested(const QString& section, const QString& page);

private:
    explicit SingleInstance(std::unique_ptr<QLocalServer> server);

    std::unique_ptr<QLocalServer> m_server;
};

} // namespace tw
