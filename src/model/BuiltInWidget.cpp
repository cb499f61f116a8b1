#include "model/BuiltInWidget.h"

#include "model/WidgetSearch.h"
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
                  unsigned notes, const char* englishKeywords, const char* englishSummary) {
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
    const QByteArray keywordsKey =
        QByteArrayLiteral("widget.") + kind + QByteArrayLiteral(".keywords");
    // The category's id is its English title.
    const QStringList sources{
        metadata.kind,
        metadata.displayName,
        QLatin1String(englishName),
        title(category),
        rawValue(category),
        L(keywordsKey.constData(), QLatin1String(englishKeywords)),
        QLatin1String(englishKeywords),
    };
    QStringList words;
    for (const QString& source : sources) {
        for (const QString& word : WidgetSearch::words(source)) {
            if (!words.contains(word)) {
                words.append(word);
            }
        }
    }
    const QByteArray summaryKey =
        QByteArrayLiteral("widget.") + kind + QByteArrayLiteral(".summary");
    return {std::move(metadata), category, maxInstances, std::move(words),
            L(summaryKey.constData(), QLatin1String(englishSummary))};
}

QList<BuiltInWidget> makeTable() {
    // clang-format off
    return {
        row("clock", "Clock", "clock", {S::small, S::wide, S::large, S::banner, S::wideTall}, S::wide, every(1), {}, C::essentials, 3, Note::none, "time, hour, analog, watch", "Time and date"),
        row("simpleclock", "Simple Clock", "textformat.size", {S::small, S::wide, S::large, S::banner, S::wideTall}, S::wide, every(60), {}, C::time, 3, Note::none, "time, digital, hour, minimal", "The time, large and plain"),
        row("weather", "Weather", "cloud.sun.fill", {S::small, S::wide, S::large, S::wideTall, S::grand}, S::wide, every(60), {P::weather}, C::essentials, 3, Note::none, "temperature, rain, forecast, sun, wind, cloud, snow, humidity", "Conditions and forecast"),
        row("airquality", "Air Quality", "aqi.medium", {S::small, S::wide, S::large, S::wideTall, S::banner}, S::large, every(60), {}, C::essentials, 1, Note::none, "aqi, pollution, pollen, ozone, smog", "The air where you are"),
        row("calendar", "Calendar", "calendar", {S::small, S::wide, S::large, S::wideTall}, S::large, every(60), {P::calendar}, C::essentials, 1, Note::none, "events, agenda, date, schedule, meeting", "Your next events"),
        row("reminders", "Reminders", "checklist", {S::large, S::wideTall, S::huge, S::panorama, S::grand}, S::large, every(60), {P::reminders}, C::essentials, 2, Note::none, "todo, to-do, tasks, checklist, list", "Lists and due tasks"),
        row("nowplaying", "Music", "music.note", {S::small, S::wide, S::large, S::wideTall}, S::wide, every(1), {}, C::essentials, 1, Note::none, "music, song, player, track, album, artist, media, audio", "What is playing, with controls"),
        row("battery", "Battery", "battery.100", {S::small, S::wide, S::large}, S::small, every(30), {}, C::system, 1, Note::none, "power, charge, laptop, energy", "Charge and time left"),
        row("system", "System", "cpu", {S::small, S::wide, S::large, S::wideTall, S::huge, S::grand}, S::large, every(2), {}, C::system, 1, Note::none, "cpu, processor, memory, ram, load, usage", "Processor and memory load"),
        row("sensors", "Temperature", "thermometer.medium", {S::small, S::tall, S::wide, S::large, S::wideTall}, S::wide, every(3), {}, C::system, 1, Note::none, "temperature, fan, thermal, heat, sensor, rpm", "Temperatures and fans"),
        row("btdevices", "Devices", "wave.3.right.circle.fill", {S::small, S::wide, S::large, S::wideTall}, S::wide, every(10), {}, C::system, 1, Note::none, "bluetooth, headphones, mouse, keyboard, battery, wireless", "Batteries of your devices"),
        row("network", "Network", "network", {S::small, S::wide, S::banner, S::large, S::wideTall, S::panorama, S::huge, S::grand}, S::wide, every(1), {}, C::system, 1, Note::none, "internet, wifi, wi-fi, ethernet, bandwidth, download, upload, traffic", "Traffic up and down"),
        row("disk", "Disks", "internaldrive", {S::small, S::wide, S::large, S::wideTall, S::banner}, S::large, every(20), {}, C::system, 1, Note::none, "storage, drive, ssd, space, volume", "Free space on your drives"),
        row("activity", "Activity", "chart.bar.xaxis", {S::small, S::wide, S::large, S::wideTall, S::panorama}, S::large, every(2), {}, C::system, 1, Note::none, "processes, graph, load, monitor", "The busiest processes"),
        row("appusage", "App Time", "chart.bar.xaxis", {S::small, S::wide, S::large, S::banner, S::wideTall}, S::large, never, {}, C::system, 1, Note::none, "screen time, applications, usage, statistics", "Time spent in each app"),
        row("github", "GitHub", "chevron.left.forwardslash.chevron.right", {S::small, S::wide, S::large, S::wideTall, S::banner}, S::large, every(300), {}, C::system, 1, Note::none, "code, repository, commits, pull requests, git", "Your repositories' activity"),
        row("speedtest", "Speed Test", "gauge.with.dots.needle.67percent", {S::small, S::wide, S::large, S::wideTall}, S::wide, never, {}, C::system, 1, Note::none, "internet, bandwidth, download, upload, ping", "How fast your connection is"),
        row("stickynote", "Sticky Note", "note.text", {S::small, S::wide, S::large, S::tall, S::wideTall, S::huge}, S::large, never, {}, C::workspace, 5, Note::fullBleed | Note::typedInto, "note, text, memo, write", "Notes on the desktop"),
        row("quote", "Quote", "quote.opening", {S::wide, S::large, S::banner, S::wideTall, S::panorama, S::grand}, S::large, never, {}, C::workspace, 3, Note::none, "inspiration, words, motivation, saying", "A quote for the day"),
        row("photos", "Photos", "photo.stack", {S::small, S::wide, S::large, S::wideTall, S::huge, S::grand}, S::wideTall, every(30), {}, C::workspace, 3, Note::fullBleed, "pictures, images, slideshow, album", "Pictures from a folder"),
        row("apps", "Apps", "square.grid.2x2.fill", {S::small, S::tall, S::wide, S::large, S::banner, S::wideTall, S::panorama, S::huge, S::grand}, S::large, never, {}, C::workspace, 3, Note::none, "launcher, applications, dock", "Your favourite apps"),
        row("shortcut", "Shortcut", "wand.and.rays", {S::small, S::wide, S::large, S::banner}, S::small, never, {}, C::workspace, 6, Note::none, "automation, launch, run, action, script", "One click to an app or link"),
        row("smarthome", "Smart Home", "house.fill", {S::small, S::wide, S::large, S::wideTall, S::banner}, S::wide, every(20), {}, C::workspace, 1, Note::none, "home, lights, automation, thermostat", "Lights and devices at home"),
        row("web", "Web Page", "globe", {S::large, S::banner, S::wideTall, S::huge, S::panorama, S::grand}, S::wideTall, never, {}, C::workspace, 2, Note::none, "website, browser, url, page, internet", "A web page, live"),
        row("flipclock", "Flip Clock", "rectangle.split.2x1", {S::small, S::wide, S::large, S::banner, S::wideTall, S::panorama}, S::wide, every(1), {}, C::time, 2, Note::none, "time, retro, hour", "The time on flip cards"),
        row("wordclock", "Word Clock", "textformat.abc", {S::large, S::wideTall, S::huge, S::grand}, S::large, never, {}, C::time, 2, Note::none, "time, words, text", "The time in words"),
        row("worldclock", "World Clock", "globe", {S::small, S::wide, S::large, S::wideTall, S::huge, S::grand}, S::wide, every(1), {}, C::time, 2, Note::noSettings, "time zone, cities, travel, international", "Time in other cities"),
        row("timer", "Timer", "timer", {S::small, S::wide, S::large}, S::small, every(1), {}, C::time, 3, Note::none, "countdown, alarm, kitchen, minutes", "Counts down minutes"),
        row("stopwatch", "Stopwatch", "stopwatch", {S::small, S::wide, S::large}, S::small, never, {}, C::time, 1, Note::none, "lap, timing, chronograph", "Time with laps"),
        row("pomodoro", "Pomodoro", "timer", {S::small, S::wide, S::large}, S::large, every(1), {}, C::time, 2, Note::none, "focus, work, break, productivity, tomato", "Work and breaks in turns"),
        row("countdown", "Countdown", "hourglass", {S::small, S::wide, S::tall, S::large, S::banner, S::wideTall}, S::wide, every(1), {}, C::time, 1, Note::none, "event, days, until, deadline, date", "Days until an event"),
        row("yearprogress", "Year Progress", "chart.pie", {S::small, S::wide, S::large, S::banner, S::wideTall}, S::wide, never, {}, C::time, 4, Note::none, "year, percent, days", "How much of the year is gone"),
        row("dayprogress", "Day Progress", "sun.horizon", {S::small, S::wide, S::large, S::banner, S::wideTall}, S::wide, never, {}, C::time, 2, Note::none, "day, hours, sunrise, sunset", "How much of the day is gone"),
        row("clipboard", "Clipboard", "doc.on.clipboard", {S::wide, S::tall, S::large}, S::tall, every(1), {}, C::tools, 1, Note::none, "copy, paste, history", "What you copied lately"),
        row("dropzone", "Drop Zone", "tray.full", {S::small, S::wide, S::large, S::wideTall, S::huge}, S::wide, never, {}, C::workspace, 3, Note::none, "files, drag, drop, shelf", "A shelf for files"),
        row("folder", "Folder", "folder", {S::large, S::wideTall, S::huge, S::panorama, S::grand}, S::wideTall, never, {}, C::workspace, 4, Note::none, "files, directory, documents, desktop", "A folder's files"),
        row("trash", "Trash", "trash", {S::small, S::wide, S::large}, S::small, never, {}, C::workspace, 1, Note::noSettings, "bin, recycle, delete, empty", "The trash, at hand"),
        row("calculator", "Calculator", "plus.forwardslash.minus", {S::large, S::huge, S::grand}, S::large, never, {}, C::tools, 1, Note::none, "math, numbers, arithmetic, sum", "Quick sums"),
        row("unitconverter", "Unit Converter", "arrow.left.arrow.right", {S::wide, S::large, S::banner, S::wideTall}, S::large, never, {}, C::tools, 1, Note::noSettings, "units, convert, metric, imperial, length, weight, volume", "Lengths, weights and more"),
        row("currency", "Currencies", "eurosign.arrow.trianglehead.counterclockwise.rotate.90", {S::small, S::wide, S::large}, S::wide, every(60), {}, C::tools, 3, Note::none, "money, exchange, rates, euro, dollar, forex", "Exchange rates"),
        row("stocks", "Stocks", "chart.line.uptrend.xyaxis", {S::small, S::tall, S::wide, S::large, S::banner, S::wideTall}, S::wide, every(60), {}, C::tools, 6, Note::none, "market, shares, finance, ticker, portfolio, trading", "Share prices"),
        row("crypto", "Crypto", "bitcoinsign.circle.fill", {S::small, S::wide, S::large, S::banner}, S::wide, every(60), {}, C::tools, 4, Note::none, "bitcoin, ethereum, coins, blockchain, market", "Coin prices"),
        row("passwordgenerator", "Password Generator", "key.fill", {S::small, S::wide, S::large, S::wideTall}, S::large, never, {}, C::tools, 1, Note::none, "security, random, passphrase, secure", "Strong passwords"),
        row("toolbox", "Toolbox", "wrench.adjustable.fill", {S::small, S::wide, S::large, S::banner, S::wideTall}, S::wide, never, {}, C::tools, 1, Note::none, "utilities, quick actions, lock, sleep", "Quick system actions"),
        row("terminal", "Terminal", "apple.terminal.fill", {S::wide, S::large, S::banner, S::wideTall, S::huge, S::panorama}, S::large, never, {}, C::tools, 3, Note::typedInto, "shell, command, console, bash, cli", "A shell on the desktop"),
        row("worldmap", "World Map", "globe.europe.africa.fill", {S::wide, S::large, S::banner, S::wideTall, S::huge, S::panorama, S::grand}, S::panorama, every(300), {}, C::ambient, 1, Note::noSettings, "earth, globe, daylight, night, map", "Day and night on Earth"),
        row("moon", "Moon", "moonphase.waxing.gibbous", {S::small, S::wide, S::large, S::wideTall, S::banner}, S::large, every(60), {}, C::ambient, 1, Note::none, "lunar, phase, night, sky, astronomy", "Tonight's moon"),
        row("companion", "Companion", "pawprint.fill", {S::small, S::wide, S::large, S::banner}, S::small, never, {}, C::ambient, 6, Note::chromeless, "pet, cat, dog, animal, buddy", "A pet on the desktop"),
        row("ambientsound", "Ambient Sound", "speaker.wave.2.fill", {S::small, S::wide, S::large, S::wideTall, S::banner}, S::large, never, {}, C::ambient, 1, Note::fullBleed, "noise, white noise, nature, relax, focus, sleep, sound", "Calming background sound"),
        row("starfield", "Starfield", "sparkles", {S::small, S::wide, S::large, S::wideTall, S::banner}, S::wide, never, {}, C::ambient, 1, Note::none, "stars, space, animation, sky", "Drifting stars"),
        row("mirror", "Mirror", "person.crop.square", {S::small, S::tall, S::wide, S::large, S::wideTall, S::huge}, S::large, never, {P::camera}, C::ambient, 1, Note::fullBleed, "camera, webcam, selfie, video", "Your camera as a mirror"),
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
