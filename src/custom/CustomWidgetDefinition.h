// A widget a person defines as one JSON object: its name, sizes, sources and rows. Data only;
// anything the format does not know is ignored.
#pragma once

#include "custom/CustomRow.h"
#include "custom/CustomSource.h"
#include "custom/CustomWidgetIssue.h"
#include "model/WidgetSize.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringView>
#include <QUrl>
#include <QUuid>

#include <optional>

namespace tw {

struct CustomValueBag;

struct CustomWidgetDefinition {
    static constexpr int currentSchema = 2;
    static constexpr int maximumExtraSources = 3;
    static constexpr const char* kindPrefix = "custom.";
    static constexpr const char* fileExtension = "twkwidget";

    // Whether request headers are written; an exported file never carries them.
    enum class Secrets { included, omitted };

    // The format level the file claims.
    int schema = currentSchema;
    QUuid id = QUuid::createUuid();
    QString name;
    QString symbol = QStringLiteral("square.dashed");
    // "#RRGGBB"; absent follows the theme.
    std::optional<QString> accent;
    QList<WidgetSize> sizes;
    std::optional<CustomSource> source;
    // Written as "sources"; named, at most `maximumExtraSources` after clean-up.
    std::optional<QList<CustomSource>> extraSources;
    // Opened by a click; may hold tokens.
    std::optional<QString> link;
    QList<CustomRow> rows;

    // nullopt is the issue `notJSON`: no JSON object, a value of the wrong type where the format
    // is strict, text that is no UTF-8, or a document above the size cap.
    static std::optional<CustomWidgetDefinition> decode(const QByteArray& json);
    static std::optional<CustomWidgetDefinition> decode(const QString& json);
    static std::optional<CustomWidgetDefinition> fromJson(const QJsonObject& json);

    QJsonObject toJson(Secrets secrets) const;
    // Indented, keys sorted, slashes as they are; "{}" should encoding fail.
    QString fileJSON(Secrets secrets) const;
    // The name's letters, digits and blanks, trimmed, or "widget"; then ".twkwidget".
    QString exportFilename() const;

    // "custom." and the UUID in upper case.
    QString kind() const;
    static bool isCustom(QStringView kind);
    static std::optional<QUuid> idFromKind(QStringView kind);

    // `source` first, then `extraSources`.
    QList<CustomSource> allSources() const;
    // The member of `sizes` with the most cells, the earlier on a tie; `large` for none.
    WidgetSize largestSize() const;
    // True when some source carries request headers, which an export leaves out.
    bool hasHeaders() const;
    // Some element's text shows the machine's readings: a token "battery", "cpu", "ram" or
    // "disk", or one of theirs after a dot ("cpu.cores").
    bool needsSystemValues() const;

    // 2 when a level-2 feature is used, else 1.
    int requiredSchema() const;
    // The copy every definition is stored as: names, sizes, elements, sources and the link
    // cleaned and clamped, empty rows dropped, the schema made the one in use.
    CustomWidgetDefinition sanitized() const;

    // Everything wrong with the definition, in a fixed order; changes nothing.
    QList<CustomWidgetIssue> issues() const;
    bool isRenderable() const;

    // The rule for `link`: http or https and a host.
    static bool isWebLink(QStringView text);
    // What a click opens: `link` trimmed and filled from `values`, when that is a web link; never
    // a file or anything else a click could start.
    std::optional<QUrl> openedLink(const CustomValueBag& values) const;

    bool operator==(const CustomWidgetDefinition&) const = default;
};

} // namespace tw
