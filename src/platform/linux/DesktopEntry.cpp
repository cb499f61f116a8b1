#include "platform/linux/DesktopEntry.h"

#include <QFile>
#include <QStandardPaths>

#include <algorithm>
#include <sys/stat.h>

namespace tw {

namespace {

// The escapes of a desktop-entry string value: \s \n \t \r \\.
QString unescapeValue(const QString& value) {
    QString out;
    out.reserve(value.size());
    for (qsizetype i = 0; i < value.size(); ++i) {
        const QChar c = value.at(i);
        if (c != QLatin1Char('\\') || i + 1 == value.size()) {
            out.append(c);
            continue;
        }
        const QChar next = value.at(++i);
        switch (next.unicode()) {
        case 's':
            out.append(QLatin1Char(' '));
            break;
        case 'n':
            out.append(QLatin1Char('\n'));
            break;
        case 't':
            out.append(QLatin1Char('\t'));
            break;
        case 'r':
            out.append(QLatin1Char('\r'));
            break;
        case '\\':
            out.append(QLatin1Char('\\'));
            break;
        default:
            // Keep the pair: the quoting escapes of Exec are resolved when it is split.
            out.append(c);
            out.append(next);
        }
    }
    return out;
}

bool isFieldCode(const QString& argument) {
    static const QString codes = QStringLiteral("fFuUdDnNickvm");
    return argument.size() == 2 && argument.at(0) == QLatin1Char('%') &&
           codes.contains(argument.at(1));
}

// Field codes inside a longer argument ("--file=%f") go too; "%%" is a plain "%".
QString withoutFieldCodes(const QString& argument) {
    QString out;
    for (qsizetype i = 0; i < argument.size(); ++i) {
        const QChar c = argument.at(i);
        if (c == QLatin1Char('%') && i + 1 < argument.size()) {
            const QChar code = argument.at(++i);
            if (code == QLatin1Char('%')) {
                out.append(code);
            }
            continue;
        }
        out.append(c);
    }
    return out;
}

QStringList listValue(const QString& value) {
    return value.split(QLatin1Char(';'), Qt::SkipEmptyParts);
}

bool sharesAName(const QStringList& names, const QStringList& desktops) {
    return std::any_of(names.begin(), names.end(), [&](const QString& name) {
        return desktops.contains(name, Qt::CaseInsensitive);
    });
}

} // namespace

std::optional<DesktopEntry> DesktopEntry::parse(const QByteArray& text) {
    DesktopEntry entry;
    bool inMainGroup = false;
    bool sawMainGroup = false;
    for (const QByteArray& rawLine : text.split('\n')) {
        const QString line = QString::fromUtf8(rawLine).trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#'))) {
            continue;
        }
        if (line.startsWith(QLatin1Char('['))) {
            inMainGroup = line == QLatin1String("[Desktop Entry]");
            sawMainGroup = sawMainGroup || inMainGroup;
            continue;
        }
        const qsizetype equals = line.indexOf(QLatin1Char('='));
        if (!inMainGroup || equals < 0) {
            continue;
        }
        const QString key = line.left(equals).trimmed();
        const QString value = unescapeValue(line.mid(equals + 1).trimmed());
        if (key == QLatin1String("Name")) {
            entry.name = value;
        } else if (key == QLatin1String("Exec")) {
            entry.exec = value;
        } else if (key == QLatin1String("Path")) {
            entry.path = value;
        } else if (key == QLatin1String("Type")) {
            entry.isApplication = value == QLatin1String("Application");
        } else if (key == QLatin1String("Hidden")) {
            entry.hidden = value == QLatin1String("true");
        } else if (key == QLatin1String("NoDisplay")) {
            entry.noDisplay = value == QLatin1String("true");
        } else if (key == QLatin1String("TryExec")) {
            entry.tryExec = value;
        } else if (key == QLatin1String("StartupWMClass")) {
            entry.startupWMClass = value;
        } else if (key == QLatin1String("Icon")) {
            entry.icon = value;
        } else if (key == QLatin1String("Categories")) {
            entry.categories = listValue(value);
        } else if (key == QLatin1String("Keywords")) {
            entry.keywords = listValue(value);
        } else if (key == QLatin1String("MimeType")) {
            entry.mimeTypes = listValue(value);
        } else if (key == QLatin1String("OnlyShowIn")) {
            entry.onlyShowIn = listValue(value);
        } else if (key == QLatin1String("NotShowIn")) {
            entry.notShowIn = listValue(value);
        }
    }
    if (!sawMainGroup) {
        return std::nullopt;
    }
    return entry;
}

std::optional<DesktopEntry> DesktopEntry::read(const QString& filePath) {
    struct stat status {};
    if (::stat(QFile::encodeName(filePath).constData(), &status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_size > maximumSize) {
        return std::nullopt;
    }
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    return parse(file.read(maximumSize));
}

bool DesktopEntry::isLaunchable(const QStringList& desktops) const {
    if (!isApplication || hidden || commandLine().isEmpty()) {
        return false;
    }
    if (!tryExec.isEmpty() && QStandardPaths::findExecutable(tryExec).isEmpty()) {
        return false;
    }
    if (!onlyShowIn.isEmpty() && !sharesAName(onlyShowIn, desktops)) {
        return false;
    }
    return !sharesAName(notShowIn, desktops);
}

QStringList DesktopEntry::commandLine() const {
    QStringList arguments;
    QString current;
    bool inQuotes = false;
    bool hasArgument = false;
    for (qsizetype i = 0; i < exec.size(); ++i) {
        const QChar c = exec.at(i);
        if (inQuotes) {
            if (c == QLatin1Char('\\') && i + 1 < exec.size()) {
                current.append(exec.at(++i));
            } else if (c == QLatin1Char('"')) {
                inQuotes = false;
            } else {
                current.append(c);
            }
        } else if (c == QLatin1Char('"')) {
            inQuotes = true;
            hasArgument = true;
        } else if (c.isSpace()) {
            if (hasArgument && !isFieldCode(current)) {
                arguments.append(current);
            }
            current.clear();
            hasArgument = false;
        } else {
            current.append(c);
            hasArgument = true;
        }
    }
    if (hasArgument && !isFieldCode(current)) {
        arguments.append(current);
    }
    for (QString& argument : arguments) {
        argument = withoutFieldCodes(argument);
    }
    return arguments;
}

} // namespace tw
