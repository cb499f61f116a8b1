#include "faces/ClipboardFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/PictureCache.h"
#include "faces/ReadingKit.h"
#include "text/L.h"
#include "workspace/ClipboardBehaviour.h"
#include "workspace/ClipboardService.h"

#include <QLinearGradient>
#include <QLocale>
#include <QPainter>

namespace tw {

namespace {

struct Layout {
    QRectF header;
    QRectF clear;
    QList<QRectF> rows;
};

struct Shown {
    QList<Clipping> items;
    QString problem;
    bool live = false;
};

QImage samplePicture() {
    QImage image(160, 100, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    QLinearGradient sky(0, 0, 0, 100);
    sky.setColorAt(0, QColor(255, 183, 94));
    sky.setColorAt(1, QColor(214, 84, 120));
    painter.fillRect(image.rect(), sky);
    painter.setBrush(QColor(60, 40, 90));
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(QPointF(40, 120), 90, 50);
    painter.drawEllipse(QPointF(140, 125), 70, 45);
    return image;
}

Shown shownOf(const FaceContext& context) {
    if (const auto* behaviour = context.behaviour<ClipboardBehaviour>()) {
        return {behaviour->service().items(), behaviour->service().problem(), true};
    }
    if (context.behaviours != nullptr) {
        return {{}, {}, true};
    }
    const QDateTime now = context.now.isValid() ? context.now : QDateTime::currentDateTime();
    return {{Clipping::ofText(QStringLiteral("https://example.org/tickets/4821"), now.addSecs(-40)),
             Clipping::ofText(QStringLiteral("Meet at the north entrance, 10:30"),
                              now.addSecs(-6 * 60)),
             Clipping::ofImage(samplePicture(), now.addSecs(-25 * 60)),
             Clipping::ofText(QStringLiteral("git rebase --onto main topic~3 topic"),
                              now.addSecs(-3 * 3600)),
             Clipping::ofText(QStringLiteral("Flat 4, 17 Harbour Road"), now.addSecs(-26 * 3600)),
             Clipping::ofText(QStringLiteral("+44 20 7946 0321"), now.addSecs(-50 * 3600))},
            {},
            false};
}

Layout layOut(const QRectF& rect, qsizetype count) {
    Layout layout;
    const bool low = rect.height() < 100;
    const qreal headerHeight = low ? 18 : 24;
    layout.header = QRectF(rect.left(), rect.top(), rect.width(), headerHeight);
    layout.clear = QRectF(rect.right() - headerHeight, rect.top(), headerHeight, headerHeight);
    // A narrow tile gives each clipping two lines and no time.
    const qreal rowHeight = low ? 26 : rect.width() < 130 ? 42 : 34;
    qreal y = layout.header.bottom() + (low ? 2 : 6);
    for (qsizetype i = 0; i < count && y + rowHeight <= rect.bottom() + 0.5; ++i) {
        layout.rows.append(QRectF(rect.left(), y, rect.width(), rowHeight - 3));
        y += rowHeight;
    }
    return layout;
}

QString oneLine(const QString& text) {
    QString line = text.left(300).simplified();
    return line;
}

void drawClear(QPainter& painter, const FaceContext& context, const QRectF& box) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QColor back = context.primary();
    back.setAlphaF(0.1F);
    painter.setPen(Qt::NoPen);
    painter.setBrush(back);
    painter.drawEllipse(box.adjusted(1, 1, -1, -1));
    // A cross: the history goes.
    const qreal r = box.width() * 0.17;
    painter.setPen(QPen(context.secondary(), 1.6, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(box.center() + QPointF(-r, -r), box.center() + QPointF(r, r));
    painter.drawLine(box.center() + QPointF(-r, r), box.center() + QPointF(r, -r));
    painter.restore();
}

void drawThumbnail(QPainter& painter, const FaceContext& context, const QRectF& thumb,
                   const Clipping& clipping) {
    const QImage& image = clipping.image;
    const auto draw = [&image, thumb](QPainter& p) {
        p.setRenderHint(QPainter::SmoothPixmapTransform);
        p.drawImage(QRectF(QPointF(0, 0), thumb.size()), image);
    };
    if (context.pictures != nullptr) {
        context.pictures->draw(
            painter, thumb, QStringLiteral("clip|") + QString::fromLatin1(clipping.digest.toHex()),
            context.devicePixelRatio, draw);
        return;
    }
    painter.save();
    painter.translate(thumb.topLeft());
    draw(painter);
    painter.restore();
}

void drawNarrowRow(QPainter& painter, const FaceContext& context, const QRectF& row,
                   const Clipping& clipping) {
    const QRectF inner = row.adjusted(6, 4, -6, -4);
    if (clipping.kind == Clipping::Kind::image) {
        const QSizeF fitted =
            QSizeF(clipping.image.size()).scaled(inner.size(), Qt::KeepAspectRatio);
        drawThumbnail(painter, context,
                      QRectF(inner.left(), inner.center().y() - fitted.height() / 2, fitted.width(),
                             fitted.height()),
                      clipping);
        return;
    }
    const QFont font = FaceKit::font(11);
    const QFontMetricsF metrics(font);
    const QString words = oneLine(clipping.text);
    // The first line up to the last word that fits, the rest elided on the second.
    qsizetype cut = 0;
    while (cut < words.size() && metrics.horizontalAdvance(words.left(cut + 1)) <= inner.width()) {
        ++cut;
    }
    if (cut < words.size()) {
        const qsizetype blank = words.lastIndexOf(u' ', cut);
        cut = blank > 0 ? blank + 1 : cut;
    }
    const QString first = words.left(cut);
    const qreal half = inner.height() / 2;
    FaceKit::drawElided(painter, context, QRectF(inner.left(), inner.top(), inner.width(), half),
                        first, font, context.primary(), Qt::AlignLeft | Qt::AlignVCenter);
    FaceKit::drawElided(painter, context,
                        QRectF(inner.left(), inner.top() + half, inner.width(), half),
                        words.mid(cut), font, context.primary(), Qt::AlignLeft | Qt::AlignVCenter);
}

void drawRow(QPainter& painter, const FaceContext& context, const QRectF& row,
             const Clipping& clipping) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(context.elevated());
    painter.drawRoundedRect(row, 7, 7);
    painter.restore();
    if (row.width() < 130) {
        drawNarrowRow(painter, context, row, clipping);
        return;
    }
    const QString age = ClipboardFace::age(clipping.copiedAt, context.now);
    const QFont small = FaceKit::font(10.5, QFont::Medium);
    const qreal ageWidth = QFontMetricsF(small).horizontalAdvance(age) + 4;
    const QRectF inner = row.adjusted(8, 0, -8, 0);
    FaceKit::drawElided(painter, context,
                        QRectF(inner.right() - ageWidth, inner.top(), ageWidth, inner.height()),
                        age, small, context.secondary(), Qt::AlignRight | Qt::AlignVCenter);
    QRectF text = inner.adjusted(0, 0, -ageWidth - 6, 0);
    QString words = oneLine(clipping.text);
    if (clipping.kind == Clipping::Kind::image) {
        const qreal h = row.height() - 6;
        const QSizeF fitted =
            QSizeF(clipping.image.size()).scaled(QSizeF(h * 1.6, h), Qt::KeepAspectRatio);
        const QRectF thumb(text.left(), row.center().y() - fitted.height() / 2, fitted.width(),
                           fitted.height());
        drawThumbnail(painter, context, thumb, clipping);
        text.setLeft(thumb.right() + 8);
        words = L("clipboard.picture", QStringLiteral("%1 × %2"))
                    .arg(clipping.image.width())
                    .arg(clipping.image.height());
    }
    FaceKit::drawElided(painter, context, text, words, FaceKit::font(12.5), context.primary(),
                        Qt::AlignLeft | Qt::AlignVCenter);
}

} // namespace

std::optional<TimeGrain> ClipboardFace::grain(WidgetSize, const WidgetSettings&) const {
    return TimeGrain::Minutes;
}

QString ClipboardFace::age(const QDateTime& copied, const QDateTime& now) {
    const qint64 seconds = copied.secsTo(now);
    if (seconds < 60) {
        return L("clipboard.now", QStringLiteral("now"));
    }
    if (seconds < 3600) {
        return L("clipboard.minutes", QStringLiteral("%1 min")).arg(seconds / 60);
    }
    if (seconds < 24 * 3600) {
        return L("clipboard.hours", QStringLiteral("%1 h")).arg(seconds / 3600);
    }
    return QLocale().toString(copied.toLocalTime().date(), QStringLiteral("d MMM"));
}

void ClipboardFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const Shown shown = shownOf(context);
    if (shown.items.isEmpty()) {
        ReadingKit::drawNotice(painter, context, rect, context.metadata.symbol,
                               L("clipboard.empty", QStringLiteral("Nothing copied yet")),
                               L("clipboard.emptyDetail",
                                 QStringLiteral("What you copy shows here. Passwords don’t.")));
        return;
    }
    const Layout layout = layOut(rect, shown.items.size());
    // A narrow tile has room for the button alone, unless there is a problem to tell.
    const QString title = !shown.problem.isEmpty() ? shown.problem
                          : rect.width() < 130
                              ? QString()
                              : L("clipboard.title", QStringLiteral("Copied lately"));
    FaceKit::drawElided(
        painter, context, layout.header.adjusted(0, 0, -layout.clear.width() - 4, 0), title,
        FaceKit::font(layout.header.height() * 0.56, QFont::DemiBold),
        shown.problem.isEmpty() ? context.secondary() : ReadingKit::warning(context),
        Qt::AlignLeft | Qt::AlignVCenter);
    drawClear(painter, context, layout.clear);
    for (qsizetype i = 0; i < layout.rows.size(); ++i) {
        drawRow(painter, context, layout.rows[i], shown.items[i]);
    }
}

WidgetFace::Spot ClipboardFace::spotAt(const QRectF& rect, QPointF point,
                                       const FaceContext& context) const {
    Spot spot;
    const Shown shown = shownOf(context);
    const Layout layout = layOut(rect, shown.items.size());
    if (!shown.items.isEmpty() && layout.clear.adjusted(-4, -4, 4, 4).contains(point)) {
        spot.command = QStringLiteral("clear");
        spot.help = L("clipboard.clearHelp", QStringLiteral("Clear the history"));
        return spot;
    }
    for (qsizetype i = 0; i < layout.rows.size(); ++i) {
        if (layout.rows[i].contains(point)) {
            spot.command = QStringLiteral("copy:%1").arg(i);
            spot.help = L("clipboard.copyHelp", QStringLiteral("Click to copy again"));
            break;
        }
    }
    return spot;
}

} // namespace tw
