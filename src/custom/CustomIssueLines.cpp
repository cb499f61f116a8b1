#include "custom/CustomIssueLines.h"

#include "custom/CustomPath.h"
#include "custom/CustomTokens.h"
#include "custom/CustomWidgetDefinitionDecoding.h"

#include <QJsonDocument>
#include <QJsonParseError>
#include <QList>

namespace tw::CustomIssueLines {

namespace {

// Deeper nesting is no widget a person wrote; it is walked without recording paths, so that a
// text of brackets costs no more than its length.
constexpr int maximumDepth = 32;

struct Frame {
    bool isArray = false;
    int index = 0;
    QString path;
    // In an object: the path of the key just read, for the value that follows.
    QString keyPath;
    bool expectingKey = true;
};

QString child(const QString& parent, const QString& name) {
    return parent.isEmpty() ? name : parent + u'/' + name;
}

QString elementPath(int row, int index) {
    return QStringLiteral("rows/%1/elements/%2").arg(row).arg(index);
}

std::optional<CustomWidgetIssue> problemOf(const QString& url) {
    const auto resolved = CustomSource::resolve(url);
    if (const auto* issue = std::get_if<CustomWidgetIssue>(&resolved)) {
        return *issue;
    }
    return std::nullopt;
}

// The key the issue is about, as a path; the lookup falls back to its parents.
QString pathOf(const CustomWidgetIssue& issue, const CustomWidgetDefinition& decoded) {
    using Kind = CustomWidgetIssue::Kind;
    const QList<CustomSource> extras = decoded.extraSources.value_or(QList<CustomSource>());
    switch (issue.kind) {
    case Kind::unsupportedSchema:
        return QStringLiteral("schema");
    case Kind::missingName:
        return QStringLiteral("name");
    case Kind::noSizes:
        return QStringLiteral("sizes");
    case Kind::noElements:
        return QStringLiteral("rows");
    case Kind::badLink:
        return QStringLiteral("link");
    case Kind::tooManySources:
        return QStringLiteral("sources");
    case Kind::badURL:
    case Kind::badScheme:
    case Kind::insecureURL:
    case Kind::missingURL:
        if (decoded.source && problemOf(decoded.source->url) == issue) {
            return QStringLiteral("source/url");
        }
        for (qsizetype i = 0; i < extras.size(); ++i) {
            if (problemOf(extras[i].url) == issue) {
                return QStringLiteral("sources/%1/url").arg(i);
            }
        }
        return QStringLiteral("source");
    case Kind::badSourceName:
    case Kind::duplicateSource: {
        // A duplicate is marked where the name comes again.
        int seen = 0;
        const int wanted = issue.kind == Kind::duplicateSource ? 2 : 1;
        for (qsizetype i = 0; i < extras.size(); ++i) {
            if (extras[i].name.value_or(QString()) == issue.text && ++seen == wanted) {
                return QStringLiteral("sources/%1/name").arg(i);
            }
        }
        return QStringLiteral("sources");
    }
    case Kind::dataWithoutSource:
        for (qsizetype r = 0; r < decoded.rows.size(); ++r) {
            const QList<CustomElement>& elements = decoded.rows[r].elements;
            for (qsizetype i = 0; i < elements.size(); ++i) {
                const CustomElement& element = elements[i];
                if (!element.path.value_or(QString()).isEmpty()) {
                    return elementPath(int(r), int(i)) + QStringLiteral("/path");
                }
                if (CustomTokens::referencesSourceData(element.text.value_or(QString()))) {
                    return elementPath(int(r), int(i)) + QStringLiteral("/text");
                }
            }
        }
        return QStringLiteral("rows");
    case Kind::emptyElement: {
        const CustomElement* element =
            issue.row < decoded.rows.size() && issue.index < decoded.rows[issue.row].elements.size()
                ? &decoded.rows[issue.row].elements[issue.index]
                : nullptr;
        const bool icon = element && element->type == CustomElementType::icon;
        return elementPath(issue.row, issue.index) +
               (icon ? QStringLiteral("/symbol") : QStringLiteral("/text"));
    }
    case Kind::valueWithoutPath:
        return elementPath(issue.row, issue.index);
    case Kind::badRange:
        return elementPath(issue.row, issue.index) + QStringLiteral("/max");
    case Kind::unknownToken:
        return elementPath(issue.row, issue.index) + QStringLiteral("/text");
    case Kind::unknownSource: {
        const CustomElement* element =
            issue.row < decoded.rows.size() && issue.index < decoded.rows[issue.row].elements.size()
                ? &decoded.rows[issue.row].elements[issue.index]
                : nullptr;
        const bool inPath =
            element && CustomPath::split(element->path.value_or(QString())).source == issue.text;
        return elementPath(issue.row, issue.index) +
               (inPath ? QStringLiteral("/path") : QStringLiteral("/text"));
    }
    case Kind::notJSON:
        return {};
    }
    return {};
}

} // namespace

QHash<QString, int> keyLines(QStringView text) {
    QHash<QString, int> lines;
    lines.insert(QString(), 0);
    QList<Frame> stack;
    // Brackets opened past the depth limit, still to be closed.
    int hidden = 0;
    int line = 0;
    const qsizetype end = std::min<qsizetype>(text.size(), CustomDecoding::maximumDocumentBytes);

    const auto record = [&](const QString& path) {
        if (!lines.contains(path)) {
            lines.insert(path, line);
        }
    };
    // A value begins: in an array it is the next member, in an object the value of its key.
    const auto valuePath = [&]() -> std::optional<QString> {
        if (hidden > 0) {
            return std::nullopt;
        }
        if (stack.isEmpty()) {
            return QString();
        }
        Frame& top = stack.last();
        if (top.isArray) {
            const QString path = child(top.path, QString::number(top.index));
            record(path);
            return path;
        }
        return top.keyPath;
    };

    for (qsizetype i = 0; i < end; ++i) {
        const QChar c = text[i];
        if (c == u'\n') {
            ++line;
            continue;
        }
        if (c == u'"') {
            const int startLine = line;
            QString content;
            ++i;
            for (; i < end && text[i] != u'"'; ++i) {
                if (text[i] == u'\n') {
                    ++line;
                } else if (text[i] == u'\\' && i + 1 < end) {
                    ++i;
                }
                content += text[i];
            }
            if (hidden == 0 && !stack.isEmpty() && !stack.last().isArray &&
                stack.last().expectingKey) {
                Frame& top = stack.last();
                top.keyPath = child(top.path, content);
                top.expectingKey = false;
                if (!lines.contains(top.keyPath)) {
                    lines.insert(top.keyPath, startLine);
                }
            } else {
                valuePath();
            }
            continue;
        }
        switch (c.unicode()) {
        case u'{':
        case u'[': {
            const std::optional<QString> path = valuePath();
            if (!path || stack.size() >= maximumDepth) {
                ++hidden;
                break;
            }
            Frame frame;
            frame.isArray = c == u'[';
            frame.path = *path;
            stack.append(frame);
            break;
        }
        case u'}':
        case u']':
            if (hidden > 0) {
                --hidden;
            } else if (!stack.isEmpty()) {
                stack.removeLast();
            }
            break;
        case u',':
            if (hidden == 0 && !stack.isEmpty()) {
                Frame& top = stack.last();
                ++top.index;
                top.expectingKey = true;
            }
            break;
        case u':':
            break;
        default:
            // The first character of a number or literal starts an array member.
            if (!c.isSpace() && hidden == 0 && !stack.isEmpty() && stack.last().isArray &&
                (i == 0 || QStringView(u",[").contains(text[i - 1]) || text[i - 1].isSpace())) {
                valuePath();
            }
            break;
        }
    }
    return lines;
}

int lineOf(const CustomWidgetIssue& issue, const CustomWidgetDefinition& decoded,
           const QHash<QString, int>& lines) {
    QString path = pathOf(issue, decoded);
    while (!path.isEmpty()) {
        if (const auto found = lines.constFind(path); found != lines.constEnd()) {
            return *found;
        }
        const qsizetype cut = path.lastIndexOf(u'/');
        path.truncate(std::max<qsizetype>(cut, 0));
    }
    return 0;
}

std::optional<int> parseErrorLine(const QString& text) {
    const QByteArray bytes = text.toUtf8();
    QJsonParseError error;
    QJsonDocument::fromJson(bytes, &error);
    if (error.error == QJsonParseError::NoError) {
        return std::nullopt;
    }
    const qsizetype at = std::clamp<qsizetype>(error.offset, 0, bytes.size());
    return int(bytes.left(at).count('\n'));
}

} // namespace tw::CustomIssueLines
