#include "desktop/LockPanePreview.h"

#include "desktop/PaneInk.h"
#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "lockscreen/LockScreenPolicy.h"
#include "model/WidgetRegistry.h"
#include "text/L.h"

#include <QPainter>
#include <QPainterPath>

namespace tw {

namespace {

constexpr double padding = 28;

QString sentence(QString reason) {
    if (!reason.isEmpty()) {
        reason[0] = reason.at(0).toUpper();
        if (!reason.endsWith(QLatin1Char('.'))) {
            reason += QLatin1Char('.');
        }
    }
    return reason;
}

// A notice of whether widgets can stand above this lock screen; its height.
double paintAvailability(QPainter& painter, const QRectF& row,
                         const std::optional<QString>& unavailable, const FaceContext& base,
                         const PaneInk& ink) {
    const QColor signal = unavailable ? QColor(0xf0, 0xa2, 0x2e) : QColor(0x34, 0xc7, 0x59);
    const QString headline =
        unavailable ? L("lock.pane.unavailable",
                        QStringLiteral("Widgets cannot show on this desktop's lock screen"))
                    : L("lock.pane.available",
                        QStringLiteral("Widgets that may show appear when the screen locks"));
    const QString detail =
        unavailable ? sentence(*unavailable)
                    : L("lock.pane.availableDetail",
                        QStringLiteral("They only show; they take no clicks until you unlock."));
    const double text = row.width() - 76;
    const QFont bold = FaceKit::font(14, QFont::DemiBold);
    const QFont plain = FaceKit::font(12.5);
    const double height = std::max(
        56.0,
        28 + painter.boundingRect(QRectF(0, 0, text, 1000), Qt::TextWordWrap, headline).height() +
            QFontMetricsF(plain).lineSpacing() * 2.2);
    const QRectF box(row.topLeft(), QSizeF(row.width(), height));
    QColor fill = signal;
    fill.setAlpha(base.glass.shade == GlassLook::Shade::Light ? 34 : 46);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(box, 12, 12);
    const QRectF dot(box.x() + 18, box.y() + 16, 24, 24);
    painter.setBrush(signal);
    painter.drawEllipse(dot);
    painter.setPen(QColor(255, 255, 255));
    painter.setFont(FaceKit::font(16, QFont::Bold));
    painter.drawText(dot, Qt::AlignCenter,
                     unavailable ? QStringLiteral("!") : QStringLiteral("\u2713"));
    const QPointF words(box.x() + 58, box.y() + 14);
    const double first = PaneInk::paragraph(painter, words, text, headline, bold, ink.primary);
    PaneInk::paragraph(painter, words + QPointF(0, first + 4), text, detail, plain, ink.secondary);
    return height;
}

void paintWidgetList(QPainter& painter, const QRectF& area, const QList<WidgetInstance>& widgets,
                     const FaceContext& base, const PaneInk& ink) {
    painter.setPen(ink.secondary);
    painter.setFont(FaceKit::font(11.5, QFont::DemiBold));
    painter.drawText(QRectF(area.topLeft(), QSizeF(area.width(), 18)), Qt::AlignLeft,
                     L("lock.pane.widgets", QStringLiteral("Widgets")).toUpper());
    double y = area.y() + 26;
    for (const WidgetInstance& widget : widgets) {
        const std::optional<WidgetDefinition> definition =
            WidgetRegistry::builtInDefinition(widget.kind);
        if (!definition || y > area.bottom()) {
            continue;
        }
        const bool shows = LockScreenPolicy::shows(widget);
        const QString state = shows ? L("lock.pane.shows", QStringLiteral("Shows"))
                                    : L("lock.pane.hidden", QStringLiteral("Hidden"));
        painter.setPen(Qt::NoPen);
        painter.setBrush(shows ? base.accent() : ink.secondary);
        painter.drawEllipse(QRectF(area.x(), y + 5, 8, 8));
        painter.setPen(ink.primary);
        painter.setFont(FaceKit::font(13.5, QFont::Medium));
        painter.drawText(QRectF(area.x() + 16, y, area.width() - 80, 20),
                         Qt::AlignLeft | Qt::AlignVCenter, definition->metadata.displayName);
        painter.setPen(shows ? ink.primary : ink.secondary);
        painter.setFont(FaceKit::font(12.5));
        painter.drawText(QRectF(area.right() - 80, y, 80, 20), Qt::AlignRight | Qt::AlignVCenter,
                         state);
        y += 22;
        if (const std::optional<QString> note = LockScreenPolicy::privacyNote(widget.kind)) {
            y += PaneInk::paragraph(painter, QPointF(area.x() + 16, y), area.width() - 16, *note,
                                    FaceKit::font(11.5), ink.secondary);
        }
        y += 10;
    }
}

} // namespace

LockPanePreview::LockPanePreview(const QImage& wallpaper, const QSizeF& display)
    : m_wallpaper(wallpaper)
    , m_display(display) {}

QRectF LockPanePreview::paint(QPainter& painter, const QRectF& rect,
                              const QList<WidgetInstance>& widgets,
                              const std::optional<QString>& unavailable, const FaceContext& base,
                              const FaceRegistry& faces) {
    const PaneInk ink = PaneInk::of(base.glass.shade);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.fillRect(rect, ink.background);
    const QRectF inner = rect.adjusted(padding, padding, -padding, -padding);
    double y = inner.y();
    y += PaneInk::paragraph(painter, QPointF(inner.x(), y), inner.width(),
                            L("lock.pane.title", QStringLiteral("Lock Screen")),
                            FaceKit::font(24, QFont::Bold), ink.primary) +
         4;
    y += PaneInk::paragraph(
             painter, QPointF(inner.x(), y), inner.width(),
             L("lock.pane.lead", QStringLiteral("Widgets that are safe for anyone to see "
                                                "can stand above the lock screen, clear of "
                                                "its clock and controls.")),
             FaceKit::font(13.5), ink.secondary) +
         16;
    y +=
        paintAvailability(painter, QRectF(inner.x(), y, inner.width(), 0), unavailable, base, ink) +
        20;

    const QSizeF& display = m_display;
    const double previewWidth = inner.width() * 0.6;
    const QRectF preview(inner.x(), y, previewWidth,
                         previewWidth * display.height() / display.width());
    // The lock screen drawn at the preview's own pixels: sharp, and no larger than it needs.
    FaceContext small = base;
    small.devicePixelRatio = base.devicePixelRatio * preview.width() / display.width();
    if (!m_lock || m_lockRatio != small.devicePixelRatio) {
        m_lock.emplace(m_wallpaper, m_display, small.devicePixelRatio);
        m_lockRatio = small.devicePixelRatio;
    }
    QPainterPath frame;
    frame.addRoundedRect(preview, 10, 10);
    painter.save();
    painter.setClipPath(frame);
    painter.translate(preview.topLeft());
    painter.scale(preview.width() / display.width(), preview.height() / display.height());
    m_lock->paint(painter, widgets, small, faces);
    painter.restore();
    painter.setPen(QPen(ink.secondary, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(frame);
    if (unavailable) {
        // The preview shows what would be; over it, plainly, that this system shows none of it.
        const QString words = L("lock.pane.previewOnly", QStringLiteral("Preview only"));
        painter.setFont(FaceKit::font(12, QFont::DemiBold));
        const double width = QFontMetricsF(painter.font()).horizontalAdvance(words) + 24;
        const QRectF badge(preview.x() + 10, preview.bottom() - 34, width, 24);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0, 0, 0, 150));
        painter.drawRoundedRect(badge, 12, 12);
        painter.setPen(QColor(255, 255, 255));
        painter.drawText(badge, Qt::AlignCenter, words);
    }
    paintWidgetList(
        painter,
        QRectF(preview.right() + 24, y, inner.right() - preview.right() - 24, inner.bottom() - y),
        widgets, base, ink);
    painter.restore();
    return preview;
}

} // namespace tw
