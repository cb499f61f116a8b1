#include "faces/SmartHomeFace.h"

#include "connected/SmartHomeBehaviour.h"
#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/ReadingKit.h"
#include "market/MarketText.h"
#include "text/L.h"

#include <QLocale>
#include <QPainter>
#include <QPainterPath>

namespace tw {

namespace {

const QString entitiesKey = QStringLiteral("entities");

// One card: the entity, or only its id when Home Assistant does not know it (yet).
struct Card {
    QString id;
    std::optional<HaEntity> entity;
    QRectF rect;
};

// A name shrinks a little to fit before it is elided.
void drawName(QPainter& painter, const FaceContext& context, const QRectF& rect,
              const QString& name, qreal size, QFont::Weight weight, const QColor& color) {
    const qreal fitted =
        std::max(size * 0.82, FaceKit::fittingPixelSize(name, rect.size(), weight, size));
    FaceKit::drawElided(painter, context, rect, name, FaceKit::font(fitted, weight), color,
                        Qt::AlignLeft | Qt::AlignVCenter);
}

QString symbolOf(const HaEntity& entity) {
    const QString domain = entity.domain();
    const QString kind = entity.deviceClass;
    if (domain == u"light") {
        return QStringLiteral("lightbulb.fill");
    }
    if (domain == u"fan") {
        return QStringLiteral("fan.fill");
    }
    if (domain == u"switch" || domain == u"input_boolean" || domain == u"automation") {
        return QStringLiteral("power");
    }
    if (domain == u"lock") {
        return entity.state == u"unlocked" ? QStringLiteral("lock.open.fill")
                                           : QStringLiteral("lock.fill");
    }
    if (domain == u"person" || domain == u"device_tracker") {
        return QStringLiteral("person.2.fill");
    }
    if (kind == u"temperature") {
        return QStringLiteral("thermometer.medium");
    }
    if (kind == u"humidity" || kind == u"moisture") {
        return QStringLiteral("drop.fill");
    }
    if (kind == u"power" || kind == u"energy" || kind == u"battery") {
        return QStringLiteral("bolt.fill");
    }
    if (kind == u"door" || kind == u"window" || kind == u"opening" || kind == u"garage_door") {
        return QStringLiteral("door.left.hand.closed");
    }
    if (kind == u"motion" || kind == u"occupancy" || kind == u"presence") {
        return QStringLiteral("figure.walk");
    }
    return QStringLiteral("sensor.fill");
}

QList<QRectF> cardRects(const QRectF& rect, WidgetSize size, qsizetype count) {
    int columns = 1;
    int rows = 1;
    switch (size) {
    case WidgetSize::small:
        break;
    case WidgetSize::wide:
        columns = 2;
        break;
    case WidgetSize::banner:
        columns = 3;
        break;
    case WidgetSize::large:
        columns = 2;
        rows = 2;
        break;
    default:
        columns = 3;
        rows = 2;
        break;
    }
    // Fewer cards than places: the row count shrinks first, so that cards stay square-ish.
    while (rows > 1 && count <= columns * (rows - 1)) {
        --rows;
    }
    const qreal gap = 8;
    const qreal w = (rect.width() - gap * (columns - 1)) / columns;
    const qreal h = (rect.height() - gap * (rows - 1)) / rows;
    QList<QRectF> rects;
    for (int i = 0; i < columns * rows && i < count; ++i) {
        rects.append(QRectF(rect.left() + (w + gap) * (i % columns),
                            rect.top() + (h + gap) * (i / columns), w, h));
    }
    return rects;
}

// The header of the larger sizes: the home and how the link is.
bool hasHeader(WidgetSize size) {
    return size == WidgetSize::large || size == WidgetSize::wideTall;
}

QRectF cardsArea(const QRectF& rect, WidgetSize size) {
    return hasHeader(size) ? rect.adjusted(0, 30, 0, 0) : rect;
}

QList<Card> cardsOf(const QRectF& rect, const FaceContext& context, const SmartHomeBoard& board) {
    const QStringList ids = SmartHomeFace::chosen(context.settings);
    const qsizetype shown = std::min<qsizetype>(ids.size(), SmartHomeFace::capacity(context.size));
    const QList<QRectF> rects = cardRects(cardsArea(rect, context.size), context.size, shown);
    QList<Card> cards;
    for (qsizetype i = 0; i < rects.size(); ++i) {
        const auto found = board.entities.constFind(ids[i]);
        cards.append({ids[i], found == board.entities.cend() ? std::nullopt : std::optional(*found),
                      rects[i]});
    }
    return cards;
}

QString linkWords(const FaceContext& context, const SmartHomeBoard& board) {
    const QDateTime now = context.now.isValid() ? context.now : board.updated;
    switch (board.status) {
    case SmartHomeStatus::live:
        return {};
    case SmartHomeStatus::connecting:
    case SmartHomeStatus::idle:
        return L("smarthome.connecting", QStringLiteral("Connecting…"));
    case SmartHomeStatus::unreachable:
    case SmartHomeStatus::failed:
        return board.updated.isValid() ? L("smarthome.offline", QStringLiteral("Offline · %1"))
                                             .arg(MarketText::age(board.updated, now))
                                       : board.message;
    case SmartHomeStatus::unauthorised:
    case SmartHomeStatus::noAccount:
        break;
    }
    return board.message;
}

void drawCard(QPainter& painter, const FaceContext& context, const Card& card,
              const SmartHomeBoard& board) {
    const QRectF& r = card.rect;
    const bool live = board.status == SmartHomeStatus::live;
    const bool known = card.entity.has_value();
    const bool on = known && card.entity->isToggleable() && card.entity->isOn();
    const bool pending = board.pending.contains(card.id);
    const QString refused = board.refused.value(card.id);
    const qreal radius = std::min(14.0, std::min(r.width(), r.height()) * 0.22);

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QColor fill = on ? context.accent() : context.elevated();
    if (!live || pending) {
        fill.setAlphaF(fill.alphaF() * 0.6F);
    }
    painter.setBrush(fill);
    painter.drawRoundedRect(r, radius, radius);
    painter.restore();

    const QColor ink = on ? QColor(Qt::white) : context.primary();
    QColor soft = on ? QColor(255, 255, 255, 210) : context.secondary();
    const qreal pad = std::min(10.0, r.height() * 0.12);
    const QRectF inner = r.adjusted(pad, pad, -pad, -pad);
    const qreal icon = std::min(22.0, inner.height() * 0.36);
    const QString name = known ? card.entity->name : card.id;
    QString state;
    QColor stateColor = soft;
    if (!known) {
        state = board.statesRead ? L("smarthome.unknown", QStringLiteral("Not found"))
                                 : QString(QChar(0x2014));
        stateColor = board.statesRead ? ReadingKit::warning(context) : soft;
    } else if (!refused.isEmpty()) {
        state = refused;
        stateColor = ReadingKit::warning(context);
    } else if (pending) {
        state = QStringLiteral("…");
    } else {
        state = SmartHomeFace::stateText(*card.entity);
        if (card.entity->isUnavailable()) {
            stateColor = ReadingKit::warning(context);
        }
    }
    const QColor iconColor =
        on ? ink
           : (known && !card.entity->isUnavailable() ? context.accent() : context.secondary());
    FaceKit::drawSymbol(painter, context, known ? symbolOf(*card.entity) : u"sensor.fill"_qs,
                        QRectF(inner.topLeft(), QSizeF(icon, icon)), iconColor, name);

    // A sensor's reading is the card's hero; a switch's state is a word under its name.
    const bool reading = known && !card.entity->isToggleable() && !card.entity->isUnavailable() &&
                         refused.isEmpty() && inner.height() >= 44;
    const qreal nameSize = std::min(12.5, inner.height() * 0.24);
    if (reading) {
        FaceKit::drawFitted(
            painter, context,
            QRectF(inner.left() + icon + 4, inner.top(), inner.width() - icon - 4, icon), state,
            QFont::DemiBold, ink, Qt::AlignRight | Qt::AlignVCenter, icon * 0.95);
        drawName(
            painter, context,
            QRectF(inner.left(), inner.bottom() - nameSize * 1.4, inner.width(), nameSize * 1.4),
            name, nameSize, QFont::Medium, soft);
        return;
    }
    const qreal stateSize = std::min(11.0, inner.height() * 0.22);
    drawName(painter, context,
             QRectF(inner.left(), inner.bottom() - stateSize * 1.35 - nameSize * 1.35,
                    inner.width(), nameSize * 1.35),
             name, nameSize, QFont::DemiBold, ink);
    FaceKit::drawElided(
        painter, context,
        QRectF(inner.left(), inner.bottom() - stateSize * 1.35, inner.width(), stateSize * 1.35),
        state, FaceKit::font(stateSize, QFont::Medium), stateColor,
        Qt::AlignLeft | Qt::AlignVCenter);
}

void drawHeader(QPainter& painter, const FaceContext& context, const QRectF& rect,
                const SmartHomeBoard& board) {
    const QRectF row(rect.left(), rect.top(), rect.width(), 20);
    FaceKit::drawSymbol(painter, context, context.metadata.symbol,
                        QRectF(row.left(), row.top() + 1, 18, 18), context.accent(),
                        context.metadata.displayName);
    const QString words = linkWords(context, board);
    const qreal wordsWidth = words.isEmpty() ? 0 : rect.width() * 0.55;
    FaceKit::drawElided(
        painter, context, QRectF(row.left() + 23, row.top(), row.width() - 23 - wordsWidth, 20),
        L("smarthome.title", QStringLiteral("Home")), FaceKit::font(14, QFont::DemiBold),
        context.primary(), Qt::AlignLeft | Qt::AlignVCenter);
    if (!words.isEmpty()) {
        FaceKit::drawElided(painter, context,
                            QRectF(row.right() - wordsWidth, row.top(), wordsWidth, 20), words,
                            FaceKit::font(11, QFont::Medium), ReadingKit::warning(context),
                            Qt::AlignRight | Qt::AlignVCenter);
    }
}

// A mark in the corner of the headerless sizes while the link is not live over values shown.
void drawCornerMark(QPainter& painter, const FaceContext& context, const QRectF& rect) {
    const qreal side = 14;
    const QRectF badge(rect.right() - side, rect.top(), side, side);
    FaceKit::drawSymbol(painter, context, QStringLiteral("exclamationmark.triangle.fill"), badge,
                        ReadingKit::warning(context), QStringLiteral("!"));
}

SmartHomeBoard sampleBoard() {
    SmartHomeBoard board;
    board.status = SmartHomeStatus::live;
    board.statesRead = true;
    const auto add = [&](const char* id, const char* name, const char* state, const char* unit,
                         const char* deviceClass) {
        HaEntity entity;
        entity.id = QLatin1String(id);
        entity.name = QLatin1String(name);
        entity.state = QLatin1String(state);
        entity.unit = QString::fromUtf8(unit);
        entity.deviceClass = QLatin1String(deviceClass);
        board.entities.insert(entity.id, entity);
    };
    add("light.living_room", "Living room", "on", "", "");
    add("sensor.outdoor_temperature", "Outside", "7.5", "°C", "temperature");
    add("switch.coffee_machine", "Coffee machine", "off", "", "outlet");
    add("binary_sensor.front_door", "Front door", "off", "", "door");
    add("light.desk_lamp", "Desk lamp", "off", "", "");
    add("sensor.living_room_humidity", "Humidity", "46", "%", "humidity");
    return board;
}

const QStringList& sampleIds() {
    static const QStringList ids{
        QStringLiteral("light.living_room"),     QStringLiteral("sensor.outdoor_temperature"),
        QStringLiteral("switch.coffee_machine"), QStringLiteral("binary_sensor.front_door"),
        QStringLiteral("light.desk_lamp"),       QStringLiteral("sensor.living_room_humidity")};
    return ids;
}

bool showsSample(const FaceContext& context) {
    return context.behaviour<SmartHomeBehaviour>() == nullptr && context.surface.showsDemoContent;
}

} // namespace

std::optional<TimeGrain> SmartHomeFace::grain(WidgetSize, const WidgetSettings&) const {
    return TimeGrain::Minutes;
}

QStringList SmartHomeFace::chosen(const WidgetSettings& settings) {
    QStringList ids;
    const QString list = settings.value(entitiesKey);
    for (const QString& part : list.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        const QString id = part.trimmed();
        if (HaEntity::isEntityId(id) && !ids.contains(id)) {
            ids.append(id);
        }
    }
    return ids;
}

int SmartHomeFace::capacity(WidgetSize size) {
    switch (size) {
    case WidgetSize::small:
        return 1;
    case WidgetSize::wide:
        return 2;
    case WidgetSize::banner:
        return 3;
    case WidgetSize::large:
        return 4;
    default:
        return 6;
    }
}

QString SmartHomeFace::stateText(const HaEntity& entity) {
    if (entity.state == u"unavailable") {
        return L("smarthome.unavailable", QStringLiteral("Unavailable"));
    }
    if (entity.state == u"unknown" || entity.state.isEmpty()) {
        return QString(QChar(0x2014));
    }
    bool number = false;
    const double value = entity.state.toDouble(&number);
    if (number) {
        const QString figure = QLocale().toString(value, 'g', 4);
        if (entity.unit.isEmpty()) {
            return figure;
        }
        return entity.unit == u"%" ? QString(figure + entity.unit)
                                   : QString(figure + u' ' + entity.unit);
    }
    const QString domain = entity.domain();
    const QString kind = entity.deviceClass;
    if (domain == u"binary_sensor") {
        const bool on = entity.state == u"on";
        if (kind == u"door" || kind == u"window" || kind == u"opening" || kind == u"garage_door") {
            return on ? L("smarthome.open", QStringLiteral("Open"))
                      : L("smarthome.closed", QStringLiteral("Closed"));
        }
        if (kind == u"motion" || kind == u"occupancy" || kind == u"presence") {
            return on ? L("smarthome.detected", QStringLiteral("Detected"))
                      : L("smarthome.clear", QStringLiteral("Clear"));
        }
    }
    if (entity.state == u"on") {
        return entity.brightness && domain == u"light"
                   ? L("smarthome.onAt", QStringLiteral("On · %1%"))
                         .arg(qRound(*entity.brightness * 100.0 / 255.0))
                   : L("smarthome.on", QStringLiteral("On"));
    }
    if (entity.state == u"off") {
        return L("smarthome.off", QStringLiteral("Off"));
    }
    QString words = entity.state;
    words.replace(QLatin1Char('_'), QLatin1Char(' '));
    words[0] = words[0].toUpper();
    return words;
}

const SmartHomeBoard& SmartHomeFace::boardOf(const FaceContext& context) {
    static const SmartHomeBoard none;
    static const SmartHomeBoard sample = sampleBoard();
    if (const SmartHomeBehaviour* tiles = context.behaviour<SmartHomeBehaviour>()) {
        return tiles->board();
    }
    return showsSample(context) ? sample : none;
}

bool SmartHomeFace::opensSettingsOnClick(const FaceContext& context) const {
    const SmartHomeBoard& board = boardOf(context);
    return !showsSample(context) &&
           (board.status == SmartHomeStatus::noAccount ||
            board.status == SmartHomeStatus::unauthorised || chosen(context.settings).isEmpty());
}

void SmartHomeFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    paintBoard(painter, rect, context, boardOf(context));
}

void SmartHomeFace::paintBoard(QPainter& painter, const QRectF& rect, const FaceContext& context,
                               const SmartHomeBoard& board) {
    FaceContext shown = context;
    if (showsSample(context) && chosen(context.settings).isEmpty()) {
        shown.settings.insert(entitiesKey, sampleIds().join(QLatin1Char(',')));
    }
    const bool hasValues = !board.entities.isEmpty();
    QString symbol = context.metadata.symbol;
    QString headline;
    QString detail;
    if (board.status == SmartHomeStatus::noAccount) {
        headline = L("smarthome.connectTitle", QStringLiteral("Connect Home Assistant"));
        detail = L("smarthome.connectDetail",
                   QStringLiteral("Its address and a token, in the settings"));
    } else if (board.status == SmartHomeStatus::unauthorised) {
        symbol = QStringLiteral("key.fill");
        headline = board.message;
        detail = L("smarthome.tokenAgain", QStringLiteral("Enter a new token in the settings"));
    } else if (chosen(shown.settings).isEmpty()) {
        headline = L("smarthome.chooseTitle", QStringLiteral("Choose what to show"));
        detail = L("smarthome.chooseDetail", QStringLiteral("Lights, switches and sensors, in "
                                                            "the settings"));
    } else if (!hasValues && board.status != SmartHomeStatus::live) {
        symbol =
            board.status == SmartHomeStatus::connecting || board.status == SmartHomeStatus::idle
                ? symbol
                : QStringLiteral("exclamationmark.triangle");
        headline = linkWords(context, board);
        detail = board.retryAt.isValid()
                     ? L("smarthome.retryAt", QStringLiteral("Trying again at %1"))
                           .arg(QLocale().toString(board.retryAt.toLocalTime().time(),
                                                   QLocale::ShortFormat))
                     : QString();
    }
    if (!headline.isEmpty()) {
        ReadingKit::drawNotice(painter, context, rect, symbol, headline, detail);
        return;
    }
    if (hasHeader(context.size)) {
        drawHeader(painter, context, rect, board);
    }
    const QList<Card> cards = cardsOf(rect, shown, board);
    for (const Card& card : cards) {
        drawCard(painter, context, card, board);
    }
    if (!hasHeader(context.size) && board.status != SmartHomeStatus::live) {
        drawCornerMark(painter, context, rect);
    }
}

WidgetFace::Spot SmartHomeFace::spotAt(const QRectF& rect, QPointF point,
                                       const FaceContext& context) const {
    return spotIn(rect, point, context, boardOf(context));
}

WidgetFace::Spot SmartHomeFace::spotIn(const QRectF& rect, QPointF point,
                                       const FaceContext& context, const SmartHomeBoard& board) {
    Spot spot;
    if (board.status == SmartHomeStatus::noAccount ||
        board.status == SmartHomeStatus::unauthorised) {
        return spot;
    }
    for (const Card& card : cardsOf(rect, context, board)) {
        if (!card.rect.contains(point)) {
            continue;
        }
        if (!card.entity) {
            spot.help = board.statesRead ? L("smarthome.unknownHelp",
                                             QStringLiteral("Home Assistant does not know %1"))
                                               .arg(card.id)
                                         : card.id;
        } else if (card.entity->isToggleable() && board.status == SmartHomeStatus::live &&
                   context.setting(QStringLiteral("clicks")) != QLatin1String("none")) {
            spot.command = SmartHomeBehaviour::togglePrefix + card.id;
            spot.help = (card.entity->isOn() ? L("smarthome.turnOff", QStringLiteral("Turn off %1"))
                                             : L("smarthome.turnOn", QStringLiteral("Turn on %1")))
                            .arg(card.entity->name);
        } else {
            spot.help = card.entity->name + u" · "_qs + stateText(*card.entity);
        }
    }
    return spot;
}

} // namespace tw
