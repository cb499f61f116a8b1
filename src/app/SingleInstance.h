// One running host per user and data directory: a second start hands its wish to the first one
// over a local socket and ends.
#pragma once

#include <QLocalServer>
#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

namespace tw {

class SingleInstance final : public QObject {
    Q_OBJECT
public:
    // The socket name of the host that keeps its data in `appSupportDir`.
    static QString serverName(const QString& appSupportDir);

    // Claims `name`: null when another instance answered there (it has been asked to open
    // `files` or, without any, to bring its window forward, at `section` and `page` when given);
    // otherwise the listening instance.
    static std::unique_ptr<SingleInstance> claim(const QString& name, const QString& section = {},
                                                 const QString& page = {},
                                                 const QStringList& files = {});
    // Whether an argument names a file this program opens: a widget file, a layout file or a
    // board.
    static bool namesFileToOpen(const QString& argument);
    // The arguments after the program's name that name such files, as absolute paths.
    static QStringList filesToOpen(const QStringList& arguments);

Q_SIGNALS:
    // A second start asked for the configuration window, at a section and page or where it was
    // (both empty).
    void activationRequested(const QString& section, const QString& page);
    // A second start was handed a file, as a file manager's double-click does.
    void openRequested(const QString& path);

private:
    explicit SingleInstance(std::unique_ptr<QLocalServer> server);
    void handle(const QByteArray& line);

    std::unique_ptr<QLocalServer> m_server;
};

} // namespace tw
