#include "model/BuiltInWidget.h"

#include "text/L.h"

#include <QByteArray>

namespace tw {

namespace {

using S = WidgetSize;
using P = WidgetPermission;
using C = WidgetCategory;

// A kind without a note has its own settings, inner padding and glass, and runs its action on a
// click. Notes combine with "|".
enum Note : unsigned {
    none = 0,
    noSettings = 1U << 0,
    fullBleed = 1U << 1,
    chromeless = 1U << 2,
    typedInto = 1U << 3,
};

const RefreshCadence never = RefreshCadence::never();

RefreshCadence every(double seconds) {
    return RefreshCadence::seconds(seconds);
}

BuiltInWidget row(const char* kind, const char* englishName, const char* symbol,
                  QList<WidgetSize> sizes, WidgetSize defaultSize, RefreshCadence refresh,
                  QList<WidgetPermission> permissions, WidgetCategory category, int maxInstances,
                  unsigned notes) {
    const QByteArray nameKey = QByteArrayLiteral("widget.") + kind + QByteArrayLiteral(".name");
    WidgetMetadata metadata;
    metadata.kind = QLatin1String(kind);
    metadata.displayName = L(nameKey.constData(), QLatin1String(englishName));
    metadata.symbol = QLatin1String(symbol);
    metadata.allowedSizes = std::move(sizes);
    metadata.defaultSize = defaultSize;
    metadata.refresh = refresh;
    metadata.permissions = std::move(permissions);
    metadata.hasSettings = (notes & Note::noSettings) == 0;
    metadata.fullBleed = (notes & Note::fullBleed) != 0;
    metadata.chromeless = (notes & Note::chromeless) != 0;
    metadata.typedInto = (notes & Note::typedInto) != 0;
    return {std::move(metadata), category, maxInstances};
}

QList<BuiltInWidget> makeTable() {
    // clang-format off
    return {
        row("clock", "Clock", "clock", {S::small, S::wide, S::large, S::banner, S::wideTall}, S::wide, every(1), {}, C::essentials, 3, Note::none),
        row("simpleclock", "Simple Clock", "textformat.size", {S::small, S::wide, S::large, S::banner, S::wideTall}, S::wide, every(60), {}, C::time, 3, Note::none),
        row("weather", "Weather", "cloud.sun.fill", {S::small, S::wide, S::large, S::wideTall, S::grand}, S::wide, every(60), {P::weather}, C::essentials, 3, Note::none),
        row("airquality", "Air Quality", "aqi.medium", {S::small, S::wide, S::large, S::wideTall, S::banner}, S::large, every(60), {}, C::essentials, 1, Note::none),
        row("calendar", "Calendar", "calendar", {S::small, S::wide, S::large, S::wideTall}, S::large, every(60), {P::calendar}, C::essentials, 1, Note::none),
        row("reminders", "Reminders", "checklist", {S::large, S::wideTall, S::huge, S::panorama, S::grand}, S::large, every(60), {P::reminders}, C::essentials, 2, Note::none),
        row("nowplaying", "Music", "music.note", {S::small, S::wide, S::large, S::wideTall}, S::wide, every(1), {}, C::essentials, 1, Note::none),
        row("battery", "Battery", "battery.100", {S::small, S::wide, S::large}, S::small, every(30), {}, C::system, 1, Note::none),
        row("system", "System", "cpu", {S::small, S::wide, S::large, S::wideTall, S::huge, S::grand}, S::large, every(2), {}, C::system, 1, Note::none),
        row("sensors", "Temperature", "thermometer.medium", {S::small, S::tall, S::wide, S::large, S::wideTall}, S::wide, every(3), {}, C::system, 1, Note::none),
        row("btdevices", "Devices", "wave.3.right.circle.fill", {S::small, S::wide, S::large, S::wideTall}, S::wide, every(10), {}, C::system, 1, Note::none),
        row("network", "Network", "network", {S::small, S::wide, S::banner, S::large, S::wideTall, S::panorama, S::huge, S::grand}, S::wide, every(1), {}, C::system, 1, Note::none),
        row("disk", "Disks", "internaldrive", {S::small, S::wide, S::large, S::wideTall, S::banner}, S::large, every(20), {}, C::system, 1, Note::none),
        row("activity", "Activity", "chart.bar.xaxis", {S::small, S::wide, S::large, S::wideTall, S::panorama}, S::large, every(2), {}, C::system, 1, Note::none),
        row("appusage", "App Time", "chart.bar.xaxis", {S::small, S::wide, S::large, S::banner, S::wideTall}, S::large, never, {}, C::system, 1, Note::none),
        row("github", "GitHub", "chevron.left.forwardslash.chevron.right", {S::small, S::wide, S::large, S::wideTall, S::banner}, S::large, every(300), {}, C::system, 1, Note::none),
        row("speedtest", "Speed Test", "gauge.with.dots.needle.67percent", {S::small, S::wide, S::large, S::wideTall}, S::wide, never, {}, C::system, 1, Note::none),
        row("stickynote", "Sticky Note", "note.text", {S::small, S::wide, S::large, S::tall, S::wideTall, S::huge}, S::large, never, {}, C::workspace, 5, Note::fullBleed | Note::typedInto),
        row("quote", "Quote", "quote.opening", {S::wide, S::large, S::banner, S::wideTall, S::panorama, S::grand}, S::large, never, {}, C::workspace, 3, Note::none),
        row("photos", "Photos", "photo.stack", {S::small, S::wide, S::large, S::wideTall, S::huge, S::grand}, S::wideTall, every(30), {}, C::workspace, 3, Note::fullBleed),
        row("apps", "Apps", "square.grid.2x2.fill", {S::small, S::tall, S::wide, S::large, S::banner, S::wideTall, S::panorama, S::huge, S::grand}, S::large, never, {}, C::workspace, 3, Note::none),
        row("shortcut", "Shortcut", "wand.and.rays", {S::small, S::wide, S::large, S::banner}, S::small, never, {}, C::workspace, 6, Note::none),
        row("smarthome", "Smart Home", "house.fill", {S::small, S::wide, S::large, S::wideTall, S::banner}, S::wide, every(20), {}, C::workspace, 1, Note::none),
        row("web", "Web Page", "globe", {S::large, S::banner, S::wideTall, S::huge, S::panorama, S::grand}, S::wideTall, never, {}, C::workspace, 2, Note::none),
        row("flipclock", "Flip Clock", "rectangle.split.2x1", {S::small, S::wide, S::large, S::banner, S::wideTall, S::panorama}, S::wide, every(1), {}, C::time, 2, Note::none),
        row("wordclock", "Word Clock", "textformat.abc", {S::large, S::wideTall, S::huge, S::grand}, S::large, never, {}, C::time, 2, Note::none),
        row("worldclock", "World Clock", "globe", {S::small, S::wide, S::large, S::wideTall, S::huge, S::grand}, S::wide, every(1), {}, C::time, 2, Note::noSettings),
        row("timer", "Timer", "timer", {S::small, S::wide, S::large}, S::small, every(1), {}, C::time, 3, Note::none),
        row("stopwatch", "Stopwatch", "stopwatch", {S::small, S::wide, S::large}, S::small, never, {}, C::time, 1, Note::none),
        row("pomodoro", "Pomodoro", "timer", {S::small, S::wide, S::large}, S::large, every(1), {}, C::time, 2, Note::none),
        row("countdown", "Countdown", "hourglass", {S::small, S::wide, S::tall, S::large, S::banner, S::wideTall}, S::wide, every(1), {}, C::time, 1, Note::none),
        row("yearprogress", "Year Progress", "chart.pie", {S::small, S::wide, S::large, S::banner, S::wideTall}, S::wide, never, {}, C::time, 4, Note::none),
        row("dayprogress", "Day Progress", "sun.horizon", {S::small, S::wide, S::large, S::banner, S::wideTall}, S::wide, never, {}, C::time, 2, Note::none),
        row("clipboard", "Clipboard", "doc.on.clipboard", {S::wide, S::tall, S::large}, S::tall, every(1), {}, C::tools, 1, Note::none),
        row("dropzone", "Drop Zone", "tray.full", {S::small, S::wide, S::large, S::wideTall, S::huge}, S::wide, never, {}, C::workspace, 3, Note::none),
        row("folder", "Folder", "folder", {S::large, S::wideTall, S::huge, S::panorama, S::grand}, S::wideTall, never, {}, C::workspace, 4, Note::none),
        row("trash", "Trash", "trash", {S::small, S::wide, S::large}, S::small, never, {}, C::workspace, 1, Note::noSettings),
        row("calculator", "Calculator", "plus.forwardslash.minus", {S::large, S::huge, S::grand}, S::large, never, {}, C::tools, 1, Note::none),
        row("unitconverter", "Unit Converter", "arrow.left.arrow.right", {S::wide, S::large, S::banner, S::wideTall}, S::large, never, {}, C::tools, 1, Note::noSettings),
        row("currency", "Currencies", "eurosign.arrow.trianglehead.counterclockwise.rotate.90", {S::small, S::wide, S::large}, S::wide, every(60), {}, C::tools, 3, Note::none),
        row("stocks", "Stocks", "chart.line.uptrend.xyaxis", {S::small, S::tall, S::wide, S::large, S::banner, S::wideTall}, S::wide, every(60), {}, C::tools, 6, Note::none),
        row("crypto", "Crypto", "bitcoinsign.circle.fill", {S::small, S::wide, S::large, S::banner}, S::wide, every(60), {}, C::tools, 4, Note::none),
        row("passwordgenerator", "Password Generator", "key.fill", {S::small, S::wide, S::large, S::wideTall}, S::large, never, {}, C::tools, 1, Note::none),
        row("toolbox", "Toolbox", "wrench.adjustable.fill", {S::small, S::wide, S::large, S::banner, S::wideTall}, S::wide, never, {}, C::tools, 1, Note::none),
        row("terminal", "Terminal", "apple.terminal.fill", {S::wide, S::large, S::banner, S::wideTall, S::huge, S::panorama}, S::large, never, {}, C::tools, 3, Note::typedInto),
        row("worldmap", "World Map", "globe.europe.africa.fill", {S::wide, S::large, S::banner, S::wideTall, S::huge, S::panorama, S::grand}, S::panorama, every(300), {}, C::ambient, 1, Note::noSettings),
        row("moon", "Moon", "moonphase.waxing.gibbous", {S::small, S::wide, S::large, S::wideTall, S::banner}, S::large, every(60), {}, C::ambient, 1, Note::none),
        row("companion", "Companion", "pawprint.fill", {S::small, S::wide, S::large, S::banner}, S::small, never, {}, C::ambient, 6, Note::chromeless),
        row("ambientsound", "Ambient Sound", "speaker.wave.2.fill", {S::small, S::wide, S::large, S::wideTall, S::banner}, S::large, never, {}, C::ambient, 1, Note::fullBleed),
        row("starfield", "Starfield", "sparkles", {S::small, S::wide, S::large, S::wideTall, S::banner}, S::wide, never, {}, C::ambient, 1, Note::none),
        row("mirror", "Mirror", "person.crop.square", {S::small, S::tall, S::wide, S::large, S::wideTall, S::huge}, S::large, never, {P::camera}, C::ambient, 1, Note::fullBleed),
    };
    // clang-format on
}

} // namespace

const QList<BuiltInWidget>& BuiltInWidget::table() {
    static const QList<BuiltInWidget> widgets = makeTable();
    return widgets;
}

const BuiltInWidget* BuiltInWidget::find(const QString& kind) {
    for (const BuiltInWidget& widget : table()) {
        if (widget.metadata.kind == kind) {
            return &widget;
        }
    }
    return nullptr;
}

} // namespace tw
