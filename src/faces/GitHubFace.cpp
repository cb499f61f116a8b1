#include "faces/GitHubFace.h"

#include "connected/GitHubBehaviour.h"
#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/ReadingKit.h"
#include "faces/ReadingText.h"
#include "market/MarketText.h"
#include "text/L.h"

#include <QLocale>
#include <QPainter>

namespace tw {

namespace {

struct Figure {
    QString symbol;
    QString value;
    QString label;
    QString link;
};

struct Line {
    QString symbol;
    QString title;
    QString detail;
    QString link;
};

struct Layout {
    QRectF header;
    QRectF figures;
    QRectF list;
};

constexpr qreal lineHeight = 29;

Layout layoutOf(const QRectF& rect, WidgetSize size) {
    const qreal h = rect.height();
    switch (size) {
    case WidgetSize::small:
        return {QRectF(rect.topLeft(), QSizeF(rect.width(), h * 0.24)),
                rect.adjusted(0, h * 0.28, 0, 0),
                {}};
    case WidgetSize::wide:
        return {QRectF(rect.topLeft(), QSizeF(rect.width(), h * 0.3)),
                rect.adjusted(0, h * 0.4, 0, 0),
                {}};
    case WidgetSize::banner:
        return {QRectF(rect.topLeft(), QSizeF(rect.width() * 0.36, h)),
                rect.adjusted(rect.width() * 0.4, h * 0.1, 0, -h * 0.1),
                {}};
    default: {
        const QRectF header(rect.topLeft(), QSizeF(rect.width(), 34));
        const QRectF figures(rect.left(), header.bottom() + 6, rect.width(), 42);
        return {header, figures, rect.adjusted(0, figures.bottom() - rect.top() + 8, 0, 0)};
    }
    }
}

QString ageText(const FaceContext& context, const QDateTime& when) {
    const QDateTime now = context.now.isValid() ? context.now : when;
    return when.isValid() ? MarketText::age(when, now) : QString();
}

QList<Figure> figuresOf(const GitHubFace::Shown& shown) {
    const GitHubActivity& activity = shown.state.activity;
    const GitHubTarget& target = *shown.target;
    const auto count = [](std::optional<int> value) {
        return value ? GitHubFace::compactCount(*value) : ReadingText::missing();
    };
    QList<Figure> figures{{QStringLiteral("star.fill"), count(activity.stars),
                           L("github.stars", QStringLiteral("Stars")),
                           target.isRepository() ? target.webAddress() + u"/stargazers"_qs
                                                 : target.webAddress() + u"?tab=repositories"_qs},
                          {QStringLiteral("arrow.triangle.pull"), count(activity.reviewCount),
                           L("github.toReview", QStringLiteral("To review")),
                           target.isRepository()
                               ? target.webAddress() + u"/pulls"_qs
                               : QStringLiteral("https://github.com/pulls/review-requested")}};
    if (target.isRepository()) {
        const QString tag = activity.release        ? activity.release->tag
                            : activity.hasNoRelease ? L("github.noRelease", QStringLiteral("None"))
                                                    : ReadingText::missing();
        figures.append(
            {QStringLiteral("tag.fill"), tag, L("github.release", QStringLiteral("Release")),
             activity.release ? activity.release->url : target.webAddress() + u"/releases"_qs});
    } else if (shown.state.notifications == GitHubNotifications::shown) {
        figures.append({QStringLiteral("bell.fill"), count(activity.notificationCount),
                        L("github.unread", QStringLiteral("Unread")),
                        QStringLiteral("https://github.com/notifications")});
    } else {
        figures.append({QStringLiteral("person.2.fill"), count(activity.followers),
                        L("github.followers", QStringLiteral("Followers")),
                        target.webAddress() + u"?tab=followers"_qs});
    }
    return figures;
}

QList<Line> linesOf(const FaceContext& context, const GitHubActivity& activity) {
    QList<Line> lines;
    const auto detail = [&](const GitHubItem& item) {
        QStringList parts;
        parts << (item.number > 0 ? item.repository + u" #"_qs + QString::number(item.number)
                                  : item.repository);
        if (!item.detail.isEmpty()) {
            parts << QString(item.detail).replace(QLatin1Char('_'), QLatin1Char(' '));
        }
        if (item.updated.isValid()) {
            parts << ageText(context, item.updated);
        }
        parts.removeAll(QString());
        return parts.join(u" · "_qs);
    };
    for (const GitHubItem& item : activity.notifications) {
        lines.append({QStringLiteral("bell.fill"), item.title, detail(item), item.url});
    }
    for (const GitHubItem& item : activity.reviews) {
        lines.append({QStringLiteral("arrow.triangle.pull"), item.title, detail(item), item.url});
    }
    return lines;
}

// Why the values shown may be old; empty while they are current.
QString staleness(const FaceContext& context, const GitHubState& state) {
    switch (state.status) {
    case GitHubStatus::offline:
        return L("github.offline", QStringLiteral("Offline · %1"))
            .arg(ageText(context, state.updated));
    case GitHubStatus::rateLimited:
        return L("github.limitedUntil", QStringLiteral("Rate limited until %1"))
            .arg(QLocale().toString(state.retryAt.toLocalTime().time(), QLocale::ShortFormat));
    case GitHubStatus::tokenRefused:
        return L("github.tokenRefusedShort", QStringLiteral("Token refused"));
    case GitHubStatus::failed:
        return state.message;
    case GitHubStatus::live:
    case GitHubStatus::loading:
    case GitHubStatus::notFound:
        break;
    }
    return {};
}

void drawHeader(QPainter& painter, const FaceContext& context, const QRectF& rect,
                const GitHubFace::Shown& shown) {
    const GitHubState& state = shown.state;
    const QString stale = staleness(context, state);
    QString title = state.activity.title.isEmpty() ? shown.target->key() : state.activity.title;
    // A narrow header keeps the repository's own name, which tells more than its owner's.
    if (rect.width() < 150 && shown.target->isRepository()) {
        title = title.section(QLatin1Char('/'), -1);
    }
    const bool twoLines = rect.height() >= 30;
    const qreal titleHeight = twoLines ? rect.height() * 0.55 : rect.height();
    const qreal icon = std::min(titleHeight, 18.0);
    FaceKit::drawSymbol(painter, context, context.metadata.symbol,
                        QRectF(rect.left(), rect.top() + (titleHeight - icon) / 2, icon, icon),
                        context.accent(), QStringLiteral("G"));
    const QRectF titleRect(rect.left() + icon + 5, rect.top(), rect.width() - icon - 5,
                           titleHeight);
    const qreal largest = std::min(titleHeight * 0.78, 15.0);
    const qreal titleSize =
        std::max(largest * 0.75,
                 FaceKit::fittingPixelSize(title, titleRect.size(), QFont::DemiBold, largest));
    FaceKit::drawElided(painter, context, titleRect, title,
                        FaceKit::font(titleSize, QFont::DemiBold), context.primary(),
                        Qt::AlignLeft | Qt::AlignVCenter);
    if (!twoLines) {
        return;
    }
    const QRectF second(rect.left(), rect.top() + titleHeight, rect.width(),
                        rect.height() - titleHeight);
    const QString text = stale.isEmpty() ? state.activity.description : stale;
    FaceKit::drawElided(painter, context, second, text,
                        FaceKit::font(std::min(second.height() * 0.8, 11.5), QFont::Medium),
                        stale.isEmpty() ? context.secondary() : ReadingKit::warning(context),
                        Qt::AlignLeft | Qt::AlignVCenter);
}

QList<QRectF> figureCells(const QRectF& rect, qsizetype count) {
    QList<QRectF> cells;
    const qreal gap = 8;
    const qreal w =
        (rect.width() - gap * static_cast<qreal>(count - 1)) / static_cast<qreal>(count);
    for (qsizetype i = 0; i < count; ++i) {
        cells.append(
            QRectF(rect.left() + (w + gap) * static_cast<qreal>(i), rect.top(), w, rect.height()));
    }
    return cells;
}

// Each figure a value with its symbol over its label, all values at one size so that no figure
// looks larger for being short.
void drawFigures(QPainter& painter, const FaceContext& context, const QRectF& rect,
                 const QList<Figure>& figures) {
    const QList<QRectF> cells = figureCells(rect, figures.size());
    const qreal valueHeight = rect.height() * 0.58;
    const qreal icon = std::min(valueHeight * 0.6, 15.0);
    // Counts share one size; a long text (a release's tag) shrinks alone rather than shrinking
    // every figure with it.
    const qreal largest = std::min(valueHeight * 0.92, 24.0);
    QList<qreal> fits;
    qreal common = largest;
    for (qsizetype i = 0; i < figures.size(); ++i) {
        const QSizeF box(cells[i].width() - icon - 3, valueHeight);
        fits.append(FaceKit::fittingPixelSize(figures[i].value, box, QFont::DemiBold, largest));
        if (fits.last() >= largest * 0.7) {
            common = std::min(common, fits.last());
        }
    }
    const qreal labelSize = std::min(rect.height() * 0.3, 11.5);
    for (qsizetype i = 0; i < figures.size(); ++i) {
        const QRectF cell = cells[i];
        FaceKit::drawSymbol(painter, context, figures[i].symbol,
                            QRectF(cell.left(), cell.top() + (valueHeight - icon) / 2, icon, icon),
                            context.accent(), figures[i].label);
        FaceKit::drawText(
            painter, context,
            QRectF(cell.left() + icon + 3, cell.top(), cell.width() - icon - 3, valueHeight),
            Qt::AlignLeft | Qt::AlignVCenter, figures[i].value,
            FaceKit::font(std::min(common, fits[i]), QFont::DemiBold), context.primary());
        FaceKit::drawElided(painter, context,
                            QRectF(cell.left(), cell.top() + valueHeight, cell.width(),
                                   rect.height() - valueHeight),
                            figures[i].label, FaceKit::font(labelSize, QFont::Medium),
                            context.secondary(), Qt::AlignLeft | Qt::AlignTop);
    }
}

// The one figure a small tile has room for: a repository's stars, a person's unread
// notifications where they show, else what waits for their review.
qsizetype heroIndex(const GitHubFace::Shown& shown) {
    if (shown.target->isRepository()) {
        return 0;
    }
    return shown.state.notifications == GitHubNotifications::shown ? 2 : 1;
}

void drawHero(QPainter& painter, const FaceContext& context, const QRectF& rect,
              const GitHubFace::Shown& shown) {
    const Figure figure = figuresOf(shown)[heroIndex(shown)];
    const QString stale = staleness(context, shown.state);
    const qreal h = rect.height();
    const QRectF valueRect(rect.left(), rect.top(), rect.width(), h * 0.62);
    const qreal size =
        FaceKit::fittingPixelSize(figure.value, QSizeF(rect.width() * 0.7, valueRect.height()),
                                  QFont::DemiBold, valueRect.height() * 0.9);
    const qreal icon = size * 0.7;
    FaceKit::drawSymbol(painter, context, figure.symbol,
                        QRectF(rect.left(), valueRect.center().y() - icon / 2, icon, icon),
                        context.accent(), figure.label);
    FaceKit::drawText(painter, context, valueRect.adjusted(icon + 4, 0, 0, 0),
                      Qt::AlignLeft | Qt::AlignVCenter, figure.value,
                      FaceKit::font(size, QFont::DemiBold), context.primary());
    FaceKit::drawFitted(
        painter, context,
        QRectF(rect.left(), valueRect.bottom(), rect.width(), h - valueRect.height()),
        stale.isEmpty() ? figure.label : stale, QFont::Medium,
        stale.isEmpty() ? context.secondary() : ReadingKit::warning(context),
        Qt::AlignLeft | Qt::AlignVCenter, 12);
}

QList<QRectF> lineRects(const QRectF& list, qsizetype count) {
    QList<QRectF> rects;
    for (qsizetype i = 0; i < count; ++i) {
        const QRectF line(list.left(), list.top() + lineHeight * static_cast<qreal>(i),
                          list.width(), lineHeight);
        if (line.bottom() > list.bottom() + 0.5) {
            break;
        }
        rects.append(line);
    }
    return rects;
}

void drawList(QPainter& painter, const FaceContext& context, const QRectF& list,
              const GitHubFace::Shown& shown) {
    const QList<Line> lines = linesOf(context, shown.state.activity);
    if (lines.isEmpty()) {
        QString quiet = shown.state.activity.reviewCount
                            ? L("github.nothingWaits", QStringLiteral("Nothing waits for review"))
                            : QString();
        if (shown.state.notifications == GitHubNotifications::needsToken) {
            quiet = L("github.tokenHint", QStringLiteral("Add a token in the settings to see "
                                                         "notifications"));
        }
        FaceKit::drawText(painter, context, list.adjusted(0, 4, 0, 0),
                          Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, quiet,
                          FaceKit::font(11.5, QFont::Medium), context.secondary());
        return;
    }
    painter.save();
    painter.setPen(QPen(context.separator(), 0.5));
    painter.drawLine(QPointF(list.left(), list.top() - 5), QPointF(list.right(), list.top() - 5));
    painter.restore();
    const QList<QRectF> rects = lineRects(list, lines.size());
    for (qsizetype i = 0; i < rects.size(); ++i) {
        const QRectF& r = rects[i];
        FaceKit::drawSymbol(painter, context, lines[i].symbol,
                            QRectF(r.left(), r.top() + 3, 13, 13), context.secondary(),
                            lines[i].title);
        const QRectF text = r.adjusted(19, 0, 0, 0);
        FaceKit::drawElided(painter, context, QRectF(text.left(), text.top(), text.width(), 16),
                            lines[i].title, FaceKit::font(12.5, QFont::Medium), context.primary(),
                            Qt::AlignLeft | Qt::AlignVCenter);
        FaceKit::drawElided(painter, context,
                            QRectF(text.left(), text.top() + 15, text.width(), 13), lines[i].detail,
                            FaceKit::font(10.5), context.secondary(),
                            Qt::AlignLeft | Qt::AlignVCenter);
    }
}

// The state that takes the whole tile: nobody chosen, nothing yet, nobody there.
bool drawWhole(QPainter& painter, const FaceContext& context, const QRectF& rect,
               const GitHubFace::Shown& shown) {
    const GitHubState& state = shown.state;
    QString symbol = context.metadata.symbol;
    QString headline;
    QString detail;
    if (!shown.target) {
        headline = L("github.chooseTitle", QStringLiteral("Choose whom to follow"));
        detail =
            L("github.chooseDetail", QStringLiteral("A person or a repository, in the settings"));
    } else if (state.status == GitHubStatus::notFound) {
        symbol = QStringLiteral("magnifyingglass");
        headline = state.message;
        detail = shown.target->key();
    } else if (state.hasValues()) {
        return false;
    } else if (state.status == GitHubStatus::tokenRefused) {
        symbol = QStringLiteral("key.fill");
        headline = state.message;
        detail = L("github.tokenAgain", QStringLiteral("Enter a new token in the settings"));
    } else if (state.status == GitHubStatus::loading) {
        headline = shown.target->key();
        detail = L("github.loading", QStringLiteral("Reading GitHub…"));
    } else {
        symbol = QStringLiteral("exclamationmark.triangle");
        headline = shown.target->key();
        detail = staleness(context, state).isEmpty() ? state.message : staleness(context, state);
    }
    ReadingKit::drawNotice(painter, context, rect, symbol, headline, detail);
    return true;
}

GitHubState sampleState(const QDateTime& now) {
    GitHubState state;
    state.status = GitHubStatus::live;
    state.notifications = GitHubNotifications::shown;
    state.updated = now.addSecs(-6 * 60);
    GitHubActivity& a = state.activity;
    a.title = QStringLiteral("tarnwick/tarnwick");
    a.description = QStringLiteral("Glass tiles for the desktop");
    a.stars = 4821;
    a.forks = 212;
    a.openIssues = 37;
    a.release = GitHubRelease{
        QStringLiteral("v2.4.0"), QStringLiteral("Clearer glass"), now.addDays(-4), {}, false};
    a.reviewCount = 3;
    a.reviews = {{QStringLiteral("Stacks remember their order"),
                  a.title,
                  412,
                  QStringLiteral("mira"),
                  {},
                  now.addSecs(-40 * 60)},
                 {QStringLiteral("Faster blur on large tiles"),
                  a.title,
                  409,
                  QStringLiteral("jonas"),
                  {},
                  now.addSecs(-5 * 3600)},
                 {QStringLiteral("Weather: hourly wind"),
                  a.title,
                  398,
                  QStringLiteral("ines"),
                  {},
                  now.addDays(-2)}};
    a.notificationCount = 2;
    a.notifications = {{QStringLiteral("Crash when a display sleeps"),
                        a.title,
                        415,
                        QStringLiteral("mention"),
                        {},
                        now.addSecs(-12 * 60)},
                       {QStringLiteral("v2.4.0 released"),
                        a.title,
                        0,
                        QStringLiteral("subscribed"),
                        {},
                        now.addDays(-3)}};
    return state;
}

} // namespace

std::optional<TimeGrain> GitHubFace::grain(WidgetSize, const WidgetSettings&) const {
    return TimeGrain::Minutes;
}

QString GitHubFace::compactCount(int count) {
    const QLocale locale;
    if (count < 1000) {
        return locale.toString(count);
    }
    if (count < 1'000'000) {
        return count < 10'000 ? locale.toString(count / 1000.0, 'f', 1) + u'k'
                              : locale.toString(count / 1000) + u'k';
    }
    return locale.toString(count / 1'000'000.0, 'f', 1) + u'M';
}

GitHubFace::Shown GitHubFace::shownOf(const FaceContext& context) {
    Shown shown;
    shown.target = GitHubTarget::parse(context.setting(QStringLiteral("target")));
    if (const GitHubBehaviour* tiles = context.behaviour<GitHubBehaviour>()) {
        if (shown.target) {
            shown.state = tiles->state(shown.target->key());
        }
    } else if (context.surface.showsDemoContent) {
        shown.state = sampleState(
            context.now.isValid() ? context.now : QDateTime(QDate(2026, 3, 14), QTime(9, 26)));
        if (!shown.target) {
            shown.target = GitHubTarget::parse(shown.state.activity.title);
        } else {
            shown.state.activity.title = shown.target->key();
        }
        if (!shown.target->isRepository()) {
            shown.state.activity.description.clear();
            shown.state.activity.followers = 128;
        }
    }
    return shown;
}

bool GitHubFace::opensSettingsOnClick(const FaceContext& context) const {
    const Shown shown = shownOf(context);
    return !shown.target || shown.state.status == GitHubStatus::notFound ||
           (shown.state.status == GitHubStatus::tokenRefused && !shown.state.hasValues());
}

void GitHubFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    paintShown(painter, rect, context, shownOf(context));
}

void GitHubFace::paintShown(QPainter& painter, const QRectF& rect, const FaceContext& context,
                            const Shown& shown) {
    if (drawWhole(painter, context, rect, shown)) {
        return;
    }
    const Layout layout = layoutOf(rect, context.size);
    drawHeader(painter, context, layout.header, shown);
    if (context.size == WidgetSize::small) {
        drawHero(painter, context, layout.figures, shown);
        return;
    }
    drawFigures(painter, context, layout.figures, figuresOf(shown));
    if (!layout.list.isEmpty()) {
        drawList(painter, context, layout.list, shown);
    }
}

WidgetFace::Spot GitHubFace::spotAt(const QRectF& rect, QPointF point,
                                    const FaceContext& context) const {
    return spotIn(rect, point, context, shownOf(context));
}

WidgetFace::Spot GitHubFace::spotIn(const QRectF& rect, QPointF point, const FaceContext& context,
                                    const Shown& shown) {
    Spot spot;
    if (!shown.target || (!shown.state.hasValues() && shown.state.status != GitHubStatus::live)) {
        return spot;
    }
    const Layout layout = layoutOf(rect, context.size);
    if (layout.header.contains(point)) {
        spot.link = QUrl(shown.target->webAddress());
        spot.help =
            L("github.openPage", QStringLiteral("Open %1 on GitHub")).arg(shown.target->key());
        return spot;
    }
    const QList<Figure> figures = figuresOf(shown);
    if (layout.figures.contains(point)) {
        qsizetype index = heroIndex(shown);
        if (context.size != WidgetSize::small) {
            const QList<QRectF> cells = figureCells(layout.figures, figures.size());
            index = cells.size() - 1;
            for (qsizetype i = cells.size() - 1; i >= 0; --i) {
                index = point.x() < cells[i].right() + 4 ? i : index;
            }
        }
        const Figure& figure = figures[index];
        spot.link = QUrl(figure.link);
        spot.help = figure.label;
        return spot;
    }
    const QList<Line> lines = linesOf(context, shown.state.activity);
    const QList<QRectF> rects = lineRects(layout.list, lines.size());
    for (qsizetype i = 0; i < rects.size(); ++i) {
        if (rects[i].contains(point)) {
            spot.link = lines[i].link.isEmpty() ? std::nullopt : std::optional(QUrl(lines[i].link));
            spot.help = lines[i].title;
        }
    }
    return spot;
}

} // namespace tw
