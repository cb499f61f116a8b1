#include "platform/linux/XdgAutostart.h"

#include "platform/AtomicFile.h"
#include "platform/linux/DesktopEntry.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QStandardPaths>

namespace tw {

Q_LOGGING_CATEGORY(lcAutostart, "tarnwick.autostart")

namespace {

// Inside double quotes a desktop entry's Exec escapes these four with a backslash.
QString quotedArgument(const QString& argument) {
    QString quoted = argument;
    for (const QChar c :
         {QLatin1Char('\\'), QLatin1Char('"'), QLatin1Char('`'), QLatin1Char('$')}) {
        quoted.replace(c, QStringLiteral("\\") + c);
    }
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

} // namespace

XdgAutostart::XdgAutostart(QString directory, QString program)
    : m_directory(std::move(directory))
    , m_program(std::move(program)) {}

std::unique_ptr<XdgAutostart> XdgAutostart::forThisProgram() {
    return std::make_unique<XdgAutostart>(
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
            QStringLiteral("/autostart"),
        QCoreApplication::applicationFilePath());
}

QString XdgAutostart::entryPath() const {
    return m_directory + QStringLiteral("/com.tarnwick.Tarnwick.desktop");
}

QByteArray XdgAutostart::entry() const {
    // Exec's own escaping doubles the backslashes of the quoting once more.
    QString exec = quotedArgument(m_program);
    exec.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    return QStringLiteral("[Desktop Entry]\n"
                          "Type=Application\n"
                          "Name=Tarnwick\n"
                          "Comment=Desktop widgets\n"
                          "Exec=%1 %2\n"
                          "Icon=com.tarnwick.Tarnwick\n"
                          "Terminal=false\n"
                          "X-GNOME-Autostart-enabled=true\n")
        .arg(exec, QLatin1String(loginFlag))
        .toUtf8();
}

bool XdgAutostart::isEnabled() const {
    const std::optional<DesktopEntry> entry = DesktopEntry::read(entryPath());
    // A session's own autostart settings turn an entry off by hiding it.
    return entry && !entry->hidden;
}

bool XdgAutostart::setEnabled(bool enabled) {
    if (!enabled) {
        if (QFile::exists(entryPath()) && !QFile::remove(entryPath())) {
            qCWarning(lcAutostart, "cannot remove %s", qPrintable(entryPath()));
            return false;
        }
        return true;
    }
    if (!QDir().mkpath(m_directory)) {
        qCWarning(lcAutostart, "cannot make %s", qPrintable(m_directory));
        return false;
    }
    const AtomicFile::Result written = AtomicFile::write(entryPath(), entry());
    if (!written) {
        qCWarning(lcAutostart, "cannot write %s: %s", qPrintable(entryPath()),
                  qPrintable(written.error));
    }
    return written.ok();
}

bool XdgAutostart::startedAtLogin(const QStringList& arguments) const {
    return arguments.contains(QLatin1String(loginFlag));
}

} // namespace tw
