// What is wrong with a definition, and the rules for addresses, hosts and links it is judged by.

#include "custom/CustomTokens.h"
#include "custom/CustomWidgetDefinition.h"

#include <QSet>

#include <algorithm>

namespace tw {

namespace {

using Issue = CustomWidgetIssue;

// QUrl tidies "10.1.1" into "10.1.0.1" and "+10.0.0.1" into "10.0.0.1"; whether a host is on
// the local network is judged on the text as written, so read it from there.
QString hostAsWritten(const QString& address) {
    const qsizetype slashes = address.indexOf(QLatin1String("//"));
    if (slashes < 0) {
        return {};
    }
    const qsizetype start = slashes + 2;
    qsizetype end = start;
    while (end < address.size() && address[end] != QLatin1Char('/') &&
           address[end] != QLatin1Char('?') && address[end] != QLatin1Char('#')) {
        ++end;
    }
    QString authority = address.mid(start, end - start);
    authority = authority.mid(authority.lastIndexOf(QLatin1Char('@')) + 1);
    if (authority.startsWith(QLatin1Char('['))) {
        const qsizetype close = authority.indexOf(QLatin1Char(']'));
        return close < 0 ? authority.mid(1) : authority.mid(1, close - 1);
    }
    return authority.left(authority.indexOf(QLatin1Char(':')));
}

// A decimal integer with an optional sign, as the host rule reads the pieces of an address.
bool isDecimalInteger(QStringView piece) {
    if (piece.startsWith(QLatin1Char('+')) || piece.startsWith(QLatin1Char('-'))) {
        piece = piece.mid(1);
    }
    return !piece.isEmpty() && piece.size() <= 18 &&
           std::all_of(piece.begin(), piece.end(),
                       [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); });
}

void addElementIssues(const CustomElement& element, int row, int index, QList<Issue>& issues) {
    const auto empty = [](const std::optional<QString>& text) { return !text || text->isEmpty(); };
    switch (element.type) {
    case CustomElementType::text:
    case CustomElementType::image:
        if (empty(element.text)) {
            issues.append(Issue::emptyElement(row, index));
        }
        break;
    case CustomElementType::icon:
        if (empty(element.symbol)) {
            issues.append(Issue::emptyElement(row, index));
        }
        break;
    case CustomElementType::value:
        if (empty(element.path) && empty(element.text)) {
            issues.append(Issue::valueWithoutPath(row, index));
        }
        break;
    case CustomElementType::gauge:
    case CustomElementType::bar:
    case CustomElementType::sparkline:
        if (empty(element.path) && empty(element.text)) {
            issues.append(Issue::valueWithoutPath(row, index));
        }
        if (element.min && element.max && *element.max <= *element.min) {
            issues.append(Issue::badRange(row, index));
        }
        break;
    case CustomElementType::list:
    case CustomElementType::bars:
        if (empty(element.path)) {
            issues.append(Issue::valueWithoutPath(row, index));
        }
        break;
    case CustomElementType::divider:
    case CustomElementType::spacer:
        break;
    }
    if (element.text) {
        for (const QString& token : CustomTokens::unknownTokens(*element.text)) {
            issues.append(Issue::unknownToken(token, row, index));
        }
    }
}

void addResolveIssue(const QString& url, QList<Issue>& issues) {
    const std::variant<QUrl, Issue> resolved = CustomSource::resolve(url);
    if (const Issue* issue = std::get_if<Issue>(&resolved)) {
        issues.append(*issue);
    }
}

} // namespace

std::variant<QUrl, CustomWidgetIssue> CustomSource::resolve(const QString& text) {
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty()) {
        return Issue::of(Issue::Kind::missingURL);
    }
    const QUrl url(trimmed, QUrl::TolerantMode);
    if (!url.isValid() || url.scheme().isEmpty() || url.host().isEmpty()) {
        return Issue::badURL(trimmed);
    }
    const QString scheme = url.scheme().toLower();
    if (scheme == QLatin1String("https")) {
        return url;
    }
    if (scheme == QLatin1String("http")) {
        const QString host = hostAsWritten(trimmed);
        if (isLocalHost(host)) {
            return url;
        }
        return Issue::insecureURL(host);
    }
    return Issue::badScheme(scheme);
}

bool CustomSource::isLocalHost(const QString& host) {
    const QString lower = host.toLower();
    if (lower == QLatin1String("localhost") || lower.endsWith(QLatin1String(".localhost")) ||
        lower.endsWith(QLatin1String(".local")) || lower == QLatin1String("::1") ||
        lower == QLatin1String("[::1]")) {
        return true;
    }
    const QStringList pieces = lower.split(QLatin1Char('.'), Qt::SkipEmptyParts);
    if (pieces.size() != 4 || !std::all_of(pieces.begin(), pieces.end(), isDecimalInteger)) {
        return false;
    }
    const qint64 a = pieces[0].toLongLong();
    const qint64 b = pieces[1].toLongLong();
    return a == 10 || a == 127 || (a == 169 && b == 254) || (a == 172 && b >= 16 && b <= 31) ||
           (a == 192 && b == 168);
}

bool CustomWidgetDefinition::isWebLink(QStringView text) {
    const QUrl url(text.toString(), QUrl::TolerantMode);
    const QString scheme = url.scheme().toLower();
    return url.isValid() && (scheme == QLatin1String("http") || scheme == QLatin1String("https")) &&
           !url.host().isEmpty();
}

std::optional<QUrl> CustomWidgetDefinition::openedLink(const CustomValueBag& values) const {
    const QString target =
        CustomTokens::render(link.value_or(QString()).trimmed(), values).trimmed();
    if (!isWebLink(target)) {
        return std::nullopt;
    }
    return QUrl(target, QUrl::TolerantMode);
}

QList<CustomWidgetIssue> CustomWidgetDefinition::issues() const {
    QList<Issue> found;
    if (schema > currentSchema) {
        found.append(Issue::unsupportedSchema(schema));
    }
    if (name.trimmed().isEmpty()) {
        found.append(Issue::of(Issue::Kind::missingName));
    }
    if (sizes.isEmpty()) {
        found.append(Issue::of(Issue::Kind::noSizes));
    }
    if (std::all_of(rows.begin(), rows.end(),
                    [](const CustomRow& row) { return row.elements.isEmpty(); })) {
        found.append(Issue::of(Issue::Kind::noElements));
    }
    if (source) {
        addResolveIssue(source->url, found);
    }

    QSet<QString> extraNames;
    if (extraSources && !extraSources->isEmpty()) {
        if (extraSources->size() > maximumExtraSources) {
            found.append(Issue::of(Issue::Kind::tooManySources));
        }
        QSet<QString> seen;
        for (const CustomSource& extra : *extraSources) {
            const QString extraName = extra.name.value_or(QString());
            extraNames.insert(extraName);
            if (!CustomSource::isValidName(extraName)) {
                found.append(Issue::badSourceName(extraName));
            } else if (seen.contains(extraName)) {
                found.append(Issue::duplicateSource(extraName));
            } else {
                seen.insert(extraName);
            }
            addResolveIssue(extra.url, found);
        }
    }

    if (link) {
        const QString trimmed = link->trimmed();
        // A link built from tokens is only an address once drawn.
        if (!trimmed.isEmpty() && CustomTokens::scan(trimmed).isEmpty() && !isWebLink(trimmed)) {
            found.append(Issue::badLink(trimmed));
        }
    }

    const bool readsData = std::any_of(rows.begin(), rows.end(), [](const CustomRow& row) {
        return std::any_of(row.elements.begin(), row.elements.end(),
                           [](const CustomElement& element) { return element.readsSourceData(); });
    });
    if (allSources().isEmpty() && readsData) {
        found.append(Issue::of(Issue::Kind::dataWithoutSource));
    }

    for (int r = 0; r < rows.size(); ++r) {
        const QList<CustomElement>& elements = rows[r].elements;
        for (int i = 0; i < elements.size(); ++i) {
            addElementIssues(elements[i], r, i, found);
            for (const QString& reference : elements[i].namedSourceReferences()) {
                if (!extraNames.contains(reference)) {
                    found.append(Issue::unknownSource(reference, r, i));
                }
            }
        }
    }
    return found;
}

bool CustomWidgetDefinition::isRenderable() const {
    const QList<Issue> all = issues();
    return std::none_of(all.begin(), all.end(),
                        [](const Issue& issue) { return issue.isBlocking(); });
}

} // namespace tw
