// The batteries of the Bluetooth devices: each device's symbol by its kind, whether it is
// connected and its charge with a small bar; honest states when Bluetooth is off or no device
// reports a battery.
#pragma once

#include "faces/WidgetFace.h"
#include "platform/BluetoothSource.h"

namespace tw {

class BluetoothFace final : public WidgetFace {
public:
    std::optional<TimeGrain> grain(WidgetSize size, const WidgetSettings& settings) const override;
    void paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const override;
    ReadingFeeds feeds(WidgetSize size, const WidgetSettings& settings) const override;

    // The symbol of a device by its freedesktop icon name ("input-mouse" gives "computermouse");
    // the Bluetooth symbol for a kind it does not know.
    static QString symbolFor(const QString& iconName);
    // The devices that report a battery, connected ones first, otherwise in their order.
    static QList<BluetoothDevice> withBattery(const QList<BluetoothDevice>& devices);
};

} // namespace tw
