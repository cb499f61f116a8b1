#include "platform/linux/MaterialSymbolProvider.h"

#include <QColor>
#include <QFont>
#include <QFontDatabase>
#include <QLoggingCategory>
#include <QPainter>

#include <array>

Q_LOGGING_CATEGORY(lcSymbols, "Symbols")

namespace tw {

namespace {

struct Mapping {
    const char* symbol;   // the name the catalogue and the faces use
    const char* material; // the Material icon that looks most like it
    char16_t codepoint;
};

// Kept in the catalogue's order, then the category symbols, then what faces and the gallery add.
constexpr std::array kMappings{
    Mapping{"clock", "schedule", 0xe8b5},
    Mapping{"textformat.size", "format_size", 0xe245},
    Mapping{"cloud.sun.fill", "wb_cloudy", 0xe42d},
    Mapping{"aqi.medium", "air", 0xefd8},
    Mapping{"calendar", "calendar_today", 0xe935},
    Mapping{"checklist", "checklist", 0xe6b1},
    Mapping{"music.note", "music_note", 0xe405},
    Mapping{"battery.100", "battery_full", 0xe1a4},
    Mapping{"cpu", "memory", 0xe322},
    Mapping{"thermometer.medium", "device_thermostat", 0xe1ff},
    Mapping{"wave.3.right.circle.fill", "bluetooth_connected", 0xe1a8},
    Mapping{"network", "lan", 0xeb2f},
    Mapping{"internaldrive", "storage", 0xe1db},
    Mapping{"chart.bar.xaxis", "bar_chart", 0xe26b},
    Mapping{"chevron.left.forwardslash.chevron.right", "code", 0xe86f},
    Mapping{"gauge.with.dots.needle.67percent", "speed", 0xe9e4},
    Mapping{"note.text", "sticky_note_2", 0xf1fc},
    Mapping{"quote.opening", "format_quote", 0xe244},
    Mapping{"photo.stack", "photo_library", 0xe413},
    Mapping{"square.grid.2x2.fill", "apps", 0xe5c3},
    Mapping{"wand.and.rays", "auto_fix_high", 0xe663},
    Mapping{"house.fill", "home", 0xe88a},
    Mapping{"globe", "language", 0xe894},
    Mapping{"rectangle.split.2x1", "view_column", 0xe8ec},
    Mapping{"textformat.abc", "abc", 0xeb94},
    Mapping{"timer", "av_timer", 0xe01b},
    Mapping{"stopwatch", "timer", 0xe425},
    Mapping{"hourglass", "hourglass_empty", 0xe88b},
    Mapping{"chart.pie", "pie_chart", 0xe6c4},
    Mapping{"sun.horizon", "wb_twilight", 0xe1c6},
    Mapping{"doc.on.clipboard", "content_paste", 0xe14f},
    Mapping{"tray.full", "inbox", 0xe156},
    Mapping{"folder", "folder", 0xe2c7},
    Mapping{"trash", "delete", 0xe872},
    Mapping{"plus.forwardslash.minus", "calculate", 0xea5f},
    Mapping{"arrow.left.arrow.right", "swap_horiz", 0xe8d4},
    Mapping{"eurosign.arrow.trianglehead.counterclockwise.rotate.90", "currency_exchange", 0xeb70},
    Mapping{"chart.line.uptrend.xyaxis", "show_chart", 0xe6e1},
    Mapping{"bitcoinsign.circle.fill", "currency_bitcoin", 0xebc5},
    Mapping{"key.fill", "vpn_key", 0xe0da},
    Mapping{"wrench.adjustable.fill", "build", 0xe869},
    Mapping{"apple.terminal.fill", "terminal", 0xeb8e},
    Mapping{"globe.europe.africa.fill", "public", 0xe80b},
    Mapping{"moonphase.waxing.gibbous", "brightness_3", 0xe3a8},
    Mapping{"pawprint.fill", "pets", 0xe91d},
    Mapping{"speaker.wave.2.fill", "volume_up", 0xe050},
    Mapping{"sparkles", "auto_awesome", 0xe65f},
    Mapping{"person.crop.square", "account_box", 0xe851},
    Mapping{"star", "star", 0xe838},
    Mapping{"wrench.and.screwdriver", "handyman", 0xf10b},
    Mapping{"plus", "add", 0xe145},
    Mapping{"magnifyingglass", "search", 0xe8b6},
    Mapping{"checkmark", "check", 0xe5ca},
    Mapping{"exclamationmark.triangle", "warning", 0xe002},
    Mapping{"bolt.fill", "bolt", 0xea0b},
    Mapping{"powerplug", "power", 0xe63c},
    Mapping{"wifi", "wifi", 0xe63e},
    Mapping{"wifi.slash", "wifi_off", 0xe648},
    Mapping{"cable.connector", "settings_ethernet", 0xe8be},
    Mapping{"arrow.down", "arrow_downward", 0xe5db},
    Mapping{"arrow.up", "arrow_upward", 0xe5d8},
    Mapping{"externaldrive", "usb", 0xe1e0},
    Mapping{"bluetooth.slash", "bluetooth_disabled", 0xe1a9},
    Mapping{"computermouse", "mouse", 0xe323},
    Mapping{"keyboard", "keyboard", 0xe312},
    Mapping{"gamecontroller", "sports_esports", 0xea28},
    Mapping{"ipad", "tablet", 0xe32f},
    Mapping{"headphones", "headphones", 0xf01f},
    Mapping{"hifispeaker", "speaker", 0xe32d},
    Mapping{"iphone", "smartphone", 0xe32c},
    Mapping{"laptopcomputer", "laptop", 0xe31e},
    Mapping{"applewatch", "watch", 0xe334},
    Mapping{"location", "location_searching", 0xe1b7},
    Mapping{"location.slash", "location_off", 0xe0c7},
    Mapping{"sun.max.fill", "wb_sunny", 0xe430},
    Mapping{"moon.stars.fill", "nights_stay", 0xea46},
    Mapping{"cloud.rain.fill", "water_drop", 0xe798},
    Mapping{"cloud.snow.fill", "ac_unit", 0xeb3b},
    Mapping{"cloud.fog.fill", "foggy", 0xe818},
    Mapping{"cloud.bolt.rain.fill", "thunderstorm", 0xebdb},
    Mapping{"location.fill", "near_me", 0xe569},
    Mapping{"clock.arrow.circlepath", "update", 0xe923},
    // Custom widgets: their states and the templates' symbols.
    Mapping{"square.dashed", "crop_free", 0xe3c2},
    Mapping{"antenna.radiowaves.left.and.right.slash", "cloud_off", 0xe2c1},
    Mapping{"exclamationmark.triangle.fill", "warning", 0xe002},
    Mapping{"star.fill", "star", 0xe838},
    Mapping{"textformat", "text_fields", 0xe262},
    Mapping{"number", "tag", 0xe9ef},
    Mapping{"diamond.fill", "diamond", 0xead5},
    Mapping{"newspaper", "newspaper", 0xeb81},
    Mapping{"shippingbox", "inventory_2", 0xe1a1},
    Mapping{"megaphone.fill", "campaign", 0xef49},
    // The connected tiles: GitHub's figures and the smart home's entities.
    Mapping{"bell.fill", "notifications", 0xe7f4},
    Mapping{"tag.fill", "sell", 0xf05b},
    Mapping{"arrow.triangle.pull", "call_merge", 0xe0b3},
    Mapping{"person.2.fill", "people", 0xe7fb},
    Mapping{"lightbulb.fill", "lightbulb", 0xe0f0},
    Mapping{"power", "power_settings_new", 0xe8ac},
    Mapping{"fan.fill", "toys", 0xe332},
    Mapping{"lock.fill", "lock", 0xe897},
    Mapping{"lock.open.fill", "lock_open", 0xe898},
    Mapping{"door.left.hand.closed", "sensor_door", 0xf1b5},
    Mapping{"figure.walk", "directions_walk", 0xe536},
    Mapping{"drop.fill", "water_drop", 0xe798},
    Mapping{"sensor.fill", "sensors", 0xe51e},
    // The file tiles: documents, pictures and downloads.
    Mapping{"doc", "description", 0xe873},
    Mapping{"photo", "image", 0xe3f4},
    Mapping{"arrow.down.to.line", "file_download", 0xe2c4},
    // Launchers and the toolbox.
    Mapping{"display.slash", "desktop_access_disabled", 0xe99d},
    Mapping{"camera.viewfinder", "screenshot_monitor", 0xec08},
    Mapping{"bell.slash.fill", "notifications_off", 0xe7f6},
    Mapping{"arrow.clockwise", "refresh", 0xe5d5},
    Mapping{"link", "link", 0xe157},
};

const Mapping* find(const QString& symbol) {
    for (const Mapping& m : kMappings) {
        if (symbol == QLatin1String(m.symbol)) {
            return &m;
        }
    }
    return nullptr;
}

} // namespace

QString MaterialSymbolProvider::defaultFontPath() {
    return QStringLiteral(
        "/usr/share/fonts/truetype/material-design-icons-iconfont/MaterialIcons-Regular.ttf");
}

MaterialSymbolProvider::MaterialSymbolProvider(const QString& fontPath) {
    const int id = QFontDatabase::addApplicationFont(fontPath);
    const QStringList families =
        id < 0 ? QStringList() : QFontDatabase::applicationFontFamilies(id);
    if (families.isEmpty()) {
        qCWarning(lcSymbols, "symbol font not readable at %s; tiles draw without symbols",
                  qUtf8Printable(fontPath));
        return;
    }
    m_family = families.first();
}

bool MaterialSymbolProvider::hasSymbol(const QString& name) const {
    return isLoaded() && find(name) != nullptr;
}

bool MaterialSymbolProvider::drawSymbol(QPainter& painter, const QString& name, const QRectF& rect,
                                        const QColor& color) const {
    const Mapping* m = isLoaded() ? find(name) : nullptr;
    if (m == nullptr || rect.isEmpty()) {
        return false;
    }
    const qreal side = std::min(rect.width(), rect.height());
    QFont font(m_family);
    font.setPixelSize(std::max(1, qRound(side)));
    font.setHintingPreference(QFont::PreferNoHinting);
    painter.save();
    painter.setFont(font);
    painter.setPen(color);
    // The font's em square is the icon's box, so centring the line box centres the glyph.
    const QRectF box(rect.center().x() - side / 2, rect.center().y() - side / 2, side, side);
    painter.drawText(box, Qt::AlignCenter, QString(QChar(m->codepoint)));
    painter.restore();
    return true;
}

QStringList MaterialSymbolProvider::symbolNames() {
    QStringList names;
    names.reserve(static_cast<qsizetype>(kMappings.size()));
    for (const Mapping& m : kMappings) {
        names << QLatin1String(m.symbol);
    }
    return names;
}

QString MaterialSymbolProvider::materialName(const QString& symbol) {
    const Mapping* m = find(symbol);
    return m == nullptr ? QString() : QLatin1String(m->material);
}

char16_t MaterialSymbolProvider::codepoint(const QString& symbol) {
    const Mapping* m = find(symbol);
    return m == nullptr ? u'\0' : m->codepoint;
}

} // namespace tw
