#include "faces/MirrorFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/ReadingKit.h"
#include "live/MirrorBehaviour.h"
#include "text/L.h"

#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

namespace tw {

namespace {

using State = MirrorSession::State;

const MirrorSession* sessionOf(const FaceContext& context) {
    const MirrorBehaviour* behaviour = context.behaviour<MirrorBehaviour>();
    return behaviour != nullptr ? behaviour->session(context.instanceID) : nullptr;
}

struct Words {
    QString symbol;
    QString headline;
    QString detail;
};

Words wordsFor(State state) {
    const QString retry = L("mirror.retry", QStringLiteral("Click to try again"));
    switch (state) {
    case State::off:
        return {QStringLiteral("person.crop.square"),
                L("mirror.off", QStringLiteral("Camera not allowed")),
                L("mirror.off.detail", QStringLiteral("Click to allow it in the settings"))};
    case State::noCamera:
        return {QStringLiteral("exclamationmark.triangle"),
                L("mirror.none", QStringLiteral("No camera")),
                L("mirror.none.detail", QStringLiteral("Plug one in and it shows here"))};
    case State::inUse:
        return {
            QStringLiteral("exclamationmark.triangle"),
            L("mirror.inUse", QStringLiteral("Camera in use")),
            L("mirror.inUse.detail", QStringLiteral("Another program has it. Click to try again"))};
    case State::denied:
        return {QStringLiteral("exclamationmark.triangle"),
                L("mirror.denied", QStringLiteral("No access to the camera")),
                L("mirror.denied.detail",
                  QStringLiteral("Your account may not open it (the video group)"))};
    case State::disappeared:
        return {QStringLiteral("exclamationmark.triangle"),
                L("mirror.gone", QStringLiteral("The camera went away")), retry};
    case State::failed:
        return {QStringLiteral("exclamationmark.triangle"),
                L("mirror.failed", QStringLiteral("The camera failed")), retry};
    case State::paused:
    case State::starting:
    case State::live:
        break;
    }
    return {QStringLiteral("person.crop.square"),
            L("mirror.starting", QStringLiteral("Starting the camera…")), QString()};
}

// Soft light with a head and shoulders: what a mirror looks like in the gallery.
void drawSample(QPainter& painter, const FaceContext& context, const QRectF& rect) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QRadialGradient light(rect.center() - QPointF(rect.width() * 0.15, rect.height() * 0.2),
                          std::max(rect.width(), rect.height()) * 0.9);
    const QColor accent = context.accent();
    light.setColorAt(0, accent.lighter(170));
    light.setColorAt(0.55, accent.darker(110));
    light.setColorAt(1, accent.darker(260));
    painter.fillRect(rect, light);
    const qreal unit = std::min(rect.width(), rect.height());
    const QPointF head(rect.center().x(), rect.bottom() - unit * 0.62);
    QPainterPath figure;
    figure.addEllipse(head, unit * 0.17, unit * 0.2);
    QPainterPath shoulders;
    const QRectF body(head.x() - unit * 0.42, head.y() + unit * 0.26, unit * 0.84, unit * 0.8);
    shoulders.addRoundedRect(body, unit * 0.36, unit * 0.36);
    figure = figure.united(shoulders);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 70));
    painter.drawPath(figure);
    painter.restore();
}

} // namespace

std::optional<TimeGrain> MirrorFace::grain(WidgetSize, const WidgetSettings&) const {
    return std::nullopt;
}

void MirrorFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    if (context.behaviour<MirrorBehaviour>() == nullptr) {
        drawSample(painter, context, rect);
        return;
    }
    const MirrorSession* session = sessionOf(context);
    const State state =
        session != nullptr
            ? session->state()
            : (MirrorBehaviour::allowed(context.settings) ? State::starting : State::off);
    if (state == State::live && session != nullptr && !session->picture().isNull()) {
        const QImage& picture = session->picture();
        const QSizeF shown =
            QSizeF(picture.size()).scaled(rect.size(), Qt::KeepAspectRatioByExpanding);
        const QRectF target(rect.center().x() - shown.width() / 2,
                            rect.center().y() - shown.height() / 2, shown.width(), shown.height());
        painter.save();
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        if (context.setting(QStringLiteral("mirrored"), QStringLiteral("true")) !=
            QLatin1String("false")) {
            // Left for right about the tile's middle, as a looking glass shows a face.
            painter.translate(rect.center().x() * 2, 0);
            painter.scale(-1, 1);
        }
        painter.drawImage(target, picture);
        painter.restore();
        return;
    }
    // Behind the words, the dark of a lens at rest.
    painter.fillRect(rect, context.glass.darkInk() ? QColor(228, 228, 232) : QColor(22, 22, 26));
    const Words words = wordsFor(state);
    ReadingKit::drawNotice(painter, context, rect.adjusted(14, 14, -14, -14), words.symbol,
                           words.headline, words.detail);
}

WidgetFace::Spot MirrorFace::spotAt(const QRectF& rect, QPointF point,
                                    const FaceContext& context) const {
    Spot spot;
    const MirrorSession* session = sessionOf(context);
    if (session != nullptr && rect.contains(point) && MirrorSession::isProblem(session->state())) {
        spot.command = MirrorBehaviour::retryCommand;
        spot.help = L("mirror.retry", QStringLiteral("Click to try again"));
    }
    return spot;
}

bool MirrorFace::opensSettingsOnClick(const FaceContext& context) const {
    return context.behaviour<MirrorBehaviour>() != nullptr &&
           !MirrorBehaviour::allowed(context.settings);
}

} // namespace tw
