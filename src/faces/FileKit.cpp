#include "faces/FileKit.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/ReadingKit.h"
#include "text/L.h"

#include <QDir>
#include <QIcon>
#include <QPainter>
#include <QPainterPath>

namespace tw::FileKit {

WidgetFace::Spot spotAt(const QList<Target>& targets, QPointF point) {
    WidgetFace::Spot spot;
    for (const Target& target : targets) {
        if (target.rect.contains(point)) {
            spot.help = target.help;
            spot.command = target.command;
            return spot;
        }
    }
    return spot;
}

void drawButton(QPainter& painter, const FaceContext& context, const QRectF& rect,
                const QString& text, Button style) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QColor fill = context.separator();
    QColor ink = context.primary();
    if (style == Button::primary) {
        fill = context.accent();
        ink = Qt::white;
    } else if (style == Button::destructive) {
        fill = ReadingKit::warning(context);
        ink = Qt::white;
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    const qreal radius = rect.height() / 2;
    painter.drawRoundedRect(rect, radius, radius);
    painter.restore();
    FaceKit::drawFitted(painter, context, rect.adjusted(radius * 0.6, 0, -radius * 0.6, 0), text,
                        QFont::DemiBold, ink, Qt::AlignCenter, rect.height() * 0.5);
}

void drawFileIcon(QPainter& painter, const FaceContext& context, const QRectF& rect,
                  const QString& iconName, const QString& genericIconName, bool isFolder) {
    QIcon icon = QIcon::fromTheme(iconName);
    if (icon.isNull() && !genericIconName.isEmpty()) {
        icon = QIcon::fromTheme(genericIconName);
    }
    if (!icon.isNull()) {
        const qreal ratio = painter.device() != nullptr ? painter.device()->devicePixelRatioF() : 1;
        const qreal side = std::min(rect.width(), rect.height());
        const QSize pixels(qRound(side * ratio * painter.transform().m11()),
                           qRound(side * ratio * painter.transform().m22()));
        const QPixmap pixmap = icon.pixmap(pixels.expandedTo(QSize(16, 16)));
        if (!pixmap.isNull()) {
            const QRectF square(rect.center().x() - side / 2, rect.center().y() - side / 2, side,
                                side);
            painter.save();
            painter.setRenderHint(QPainter::SmoothPixmapTransform);
            painter.drawPixmap(square, pixmap, QRectF(pixmap.rect()));
            painter.restore();
            return;
        }
    }
    FaceKit::drawSymbol(painter, context,
                        isFolder ? QStringLiteral("folder") : QStringLiteral("doc"), rect,
                        isFolder ? context.accent() : context.secondary(),
                        isFolder ? QStringLiteral("F") : QStringLiteral("D"));
}

void drawDropTarget(QPainter& painter, const FaceContext& context, const QRectF& rect) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QColor fill = context.accent();
    fill.setAlphaF(0.08F);
    QPen pen(context.secondary(), 1.4, Qt::DashLine);
    pen.setDashPattern({4, 3});
    painter.setPen(pen);
    painter.setBrush(fill);
    const qreal radius = std::min(12.0, std::min(rect.width(), rect.height()) * 0.18);
    painter.drawRoundedRect(rect.adjusted(0.7, 0.7, -0.7, -0.7), radius, radius);
    painter.restore();
}

QString ago(const QDateTime& then, const QDateTime& now) {
    if (!then.isValid() || !now.isValid()) {
        return {};
    }
    const qint64 seconds = then.secsTo(now);
    if (seconds < 60) {
        return L("files.ago.now", QStringLiteral("just now"));
    }
    if (seconds < 3600) {
        return L("files.ago.minutes", QStringLiteral("%1 min ago")).arg(seconds / 60);
    }
    if (seconds < 86400 && then.date() == now.date()) {
        return L("files.ago.hours", QStringLiteral("%1 h ago")).arg(seconds / 3600);
    }
    if (then.date().daysTo(now.date()) == 1) {
        return L("files.ago.yesterday", QStringLiteral("yesterday"));
    }
    return QLocale().toString(then.date(), QLocale::ShortFormat);
}

QString folderName(const QString& path) {
    const QString clean = QDir::cleanPath(path);
    if (clean == QDir::cleanPath(QDir::homePath())) {
        return L("files.home", QStringLiteral("Home"));
    }
    const QString last = clean.section(QLatin1Char('/'), -1, -1, QString::SectionSkipEmpty);
    return last.isEmpty() ? clean : last;
}

QString itemCount(int items) {
    if (items <= 0) {
        return L("files.items.none", QStringLiteral("Empty"));
    }
    return items == 1
               ? L("files.items.one", QStringLiteral("1 item"))
               : L("files.items.many", QStringLiteral("%1 items")).arg(QLocale().toString(items));
}

} // namespace tw::FileKit
