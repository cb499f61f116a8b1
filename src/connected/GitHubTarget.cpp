#include "connected/GitHubTarget.h"

#include <QRegularExpression>
#include <QUrl>

namespace tw {

namespace {

// Account names: letters, digits and single hyphens inside, at most 39 characters.
bool isAccountName(const QString& name) {
    static const QRegularExpression pattern(
        QStringLiteral("^[A-Za-z0-9](?:[A-Za-z0-9]|-(?=[A-Za-z0-9])){0,38}$"));
    return pattern.match(name).hasMatch();
}

// Repository names: letters, digits, '.', '-' and '_', never "." or "..".
bool isRepositoryName(const QString& name) {
    static const QRegularExpression pattern(QStringLiteral("^[A-Za-z0-9._-]{1,100}$"));
    return pattern.match(name).hasMatch() && name != QLatin1String(".") &&
           name != QLatin1String("..");
}

} // namespace

QString GitHubTarget::key() const {
    return isRepository() ? owner + QLatin1Char('/') + repository : owner;
}

QString GitHubTarget::webAddress() const {
    return QStringLiteral("https://github.com/") + key();
}

std::optional<GitHubTarget> GitHubTarget::parse(const QString& text) {
    QString path = text.trimmed();
    if (path.contains(QLatin1String("github.com"), Qt::CaseInsensitive)) {
        const QUrl url = QUrl::fromUserInput(path);
        if (url.host().compare(QLatin1String("github.com"), Qt::CaseInsensitive) != 0 &&
            url.host().compare(QLatin1String("www.github.com"), Qt::CaseInsensitive) != 0) {
            return std::nullopt;
        }
        path = url.path();
    }
    if (path.startsWith(QLatin1Char('@'))) {
        path.remove(0, 1);
    }
    QStringList parts = path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    if (parts.size() == 2 && parts[1].endsWith(QLatin1String(".git"))) {
        parts[1].chop(4);
    }
    if (parts.size() == 1 && isAccountName(parts[0])) {
        return GitHubTarget{Kind::user, parts[0], {}};
    }
    if (parts.size() == 2 && isAccountName(parts[0]) && isRepositoryName(parts[1])) {
        return GitHubTarget{Kind::repository, parts[0], parts[1]};
    }
    return std::nullopt;
}

} // namespace tw
