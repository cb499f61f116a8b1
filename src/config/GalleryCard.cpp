#include "config/GalleryCard.h"

#include "config/GalleryPreviewSource.h"
#include "config/SizePicker.h"
#include "faces/GallerySheet.h"
#include "text/L.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace tw {

namespace {

constexpr int kMargin = 12;
constexpr int kStageHeight = 148;
constexpr qreal kStagePadding = 14;
// Small tiles stay smaller than large ones, as on the desktop.
constexpr qreal kMostScale = 0.72;

} // namespace

GalleryCard::GalleryCard(WidgetMetadata metadata, const QString& caption,
                         const GalleryPreviewSource& source, QWidget* parent)
    : QFrame(parent)
    , m_metadata(std::move(metadata))
    , m_source(source)
    , m_stage(new QWidget(this))
    , m_picker(new SizePicker(m_metadata.allowedSizes, m_metadata.defaultSize, this))
    , m_limit(new QLabel(this))
    , m_add(new QPushButton(L("gallery.add", QStringLiteral("Add")), this)) {
    setObjectName(QStringLiteral("card"));
    setAccessibleName(m_metadata.displayName);
    setMinimumWidth(minimumWidth);

    auto* name = new QLabel(m_metadata.displayName, this);
    name->setObjectName(QStringLiteral("cardName"));
    name->setWordWrap(true);
    auto* captionLabel = new QLabel(caption, this);
    captionLabel->setObjectName(QStringLiteral("caption"));
    m_limit->setObjectName(QStringLiteral("caption"));
    m_limit->setWordWrap(true);
    m_add->setObjectName(QStringLiteral("primary"));
    m_add->setProperty("kind", m_metadata.kind);
    m_add->setCursor(Qt::PointingHandCursor);

    auto* bottom = new QHBoxLayout;
    bottom->setSpacing(8);
    bottom->addWidget(m_limit, 1);
    bottom->addWidget(m_add, 0, Qt::AlignRight | Qt::AlignVCenter);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    column->setSpacing(4);
    // The preview is painted by the card over this empty slot, which holds its place in the
    // layout whatever the style does to the card's margins.
    m_stage->setFixedHeight(kStageHeight);
    m_stage->setAttribute(Qt::WA_TransparentForMouseEvents);
    column->addWidget(m_stage);
    column->addSpacing(6);
    column->addWidget(name);
    column->addWidget(captionLabel);
    column->addSpacing(6);
    column->addWidget(m_picker);
    column->addSpacing(4);
    column->addLayout(bottom);
    column->addStretch(1);

    connect(m_picker, &SizePicker::sizeChanged, this, [this] { update(); });
    connect(m_add, &QPushButton::clicked, this, [this] { Q_EMIT addClicked(m_metadata.kind); });
    setPlaced(0, 1);
}

WidgetSize GalleryCard::size() const {
    return m_picker->size();
}

void GalleryCard::setSize(WidgetSize size) {
    m_picker->setSize(size);
}

void GalleryCard::setPlaced(int placed, int limit) {
    m_atLimit = placed >= limit;
    QString note;
    if (m_atLimit) {
        note = limit == 1
                   ? L("gallery.limitOne", QStringLiteral("Only one can be on the desktop"))
                   : L("gallery.limitMany", QStringLiteral("Up to %1 on the desktop")).arg(limit);
    } else if (placed > 0) {
        note =
            L("gallery.placed", QStringLiteral("%1 of %2 on the desktop")).arg(placed).arg(limit);
    }
    m_limit->setText(note);
    m_limit->setVisible(!note.isEmpty());
    updateAddButton();
}

void GalleryCard::setAddEnabled(bool enabled) {
    m_addEnabled = enabled;
    updateAddButton();
}

void GalleryCard::updateAddButton() {
    m_add->setEnabled(m_addEnabled && !m_atLimit);
    m_add->setToolTip(m_atLimit ? L("gallery.limitTip",
                                    QStringLiteral("Remove one from the desktop to add another."))
                                : L("gallery.addTip", QStringLiteral("Put a %1 on the desktop"))
                                      .arg(m_metadata.displayName));
}

QString GalleryCard::limitNote() const {
    return m_limit->isHidden() ? QString() : m_limit->text();
}

QRectF GalleryCard::stageRect() const {
    return QRectF(m_stage->geometry());
}

qreal GalleryCard::previewScale() const {
    const QSizeF tile = nominalPixelSize(size());
    const QRectF stage = stageRect();
    return std::min({kMostScale, (stage.width() - 2 * kStagePadding) / tile.width(),
                     (stage.height() - 2 * kStagePadding) / tile.height()});
}

QRectF GalleryCard::previewRect() const {
    const QSizeF tile = nominalPixelSize(size()) * previewScale();
    const QPointF centre = stageRect().center();
    return QRectF(centre.x() - tile.width() / 2, centre.y() - tile.height() / 2, tile.width(),
                  tile.height());
}

void GalleryCard::timeMoved(const QDateTime& before, const QDateTime& after) {
    const std::optional<TimeGrain> grain =
        m_source.faces().face(m_metadata.kind).grain(size(), WidgetSettings());
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

void GalleryCard::paintEvent(QPaintEvent* event) {
    QFrame::paintEvent(event);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF stage = stageRect();
    QPainterPath clip;
    clip.addRoundedRect(stage, 8, 8);
    painter.setClipPath(clip);
    GallerySheet::paintBackdrop(painter, stage);

    const WidgetSize shown = size();
    const qreal s = previewScale();
    const QSizeF tile = nominalPixelSize(shown);
    FaceContext context = m_source.base();
    context.metadata = m_metadata;
    context.size = shown;
    context.points = tile;
    context.scale = 1.0;
    context.settings = {};
    context.devicePixelRatio = devicePixelRatioF() * s;
    painter.translate(previewRect().topLeft());
    painter.scale(s, s);
    m_source.renderer().paint(painter, QRectF(QPointF(0, 0), tile),
                              m_source.faces().face(m_metadata.kind), context);
}

} // namespace tw
