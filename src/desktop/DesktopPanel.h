// The window of one tile on the desktop: frameless and translucent, its frame the tile grown by
// 22 points on every side, kept below normal windows; it tells clicks from drags, snaps while
// dragged, offers its context menu and draws its face only when the face's picture changes.
#pragma once

#include "desktop/DragTracker.h"
#include "faces/FaceContext.h"
#include "faces/WidgetFace.h"
#include "grid/StackScrollGesture.h"
#include "model/Metrics.h"
#include "model/TileBehaviour.h"
#include "platform/DesktopWindowing.h"

#include <QPointer>
#include <QUuid>
#include <QVariantAnimation>
#include <QWidget>

#include <chrono>
#include <functional>
#include <optional>

class QMenu;

namespace tw {

class Clock;
class TileRenderer;
class LiquidRenderQueue;
struct GlassBackdrop;
class WallpaperBackdrop;

class DesktopPanel final : public QWidget {
    Q_OBJECT
public:
    static constexpr double margin = Metrics::panelMargin;
    static constexpr std::chrono::milliseconds slideDuration{180};
    // What a stack member's face gives up, beyond its padding, on the sides (for the arrows) and
    // at the bottom (for the dots), in points.
    static constexpr qreal stackGutter = 8;
    // How much of its margin a panel keeps without a compositor, over the desktop's picture.
    static constexpr qreal shapeBand = Metrics::cellSpacing / 2 - 1;

    // `clock` times the wheel's pauses; it must outlive the panel.
    DesktopPanel(const QUuid& instanceID, DesktopWindowing& windowing,
                 DesktopWindowing::Focus focus, TileRenderer& renderer, const Clock& clock);
    ~DesktopPanel() override;

    QUuid instanceID() const { return m_instanceID; }

    // The panel's frame and its tile, in internal desktop points.
    QRectF frame() const;
    QRectF tileRect() const { return frame().adjusted(margin, margin, -margin, -margin); }
    // Lands on whole device pixels, which keeps text and thin lines crisp.
    void setFrameOrigin(QPointF origin);
    void setContentSize(QSizeF size);
    static constexpr std::chrono::milliseconds fadeDuration{200};
    // Fades the whole panel to `opacity` over `fadeDuration`.
    void fadeTo(double opacity);
    // Moves the panel to `origin` over `slideDuration`.
    void slide(QPointF origin);
    bool isSliding() const;

    void setContent(const WidgetFace& face, const FaceContext& context);
    const FaceContext& context() const { return m_context; }
    // What the face offers at a point of the panel in internal orientation, as onPlainClick
    // gives it.
    WidgetFace::Spot spotAt(QPointF point) const;
    // A new time for the face: repaints only the part of the tile the face says changed.
    void setNow(const QDateTime& now);
    // How fast the face's scenes may run and whether its content may change with a transition;
    // the glass stays as it is.
    void setPace(AnimationPace pace, bool allowsTransitions);
    // A new frame of the face's scene: the tile is drawn again while the panel is shown.
    void setSceneTime(double sceneTime);
    // New figures for the face: the tile is drawn again, its glass is not.
    void contentChanged();
    // The ring around a new tile, 0 (none) to 1.
    void setHighlight(double opacity);
    double highlight() const { return m_highlight; }
    // Where the panel finds the desktop's picture behind it, and follows its changes; none draws
    // the glass without it.
    // Liquid glass asks `lenses` for its lens picture; without them it draws frosted.
    void setBackdropSource(const WallpaperBackdrop* source, LiquidRenderQueue* lenses = nullptr);
    // The picture behind the panel changed, or its place: the background is made again.
    void backdropChanged();
    // A member of a stack shows its place among `count` as dots, and arrows while hovered;
    // a count below 2 shows neither.
    void setStackIndicator(int index, int count);

    // Hooks the controller sets when it spawns the panel.
    std::function<QMenu*()> contextMenuProvider;
    std::function<void(bool)> onHoverChange;
    // The other tiles' rectangles, asked at the start of each drag, and the visible frame of the
    // display under a tile rectangle, asked at each step of it.
    std::function<QList<QRectF>()> snapCandidates;
    std::function<std::optional<QRectF>(const QRectF&)> snapBounds;
    std::function<bool()> moveNeedsShift;
    std::function<void()> onUserDrag;
    std::function<void()> onDragEnded;
    // A click at a point of the panel in internal orientation (y up from its bottom edge); true
    // when the click was used.
    std::function<bool(QPointF)> onPlainClick;
    std::function<bool(const StackScrollGesture::Event&)> onScroll;
    // After each paint, with the time it took.
    std::function<void(std::chrono::nanoseconds)> onPainted;
    // Typing into a tile that takes the keyboard, and its focus coming and going; true when the
    // key was used.
    std::function<bool(const TileBehaviour::Key&)> onKey;
    std::function<void(bool)> onFocusChange;
    // Whether something dragged over the tile is welcome, and taking it; drops reach a panel
    // only once it accepts them.
    std::function<bool(const QMimeData&)> acceptsDrop;
    std::function<bool(const QMimeData&)> onDrop;

Q_SIGNALS:
    // A slide reached its end.
    void slideFinished();

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void paintTile(const QRect& dirty);
    QRect tileRectInWidget() const;
    void paintStackIndicator(QPainter& painter) const;
    void setHovered(bool hovered);
    QMarginsF stackReserve() const;
    void updateShape();
    // The background over the desktop's picture, made when it is missing; null without one.
    const QImage& backdropBackground();
    void askForLens(const GlassBackdrop& backdrop);

    QUuid m_instanceID;
    DesktopWindowing& m_windowing;
    TileRenderer& m_renderer;
    const Clock& m_clock;
    const WidgetFace* m_face = nullptr;
    FaceContext m_context;
    double m_highlight = 0;
    int m_stackIndex = 0;
    int m_stackCount = 0;
    bool m_hovered = false;
    DragTracker m_drag;
    QList<QRectF> m_dragNeighbours;
    QPointer<QVariantAnimation> m_slide;
    const WallpaperBackdrop* m_backdropSource = nullptr;
    LiquidRenderQueue* m_lenses = nullptr;
    // The last lens picture received; it stays up while the next renders, and during a drag.
    QImage m_lens;
    QImage m_background;
    bool m_backgroundStale = true;
};

} // namespace tw
