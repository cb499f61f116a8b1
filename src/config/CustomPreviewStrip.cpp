#include "config/CustomPreviewStrip.h"

#include "custom/CustomWidgetStore.h"
#include "faces/FaceRegistry.h"
#include "faces/GallerySheet.h"
#include "text/L.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace tw {

namespace {

constexpr qreal margin = 16;
constexpr qreal captionHeight = 22;
constexpr qreal gap = 14;

} // namespace

CustomPreviewStrip::CustomPreviewStrip(const FaceRegistry& faces, std::function<FaceContext()> base,
                                       QWidget* parent)
    : QWidget(parent)
    , m_faces(faces)
    , m_base(std::move(base)) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    setAccessibleName(L("custom.editor.preview", QStringLiteral("Preview")));
}

void CustomPreviewStrip::show(const CustomWidgetDefinition& definition, const CustomBoard& board,
                              bool sample) {
    m_definition = definition;
    m_board = board;
    m_sample = sample;
    update();
}

qreal CustomPreviewStrip::scale() const {
    qreal widest = 0;
    qreal tall = 0;
    for (const WidgetSize size : m_definition.sizes) {
        widest = std::max(widest, nominalPixelSize(size).width());
        tall += nominalPixelSize(size).height();
    }
    if (widest <= 0 || tall <= 0) {
        return 1;
    }
    const qsizetype count = m_definition.sizes.size();
    const qreal room = height() - 2 * margin - count * captionHeight - (count - 1) * gap;
    return std::clamp(std::min((width() - 2 * margin) / widest, room / tall), 0.05, 1.0);
}

void CustomPreviewStrip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF stage = rect();
    QPainterPath clip;
    clip.addRoundedRect(stage, 10, 10);
    painter.setClipPath(clip);
    GallerySheet::paintBackdrop(painter, stage);
    if (m_definition.sizes.isEmpty() || !m_base) {
        return;
    }
    FaceContext context = m_base();
    context.metadata = CustomWidgetStore::makeWidgetDefinition(m_definition).metadata;
    context.custom = &m_board;
    context.surface = m_sample ? SurfaceFlags::gallery() : SurfaceFlags{};
    context.scale = 1.0;
    context.settings = {};
    const WidgetFace& face = m_faces.face(m_definition.kind());

    QFont font = painter.font();
    font.setPixelSize(11);
    font.setWeight(QFont::DemiBold);
    painter.setFont(font);
    qreal y = margin;
    const qreal s = scale();
    for (const WidgetSize size : m_definition.sizes) {
        const QSizeF tile = nominalPixelSize(size);
        painter.setPen(QColor(255, 255, 255, 200));
        painter.drawText(QRectF(margin, y, stage.width() - 2 * margin, captionHeight - 6),
                         Qt::AlignLeft | Qt::AlignVCenter, label(size));
        y += captionHeight;
        context.size = size;
        context.points = tile;
        context.devicePixelRatio = devicePixelRatioF() * s;
        painter.save();
        painter.translate((stage.width() - tile.width() * s) / 2, y);
        painter.scale(s, s);
        m_renderer.paint(painter, QRectF(QPointF(0, 0), tile), face, context);
        painter.restore();
        y += tile.height() * s + gap;
    }
}

} // namespace tw
