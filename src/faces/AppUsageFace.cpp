#include "faces/AppUsageFace.h"

#include "desk/AppUsageView.h"
#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/PictureCache.h"
#include "faces/ReadingKit.h"
#include "text/L.h"

#include <QImageReader>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace tw {

namespace {

// Less than this is not worth a row: the list fills after a few minutes.
constexpr double shownAtLeast = 60;

QString headline(AppUsageRange range) {
    switch (range) {
    case AppUsageRange::today:
        return L("appusage.top.today", QStringLiteral("Most used · today"));
    case AppUsageRange::week:
        return L("appusage.top.week", QStringLiteral("Most used · 7 days"));
    case AppUsageRange::last24h:
        break;
    }
    return L("appusage.top.24h", QStringLiteral("Most used · 24 h"));
}

QString rangeLabel(AppUsageRange range) {
    switch (range) {
    case AppUsageRange::today:
        return L("appusage.range.today", QStringLiteral("Today"));
    case AppUsageRange::week:
        return L("appusage.range.7d", QStringLiteral("7 days"));
    case AppUsageRange::last24h:
        break;
    }
    return L("appusage.range.24h", QStringLiteral("24 hours"));
}

std::optional<AppCategory> categoryOfRow(const AppUsageRow& row) {
    return row.appID.startsWith(QLatin1String("cat:"))
               ? appCategoryWords.parse(QStringView(row.appID).mid(4))
               : std::nullopt;
}

QColor categoryColor(AppCategory category) {
    switch (category) {
    case AppCategory::work:
        return QColor(0x0A84FF);
    case AppCategory::communication:
        return QColor(0x30D158);
    case AppCategory::web:
        return QColor(0x64D2FF);
    case AppCategory::creative:
        return QColor(0xFF375F);
    case AppCategory::entertainment:
        return QColor(0xFF9F0A);
    case AppCategory::other:
        break;
    }
    return QColor(0x8E8E93);
}

QString categorySymbol(AppCategory category) {
    switch (category) {
    case AppCategory::work:
        return QStringLiteral("wrench.and.screwdriver");
    case AppCategory::communication:
        return QStringLiteral("tray.full");
    case AppCategory::web:
        return QStringLiteral("globe");
    case AppCategory::creative:
        return QStringLiteral("sparkles");
    case AppCategory::entertainment:
        return QStringLiteral("gamecontroller");
    case AppCategory::other:
        break;
    }
    return QStringLiteral("square.grid.2x2.fill");
}

QColor barColor(const FaceContext& context, const AppUsageRow& row) {
    const std::optional<AppCategory> category = categoryOfRow(row);
    return category ? categoryColor(*category) : context.accent();
}

// A steady colour per app for its letter where it has no icon.
QColor letterColor(const QString& id) {
    // Golden-ratio steps spread neighbouring hashes around the wheel.
    const double hue = std::fmod(static_cast<double>(qHash(id, 0) % 1000) * 0.618034, 1.0);
    return QColor::fromHsvF(static_cast<float>(hue), 0.55F, 0.78F);
}

void drawLetter(QPainter& painter, const QRectF& rect, const AppUsageRow& row) {
    QPainterPath tile;
    tile.addRoundedRect(rect, rect.width() * 0.24, rect.width() * 0.24);
    painter.fillPath(tile, letterColor(row.appID));
    painter.setPen(Qt::white);
    painter.setFont(FaceKit::font(rect.height() * 0.58, QFont::Bold));
    painter.drawText(rect, Qt::AlignCenter, row.name.left(1).toUpper());
}

void drawIcon(QPainter& painter, const FaceContext& context, const QRectF& rect,
              const AppUsageRow& row, const QString& icon) {
    if (const std::optional<AppCategory> category = categoryOfRow(row)) {
        FaceKit::drawSymbol(painter, context, categorySymbol(*category), rect,
                            categoryColor(*category), row.name);
        return;
    }
    if (icon.isEmpty() || context.pictures == nullptr) {
        drawLetter(painter, rect, row);
        return;
    }
    // Read once per file and size; a file that is no picture keeps the letter.
    const QSize pixels = (rect.size() * context.devicePixelRatio * context.scale).toSize();
    context.pictures->draw(
        painter, rect,
        QStringLiteral("appicon:%1:%2x%3").arg(icon).arg(pixels.width()).arg(pixels.height()),
        context.devicePixelRatio * context.scale, [&](QPainter& inside) {
            QImageReader reader(icon);
            reader.setScaledSize(pixels);
            const QImage image = reader.read();
            const QRectF at(QPointF(0, 0), rect.size());
            if (image.isNull()) {
                drawLetter(inside, at, row);
            } else {
                inside.setRenderHint(QPainter::SmoothPixmapTransform);
                inside.drawImage(at, image);
            }
        });
}

// One app: its icon, name and time on a line, and its share of the longest as a bar under them.
void drawRow(QPainter& painter, const FaceContext& context, const QRectF& rect,
             const AppUsageRow& row, const QString& icon, double longest) {
    const qreal side = std::min(rect.height(), 22.0);
    drawIcon(painter, context, QRectF(rect.left(), rect.center().y() - side / 2, side, side), row,
             icon);
    const QRectF text = rect.adjusted(side + 7, 0, 0, 0);
    const qreal pixel = std::clamp(rect.height() * 0.46, 9.0, 12.5);
    const qreal bar = std::max(3.0, rect.height() * 0.16);
    const QRectF line(text.left(), text.top(), text.width(), text.height() - bar - 2);
    const QString time = AppUsageFace::durationText(row.seconds);
    const QFont timeFont = FaceKit::font(pixel, QFont::DemiBold);
    const qreal timeWidth = QFontMetricsF(timeFont).horizontalAdvance(time) + 4;
    FaceKit::drawElided(painter, context, line.adjusted(0, 0, -timeWidth, 0), row.name,
                        FaceKit::font(pixel, QFont::Medium), context.primary(),
                        Qt::AlignLeft | Qt::AlignBottom);
    FaceKit::drawElided(painter, context, line, time, timeFont, context.secondary(),
                        Qt::AlignRight | Qt::AlignBottom);
    FaceKit::drawBar(painter, QRectF(text.left(), text.bottom() - bar, text.width(), bar),
                     longest > 0 ? row.seconds / longest : 0, barColor(context, row),
                     ReadingKit::track(context));
}

void drawRows(QPainter& painter, const FaceContext& context, const QRectF& rect,
              const AppUsageView& view, int most) {
    const QList<AppUsageRow>& rows = view.summary.rows;
    const int count = std::min<int>(most, static_cast<int>(rows.size()));
    if (count == 0) {
        return;
    }
    const qreal pitch = std::min(rect.height() / count, 30.0);
    const double longest = rows.first().seconds;
    for (int i = 0; i < count; ++i) {
        drawRow(painter, context,
                QRectF(rect.left(), rect.top() + i * pitch, rect.width(), pitch - 3), rows.at(i),
                view.icons.value(rows.at(i).appID), longest);
    }
}

// The total as the hero with the range under it.
void drawTotal(QPainter& painter, const FaceContext& context, const QRectF& rect,
               const AppUsageView& view, qreal hero) {
    const QRectF figure(rect.left(), rect.top(), rect.width(), hero * 1.15);
    FaceKit::drawFitted(painter, context, figure, AppUsageFace::durationText(view.summary.total),
                        QFont::Bold, context.primary(), Qt::AlignLeft | Qt::AlignVCenter, hero);
    FaceKit::drawElided(painter, context,
                        QRectF(rect.left(), figure.bottom(), rect.width(), hero * 0.6),
                        rangeLabel(view.settings.range), FaceKit::font(std::max(hero * 0.42, 9.5)),
                        context.secondary(), Qt::AlignLeft | Qt::AlignTop);
}

// Today's time in the goal's category against the goal: focus fills up to it, a limit turns to
// the warning hue once passed.
void drawGoal(QPainter& painter, const FaceContext& context, const QRectF& rect,
              const AppUsageView& view) {
    const double goal = view.settings.goalSeconds();
    const double fraction = goal > 0 ? view.goalDone / goal : 0;
    const bool limit = view.settings.goal == AppUsageGoal::limit;
    const QColor fill = limit
                            ? (fraction >= 1 ? ReadingKit::warning(context)
                                             : categoryColor(AppCategory::entertainment))
                            : (fraction >= 1 ? QColor(0x30D158) : categoryColor(AppCategory::work));
    const qreal side = std::min(rect.width(), rect.height());
    const QRectF ring(rect.center().x() - side / 2, rect.center().y() - side / 2, side, side);
    const qreal line = std::max(4.0, side * 0.1);
    FaceKit::drawRing(painter, ring, line, std::min(fraction, 1.0), fill,
                      ReadingKit::track(context));
    const QRectF inside = ring.adjusted(line * 1.6, line * 1.6, -line * 1.6, -line * 1.6);
    FaceKit::drawFitted(painter, context,
                        QRectF(inside.left(), inside.center().y() - inside.height() * 0.36,
                               inside.width(), inside.height() * 0.42),
                        AppUsageFace::durationText(view.goalDone), QFont::Bold, context.primary(),
                        Qt::AlignCenter, side * 0.2);
    const QString of = (limit ? L("appusage.goal.limitOf", QStringLiteral("of %1 h play"))
                              : L("appusage.goal.focusOf", QStringLiteral("of %1 h work")))
                           .arg(view.settings.goalHours);
    FaceKit::drawFitted(painter, context,
                        QRectF(inside.left(), inside.center().y() + inside.height() * 0.06,
                               inside.width(), inside.height() * 0.28),
                        of, QFont::Medium, context.secondary(), Qt::AlignCenter, side * 0.11);
}

// The share of each of the first apps, side by side in one bar.
void drawStack(QPainter& painter, const FaceContext& context, const QRectF& rect,
               const AppUsageView& view) {
    QPainterPath clip;
    clip.addRoundedRect(rect, rect.height() / 2, rect.height() / 2);
    painter.save();
    painter.setClipPath(clip);
    painter.fillRect(rect, ReadingKit::track(context));
    qreal x = rect.left();
    const double total = view.summary.total;
    for (qsizetype i = 0; i < view.summary.rows.size() && total > 0; ++i) {
        const AppUsageRow& row = view.summary.rows.at(i);
        const qreal width = rect.width() * row.seconds / total;
        QColor color = categoryOfRow(row) ? barColor(context, row) : letterColor(row.appID);
        painter.fillRect(QRectF(x, rect.top(), std::max(width - 1, 0.0), rect.height()), color);
        x += width;
    }
    painter.restore();
}

void drawEmpty(QPainter& painter, const FaceContext& context, const QRectF& rect) {
    const bool tiny = context.size == WidgetSize::small;
    ReadingKit::drawNotice(
        painter, context, rect, QStringLiteral("chart.bar.xaxis"),
        L("appusage.empty.title", QStringLiteral("Counting app time")),
        tiny ? QString()
             : L("appusage.empty.sub",
                 QStringLiteral("The most used apps appear after a few minutes.")));
}

} // namespace

std::optional<TimeGrain> AppUsageFace::grain(WidgetSize, const WidgetSettings&) const {
    return std::nullopt;
}

QString AppUsageFace::durationText(double seconds) {
    if (seconds < 60) {
        return L("appusage.lt1.short", QStringLiteral("<1m"));
    }
    const qint64 minutes = static_cast<qint64>(std::floor(seconds / 60));
    if (minutes < 60) {
        return L("appusage.minutes", QStringLiteral("%1m")).arg(minutes);
    }
    return L("appusage.hoursMinutes", QStringLiteral("%1h %2m"))
        .arg(minutes / 60)
        .arg(minutes % 60, 2, 10, QLatin1Char('0'));
}

const AppUsageView* AppUsageFace::shown(const FaceContext& context, AppUsageView& sample) {
    const AppUsageView* view =
        context.appUsage != nullptr ? context.appUsage->viewFor(context.instanceID) : nullptr;
    if (view == nullptr && context.surface.showsDemoContent) {
        sample = sampleAppUsageView(AppUsageSettings::read(context.settings), context.now);
        return &sample;
    }
    return view;
}

void AppUsageFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    AppUsageView sample;
    const AppUsageView* view = shown(context, sample);
    if (view == nullptr || view->summary.total < shownAtLeast) {
        drawEmpty(painter, context, rect);
        return;
    }
    const bool goal = view->settings.goal != AppUsageGoal::off;
    switch (context.size) {
    case WidgetSize::small: {
        drawTotal(painter, context, rect.adjusted(0, 0, 0, -rect.height() * 0.4), *view,
                  rect.height() * 0.3);
        const AppUsageRow& first = view->summary.rows.first();
        const qreal side = rect.height() * 0.22;
        const QRectF line(rect.left(), rect.bottom() - side * 2.0, rect.width(), side);
        drawIcon(painter, context, QRectF(line.topLeft(), QSizeF(side, side)), first,
                 view->icons.value(first.appID));
        FaceKit::drawElided(painter, context, line.adjusted(side + 5, 0, 0, 0), first.name,
                            FaceKit::font(side * 0.62, QFont::Medium), context.primary(),
                            Qt::AlignLeft | Qt::AlignVCenter);
        drawStack(painter, context,
                  QRectF(rect.left(), rect.bottom() - side * 0.45, rect.width(), side * 0.45),
                  *view);
        return;
    }
    case WidgetSize::wide:
    case WidgetSize::banner: {
        const qreal left =
            context.size == WidgetSize::wide ? rect.width() * 0.34 : rect.width() * 0.28;
        drawTotal(painter, context, QRectF(rect.left(), rect.top(), left - 8, rect.height() * 0.7),
                  *view, std::min(rect.height() * 0.34, 28.0));
        drawStack(painter, context, QRectF(rect.left(), rect.bottom() - 6, left - 12, 6), *view);
        drawRows(painter, context, rect.adjusted(left, 0, 0, 0), *view, 3);
        return;
    }
    case WidgetSize::large: {
        const qreal header = rect.height() * 0.3;
        const QRectF top(rect.left(), rect.top(), rect.width(), header);
        FaceKit::drawElided(painter, context, QRectF(top.left(), top.top(), top.width(), 16),
                            headline(view->settings.range), FaceKit::font(12, QFont::DemiBold),
                            context.accent(), Qt::AlignLeft | Qt::AlignTop);
        const qreal ringSide = goal ? header : 0;
        drawTotal(painter, context,
                  QRectF(top.left(), top.top() + 18, top.width() - ringSide - 6, header - 18),
                  *view, std::min(header * 0.5, 26.0));
        if (goal) {
            drawGoal(painter, context,
                     QRectF(top.right() - ringSide, top.top(), ringSide, ringSide), *view);
        }
        drawRows(painter, context, rect.adjusted(0, header + 8, 0, 0), *view, 4);
        return;
    }
    default: {
        const qreal left = rect.width() * 0.36;
        const QRectF column(rect.left(), rect.top(), left - 14, rect.height());
        FaceKit::drawFitted(painter, context,
                            QRectF(column.left(), column.top(), column.width(), 16),
                            headline(view->settings.range), QFont::DemiBold, context.accent(),
                            Qt::AlignLeft | Qt::AlignTop, 12);
        if (goal) {
            drawTotal(painter, context,
                      QRectF(column.left(), column.top() + 20, column.width(), 40), *view, 22);
            const qreal side = std::min(column.width(), column.bottom() - column.top() - 78);
            drawGoal(painter, context,
                     QRectF(column.left(), column.bottom() - side, column.width(), side), *view);
        } else {
            drawTotal(painter, context,
                      QRectF(column.left(), column.top() + 24, column.width(), 70), *view, 34);
            drawStack(painter, context,
                      QRectF(column.left(), column.bottom() - 8, column.width(), 8), *view);
        }
        drawRows(painter, context, rect.adjusted(left, 0, 0, 0), *view, appUsageTopCount);
        return;
    }
    }
}

} // namespace tw
