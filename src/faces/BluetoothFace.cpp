#include "faces/BluetoothFace.h"

#include "faces/BatteryFace.h"
#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/ProgressText.h"
#include "faces/ReadingKit.h"
#include "faces/ReadingText.h"
#include "text/L.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <array>

namespace tw {

namespace {

struct Kind {
    const char* icon; // the freedesktop name, or its start
    const char* symbol;
};

// Prefixes, so that "audio-headset-bluetooth" or "phone-apple-iphone" find their kind.
constexpr std::array kKinds{
    Kind{"input-mouse", "computermouse"},     Kind{"input-keyboard", "keyboard"},
    Kind{"input-gaming", "gamecontroller"},   Kind{"input-tablet", "ipad"},
    Kind{"audio-headset", "headphones"},      Kind{"audio-headphones", "headphones"},
    Kind{"audio-card", "hifispeaker"},        Kind{"audio-speakers", "hifispeaker"},
    Kind{"multimedia-player", "hifispeaker"}, Kind{"phone", "iphone"},
    Kind{"computer", "laptopcomputer"},       Kind{"watch", "applewatch"},
};

const QString kBluetooth = QStringLiteral("wave.3.right.circle.fill");

QColor chargeColour(const FaceContext& context, int percent) {
    return percent <= BatteryFace::lowPercent ? ReadingKit::warning(context) : context.accent();
}

QString percentText(int percent) {
    return ProgressText::percent(std::clamp(percent, 0, 100) / 100.0, 0);
}

QString stateText(const BluetoothDevice& device) {
    return device.connected ? L("btdevices.connected", QStringLiteral("Connected"))
                            : L("btdevices.notConnected", QStringLiteral("Not connected"));
}

QString nameOf(const BluetoothDevice& device) {
    return device.name.isEmpty() ? device.address : device.name;
}

// Where the parts of one device's row go.
struct RowLayout {
    bool detailed;
    // The charge on the state's line, where the head has no room for both name and charge.
    bool chargeBelow;
    qreal label;
    QRectF symbol;
    QRectF head;
    QRectF name; // the head less the room the charge takes
    QRectF bar;
    QRectF state;
};

RowLayout rowLayout(const QRectF& row) {
    RowLayout l;
    l.detailed = row.height() >= 40;
    const qreal side = std::min(row.height() * (l.detailed ? 0.62 : 0.8), 30.0);
    l.symbol = QRectF(row.left(), row.center().y() - side / 2, side, side);
    const QRectF text(row.left() + side * 1.35, row.top(), row.width() - side * 1.35, row.height());
    l.label = std::min(text.height() * (l.detailed ? 0.38 : 0.55), 20.0);
    l.head = QRectF(text.left(), text.top() + (l.detailed ? 0 : text.height() * 0.05), text.width(),
                    l.label);
    const qreal figure = QFontMetricsF(FaceKit::font(l.label * 0.85, QFont::DemiBold))
                             .horizontalAdvance(percentText(100));
    l.chargeBelow = l.detailed && figure * 2.2 > l.head.width() - figure;
    l.name = l.chargeBelow ? l.head : l.head.adjusted(0, 0, -figure - l.label * 0.4, 0);
    const qreal barHeight = std::clamp(row.height() * 0.1, 3.0, 6.0);
    l.bar = QRectF(text.left(), l.head.bottom() + l.label * 0.2, text.width(), barHeight);
    const qreal line = std::min(row.bottom() - l.bar.bottom() - 2, l.label * 0.8);
    l.state = QRectF(text.left(), l.bar.bottom() + 2, text.width(), line);
    return l;
}

// One device to a row: symbol, name and charge over a small bar; with room, its state below.
void drawRow(QPainter& painter, const FaceContext& context, const QRectF& row,
             const BluetoothDevice& device, qreal nameSize) {
    const RowLayout l = rowLayout(row);
    const int percent = device.battery.value_or(0);
    FaceKit::drawSymbol(painter, context, BluetoothFace::symbolFor(device.icon), l.symbol,
                        device.connected ? context.accent() : context.secondary(), nameOf(device));
    const QRectF charge = l.chargeBelow ? l.state : l.head;
    const QFont chargeFont = FaceKit::font(charge.height() * 0.85, QFont::DemiBold);
    FaceKit::drawText(painter, context, charge, static_cast<int>(Qt::AlignRight | Qt::AlignVCenter),
                      percentText(percent), chargeFont,
                      percent <= BatteryFace::lowPercent ? ReadingKit::warning(context)
                                                         : context.primary());
    FaceKit::drawElided(painter, context, l.name, nameOf(device),
                        FaceKit::font(nameSize, QFont::Medium), context.primary(),
                        Qt::AlignLeft | Qt::AlignVCenter);
    FaceKit::drawBar(painter, l.bar, percent / 100.0, chargeColour(context, percent),
                     ReadingKit::track(context));
    if (l.detailed) {
        const QRectF state =
            l.chargeBelow
                ? l.state.adjusted(0, 0,
                                   -(QFontMetricsF(chargeFont).horizontalAdvance(percentText(100)) +
                                     l.state.height() * 0.5),
                                   0)
                : l.state;

        // Sized for the longer of the two states, so that rows agree.
        BluetoothDevice apart = device;
        apart.connected = false;
        const qreal size = FaceKit::fittingPixelSize(stateText(apart), state.size(), QFont::Normal,
                                                     l.state.height() * 0.85);
        FaceKit::drawText(painter, context, state,
                          static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine),
                          stateText(device), FaceKit::font(size), context.secondary());
    }
}

// The first device as the hero: its symbol, its charge large, its bar and its name.
void drawHero(QPainter& painter, const FaceContext& context, const QRectF& rect,
              const BluetoothDevice& device, qsizetype others) {
    const qreal h = rect.height();
    const int percent = device.battery.value_or(0);
    const qreal side = h * 0.28;
    FaceKit::drawSymbol(painter, context, BluetoothFace::symbolFor(device.icon),
                        QRectF(rect.left(), rect.top(), side, side),
                        device.connected ? context.accent() : context.secondary(), nameOf(device));
    if (others > 0) {
        FaceKit::drawFitted(painter, context,
                            QRectF(rect.left() + side, rect.top(), rect.width() - side, side),
                            QStringLiteral("+%1").arg(others), QFont::Medium, context.secondary(),
                            Qt::AlignRight | Qt::AlignVCenter, side * 0.6);
    }
    FaceKit::drawFitted(painter, context,
                        QRectF(rect.left(), rect.top() + h * 0.3, rect.width(), h * 0.36),
                        percentText(percent), QFont::DemiBold, context.primary(),
                        Qt::AlignLeft | Qt::AlignVCenter, h * 0.36);
    FaceKit::drawBar(painter, QRectF(rect.left(), rect.top() + h * 0.7, rect.width(), h * 0.07),
                     percent / 100.0, chargeColour(context, percent), ReadingKit::track(context));
    FaceKit::drawFitted(painter, context,
                        QRectF(rect.left(), rect.bottom() - h * 0.18, rect.width(), h * 0.18),
                        nameOf(device), QFont::Medium, context.secondary(),
                        Qt::AlignLeft | Qt::AlignVCenter, h * 0.16);
}

void drawList(QPainter& painter, const FaceContext& context, const QRectF& rect,
              const QList<BluetoothDevice>& devices, int places) {
    const auto count = static_cast<int>(devices.size());
    const int shown = std::min(places, count);
    const bool more = count > places;
    const qreal moreLine = more ? std::clamp(rect.height() * 0.12, 11.0, 16.0) : 0;
    // Rows keep a height that reads well even when there are few of them.
    const qreal gap = std::min(rect.height() * 0.05, 10.0);
    const qreal rowHeight =
        std::min((rect.height() - moreLine - gap * (places - 1)) / places,
                 (rect.height() - moreLine - gap * (shown - 1)) / std::max(shown, 1));
    // One size for every name, so that a long one does not read smaller than its neighbours.
    const RowLayout first = rowLayout(QRectF(rect.left(), rect.top(), rect.width(), rowHeight));
    qreal nameSize = first.label * 0.85;
    for (int i = 0; i < shown; ++i) {
        nameSize =
            std::min(nameSize, FaceKit::fittingPixelSize(nameOf(devices.at(i)), first.name.size(),
                                                         QFont::Medium, first.label * 0.85));
    }
    nameSize = std::max(nameSize, first.label * 0.65);
    for (int i = 0; i < shown; ++i) {
        drawRow(painter, context,
                QRectF(rect.left(), rect.top() + i * (rowHeight + gap), rect.width(), rowHeight),
                devices.at(i), nameSize);
    }
    if (more) {
        FaceKit::drawFitted(
            painter, context, QRectF(rect.left(), rect.bottom() - moreLine, rect.width(), moreLine),
            L("btdevices.more", QStringLiteral("%1 more")).arg(count - shown), QFont::Medium,
            context.secondary(), Qt::AlignRight | Qt::AlignVCenter, moreLine * 0.85);
    }
}

} // namespace

std::optional<TimeGrain> BluetoothFace::grain(WidgetSize, const WidgetSettings&) const {
    return std::nullopt;
}

ReadingFeeds BluetoothFace::feeds(WidgetSize, const WidgetSettings&) const {
    return ReadingFeed::bluetooth;
}

QString BluetoothFace::symbolFor(const QString& iconName) {
    for (const Kind& kind : kKinds) {
        if (iconName.startsWith(QLatin1String(kind.icon))) {
            return QLatin1String(kind.symbol);
        }
    }
    return kBluetooth;
}

QList<BluetoothDevice> BluetoothFace::withBattery(const QList<BluetoothDevice>& devices) {
    QList<BluetoothDevice> out;
    for (const BluetoothDevice& device : devices) {
        if (device.battery) {
            out << device;
        }
    }
    std::stable_sort(out.begin(), out.end(),
                     [](const BluetoothDevice& a, const BluetoothDevice& b) {
                         return a.connected && !b.connected;
                     });
    return out;
}

void BluetoothFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const ReadingsBoard* board = context.readings;
    if (board == nullptr || !board->bluetoothAvailable) {
        ReadingKit::drawNotice(painter, context, rect, kBluetooth,
                               L("widget.btdevices.name", QStringLiteral("Devices")),
                               ReadingText::missing());
        return;
    }
    if (!*board->bluetoothAvailable) {
        ReadingKit::drawNotice(
            painter, context, rect, QStringLiteral("bluetooth.slash"),
            L("btdevices.off", QStringLiteral("Bluetooth is off")),
            L("btdevices.offDetail", QStringLiteral("Devices show when it is on")));
        return;
    }
    const QList<BluetoothDevice> devices = withBattery(board->bluetooth);
    if (devices.isEmpty()) {
        const auto paired = static_cast<int>(board->bluetooth.size());
        ReadingKit::drawNotice(
            painter, context, rect, kBluetooth,
            L("btdevices.noBattery", QStringLiteral("No devices with a battery")),
            paired == 0 ? L("btdevices.nonePaired", QStringLiteral("No paired devices"))
                        : L("btdevices.paired", QStringLiteral("%1 paired")).arg(paired));
        return;
    }
    switch (context.size) {
    case WidgetSize::small:
        drawHero(painter, context, rect, devices.first(), devices.size() - 1);
        return;
    case WidgetSize::wide:
        drawList(painter, context, rect, devices, 2);
        return;
    case WidgetSize::wideTall: {
        if (devices.size() <= 3) {
            drawList(painter, context, rect, devices, 3);
            return;
        }
        // Two columns of three.
        const qreal gap = rect.width() * 0.06;
        const qreal width = (rect.width() - gap) / 2;
        const QList<BluetoothDevice> left = devices.mid(0, 3);
        drawList(painter, context, QRectF(rect.left(), rect.top(), width, rect.height()), left, 3);
        drawList(painter, context,
                 QRectF(rect.left() + width + gap, rect.top(), width, rect.height()),
                 devices.mid(3), 3);
        return;
    }
    default:
        drawList(painter, context, rect, devices, 4);
        return;
    }
}

} // namespace tw
