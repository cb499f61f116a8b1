// A shared board: widgets, how they stand to each other, their harmless settings and the look.
#pragma once

#include "model/WidgetInstance.h"
#include "model/WidgetSize.h"

#include <QByteArray>
#include <QDateTime>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>
#include <variant>

namespace tw {

struct Board {
    struct Item {
        QString kind;
        WidgetSize size = WidgetSize::small;
        // Offset of the tile's top-left corner from the arrangement's, in points, y downward.
        double dx = 0;
        double dy = 0;
        std::optional<WidgetSettings> settings;

        bool operator==(const Item&) const = default;
    };
    struct Look {
        std::optional<QString> palette;
        std::optional<QString> glassStyle;
        std::optional<double> glassStrength;

        bool operator==(const Look&) const = default;
    };

    enum class Error { unreadable, wrongFormat, newer, empty };
    using Decoded = std::variant<Board, Error>;

    static constexpr int currentFormat = 1;
    // A board is small; anything this large is not one.
    static constexpr qint64 maxBytes = 1000000;
    static constexpr qsizetype maxNameLength = 120;
    static inline const QString extension = QStringLiteral(".twkboard");
    static inline const QString appName = QStringLiteral("Tarnwick");

    int format = currentFormat;
    QString app = appName;
    QString appVersion;
    QString name;
    QDateTime createdAt;
    // The arrangement's extent in points.
    double width = 0;
    double height = 0;
    QList<Item> items;
    std::optional<Look> look;

    bool operator==(const Board&) const = default;

    static QString message(Error error);

    // JSON with ISO 8601 dates.
    QByteArray encode() const;
    // 1,000,000 bytes or more, or not a board: wrongFormat; a later format: newer. An item that
    // cannot be read costs only itself; the name becomes one line of at most maxNameLength
    // characters and the glass strength falls within 0...1.
    static Decoded decode(const QByteArray& bytes);
    static Decoded read(const QString& path);
};

} // namespace tw
