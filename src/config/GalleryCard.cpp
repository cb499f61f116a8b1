#include "config/GalleryCard.h"

#include "config/GalleryPreviewSource.h"
#include "faces/FaceKit.h"
#include "faces/GallerySheet.h"
#include "text/L.h"

#include <QPainter>
#include <QPainterPath>
#include <QPushButton>

#include <cmath>

namespace tw {

namespace {

constexpr int kStagePadding = 18;
constexpr int kTextHeight = 40;

} // namespace

GalleryCard::GalleryCard(WidgetMetadata metadata, const GalleryPreviewSource& source,
                         QWidget* parent)
    : QWidget(parent)
    , m_metadata(std::move(metadata))
    , m_source(source)
    , m_add(new QPushButton(L("gallery.add", QStringLiteral("Add")), this)) {
    m_add->setObjectName(QStringLiteral("add-") + m_metadata.kind);
    m_add->setCursor(Qt::PointingHandCursor);
    m_add->setToolTip(
        L("gallery.addTip", QStringLiteral("Put a %1 on the desktop")).arg(m_metadata.displayName));
    connect(m_add, &QPushButton::clicked, this, [this] { Q_EMIT addClicked(m_metadata.kind); });
    setAccessibleName(m_metadata.displayName);
}

qreal GalleryCard::previewScale() const {
    const QSizeF tile = nominalPixelSize(m_metadata.defaultSize);
    return std::min(0.8, maxPreviewWidth / tile.width());
}

QRectF GalleryCard::stageRect() const {
    const QSizeF tile = nominalPixelSize(m_metadata.defaultSize) * previewScale();
    return QRectF(0, 0, std::max<qreal>(tile.width() + 2 * kStagePadding, 150),
                  tile.height() + 2 * kStagePadding);
}

QSize GalleryCard::sizeHint() const {
    const QRectF stage = stageRect();
    return QSize(static_cast<int>(std::ceil(stage.width())),
                 static_cast<int>(std::ceil(stage.height())) + kTextHeight);
}

void GalleryCard::timeMoved(const QDateTime& before, const QDateTime& after) {
    const std::optional<TimeGrain> grain =
        m_source.faces().face(m_metadata.kind).grain(m_metadata.defaultSize, WidgetSettings());
    // A preview scrolled out of the view or hidden by the search draws nothing; it shows the
    // current time when it comes back, since it paints from the shared time.
    if (!grain || visibleRegion().isEmpty()) {
        return;
    }
    const bool moved = *grain == TimeGrain::Seconds
                           ? before.toSecsSinceEpoch() != after.toSecsSinceEpoch()
                           : before.toSecsSinceEpoch() / 60 != after.toSecsSinceEpoch() / 60;
    if (moved) {
        update(stageRect().toAlignedRect());
    }
}

void GalleryCard::setAddEnabled(bool enabled) {
    m_add->setEnabled(enabled);
}

void GalleryCard::resizeEvent(QResizeEvent*) {
    const QSize button = m_add->sizeHint();
    m_add->setGeometry(width() - button.width(),
                       height() - kTextHeight + (kTextHeight - button.height()) / 2, button.width(),
                       button.height());
}

void GalleryCard::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF stage = stageRect();
    QPainterPath clip;
    clip.addRoundedRect(stage, 14, 14);
    painter.save();
    painter.setClipPath(clip);
    GallerySheet::paintBackdrop(painter, stage);

    const qreal s = previewScale();
    const QSizeF tile = nominalPixelSize(m_metadata.defaultSize);
    FaceContext context = m_source.base();
    context.metadata = m_metadata;
    context.size = m_metadata.defaultSize;
    context.points = tile;
    context.scale = 1.0;
    context.settings = {};
    context.devicePixelRatio = devicePixelRatioF() * s;
    painter.translate(stage.center().x() - tile.width() * s / 2,
                      stage.center().y() - tile.height() * s / 2);
    painter.scale(s, s);
    m_source.renderer().paint(painter, QRectF(QPointF(0, 0), tile),
                              m_source.faces().face(m_metadata.kind), context);
    painter.restore();

    const QRectF text(0, stage.bottom() + 2, width() - m_add->width() - 8, kTextHeight - 4);
    const QPalette pal = palette();
    FaceKit::drawElided(painter, context, text.adjusted(0, 0, 0, -text.height() / 2),
                        m_metadata.displayName, FaceKit::font(13, QFont::DemiBold),
                        pal.color(QPalette::WindowText), Qt::AlignLeft | Qt::AlignBottom);
    FaceKit::drawElided(painter, context, text.adjusted(0, text.height() / 2 + 1, 0, 0),
                        label(m_metadata.defaultSize), FaceKit::font(11),
                        pal.color(QPalette::PlaceholderText), Qt::AlignLeft | Qt::AlignTop);
}

} // namespace tw
