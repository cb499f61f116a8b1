#include "faces/FaceKit.h"

#include "faces/FaceContext.h"
#include "faces/PictureCache.h"
#include "platform/SymbolProvider.h"

#include <QFontMetricsF>
#include <QLocale>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace tw::FaceKit {

QFont font(qreal pixelSize, QFont::Weight weight) {
    QFont f;
    f.setPixelSize(std::max(1, static_cast<int>(std::floor(pixelSize))));
    f.setWeight(weight);
    f.setStyleStrategy(QFont::PreferAntialias);
    return f;
}

qreal fittingPixelSize(const QString& text, const QSizeF& box, QFont::Weight weight,
                       qreal maxPixelSize) {
    if (text.isEmpty() || box.isEmpty()) {
        return maxPixelSize;
    }
    // Text width grows almost linearly with the size; measure once and correct once.
    constexpr qreal probe = 100;
    const QFontMetricsF metrics(font(probe, weight));
    const qreal width = std::max<qreal>(metrics.horizontalAdvance(text), 1);
    const qreal height = std::max<qreal>(metrics.height(), 1);
    qreal size =
        std::min({maxPixelSize, probe * box.width() / width, probe * box.height() / height});
    const QFontMetricsF check(font(size, weight));
    if (check.horizontalAdvance(text) > box.width()) {
        size *= box.width() / check.horizontalAdvance(text);
    }
    return std::max<qreal>(size, 1);
}

QRectF drawText(QPainter& painter, const FaceContext& context, const QRectF& rect, int flags,
                const QString& text, const QFont& font, const QColor& color) {
    if (context.pictures != nullptr) {
        return context.pictures->draw(painter, rect, flags, text, font, color,
                                      context.devicePixelRatio * context.scale);
    }
    painter.setFont(font);
    painter.setPen(color);
    QRectF used;
    painter.drawText(rect, flags, text, &used);
    return used;
}

QRectF drawFitted(QPainter& painter, const FaceContext& context, const QRectF& rect,
                  const QString& text, QFont::Weight weight, const QColor& color,
                  Qt::Alignment alignment, qreal maxPixelSize) {
    const auto compute = [&] { return fittingPixelSize(text, rect.size(), weight, maxPixelSize); };
    const qreal size = context.pictures == nullptr
                           ? compute()
                           : context.pictures->fittedSize(QStringLiteral("%1|%2x%3|%4|%5")
                                                              .arg(text)
                                                              .arg(rect.width())
                                                              .arg(rect.height())
                                                              .arg(static_cast<int>(weight))
                                                              .arg(maxPixelSize),
                                                          compute);
    return drawText(painter, context, rect, static_cast<int>(alignment | Qt::TextSingleLine), text,
                    font(size, weight), color);
}

void drawElided(QPainter& painter, const FaceContext& context, const QRectF& rect,
                const QString& text, const QFont& font, const QColor& color,
                Qt::Alignment alignment) {
    const QFontMetricsF metrics(font);
    drawText(painter, context, rect, static_cast<int>(alignment | Qt::TextSingleLine),
             metrics.elidedText(text, Qt::ElideRight, rect.width()), font, color);
}

void drawBar(QPainter& painter, const QRectF& rect, double fraction, const QColor& fill,
             const QColor& track) {
    const qreal radius = rect.height() / 2;
    painter.save();
    painter.setPen(Qt::NoPen);
    painter.setBrush(track);
    painter.drawRoundedRect(rect, radius, radius);
    const double f = std::clamp(fraction, 0.0, 1.0);
    if (f > 0) {
        QRectF done = rect;
        done.setWidth(std::max(rect.height(), rect.width() * f));
        painter.setBrush(fill);
        painter.drawRoundedRect(done, radius, radius);
    }
    painter.restore();
}

void drawRing(QPainter& painter, const QRectF& rect, qreal lineWidth, double fraction,
              const QColor& fill, const QColor& track) {
    const QRectF r = rect.adjusted(lineWidth / 2, lineWidth / 2, -lineWidth / 2, -lineWidth / 2);
    painter.save();
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(track, lineWidth, Qt::SolidLine, Qt::RoundCap));
    painter.drawEllipse(r);
    const double f = std::clamp(fraction, 0.0, 1.0);
    if (f > 0) {
        painter.setPen(QPen(fill, lineWidth, Qt::SolidLine, Qt::RoundCap));
        // Qt's angles are sixteenths of a degree, counter-clockwise from three o'clock.
        painter.drawArc(r, 90 * 16, -static_cast<int>(std::lround(f * 360 * 16)));
    }
    painter.restore();
}

void drawSymbol(QPainter& painter, const FaceContext& context, const QString& symbol,
                const QRectF& rect, const QColor& color, const QString& fallbackText) {
    if (context.symbols != nullptr && context.symbols->drawSymbol(painter, symbol, rect, color)) {
        return;
    }
    const qreal side = std::min(rect.width(), rect.height());
    const QRectF circle(rect.center().x() - side * 0.42, rect.center().y() - side * 0.42,
                        side * 0.84, side * 0.84);
    painter.save();
    painter.setPen(QPen(color, std::max<qreal>(1, side * 0.06)));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(circle);
    painter.setFont(font(side * 0.46, QFont::DemiBold));
    painter.drawText(circle, Qt::AlignCenter, fallbackText.left(1).toUpper());
    painter.restore();
}

QTimeZone zone(const QString& id) {
    if (!id.isEmpty()) {
        QTimeZone z(id.toUtf8());
        if (z.isValid()) {
            return z;
        }
    }
    return QTimeZone::systemTimeZone();
}

QDateTime zoned(const FaceContext& context) {
    const QString id = context.setting(QStringLiteral("zone"));
    return id.isEmpty() ? context.now : context.now.toTimeZone(zone(id));
}

bool uses24Hour(const FaceContext& context) {
    const QString format = context.setting(QStringLiteral("format"));
    if (format == QLatin1String("12")) {
        return false;
    }
    if (format == QLatin1String("24")) {
        return true;
    }
    return !QLocale()
                .timeFormat(QLocale::ShortFormat)
                .contains(QLatin1Char('a'), Qt::CaseInsensitive);
}

QString hoursMinutes(const QTime& time, bool use24Hour) {
    if (use24Hour) {
        return time.toString(QStringLiteral("HH:mm"));
    }
    const int hour = time.hour() % 12 == 0 ? 12 : time.hour() % 12;
    return QString::number(hour) + QLatin1Char(':') +
           QStringLiteral("%1").arg(time.minute(), 2, 10, QLatin1Char('0'));
}

QString dayHalf(const QTime& time) {
    return time.hour() < 12 ? QLocale().amText() : QLocale().pmText();
}

QString cityName(const QString& zoneId) {
    QString city = zoneId.section(QLatin1Char('/'), -1);
    city.replace(QLatin1Char('_'), QLatin1Char(' '));
    return city;
}

} // namespace tw::FaceKit
