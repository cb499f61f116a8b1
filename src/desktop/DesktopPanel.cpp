#include "desktop/DesktopPanel.h"

#include "desktop/DesktopSpace.h"
#include "desktop/GlassScene.h"
#include "desktop/WallpaperBackdrop.h"
#include "faces/LiquidRenderQueue.h"
#include "faces/LiquidRequest.h"
#include "faces/TileRenderer.h"
#include "faces/WidgetFace.h"
#include "model/Metrics.h"
#include "platform/Clock.h"

#include <QContextMenuEvent>
#include <QCursor>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPropertyAnimation>
#include <QToolTip>
#include <QWheelEvent>
#include <QWindow>

#include <cmath>

namespace tw {

DesktopPanel::DesktopPanel(const QUuid& instanceID, DesktopWindowing& windowing,
                           DesktopWindowing::Focus focus, TileRenderer& renderer,
                           const Clock& clock)
    : QWidget(nullptr, DesktopWindowing::windowFlags(focus))
    , m_instanceID(instanceID)
    , m_windowing(windowing)
    , m_renderer(renderer)
    , m_clock(clock) {
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    // A panel is never the active window, and its face's help should show all the same.
    setAttribute(Qt::WA_AlwaysShowToolTips);
    setAttribute(Qt::WA_DeleteOnClose, false);
    setMouseTracking(false);
    setWindowTitle(QStringLiteral("Tarnwick"));
    // Tools that look at windows (and the end-to-end tests) find a tile's panel by its role.
    setWindowRole(instanceID.toString(QUuid::WithoutBraces));
    if (focus == DesktopWindowing::Focus::WhenClicked) {
        setFocusPolicy(Qt::ClickFocus);
    }
    winId();
    m_windowing.prepare(windowHandle(), focus);
}

DesktopPanel::~DesktopPanel() {
    if (windowHandle() != nullptr) {
        m_windowing.release(windowHandle());
    }
}

QRectF DesktopPanel::frame() const {
    return DesktopSpace::current().fromToolkit(QRectF(geometry()));
}

void DesktopPanel::setFrameOrigin(QPointF origin) {
    const QRectF target = DesktopSpace::current().toToolkit(QRectF(origin, QSizeF(size())));
    const QPoint topLeft(static_cast<int>(std::lround(target.x())),
                         static_cast<int>(std::lround(target.y())));
    if (topLeft != pos()) {
        move(topLeft);
    }
}

void DesktopPanel::setContentSize(QSizeF points) {
    // The top edge stays where it is: a tile grows downward and to the right, as it is drawn.
    const QRectF before = frame();
    const QSize whole(static_cast<int>(std::lround(points.width())),
                      static_cast<int>(std::lround(points.height())));
    if (whole == size()) {
        return;
    }
    resize(whole);
    setFrameOrigin(QPointF(before.x(), before.y() + before.height() - whole.height()));
    update();
}

void DesktopPanel::fadeTo(double opacity) {
    auto* animation = new QPropertyAnimation(this, "windowOpacity", this);
    animation->setDuration(static_cast<int>(fadeDuration.count()));
    animation->setEndValue(opacity);
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

void DesktopPanel::slide(QPointF origin) {
    if (m_slide) {
        m_slide->stop();
        m_slide->deleteLater();
    }
    auto* animation = new QVariantAnimation(this);
    animation->setDuration(static_cast<int>(slideDuration.count()));
    animation->setEasingCurve(QEasingCurve::OutCubic);
    animation->setStartValue(frame().topLeft());
    animation->setEndValue(origin);
    connect(animation, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& value) { setFrameOrigin(value.toPointF()); });
    connect(animation, &QVariantAnimation::finished, this, &DesktopPanel::slideFinished);
    m_slide = animation;
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

bool DesktopPanel::isSliding() const {
    return m_slide && m_slide->state() == QAbstractAnimation::Running;
}

void DesktopPanel::setContent(const WidgetFace& face, const FaceContext& context) {
    m_face = &face;
    const bool rescaled = context.scale != m_context.scale;
    m_context = context;
    m_context.reserved = stackReserve();
    m_context.glass.brightBehind = context.glass.finish == GlassLook::Finish::Liquid &&
                                   !m_lens.isNull() && GlassScene::isBright(m_lens);
    m_backgroundStale = true;
    if (rescaled) {
        updateShape();
    }
    update();
}

void DesktopPanel::setBackdropSource(const WallpaperBackdrop* source, LiquidRenderQueue* lenses) {
    if (m_backdropSource != nullptr) {
        disconnect(m_backdropSource, nullptr, this, nullptr);
    }
    if (m_lenses != nullptr) {
        disconnect(m_lenses, nullptr, this, nullptr);
    }
    m_backdropSource = source;
    m_lenses = lenses;
    if (source != nullptr) {
        connect(source, &WallpaperBackdrop::changed, this, &DesktopPanel::backdropChanged);
    }
    if (lenses != nullptr) {
        connect(lenses, &LiquidRenderQueue::rendered, this,
                [this](const QString& key, const QImage& lens) {
                    if (key == m_instanceID.toString() && lens.cacheKey() != m_lens.cacheKey()) {
                        m_lens = lens;
                        m_context.glass.brightBehind = GlassScene::isBright(lens);
                        m_backgroundStale = true;
                        update();
                    }
                });
    }
    backdropChanged();
}

// The lens for the tile where it stands; none is asked for while it is dragged, so that moving
// a tile costs nothing, and the last one stays up meanwhile.
void DesktopPanel::askForLens(const GlassBackdrop& backdrop) {
    if (m_lenses == nullptr || m_context.glass.finish != GlassLook::Finish::Liquid ||
        m_drag.hasMoved()) {
        return;
    }
    const QRectF tile = backdrop.panel.adjusted(margin, margin, -margin, -margin);
    const LiquidRequest request{
        .backdrop = backdrop.sharp,
        .identity = backdrop.identity,
        .source = backdrop.sourceIn(backdrop.sharp, tile),
        .params = {.size = m_context.points,
                   .scale = m_context.devicePixelRatio > 0 ? m_context.devicePixelRatio : 1.0,
                   .cornerRadius = Metrics::tileCornerRadius * m_context.scale,
                   .frost = std::clamp(m_context.glass.strength, 0.0, 1.0),
                   .lightGlass = m_context.glass.shade == GlassLook::Shade::Light,
                   .focused = false},
    };
    m_lenses->request(m_instanceID.toString(), request);
}

void DesktopPanel::backdropChanged() {
    m_backgroundStale = true;
    updateShape();
    update();
}

const QImage& DesktopPanel::backdropBackground() {
    if (m_backgroundStale) {
        m_backgroundStale = false;
        const auto backdrop =
            m_backdropSource != nullptr ? m_backdropSource->behind(geometry()) : std::nullopt;
        if (backdrop) {
            askForLens(*backdrop);
        }
        const bool liquid = m_context.glass.finish == GlassLook::Finish::Liquid;
        m_background = backdrop ? m_renderer.panelBackground(
                                      QSizeF(tileRectInWidget().size()), m_context, *backdrop,
                                      !m_windowing.isCompositing(), liquid ? m_lens : QImage())
                                : QImage();
    }
    return m_background;
}

void DesktopPanel::setPace(AnimationPace pace, bool allowsTransitions) {
    if (pace == m_context.pace && allowsTransitions == m_context.surface.allowsTransitions) {
        return;
    }
    m_context.pace = pace;
    m_context.surface.allowsTransitions = allowsTransitions;
    if (m_face != nullptr) {
        update(tileRectInWidget());
    }
}

void DesktopPanel::setNow(const QDateTime& now) {
    if (now == m_context.now) {
        return;
    }
    const QDateTime before = m_context.now;
    m_context.now = now;
    if (m_face == nullptr) {
        return;
    }
    // Only what the face says changed, grown to whole pixels: a clock's seconds, not the tile.
    const QRectF changed =
        m_renderer.changedRect(QRectF(tileRectInWidget()), *m_face, m_context, before, now);
    update(changed.toAlignedRect().adjusted(-1, -1, 1, 1) & tileRectInWidget());
}

void DesktopPanel::setSceneTime(double sceneTime) {
    m_context.sceneTime = sceneTime;
    if (m_face != nullptr && isVisible()) {
        update(tileRectInWidget());
    }
}

void DesktopPanel::contentChanged() {
    if (m_face != nullptr) {
        update(tileRectInWidget());
    }
}

void DesktopPanel::setHighlight(double opacity) {
    if (opacity != m_highlight) {
        m_highlight = opacity;
        update();
    }
}

void DesktopPanel::setStackIndicator(int index, int count) {
    if (index != m_stackIndex || count != m_stackCount) {
        m_stackIndex = index;
        m_stackCount = count;
        m_context.reserved = stackReserve();
        update(tileRectInWidget());
    }
}

QMarginsF DesktopPanel::stackReserve() const {
    if (m_stackCount < 2) {
        return {};
    }
    return {stackGutter, 0, stackGutter, stackGutter};
}

// Dots in the tile's bottom band and arrows in its side bands: the zones where clicks step the
// stack instead of running the tile's action.
void DesktopPanel::paintStackIndicator(QPainter& painter) const {
    if (m_stackCount < 2) {
        return;
    }
    const QRectF tile(tileRectInWidget());
    const qreal scale = m_context.scale > 0 ? m_context.scale : 1.0;
    // The middle of the bands the face leaves free: its padding plus the gutter.
    const qreal band = (TileRenderer::contentPadding + stackGutter) * scale;
    const qreal dot = 5 * scale;
    const qreal pitch = 9 * scale;
    const qreal width = (m_stackCount - 1) * pitch;
    const qreal y = tile.bottom() - band / 2;
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < m_stackCount; ++i) {
        painter.setBrush(QColor(255, 255, 255, i == m_stackIndex ? 230 : 90));
        painter.drawEllipse(QPointF(tile.center().x() - width / 2 + i * pitch, y), dot / 2,
                            dot / 2);
    }
    if (!m_hovered) {
        return;
    }
    painter.setPen(
        QPen(QColor(255, 255, 255, 200), 2.0 * scale, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    const qreal cy = tile.center().y() - stackGutter * scale / 2;
    const qreal half = 2.5 * scale;
    const qreal rise = 7 * scale;
    const qreal left = tile.left() + band / 2 - half;
    const qreal right = tile.right() - band / 2 + half;
    painter.drawPolyline(
        QPolygonF{{left + 2 * half, cy - rise}, {left, cy}, {left + 2 * half, cy + rise}});
    painter.drawPolyline(
        QPolygonF{{right - 2 * half, cy - rise}, {right, cy}, {right - 2 * half, cy + rise}});
}

QRect DesktopPanel::tileRectInWidget() const {
    const int m = static_cast<int>(margin);
    return rect().adjusted(m, m, -m, -m);
}

void DesktopPanel::paintEvent(QPaintEvent* event) {
    if (m_face == nullptr) {
        return;
    }
    const std::chrono::nanoseconds start = m_clock.uptime();
    paintTile(event->rect());
    if (onPainted) {
        onPainted(m_clock.uptime() - start);
    }
}

void DesktopPanel::paintTile(const QRect& dirty) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(dirty, Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    if (m_context.devicePixelRatio != devicePixelRatioF()) {
        m_context.devicePixelRatio = devicePixelRatioF();
        m_backgroundStale = true;
    }
    const QRectF tile(tileRectInWidget());
    if (const QImage& background = backdropBackground(); !background.isNull()) {
        painter.drawImage(QPointF(0, 0), background);
        m_renderer.paintFace(painter, tile, *m_face, m_context);
        if (m_highlight > 0) {
            TileRenderer::paintHighlight(painter, tile, m_context.accent(), m_highlight);
        }
    } else {
        m_renderer.paint(painter, tile, *m_face, m_context, m_highlight);
    }
    paintStackIndicator(painter);
}

void DesktopPanel::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    const auto space = DesktopSpace::current();
    const auto needsShift = moveNeedsShift && moveNeedsShift() ? DragTracker::MoveNeedsShift::Yes
                                                               : DragTracker::MoveNeedsShift::No;
    m_drag.press(space.fromToolkit(event->globalPosition()), frame().topLeft(), needsShift);
    m_dragNeighbours = snapCandidates ? snapCandidates() : QList<QRectF>();
    event->accept();
}

void DesktopPanel::mouseMoveEvent(QMouseEvent* event) {
    if (!m_drag.isPressed()) {
        return;
    }
    const bool wasMoving = m_drag.hasMoved();
    const auto shift = event->modifiers().testFlag(Qt::ShiftModifier) ? DragTracker::Shift::Down
                                                                      : DragTracker::Shift::Up;
    const auto origin =
        m_drag.move(DesktopSpace::current().fromToolkit(event->globalPosition()), shift);
    if (!origin) {
        return;
    }
    if (!wasMoving && onUserDrag) {
        onUserDrag();
    }
    // The display under the tile now, not the one the drag began on, gives the edges to snap to.
    const QRectF tile = QRectF(*origin, QSizeF(size())).adjusted(margin, margin, -margin, -margin);
    const auto bounds = snapBounds ? snapBounds(tile) : std::nullopt;
    setFrameOrigin(DragTracker::snapped(*origin, QSizeF(size()), m_dragNeighbours, bounds));
}

void DesktopPanel::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !m_drag.isPressed()) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    switch (m_drag.release()) {
    case DragTracker::Release::DragEnded:
        if (onDragEnded) {
            onDragEnded();
        }
        break;
    case DragTracker::Release::Click:
        if (onPlainClick) {
            const QPointF local = event->position();
            onPlainClick(QPointF(local.x(), height() - local.y()));
        }
        break;
    case DragTracker::Release::Nothing:
        break;
    }
}

void DesktopPanel::contextMenuEvent(QContextMenuEvent* event) {
    if (!contextMenuProvider) {
        return;
    }
    QMenu* menu = contextMenuProvider();
    if (menu == nullptr) {
        return;
    }
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(event->globalPos());
}

void DesktopPanel::wheelEvent(QWheelEvent* event) {
    if (!onScroll) {
        event->ignore();
        return;
    }
    StackScrollGesture::Event scroll;
    const QPointF delta = !event->pixelDelta().isNull() ? QPointF(event->pixelDelta())
                                                        : QPointF(event->angleDelta()) / 8.0;
    scroll.deltaX = delta.x();
    scroll.deltaY = delta.y();
    switch (event->phase()) {
    case Qt::NoScrollPhase:
        scroll.phase = StackScrollGesture::Phase::none;
        break;
    case Qt::ScrollBegin:
        scroll.phase = StackScrollGesture::Phase::began;
        break;
    case Qt::ScrollUpdate:
        scroll.phase = StackScrollGesture::Phase::changed;
        break;
    case Qt::ScrollEnd:
        scroll.phase = StackScrollGesture::Phase::ended;
        break;
    case Qt::ScrollMomentum:
        scroll.phase = StackScrollGesture::Phase::changed;
        scroll.momentum = true;
        break;
    }
    scroll.at = m_clock.uptime();
    event->setAccepted(onScroll(scroll));
}

void DesktopPanel::keyPressEvent(QKeyEvent* event) {
    const TileBehaviour::Key key{
        .key = event->key(), .modifiers = event->modifiers(), .text = event->text()};
    if (!onKey || !onKey(key)) {
        QWidget::keyPressEvent(event);
    }
}

void DesktopPanel::focusInEvent(QFocusEvent* event) {
    if (onFocusChange) {
        onFocusChange(true);
    }
    QWidget::focusInEvent(event);
}

void DesktopPanel::focusOutEvent(QFocusEvent* event) {
    if (onFocusChange) {
        onFocusChange(false);
    }
    QWidget::focusOutEvent(event);
}

void DesktopPanel::dragEnterEvent(QDragEnterEvent* event) {
    event->setAccepted(acceptsDrop && event->mimeData() != nullptr &&
                       acceptsDrop(*event->mimeData()));
}

void DesktopPanel::dragMoveEvent(QDragMoveEvent* event) {
    event->setAccepted(acceptsDrop && event->mimeData() != nullptr &&
                       acceptsDrop(*event->mimeData()));
}

void DesktopPanel::dropEvent(QDropEvent* event) {
    const bool taken = onDrop && event->mimeData() != nullptr && onDrop(*event->mimeData());
    if (taken) {
        event->acceptProposedAction();
    } else {
        event->ignore();
    }
}

WidgetFace::Spot DesktopPanel::spotAt(QPointF point) const {
    if (m_face == nullptr) {
        return {};
    }
    return TileRenderer::spotAt(QRectF(tileRectInWidget()),
                                QPointF(point.x(), height() - point.y()), *m_face, m_context);
}

bool DesktopPanel::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) {
        return QWidget::event(event);
    }
    const auto* help = static_cast<QHelpEvent*>(event);
    const QString text = m_face == nullptr ? QString()
                                           : TileRenderer::spotAt(QRectF(tileRectInWidget()),
                                                                  help->pos(), *m_face, m_context)
                                                 .help;
    if (text.isEmpty() || m_drag.isPressed()) {
        QToolTip::hideText();
        event->ignore();
    } else {
        QToolTip::showText(help->globalPos(), text, this);
    }
    return true;
}

void DesktopPanel::enterEvent(QEnterEvent* event) {
    setHovered(true);
    QWidget::enterEvent(event);
}

void DesktopPanel::leaveEvent(QEvent* event) {
    setHovered(false);
    QWidget::leaveEvent(event);
}

// A panel shown or hidden under a still pointer gets no enter or leave: a stack member brought to
// the front takes the pointer's state, and one sent back lets go of it.
void DesktopPanel::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    setHovered(rect().contains(mapFromGlobal(QCursor::pos())));
}

void DesktopPanel::hideEvent(QHideEvent* event) {
    setHovered(false);
    QWidget::hideEvent(event);
}

void DesktopPanel::setHovered(bool hovered) {
    if (hovered == m_hovered) {
        return;
    }
    m_hovered = hovered;
    if (m_stackCount > 1) {
        update(tileRectInWidget());
    }
    if (onHoverChange) {
        onHoverChange(hovered);
    }
}

void DesktopPanel::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_backgroundStale = true;
    updateShape();
}

// The picture behind the glass moves with the panel; a panel standing still never makes it again.
void DesktopPanel::moveEvent(QMoveEvent* event) {
    QWidget::moveEvent(event);
    if (m_backdropSource != nullptr) {
        m_backgroundStale = true;
        update();
    }
}

// Without a compositor the transparent margin would show as black: the window is cut to its
// tile. Over the desktop's picture it keeps a band of its margin, drawn with that picture, so that
// its corners are smooth and a little of its shadow shows; the band is narrower than half the
// spacing, so no window covers a neighbouring tile.
void DesktopPanel::updateShape() {
    if (m_windowing.isCompositing()) {
        clearMask();
        return;
    }
    const bool overPicture = m_backdropSource != nullptr && m_backdropSource->behind(geometry());
    const qreal band = overPicture ? shapeBand : 0;
    QPainterPath path;
    const qreal radius = Metrics::tileCornerRadius * m_context.scale + band;
    path.addRoundedRect(QRectF(tileRectInWidget()).adjusted(-band, -band, band, band), radius,
                        radius);
    setMask(QRegion(path.toFillPolygon().toPolygon()));
}

} // namespace tw
