#include "faces/CustomElementPainter.h"

#include "custom/CustomCollections.h"
#include "custom/CustomTokens.h"
#include "custom/CustomValueText.h"
#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/PictureCache.h"

#include <QFontMetricsF>
#include <QImageReader>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace tw {

namespace {

using Type = CustomElementType;

struct StyleFace {
    qreal size;
    QFont::Weight weight;
};

StyleFace styleFace(CustomTextStyle style) {
    switch (style) {
    case CustomTextStyle::display:
        return {34, QFont::DemiBold};
    case CustomTextStyle::title:
        return {22, QFont::DemiBold};
    case CustomTextStyle::headline:
        return {15, QFont::DemiBold};
    case CustomTextStyle::body:
        return {13, QFont::Normal};
    case CustomTextStyle::caption:
        return {11.5, QFont::Medium};
    case CustomTextStyle::micro:
        return {10, QFont::Normal};
    }
    return {13, QFont::Normal};
}

// A picture file is read at most this large, whatever the file holds.
constexpr int maximumImageSide = 2048;

QImage readImage(const QString& path, const QSize& pixels) {
    QImageReader reader(path);
    const QSize full = reader.size();
    if (!full.isValid() || pixels.isEmpty()) {
        return {};
    }
    // Covers the box, read no larger than it needs.
    QSize target = full.scaled(pixels, Qt::KeepAspectRatioByExpanding);
    target = target.boundedTo(QSize(maximumImageSide, maximumImageSide));
    reader.setScaledSize(target);
    return reader.read();
}

} // namespace

CustomElementPainter::CustomElementPainter(const CustomElement& element,
                                           const CustomValueBag& values, const FaceContext& context,
                                           const QColor& accent, QList<double> points)
    : m_element(&element)
    , m_values(&values)
    , m_context(&context)
    , m_accent(accent)
    , m_points(std::move(points)) {
    switch (element.type) {
    case Type::text:
        m_text = CustomTokens::render(element.text.value_or(QString()), values);
        break;
    case Type::value:
    case Type::gauge:
    case Type::bar:
        m_text = CustomValueText::text(element, values);
        break;
    default:
        break;
    }
    if (element.type != Type::text || element.rules) {
        m_number = CustomTokens::number(element.path.value_or(QString()), element.text, values);
    }
}

QFont CustomElementPainter::font(CustomTextStyle style, qreal scale) {
    const StyleFace face = styleFace(style);
    return FaceKit::font(face.size * scale, face.weight);
}

qreal CustomElementPainter::lineHeight(CustomTextStyle style, qreal scale) {
    return std::ceil(QFontMetricsF(font(style, scale)).height());
}

QColor CustomElementPainter::color(const QString& name, const FaceContext& context,
                                   const QColor& accent, const QColor& fallback) {
    // Darker greens and reds on light glass, where the bright ones wash out.
    const bool light = context.glass.darkInk();
    if (name == QLatin1String("accent")) {
        return accent;
    }
    if (name == QLatin1String("primary")) {
        return context.primary();
    }
    if (name == QLatin1String("secondary")) {
        return context.secondary();
    }
    if (name == QLatin1String("positive")) {
        return light ? QColor(0x1E, 0x8E, 0x3E) : QColor(0x30, 0xD1, 0x58);
    }
    if (name == QLatin1String("negative")) {
        return light ? QColor(0xD7, 0x00, 0x15) : QColor(0xFF, 0x45, 0x3A);
    }
    if (name == QLatin1String("warning")) {
        return light ? QColor(0xC9, 0x34, 0x00) : QColor(0xFF, 0x9F, 0x0A);
    }
    if (name.size() == 7 && name.startsWith(QLatin1Char('#'))) {
        const QColor hex = QColor::fromString(name);
        if (hex.isValid()) {
            return hex;
        }
    }
    return fallback;
}

CustomTextStyle CustomElementPainter::style() const {
    if (m_element->style) {
        return *m_element->style;
    }
    switch (m_element->type) {
    case Type::value:
        return CustomTextStyle::title;
    case Type::icon:
        return CustomTextStyle::headline;
    case Type::gauge:
    case Type::bar:
        return CustomTextStyle::caption;
    default:
        return CustomTextStyle::body;
    }
}

QColor CustomElementPainter::ink(const QColor& fallback) const {
    if (m_number && m_element->rules) {
        for (const CustomColorRule& rule : *m_element->rules) {
            const bool hit = rule.when == CustomColorRule::When::below ? *m_number < rule.value
                                                                       : *m_number > rule.value;
            if (hit) {
                return color(rule.color, *m_context, m_accent, fallback);
            }
        }
    }
    return color(m_element->color.value_or(QString()), *m_context, m_accent, fallback);
}

QString CustomElementPainter::caption() const {
    const QString text = m_element->text.value_or(QString());
    if (m_element->path && !m_element->path->isEmpty()) {
        return CustomTokens::render(text, *m_values).trimmed();
    }
    const QList<CustomTokens::Match> tokens = CustomTokens::scan(text);
    if (tokens.isEmpty()) {
        return text.trimmed();
    }
    QString rest = text;
    rest.remove(tokens.first().start, tokens.first().length);
    return CustomTokens::render(rest, *m_values).simplified();
}

CustomElementPainter::Need CustomElementPainter::need(qreal scale) const {
    const CustomTextStyle s = style();
    const qreal line = lineHeight(s, scale);
    switch (m_element->type) {
    case Type::text:
    case Type::value:
        return {QFontMetricsF(font(s, scale)).horizontalAdvance(m_text), line, false, false, true};
    case Type::icon: {
        const qreal side = std::round(styleFace(s).size * 1.25 * scale);
        return {side, side};
    }
    case Type::gauge:
        return {0, 36 * scale + (caption().isEmpty() ? 0 : line), false, true};
    case Type::bar:
        return {48 * scale, line + 4 * scale + 6 * scale, true};
    case Type::sparkline:
    case Type::bars:
        return {48 * scale, 28 * scale, true, true};
    case Type::image:
        return {32 * scale, 32 * scale, true, true};
    case Type::list:
        return {64 * scale, line, true, true};
    case Type::divider:
        return {8 * scale, 9 * scale, true};
    case Type::spacer:
        return {0, 0, true};
    }
    return {};
}

qreal CustomElementPainter::widthAt(qreal height, qreal scale) const {
    if (m_element->type != Type::gauge) {
        return need(scale).width;
    }
    const QString words = caption();
    const CustomTextStyle s = style();
    const qreal ring = height - (words.isEmpty() ? 0 : lineHeight(s, scale));
    return std::max(ring,
                    words.isEmpty() ? 0.0 : QFontMetricsF(font(s, scale)).horizontalAdvance(words));
}

void CustomElementPainter::paint(QPainter& painter, const QRectF& rect, qreal scale) const {
    if (rect.width() <= 0 || rect.height() <= 0) {
        return;
    }
    painter.save();
    painter.setClipRect(rect, Qt::IntersectClip);
    const CustomTextStyle s = style();
    switch (m_element->type) {
    case Type::text: {
        const StyleFace face = styleFace(s);
        const qreal fitted =
            FaceKit::fittingPixelSize(m_text, rect.size(), face.weight, face.size * scale);
        // Large type gives a lot before it is cut, body type little.
        const qreal least = face.size >= 20 ? 0.4 : 0.7;
        FaceKit::drawElided(painter, *m_context, rect, m_text,
                            FaceKit::font(std::max(fitted, face.size * scale * least), face.weight),
                            ink(s == CustomTextStyle::caption || s == CustomTextStyle::micro
                                    ? m_context->secondary()
                                    : m_context->primary()),
                            Qt::AlignLeft | Qt::AlignVCenter);
        break;
    }
    case Type::value: {
        // A number is shrunk rather than cut: a cut figure would read as another number.
        const StyleFace face = styleFace(s);
        FaceKit::drawFitted(painter, *m_context, rect, m_text, face.weight,
                            ink(m_context->primary()), Qt::AlignLeft | Qt::AlignVCenter,
                            face.size * scale);
        break;
    }
    case Type::icon: {
        const QString symbol = m_element->symbol.value_or(QStringLiteral("star.fill"));
        FaceKit::drawSymbol(painter, *m_context,
                            symbol.isEmpty() ? QStringLiteral("star.fill") : symbol, rect,
                            ink(m_accent), symbol);
        break;
    }
    case Type::gauge:
        paintGauge(painter, rect, scale);
        break;
    case Type::bar:
        paintBar(painter, rect, scale);
        break;
    case Type::sparkline:
        paintLine(painter, rect, scale);
        break;
    case Type::bars:
        paintColumns(painter, rect, scale);
        break;
    case Type::list:
        paintList(painter, rect, scale);
        break;
    case Type::image:
        paintImage(painter, rect, scale);
        break;
    case Type::divider: {
        const qreal y = std::round(rect.center().y()) + 0.5;
        painter.setPen(QPen(m_context->separator(), 1));
        painter.drawLine(QPointF(rect.left(), y), QPointF(rect.right(), y));
        break;
    }
    case Type::spacer:
        break;
    }
    painter.restore();
}

void CustomElementPainter::paintGauge(QPainter& painter, const QRectF& rect, qreal scale) const {
    const QString words = caption();
    const CustomTextStyle s = style();
    const qreal captionHeight = words.isEmpty() ? 0 : lineHeight(s, scale);
    const qreal side = std::min(rect.width(), rect.height() - captionHeight);
    if (side <= 4) {
        return;
    }
    const QRectF ring(rect.center().x() - side / 2, rect.top(), side, side);
    const qreal stroke = std::max(3.0, side * 0.1);
    const QColor fill = ink(m_accent);
    QColor track = fill;
    track.setAlphaF(0.2F);
    const double fraction = m_number ? CustomValueText::fraction(*m_element, *m_number) : 0;
    FaceKit::drawRing(painter, ring.adjusted(stroke / 2, stroke / 2, -stroke / 2, -stroke / 2),
                      stroke, fraction, fill, track);
    const qreal inner = side - 2 * stroke;
    const QRectF middle(ring.center().x() - inner * 0.4, ring.center().y() - inner * 0.3,
                        inner * 0.8, inner * 0.6);
    FaceKit::drawFitted(painter, *m_context, middle, m_text, QFont::DemiBold, m_context->primary(),
                        Qt::AlignCenter, std::max(10.0, inner * 0.32));
    if (!words.isEmpty()) {
        FaceKit::drawElided(painter, *m_context,
                            QRectF(rect.left(), ring.bottom(), rect.width(), captionHeight), words,
                            font(s, scale), m_context->secondary(), Qt::AlignCenter);
    }
}

void CustomElementPainter::paintBar(QPainter& painter, const QRectF& rect, qreal scale) const {
    const CustomTextStyle s = style();
    const qreal line = lineHeight(s, scale);
    const qreal thickness = 6 * scale;
    const qreal top = rect.center().y() - (line + 4 * scale + thickness) / 2;
    const QRectF words(rect.left(), top, rect.width(), line);
    const QFont figures = FaceKit::font(styleFace(s).size * scale, QFont::DemiBold);
    const qreal figureWidth = QFontMetricsF(figures).horizontalAdvance(m_text);
    FaceKit::drawElided(painter, *m_context, words.adjusted(0, 0, -figureWidth - 6 * scale, 0),
                        caption(), font(s, scale), m_context->secondary(),
                        Qt::AlignLeft | Qt::AlignVCenter);
    FaceKit::drawElided(painter, *m_context, words, m_text, figures, m_context->primary(),
                        Qt::AlignRight | Qt::AlignVCenter);
    const QColor fill = ink(m_accent);
    QColor track = fill;
    track.setAlphaF(0.2F);
    FaceKit::drawBar(painter,
                     QRectF(rect.left(), words.bottom() + 4 * scale, rect.width(), thickness),
                     m_number ? CustomValueText::fraction(*m_element, *m_number) : 0, fill, track);
}

void CustomElementPainter::paintLine(QPainter& painter, const QRectF& rect, qreal scale) const {
    if (m_points.size() < 2) {
        return;
    }
    const auto extremes = std::minmax_element(m_points.begin(), m_points.end());
    const double low = *extremes.first;
    const double span = *extremes.second - low;
    const qreal stroke = 2 * scale;
    const QRectF area = rect.adjusted(stroke, stroke * 2, -stroke * 2, -stroke);
    const auto point = [&](qsizetype i) {
        const double t = span > 0 ? (m_points[i] - low) / span : 0.5;
        return QPointF(area.left() + area.width() * double(i) / double(m_points.size() - 1),
                       area.bottom() - t * area.height());
    };
    QPainterPath line(point(0));
    for (qsizetype i = 1; i < m_points.size(); ++i) {
        line.lineTo(point(i));
    }
    const QColor stroked = ink(m_accent);
    QPainterPath under = line;
    under.lineTo(area.right(), rect.bottom());
    under.lineTo(area.left(), rect.bottom());
    under.closeSubpath();
    QLinearGradient wash(rect.topLeft(), rect.bottomLeft());
    QColor top = stroked;
    top.setAlphaF(0.32F);
    QColor bottom = stroked;
    bottom.setAlphaF(0.0F);
    wash.setColorAt(0, top);
    wash.setColorAt(1, bottom);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(wash);
    painter.drawPath(under);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(stroked, stroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(line);
    painter.setPen(Qt::NoPen);
    painter.setBrush(stroked);
    painter.drawEllipse(point(m_points.size() - 1), stroke * 1.6, stroke * 1.6);
}

void CustomElementPainter::paintColumns(QPainter& painter, const QRectF& rect, qreal scale) const {
    const QList<double> numbers = CustomCollections::series(*m_element, *m_values);
    if (numbers.isEmpty()) {
        return;
    }
    const auto [low, high] = std::minmax_element(numbers.begin(), numbers.end());
    // The lowest bar keeps a quarter of the height, so that a small range still reads as a curve.
    const double floor =
        *low >= 0 && *high > *low ? *low - (*high - *low) / 3 : std::min(0.0, *low);
    const double span = *high - floor;
    const qsizetype count = numbers.size();
    const qreal gap = std::max(1.0, std::min(3 * scale, rect.width() / double(count) * 0.25));
    const qreal width = (rect.width() - gap * double(count - 1)) / double(count);
    if (width <= 0.5) {
        return;
    }
    const QColor fill = ink(m_accent);
    QColor faint = fill;
    faint.setAlphaF(0.55F);
    QLinearGradient wash(rect.topLeft(), rect.bottomLeft());
    wash.setColorAt(0, fill);
    wash.setColorAt(1, faint);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(wash);
    const qreal radius = std::min(width / 2, 3 * scale);
    for (qsizetype i = 0; i < count; ++i) {
        const double t = span > 0 ? (numbers[i] - floor) / span : 0.5;
        const qreal h = std::max(radius * 2, rect.height() * t);
        const QRectF column(rect.left() + double(i) * (width + gap), rect.bottom() - h, width, h);
        painter.drawRoundedRect(column, radius, radius);
    }
}

void CustomElementPainter::paintList(QPainter& painter, const QRectF& rect, qreal scale) const {
    const QStringList lines = CustomCollections::lines(*m_element, *m_values, m_context->size);
    const CustomTextStyle s = style();
    const qreal line = lineHeight(s, scale);
    const qreal pitch = line + 4 * scale;
    const qreal dot = 4 * scale;
    const QColor mark = ink(m_accent);
    painter.setRenderHint(QPainter::Antialiasing);
    qreal y = rect.top();
    for (const QString& text : lines) {
        if (y + line > rect.bottom() + 0.5) {
            break;
        }
        painter.setPen(Qt::NoPen);
        painter.setBrush(mark);
        painter.drawEllipse(QPointF(rect.left() + dot / 2, y + line / 2), dot / 2, dot / 2);
        FaceKit::drawElided(
            painter, *m_context,
            QRectF(rect.left() + dot + 6 * scale, y, rect.width() - dot - 6 * scale, line), text,
            font(s, scale), m_context->primary(), Qt::AlignLeft | Qt::AlignVCenter);
        y += pitch;
    }
}

void CustomElementPainter::paintImage(QPainter& painter, const QRectF& rect, qreal scale) const {
    const QString path = m_element->text.value_or(QString()).trimmed();
    const qreal dpr = m_context->devicePixelRatio;
    const auto draw = [path, rect, dpr, scale](QPainter& p) {
        const QSize pixels = (rect.size() * dpr).toSize();
        const QImage image = path.isEmpty() ? QImage() : readImage(path, pixels);
        if (image.isNull()) {
            return;
        }
        QPainterPath corners;
        const QRectF box(QPointF(0, 0), rect.size());
        corners.addRoundedRect(box, 8 * scale, 8 * scale);
        p.setRenderHint(QPainter::SmoothPixmapTransform);
        p.setClipPath(corners);
        const QSizeF shown =
            QSizeF(image.size()).scaled(box.size(), Qt::KeepAspectRatioByExpanding);
        p.drawImage(QRectF(box.center().x() - shown.width() / 2,
                           box.center().y() - shown.height() / 2, shown.width(), shown.height()),
                    image);
    };
    if (m_context->pictures != nullptr) {
        // Read from disk once per size, not on every paint.
        const QString key =
            QStringLiteral("custom-image|%1|%2x%3").arg(path).arg(rect.width()).arg(rect.height());
        m_context->pictures->draw(painter, rect, key, dpr, draw);
        return;
    }
    painter.translate(rect.topLeft());
    draw(painter);
}

} // namespace tw
