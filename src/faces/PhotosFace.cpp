#include "faces/PhotosFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/PictureCache.h"
#include "faces/ReadingKit.h"
#include "files/PhotosBehaviour.h"
#include "text/L.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

namespace tw {

namespace {

// A made-up photograph for previews and pictures: hills under an evening sky by a lake.
void drawSample(QPainter& painter, const QRectF& rect) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(rect.topLeft(), rect.bottomLeft());
    sky.setColorAt(0, QColor(0x2c, 0x4a, 0x86));
    sky.setColorAt(0.45, QColor(0xf0, 0x9a, 0x6a));
    sky.setColorAt(0.62, QColor(0xfb, 0xd3, 0x8f));
    painter.fillRect(rect, sky);
    const qreal w = rect.width();
    const qreal h = rect.height();
    QRadialGradient sun(QPointF(rect.left() + w * 0.68, rect.top() + h * 0.56), h * 0.22);
    sun.setColorAt(0, QColor(255, 244, 214, 255));
    sun.setColorAt(0.25, QColor(255, 226, 160, 200));
    sun.setColorAt(1, QColor(255, 200, 140, 0));
    painter.fillRect(rect, sun);
    const auto hills = [&](qreal base, qreal amplitude, qreal phase, const QColor& colour) {
        QPainterPath path(QPointF(rect.left(), rect.bottom()));
        for (int i = 0; i <= 24; ++i) {
            const qreal x = rect.left() + w * i / 24.0;
            const qreal y = rect.top() + h * (base - amplitude * std::sin(i / 24.0 * 6.1 + phase) *
                                                         std::cos(i / 24.0 * 2.3 + phase * 0.5));
            path.lineTo(x, y);
        }
        path.lineTo(rect.bottomRight());
        path.closeSubpath();
        painter.fillPath(path, colour);
    };
    hills(0.6, 0.07, 0.4, QColor(0x6b, 0x5a, 0x85));
    hills(0.65, 0.05, 2.1, QColor(0x45, 0x3f, 0x6a));
    // The lake mirrors the sky's glow, fading to the deep water in front.
    QLinearGradient lake(QPointF(0, rect.top() + h * 0.68), rect.bottomLeft());
    lake.setColorAt(0, QColor(0xf2, 0xb0, 0x84));
    lake.setColorAt(0.5, QColor(0x7a, 0x6a, 0x8c));
    lake.setColorAt(1, QColor(0x23, 0x2c, 0x52));
    painter.fillRect(QRectF(rect.left(), rect.top() + h * 0.68, w, h * 0.32), lake);
    QRadialGradient glint(QPointF(rect.left() + w * 0.68, rect.top() + h * 0.72), w * 0.12);
    glint.setColorAt(0, QColor(255, 236, 200, 150));
    glint.setColorAt(1, QColor(255, 236, 200, 0));
    painter.fillRect(QRectF(rect.left(), rect.top() + h * 0.68, w, h * 0.1), glint);
    hills(0.9, 0.05, 4.0, QColor(0x1b, 0x1f, 0x38));
    painter.restore();
}

PhotosView viewOf(const FaceContext& context) {
    if (const auto* photos = context.behaviour<PhotosBehaviour>()) {
        return photos->view(context.instanceID);
    }
    PhotosView sample;
    sample.state = PhotosView::State::showing;
    sample.name = QStringLiteral("Lake at dusk");
    sample.pictures = 48;
    return sample;
}

QString captionOf(const FaceContext& context, const PhotosView& view) {
    const QString caption = context.setting(QStringLiteral("caption")).trimmed();
    if (!caption.isEmpty()) {
        return caption;
    }
    return context.setting(QStringLiteral("names")) == QLatin1String("true") ? view.name
                                                                             : QString();
}

void drawShaded(QPainter& painter, const FaceContext& context, const QRectF& rect,
                const QString& text) {
    const qreal line = std::clamp(rect.height() * 0.09, 12.0, 20.0);
    const QRectF shade(rect.left(), rect.bottom() - line * 3.2, rect.width(), line * 3.2);
    QLinearGradient scrim(shade.topLeft(), shade.bottomLeft());
    scrim.setColorAt(0, QColor(0, 0, 0, 0));
    scrim.setColorAt(1, QColor(0, 0, 0, 150));
    painter.fillRect(shade, scrim);
    const qreal inset = std::max(10.0, rect.width() * 0.05);
    FaceKit::drawElided(painter, context,
                        QRectF(rect.left() + inset, rect.bottom() - line * 1.9,
                               rect.width() - 2 * inset, line * 1.3),
                        text, FaceKit::font(line, QFont::DemiBold), QColor(255, 255, 255, 235),
                        Qt::AlignLeft | Qt::AlignVCenter);
}

} // namespace

std::optional<TimeGrain> PhotosFace::grain(WidgetSize, const WidgetSettings&) const {
    return std::nullopt;
}

void PhotosFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const PhotosView view = viewOf(context);
    switch (view.state) {
    case PhotosView::State::noFolder:
    case PhotosView::State::noPictures: {
        const QRectF inner = rect.adjusted(14, 14, -14, -14);
        const bool missing = view.state == PhotosView::State::noFolder;
        ReadingKit::drawNotice(
            painter, context, inner, QStringLiteral("photo.stack"),
            missing ? L("photos.noFolder", QStringLiteral("Folder not found"))
                    : L("photos.noPictures", QStringLiteral("No pictures here")),
            L("photos.chooseDetail", QStringLiteral("Click to choose a folder")));
        return;
    }
    case PhotosView::State::loading: {
        QLinearGradient wash(rect.topLeft(), rect.bottomRight());
        wash.setColorAt(0, QColor(0x30, 0x34, 0x3c));
        wash.setColorAt(1, QColor(0x1c, 0x1e, 0x24));
        painter.fillRect(rect, wash);
        const qreal side = std::min(rect.width(), rect.height()) * 0.26;
        FaceKit::drawSymbol(
            painter, context, QStringLiteral("photo.stack"),
            QRectF(rect.center().x() - side / 2, rect.center().y() - side / 2, side, side),
            QColor(255, 255, 255, 120), {});
        return;
    }
    case PhotosView::State::showing:
        break;
    }
    if (view.current.isNull()) {
        drawSample(painter, rect);
    } else {
        painter.save();
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        if (!view.previous.isNull() && view.fade < 1) {
            painter.drawImage(rect, view.previous);
            painter.setOpacity(std::clamp(view.fade, 0.0, 1.0));
        }
        painter.drawImage(rect, view.current);
        painter.restore();
    }
    const QString caption = captionOf(context, view);
    if (!caption.isEmpty()) {
        drawShaded(painter, context, rect, caption);
    }
    if (view.unreadable > 0 && context.size != WidgetSize::small) {
        const QString skipped =
            L("photos.skipped", QStringLiteral("%1 skipped")).arg(view.unreadable);
        const QFont font = FaceKit::font(10.5, QFont::Medium);
        const qreal width = QFontMetricsF(font).horizontalAdvance(skipped) + 14;
        const QRectF badge(rect.right() - width - 8, rect.top() + 8, width, 18);
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0, 0, 0, 120));
        painter.drawRoundedRect(badge, 9, 9);
        painter.restore();
        FaceKit::drawText(painter, context, badge, Qt::AlignCenter, skipped, font,
                          QColor(255, 255, 255, 220));
    }
}

WidgetFace::Spot PhotosFace::spotAt(const QRectF&, QPointF, const FaceContext& context) const {
    const PhotosView view = viewOf(context);
    Spot spot;
    switch (view.state) {
    case PhotosView::State::noFolder:
    case PhotosView::State::noPictures:
        spot.command = QStringLiteral("choose");
        spot.help = L("photos.help.choose", QStringLiteral("Choose a folder of pictures"));
        break;
    case PhotosView::State::showing:
        spot.command = QStringLiteral("next");
        spot.help = view.unreadable > 0 ? L("photos.help.nextSkipped",
                                            QStringLiteral("Next picture · %1 could not be read"))
                                              .arg(view.unreadable)
                                        : L("photos.help.next", QStringLiteral("Next picture"));
        break;
    case PhotosView::State::loading:
        break;
    }
    return spot;
}

} // namespace tw
