#include "faces/WebFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/ReadingKit.h"
#include "live/WebBehaviour.h"
#include "live/WebTileSettings.h"
#include "text/L.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace tw {

namespace {

using State = WebPage::State;

constexpr qreal pageCorner = 8;

QString hostOf(const FaceContext& context) {
    const QUrl url = WebTileSettings::from(context.settings).url;
    return url.isValid() ? url.host() : QStringLiteral("example.org");
}

bool troubled(State state) {
    return state == State::timedOut || state == State::failed || state == State::noHelper ||
           state == State::ended;
}

QString headline(State state) {
    switch (state) {
    case State::timedOut:
        return L("web.timedOut", QStringLiteral("The page didn’t finish loading"));
    case State::failed:
        return L("web.failed", QStringLiteral("Couldn’t load the page"));
    case State::noHelper:
        return L("web.noHelper", QStringLiteral("Web pages can’t be shown"));
    case State::ended:
        return L("web.ended", QStringLiteral("The page stopped"));
    case State::idle:
    case State::loading:
    case State::shown:
        break;
    }
    return L("web.loading", QStringLiteral("Loading…"));
}

QString detail(const WebPage& page) {
    switch (page.state()) {
    case State::failed:
        return page.problem().isEmpty() ? L("web.retry", QStringLiteral("Click to try again"))
                                        : page.problem();
    case State::noHelper:
        return L("web.noHelper.detail",
                 QStringLiteral("The web helper is missing from this installation"));
    case State::timedOut:
    case State::ended:
        return L("web.retry", QStringLiteral("Click to try again"));
    case State::idle:
    case State::loading:
    case State::shown:
        break;
    }
    return {};
}

// The pill at the foot of the page: its host, and what is happening to it.
void drawPill(QPainter& painter, const FaceContext& context, const QRectF& rect,
              const QString& host, State state) {
    QString text = host;
    QColor dot = context.accent();
    if (state == State::loading) {
        text += QStringLiteral(" · ") + L("web.loading", QStringLiteral("Loading…"));
    } else if (troubled(state)) {
        text += QStringLiteral(" · ") + L("web.stale", QStringLiteral("Not updated"));
        dot = ReadingKit::warning(context);
    }
    const QFont font = FaceKit::font(11, QFont::DemiBold);
    const qreal width =
        std::min(QFontMetricsF(font).horizontalAdvance(text) + 30, rect.width() - 16);
    const QRectF pill(rect.left() + 8, rect.bottom() - 30, width, 22);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(20, 20, 24, 190));
    painter.drawRoundedRect(pill, 11, 11);
    painter.setBrush(dot);
    painter.drawEllipse(QPointF(pill.left() + 11, pill.center().y()), 3.5, 3.5);
    painter.restore();
    FaceKit::drawElided(painter, context, pill.adjusted(20, 0, -8, 0), text, font,
                        QColor(255, 255, 255, 235), Qt::AlignLeft | Qt::AlignVCenter);
}

// A made-up article page, for previews and pictures: the shapes of a page, not its words.
void drawSamplePage(QPainter& painter, const FaceContext& context, const QRectF& rect) {
    const bool dark = !context.glass.darkInk();
    const QColor paper = dark ? QColor(30, 32, 38) : QColor(250, 250, 248);
    const QColor ink = dark ? QColor(235, 235, 240, 150) : QColor(30, 30, 40, 120);
    const QColor faint = dark ? QColor(235, 235, 240, 60) : QColor(30, 30, 40, 45);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(paper);
    painter.drawRoundedRect(rect, pageCorner, pageCorner);
    const qreal m = std::clamp(rect.width() * 0.05, 10.0, 24.0);
    // The site's bar.
    const QRectF bar(rect.left(), rect.top(), rect.width(),
                     std::clamp(rect.height() * 0.12, 20.0, 34.0));
    QPainterPath top;
    top.addRoundedRect(bar.adjusted(0, 0, 0, pageCorner), pageCorner, pageCorner);
    painter.setClipRect(bar);
    painter.setBrush(context.accent());
    painter.drawPath(top);
    painter.setClipping(false);
    painter.setBrush(QColor(255, 255, 255, 210));
    painter.drawRoundedRect(QRectF(bar.left() + m, bar.center().y() - 4, 60, 8), 4, 4);
    // As many links as the bar has room for beside the site's name.
    const int links = std::clamp(static_cast<int>((bar.width() - 2 * m - 80) / 36), 0, 3);
    for (int i = 0; i < links; ++i) {
        painter.drawRoundedRect(
            QRectF(bar.right() - m - 36 * (i + 1) + 8, bar.center().y() - 3, 28, 6), 3, 3);
    }
    // A headline, a picture beside the text where the page is wide, lines of text below; the
    // address pill keeps the bottom's last 30 points.
    qreal y = bar.bottom() + std::min(m, rect.height() * 0.12);
    const qreal body = rect.width() - 2 * m;
    painter.setBrush(ink);
    painter.drawRoundedRect(QRectF(rect.left() + m, y, body * 0.7, 14), 5, 5);
    if (y + 34 > rect.bottom() - 30) {
        // A banner has room for the bar and the headline alone.
        painter.restore();
        return;
    }
    painter.drawRoundedRect(QRectF(rect.left() + m, y + 20, body * 0.45, 14), 5, 5);
    y += 46;
    const bool side = rect.width() > rect.height() * 1.3;
    const qreal pictureHeight =
        std::min(rect.bottom() - y - m, side ? rect.height() * 0.5 : rect.height() * 0.3);
    if (pictureHeight < 40) {
        painter.restore();
        return;
    }
    const QRectF picture(rect.left() + m, y, side ? body * 0.42 : body, pictureHeight);
    QLinearGradient sky(picture.topLeft(), picture.bottomLeft());
    sky.setColorAt(0, context.accent().lighter(150));
    sky.setColorAt(1, context.accent().darker(130));
    painter.setBrush(sky);
    painter.drawRoundedRect(picture, 6, 6);
    painter.setBrush(QColor(255, 255, 255, 170));
    painter.drawEllipse(
        QPointF(picture.right() - picture.width() * 0.25, picture.top() + picture.height() * 0.32),
        picture.height() * 0.1, picture.height() * 0.1);
    const qreal textLeft = side ? picture.right() + m : rect.left() + m;
    qreal line = side ? y : picture.bottom() + m;
    painter.setBrush(faint);
    for (int i = 0; line + 8 < rect.bottom() - m - 30; ++i) {
        const qreal length = (i % 4 == 3) ? 0.55 : 0.92 - 0.05 * (i % 3);
        painter.drawRoundedRect(QRectF(textLeft, line, (rect.right() - m - textLeft) * length, 7),
                                3.5, 3.5);
        line += 15;
    }
    painter.restore();
}

} // namespace

std::optional<TimeGrain> WebFace::grain(WidgetSize, const WidgetSettings&) const {
    return std::nullopt;
}

void WebFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const WebTileSettings settings = WebTileSettings::from(context.settings);
    const WebBehaviour* behaviour = context.behaviour<WebBehaviour>();
    if (behaviour == nullptr) {
        drawSamplePage(painter, context, rect);
        drawPill(painter, context, rect, hostOf(context), State::shown);
        return;
    }
    if (!settings.url.isValid()) {
        ReadingKit::drawNotice(
            painter, context, rect, QStringLiteral("globe"),
            L("web.choose", QStringLiteral("Choose a page")),
            L("web.choose.detail", QStringLiteral("Click to type its address in the settings")));
        return;
    }
    const WebPage* page = behaviour->page(context.instanceID);
    const State state = page != nullptr ? page->state() : State::idle;
    if (page == nullptr || page->picture().isNull()) {
        if (troubled(state)) {
            ReadingKit::drawNotice(painter, context, rect,
                                   QStringLiteral("exclamationmark.triangle"), headline(state),
                                   detail(*page));
        } else {
            ReadingKit::drawNotice(painter, context, rect, QStringLiteral("globe"),
                                   settings.url.host(), headline(State::loading));
        }
        return;
    }
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath frame;
    frame.addRoundedRect(rect, pageCorner, pageCorner);
    painter.setClipPath(frame, Qt::IntersectClip);
    painter.drawImage(rect, page->picture());
    painter.restore();
    drawPill(painter, context, rect,
             page->shownUrl().isValid() ? page->shownUrl().host() : settings.url.host(), state);
}

WidgetFace::Spot WebFace::spotAt(const QRectF& rect, QPointF point,
                                 const FaceContext& context) const {
    Spot spot;
    const WebBehaviour* behaviour = context.behaviour<WebBehaviour>();
    const WebPage* page = behaviour != nullptr ? behaviour->page(context.instanceID) : nullptr;
    if (page == nullptr || !rect.contains(point)) {
        return spot;
    }
    if (troubled(page->state())) {
        spot.command = WebBehaviour::reloadCommand;
        spot.help = L("web.retry", QStringLiteral("Click to try again"));
    } else if (!page->picture().isNull()) {
        spot.command = WebBehaviour::clickCommand(QPointF(
            (point.x() - rect.left()) / rect.width(), (point.y() - rect.top()) / rect.height()));
        spot.help = page->title();
    }
    return spot;
}

bool WebFace::opensSettingsOnClick(const FaceContext& context) const {
    return context.behaviour<WebBehaviour>() != nullptr &&
           !WebTileSettings::from(context.settings).url.isValid();
}

} // namespace tw
