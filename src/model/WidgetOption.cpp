#include "model/WidgetOption.h"

#include "text/L.h"

#include <array>

namespace tw {

namespace {

using Type = WidgetOption::Type;

WidgetOption hourFormat() {
    return {.key = QStringLiteral("format"),
            .title = L("option.format", QStringLiteral("Hours")),
            .type = Type::choice,
            .choices = {{QString(), L("option.format.auto", QStringLiteral("As the system says"))},
                        {QStringLiteral("12"), L("option.format.12", QStringLiteral("12-hour"))},
                        {QStringLiteral("24"), L("option.format.24", QStringLiteral("24-hour"))}},
            .defaultValue = QString()};
}

// The time zone as an identifier ("Europe/Paris"); blank is the system's own.
WidgetOption zone() {
    return {.key = QStringLiteral("zone"),
            .title = L("option.zone", QStringLiteral("Time zone")),
            .type = Type::text,
            .choices = {},
            .defaultValue = QString()};
}

WidgetOption clockStyle() {
    return {
        .key = QStringLiteral("style"),
        .title = L("option.style", QStringLiteral("Style")),
        .type = Type::choice,
        .choices = {{QStringLiteral("digital"),
                     L("option.style.digital", QStringLiteral("Digital"))},
                    {QStringLiteral("analog"), L("option.style.analog", QStringLiteral("Analog"))}},
        .defaultValue = QStringLiteral("digital")};
}

WidgetOption seconds() {
    return {.key = QStringLiteral("seconds"),
            .title = L("option.seconds", QStringLiteral("Show seconds")),
            .type = Type::toggle,
            .choices = {},
            .defaultValue = QStringLiteral("true")};
}

// The readings the system tile shows, as a comma list its face reads in order.
WidgetOption systemMetrics() {
    const auto choice = [](const char* value, const char* key, const char* title) {
        return WidgetOption::Choice{QLatin1String(value), L(key, QLatin1String(title))};
    };
    return {
        .key = QStringLiteral("metrics"),
        .title = L("option.metrics", QStringLiteral("Shows")),
        .type = Type::choice,
        .choices = {choice("cpu,gpu,ram,disk", "option.metrics.all",
                           "Processor, graphics, memory and disk"),
                    choice("cpu,ram,disk", "option.metrics.noGpu", "Processor, memory and disk"),
                    choice("cpu,gpu", "option.metrics.load", "Processor and graphics"),
                    choice("cpu,ram", "option.metrics.cpuRam", "Processor and memory"),
                    choice("cpu", "option.metrics.cpu", "Processor only"),
                    choice("ram", "option.metrics.ram", "Memory only"),
                    choice("disk", "option.metrics.disk", "Disk only")},
        .defaultValue = QStringLiteral("cpu,gpu,ram,disk")};
}

WidgetOption programList() {
    return {
        .key = QStringLiteral("list"),
        .title = L("option.list", QStringLiteral("Programs by")),
        .type = Type::choice,
        .choices = {{QStringLiteral("cpu"), L("option.list.cpu", QStringLiteral("Processor"))},
                    {QStringLiteral("memory"), L("option.list.memory", QStringLiteral("Memory"))}},
        .defaultValue = QStringLiteral("cpu")};
}

WidgetOption temperatureUnit() {
    return {.key = QStringLiteral("unit"),
            .title = L("option.unit", QStringLiteral("Unit")),
            .type = Type::choice,
            .choices = {{QString(), L("option.unit.auto", QStringLiteral("As the system says"))},
                        {QStringLiteral("c"), L("option.unit.c", QStringLiteral("Celsius"))},
                        {QStringLiteral("f"), L("option.unit.f", QStringLiteral("Fahrenheit"))}},
            .defaultValue = QString()};
}

// Where a calendar or reminders tile reads from: nothing until the person chooses, then every
// calendar or one the host finds.
WidgetOption source(const QString& key, const QString& title, const QString& everything) {
    return {.key = key,
            .title = title,
            .type = Type::source,
            .choices = {{QString(), L("option.source.none", QStringLiteral("Not chosen yet"))},
                        {QStringLiteral("all"), everything}},
            .defaultValue = QString()};
}

WidgetOption text(const QString& key, const QString& title) {
    return {.key = key, .title = title, .type = Type::text, .choices = {}, .defaultValue = {}};
}

WidgetOption batteryStyle() {
    return {.key = QStringLiteral("style"),
            .title = L("option.style", QStringLiteral("Style")),
            .type = Type::choice,
            .choices = {{QStringLiteral("battery"),
                         L("option.style.battery", QStringLiteral("Battery"))},
                        {QStringLiteral("ring"), L("option.style.ring", QStringLiteral("Ring"))}},
            .defaultValue = QStringLiteral("battery")};
}

// Where the machine is, or a city; the sky faces use it for rise and set too.
// A sound of the timers; the words are those of their sound list.
WidgetOption sound(const QString& fallback) {
    const auto choice = [](const char* value, const char* key, const char* title) {
        return WidgetOption::Choice{QLatin1String(value), L(key, QLatin1String(title))};
    };
    return {.key = QStringLiteral("sound"),
            .title = L("option.sound", QStringLiteral("Sound")),
            .type = Type::choice,
            .choices = {choice("none", "sound.none", "None"),
                        choice("glass", "sound.glass", "Glass"),
                        choice("ping", "sound.ping", "Ping"), choice("tink", "sound.tink", "Tink"),
                        choice("submarine", "sound.submarine", "Submarine"),
                        choice("hero", "sound.hero", "Hero"), choice("purr", "sound.purr", "Purr")},
            .defaultValue = fallback};
}

// Whole minutes from `values`, "N min" each.
WidgetOption minutes(const char* key, const QString& title, QList<int> values, int fallback) {
    QList<WidgetOption::Choice> choices;
    for (const int value : values) {
        choices.append(
            {QString::number(value), L("option.minutes.n", QStringLiteral("%1 min")).arg(value)});
    }
    return {.key = QLatin1String(key),
            .title = title,
            .type = Type::choice,
            .choices = choices,
            .defaultValue = QString::number(fallback)};
}

WidgetOption toggle(const char* key, const QString& title, const char* fallback) {
    return {.key = QLatin1String(key),
            .title = title,
            .type = Type::toggle,
            .choices = {},
            .defaultValue = QLatin1String(fallback)};
}

// The four lengths the large timer offers while it stands idle.
WidgetOption presets() {
    QList<WidgetOption::Choice> choices;
    for (const auto& [a, b, c, d] :
         {std::array{1, 3, 5, 10}, std::array{3, 5, 10, 25}, std::array{5, 15, 25, 45},
          std::array{15, 30, 45, 60}, std::array{30, 45, 60, 90}}) {
        choices.append({QStringLiteral("%1,%2,%3,%4").arg(a).arg(b).arg(c).arg(d),
                        L("option.timer.presets.set", QStringLiteral("%1, %2, %3 and %4 min"))
                            .arg(a)
                            .arg(b)
                            .arg(c)
                            .arg(d)});
    }
    return {.key = QStringLiteral("presets"),
            .title = L("option.timer.presets", QStringLiteral("Quick lengths")),
            .type = Type::choice,
            .choices = choices,
            .defaultValue = QStringLiteral("3,5,10,25")};
}

QList<WidgetOption> timerOptions() {
    return {
        minutes("minutes", L("option.timer.minutes", QStringLiteral("Length")),
                {1, 2, 3, 5, 10, 15, 20, 25, 30, 45, 60, 90, 120}, 5),
        text(QStringLiteral("label"), L("option.timer.label", QStringLiteral("Label"))),
        presets(),
        sound(QStringLiteral("glass")),
        {.key = QStringLiteral("alarm"),
         .title = L("option.alarm", QStringLiteral("Rings")),
         .type = Type::choice,
         .choices = {{QStringLiteral("once"), L("alarm.once", QStringLiteral("Once"))},
                     {QStringLiteral("tenSeconds"), L("alarm.10s", QStringLiteral("10 seconds"))},
                     {QStringLiteral("thirtySeconds"),
                      L("alarm.30s", QStringLiteral("30 seconds"))},
                     {QStringLiteral("untilStopped"),
                      L("alarm.until", QStringLiteral("Until I stop it"))}},
         .defaultValue = QStringLiteral("tenSeconds")}};
}

// The goal measures today in one category whatever the range shown, so it has a note of its own.
QList<WidgetOption> appUsageOptions() {
    const auto choice = [](const char* value, const char* key, const char* title) {
        return WidgetOption::Choice{QLatin1String(value), L(key, QLatin1String(title))};
    };
    QList<WidgetOption::Choice> hours;
    for (int n = 1; n <= 12; ++n) {
        hours.append({QString::number(n), L("appusage.goal.hours", QStringLiteral("%n h"))
                                              .replace(QStringLiteral("%n"), QString::number(n))});
    }
    return {
        {.key = QStringLiteral("range"),
         .title = L("appusage.range", QStringLiteral("Shows")),
         .type = Type::choice,
         .choices = {choice("24h", "appusage.range.24h", "24 hours"),
                     choice("today", "appusage.range.today", "Today"),
                     choice("7d", "appusage.range.7d", "7 days")},
         .defaultValue = QStringLiteral("24h")},
        {.key = QStringLiteral("group"),
         .title = L("appusage.group", QStringLiteral("Group")),
         .type = Type::choice,
         .choices = {choice("apps", "appusage.group.apps", "Apps"),
                     choice("categories", "appusage.group.categories", "Categories")},
         .defaultValue = QStringLiteral("apps")},
        {.key = QStringLiteral("goal"),
         .title = L("appusage.goal", QStringLiteral("Goal")),
         .type = Type::choice,
         .choices = {choice("off", "appusage.goal.off", "Off"),
                     choice("focus", "appusage.goal.focus", "Focus"),
                     choice("limit", "appusage.goal.limit", "Limit")},
         .defaultValue = QStringLiteral("off")},
        {.key = QStringLiteral("goalHours"),
         .title = L("appusage.goal.length", QStringLiteral("Goal length")),
         .type = Type::choice,
         .choices = hours,
         .defaultValue = QStringLiteral("2")},
        {.key = QStringLiteral("every"),
         .title = L("appusage.every", QStringLiteral("Refresh")),
         .type = Type::choice,
         .choices = {choice("10", "appusage.every.10", "Every 10 minutes"),
                     choice("30", "appusage.every.30", "Every 30 minutes"),
                     choice("60", "appusage.every.60", "Every hour")},
         .defaultValue = QStringLiteral("10")},
    };
}

QList<WidgetOption> pomodoroOptions() {
    QList<WidgetOption::Choice> rounds;
    for (int n = 2; n <= 8; ++n) {
        rounds.append({QString::number(n), QString::number(n)});
    }
    return {
        minutes("work", L("option.pomodoro.work", QStringLiteral("Focus")),
                {15, 20, 25, 30, 40, 45, 50, 60, 90}, 25),
        minutes("short", L("option.pomodoro.short", QStringLiteral("Short break")), {3, 5, 10, 15},
                5),
        minutes("long", L("option.pomodoro.long", QStringLiteral("Long break")),
                {10, 15, 20, 25, 30}, 15),
        {.key = QStringLiteral("rounds"),
         .title = L("option.pomodoro.rounds", QStringLiteral("Focus rounds before the long break")),
         .type = Type::choice,
         .choices = rounds,
         .defaultValue = QStringLiteral("4")},
        toggle("auto", L("option.pomodoro.auto", QStringLiteral("Start the next phase by itself")),
               "false"),
        sound(QStringLiteral("glass"))};
}

QList<WidgetOption> stopwatchOptions() {
    return {toggle("hundredths",
                   L("option.stopwatch.hundredths", QStringLiteral("Hundredths when stopped")),
                   "false"),
            toggle("laps", L("option.stopwatch.laps", QStringLiteral("Laps")), "true")};
}

WidgetOption place() {
    return {
        .key = QStringLiteral("location"),
        .title = L("option.location", QStringLiteral("Location")),
        .type = Type::place,
        .choices = {{QString(), L("option.location.current", QStringLiteral("Current location"))},
                    {QStringLiteral("custom"),
                     L("option.location.city", QStringLiteral("A city"))}},
        .defaultValue = QString()};
}

// Currencies by their code, as stored and as shown.
QList<WidgetOption::Choice> currencyChoices(const QStringList& codes) {
    QList<WidgetOption::Choice> choices;
    for (const QString& code : codes) {
        choices.append({code, code.toUpper()});
    }
    return choices;
}

QList<WidgetOption> cryptoOptions() {
    return {{.key = QStringLiteral("coin"),
             .title = L("option.coin", QStringLiteral("Coin (name or ticker)")),
             .type = Type::quote,
             .choices = {},
             .defaultValue = QStringLiteral("bitcoin")},
            {.key = QStringLiteral("vs"),
             .title = L("option.vs", QStringLiteral("Prices in")),
             .type = Type::choice,
             .choices = currencyChoices({QStringLiteral("usd"), QStringLiteral("eur"),
                                         QStringLiteral("gbp"), QStringLiteral("jpy"),
                                         QStringLiteral("chf"), QStringLiteral("cad"),
                                         QStringLiteral("aud")}),
             .defaultValue = QStringLiteral("usd")}};
}

QList<WidgetOption> currencyOptions() {
    // Common currencies of the central bank's reference rates.
    return {{.key = QStringLiteral("base"),
             .title = L("option.base", QStringLiteral("One unit of")),
             .type = Type::choice,
             .choices = currencyChoices(
                 {QStringLiteral("EUR"), QStringLiteral("USD"), QStringLiteral("GBP"),
                  QStringLiteral("CHF"), QStringLiteral("JPY"), QStringLiteral("CAD"),
                  QStringLiteral("AUD"), QStringLiteral("SEK"), QStringLiteral("NOK"),
                  QStringLiteral("DKK"), QStringLiteral("PLN"), QStringLiteral("CZK")}),
             .defaultValue = QStringLiteral("EUR")},
            {.key = QStringLiteral("to"),
             .title = L("option.to", QStringLiteral("In (codes, separated by commas)")),
             .type = Type::quote,
             .choices = {},
             .defaultValue = QStringLiteral("USD,GBP,CHF,JPY")}};
}

// Characters from sets, or words from the shipped list; each group counts only in its mode.
QList<WidgetOption> passwordOptions() {
    QList<WidgetOption::Choice> lengths;
    for (const int n : {8, 10, 12, 14, 16, 20, 24, 28, 32, 40, 48, 56, 64}) {
        lengths.append({QString::number(n), QString::number(n)});
    }
    QList<WidgetOption::Choice> words;
    for (int n = 3; n <= 12; ++n) {
        words.append({QString::number(n), QString::number(n)});
    }
    const WidgetOption::Condition characters{QStringLiteral("mode"), QStringLiteral("characters")};
    const WidgetOption::Condition inWords{QStringLiteral("mode"), QStringLiteral("words")};
    const auto when = [](WidgetOption option, const WidgetOption::Condition& condition) {
        option.activeWhen = condition;
        return option;
    };
    return {
        {.key = QStringLiteral("mode"),
         .title = L("option.password.mode", QStringLiteral("Make")),
         .type = Type::choice,
         .choices = {{QStringLiteral("characters"),
                      L("option.password.characters", QStringLiteral("A password"))},
                     {QStringLiteral("words"),
                      L("option.password.words", QStringLiteral("A passphrase of words"))}},
         .defaultValue = QStringLiteral("characters")},
        when({.key = QStringLiteral("length"),
              .title = L("option.password.length", QStringLiteral("Characters")),
              .type = Type::choice,
              .choices = lengths,
              .defaultValue = QStringLiteral("20")},
             characters),
        when(
            toggle("lower", L("option.password.lower", QStringLiteral("Lower case (a–z)")), "true"),
            characters),
        when(toggle("upper", L("option.password.upper", QStringLiteral("Capitals (A–Z)")), "true"),
             characters),
        when(toggle("digits", L("option.password.digits", QStringLiteral("Digits (0–9)")), "true"),
             characters),
        when(toggle("symbols", L("option.password.symbols", QStringLiteral("Symbols (#$&…)")),
                    "true"),
             characters),
        when(toggle("similar",
                    L("option.password.similar", QStringLiteral("Leave out look-alikes (l 1 O 0)")),
                    "true"),
             characters),
        when({.key = QStringLiteral("words"),
              .title = L("option.password.wordCount", QStringLiteral("Words")),
              .type = Type::choice,
              .choices = words,
              .defaultValue = QStringLiteral("6")},
             inWords),
        when({.key = QStringLiteral("separator"),
              .title = L("option.password.separator", QStringLiteral("Between words")),
              .type = Type::choice,
              .choices =
                  {{QStringLiteral("dash"), L("option.separator.dash", QStringLiteral("Dash"))},
                   {QStringLiteral("space"), L("option.separator.space", QStringLiteral("Space"))},
                   {QStringLiteral("dot"), L("option.separator.dot", QStringLiteral("Dot"))},
                   {QStringLiteral("none"), L("option.separator.none", QStringLiteral("Nothing"))}},
              .defaultValue = QStringLiteral("dash")},
             inWords),
        when(toggle("capitalize",
                    L("option.password.capitalize", QStringLiteral("Capitalise each word")),
                    "false"),
             inWords)};
}

QList<WidgetOption> weatherOptions() {
    const auto choice = [](const char* value, const char* key, const char* title) {
        return WidgetOption::Choice{QLatin1String(value), L(key, QString::fromUtf8(title))};
    };
    return {
        place(),
        {.key = QStringLiteral("units"),
         .title = L("option.units", QStringLiteral("Units")),
         .type = Type::choice,
         .choices = {choice("", "option.units.auto", "Automatic"),
                     choice("c", "option.units.c", "°C"), choice("f", "option.units.f", "°F")},
         .defaultValue = QString()},
        {.key = QStringLiteral("mode"),
         .title = L("option.mode", QStringLiteral("Weather shown")),
         .type = Type::choice,
         .choices = {choice("auto", "option.mode.auto", "The forecast"),
                     choice("manual", "option.mode.manual", "Chosen by hand")},
         .defaultValue = QStringLiteral("auto")},
        {.key = QStringLiteral("condition"),
         .title = L("option.condition", QStringLiteral("Weather by hand")),
         .type = Type::choice,
         .choices = {choice("clear", "weather.cond.clear", "Clear"),
                     choice("clouds", "weather.cond.clouds", "Partly Cloudy"),
                     choice("rain", "weather.cond.rain", "Rain"),
                     choice("snow", "weather.cond.snow", "Snow")},
         .defaultValue = QStringLiteral("clear"),
         .activeWhen = WidgetOption::Condition{QStringLiteral("mode"), QStringLiteral("manual")}},
        {.key = QStringLiteral("animate"),
         .title = L("option.animate", QStringLiteral("Animated sky")),
         .type = Type::toggle,
         .choices = {},
         .defaultValue = QStringLiteral("true")},
        {.key = QStringLiteral("sceneLevel"),
         .title = L("option.sceneLevel", QStringLiteral("Animation")),
         .type = Type::choice,
         .choices = {choice("subtle", "option.sceneLevel.subtle", "Subtle"),
                     choice("full", "option.sceneLevel.full", "Full")},
         .defaultValue = QStringLiteral("subtle"),
         .activeWhen = WidgetOption::Condition{QStringLiteral("animate"), QStringLiteral("true")}},
    };
}

WidgetOption::Choice pick(const char* value, const char* key, const char* title) {
    return {QLatin1String(value), L(key, QString::fromUtf8(title))};
}

QList<WidgetOption> starfieldOptions() {
    return {{.key = QStringLiteral("sky"),
             .title = L("option.sky", QStringLiteral("Sky")),
             .type = Type::choice,
             .choices = {pick("night", "option.sky.night", "Night"),
                         pick("twilight", "option.sky.twilight", "Twilight"),
                         pick("violet", "option.sky.violet", "Violet")},
             .defaultValue = QStringLiteral("night")},
            {.key = QStringLiteral("density"),
             .title = L("option.density", QStringLiteral("Stars")),
             .type = Type::choice,
             .choices = {pick("few", "option.density.few", "Few"),
                         pick("some", "option.density.some", "Some"),
                         pick("many", "option.density.many", "Many")},
             .defaultValue = QStringLiteral("some")},
            {.key = QStringLiteral("drift"),
             .title = L("option.drift", QStringLiteral("Drift")),
             .type = Type::choice,
             .choices = {pick("still", "option.drift.still", "Still"),
                         pick("slow", "option.drift.slow", "Slow"),
                         pick("fast", "option.drift.fast", "Faster")},
             .defaultValue = QStringLiteral("slow")},
            {.key = QStringLiteral("meteors"),
             .title = L("option.meteors", QStringLiteral("Shooting stars")),
             .type = Type::toggle,
             .choices = {},
             .defaultValue = QStringLiteral("true")}};
}

// The sleep timer's lengths in minutes; "0" plays until paused.
QList<WidgetOption> ambientSoundOptions() {
    QList<WidgetOption::Choice> volumes;
    for (int percent = 10; percent <= 100; percent += 10) {
        volumes.append({QString::number(percent), QStringLiteral("%1 %").arg(percent)});
    }
    return {
        {.key = QStringLiteral("sound"),
         .title = L("option.sound", QStringLiteral("Sound")),
         .type = Type::choice,
         .choices = {pick("rain", "ambient.rain", "Rain"), pick("waves", "ambient.waves", "Waves"),
                     pick("cafe", "ambient.cafe", "Café"),
                     pick("white", "ambient.white", "White noise"),
                     pick("pink", "ambient.pink", "Pink noise"),
                     pick("brown", "ambient.brown", "Brown noise")},
         .defaultValue = QStringLiteral("rain")},
        {.key = QStringLiteral("volume"),
         .title = L("option.volume.level", QStringLiteral("Volume")),
         .type = Type::choice,
         .choices = volumes,
         .defaultValue = QStringLiteral("50")},
        {.key = QStringLiteral("sleep"),
         .title = L("option.sleep", QStringLiteral("Sleep timer")),
         .type = Type::choice,
         .choices = {pick("0", "option.sleep.off", "Off"), pick("15", "option.sleep.15", "15 min"),
                     pick("30", "option.sleep.30", "30 min"),
                     pick("60", "option.sleep.60", "1 hour"),
                     pick("90", "option.sleep.90", "1 hour 30 min")},
         .defaultValue = QStringLiteral("0")}};
}

// The companion sleeps from "bedtime" to "wakes", hours of the local day.
QList<WidgetOption> companionOptions() {
    QList<WidgetOption::Choice> evening{pick("never", "option.bedtime.never", "Never sleeps")};
    for (const int hour : {21, 22, 23, 0}) {
        evening.append(
            {QString::number(hour), QStringLiteral("%1:00").arg(hour, 2, 10, QLatin1Char('0'))});
    }
    QList<WidgetOption::Choice> morning;
    for (const int hour : {5, 6, 7, 8, 9}) {
        morning.append(
            {QString::number(hour), QStringLiteral("%1:00").arg(hour, 2, 10, QLatin1Char('0'))});
    }
    return {{.key = QStringLiteral("coat"),
             .title = L("option.coat", QStringLiteral("Coat")),
             .type = Type::choice,
             .choices = {pick("ginger", "option.coat.ginger", "Ginger"),
                         pick("grey", "option.coat.grey", "Grey"),
                         pick("black", "option.coat.black", "Black"),
                         pick("cream", "option.coat.cream", "Cream")},
             .defaultValue = QStringLiteral("ginger")},
            {.key = QStringLiteral("bedtime"),
             .title = L("option.bedtime", QStringLiteral("Goes to sleep")),
             .type = Type::choice,
             .choices = evening,
             .defaultValue = QStringLiteral("23")},
            {.key = QStringLiteral("wakes"),
             .title = L("option.wakes", QStringLiteral("Wakes up")),
             .type = Type::choice,
             .choices = morning,
             .defaultValue = QStringLiteral("7")}};
}

// Whose activity: a person's login or "owner/name", as GitHubTarget reads it.
QList<WidgetOption> gitHubOptions() {
    return {{.key = QStringLiteral("target"),
             .title = L("option.github.target", QStringLiteral("Person or repository")),
             .type = Type::text,
             .choices = {},
             .defaultValue = QString()}};
}

// The entities shown ("entities", a comma list) are picked on the tile's page from what Home
// Assistant lists; a click on a card may be kept from switching anything.
QList<WidgetOption> smartHomeOptions() {
    return {{.key = QStringLiteral("clicks"),
             .title = L("option.smarthome.clicks", QStringLiteral("A click on a light or switch")),
             .type = Type::choice,
             .choices = {{QStringLiteral("toggle"), L("option.smarthome.clicks.toggle",
                                                      QStringLiteral("Turns it on or off"))},
                         {QStringLiteral("none"),
                          L("option.smarthome.clicks.none", QStringLiteral("Does nothing"))}},
             .defaultValue = QStringLiteral("toggle")}};
}

// The page, how often it is loaded again, where it is scrolled to and how large it is drawn.
QList<WidgetOption> webOptions() {
    QList<WidgetOption::Choice> refresh{
        {QStringLiteral("0"), L("option.refresh.never", QStringLiteral("Only when shown"))}};
    for (const int minutes : {5, 15, 30, 60}) {
        refresh.append({QString::number(minutes),
                        L("option.minutes.n", QStringLiteral("%1 min")).arg(minutes)});
    }
    QList<WidgetOption::Choice> zoom;
    for (const int percent : {50, 67, 80, 100, 125, 150}) {
        zoom.append({QString::number(percent), QStringLiteral("%1 %").arg(percent)});
    }
    return {text(QStringLiteral("url"), L("option.url", QStringLiteral("Address"))),
            {.key = QStringLiteral("refresh"),
             .title = L("option.refresh", QStringLiteral("Load again every")),
             .type = Type::choice,
             .choices = refresh,
             .defaultValue = QStringLiteral("15")},
            text(QStringLiteral("scroll"),
                 L("option.scroll", QStringLiteral("Scrolled down by (pixels)"))),
            {.key = QStringLiteral("zoom"),
             .title = L("option.zoom", QStringLiteral("Zoom")),
             .type = Type::choice,
             .choices = zoom,
             .defaultValue = QStringLiteral("100")}};
}

// The paper's colour and the size of the writing.
QList<WidgetOption> stickyNoteOptions() {
    return {{.key = QStringLiteral("paper"),
             .title = L("option.paper", QStringLiteral("Paper")),
             .type = Type::choice,
             .choices = {pick("yellow", "option.paper.yellow", "Yellow"),
                         pick("pink", "option.paper.pink", "Pink"),
                         pick("blue", "option.paper.blue", "Blue"),
                         pick("green", "option.paper.green", "Green"),
                         pick("lilac", "option.paper.lilac", "Lilac"),
                         pick("grey", "option.paper.grey", "Grey")},
             .defaultValue = QStringLiteral("yellow")},
            {.key = QStringLiteral("textSize"),
             .title = L("option.textSize", QStringLiteral("Writing")),
             .type = Type::choice,
             .choices = {pick("small", "option.textSize.small", "Small"),
                         pick("medium", "option.textSize.medium", "Medium"),
                         pick("large", "option.textSize.large", "Large")},
             .defaultValue = QStringLiteral("medium")}};
}

// Where the quotes come from; one's own are one a line, the author after a dash.
QList<WidgetOption> quoteOptions() {
    return {
        {.key = QStringLiteral("source"),
         .title = L("option.quoteSource", QStringLiteral("Quotes")),
         .type = Type::choice,
         .choices = {pick("shipped", "option.quoteSource.shipped", "The collection"),
                     pick("own", "option.quoteSource.own", "My own"),
                     pick("both", "option.quoteSource.both", "Both")},
         .defaultValue = QStringLiteral("shipped")},
        {.key = QStringLiteral("own"),
         .title = L("option.ownQuotes", QStringLiteral("My quotes (one a line: words — author)")),
         .type = Type::lines,
         .choices = {},
         .defaultValue = QString(),
         .activeWhen = WidgetOption::Condition{QStringLiteral("source"), QStringLiteral("own")}},
        {.key = QStringLiteral("style"),
         .title = L("option.quoteStyle", QStringLiteral("Type")),
         .type = Type::choice,
         .choices = {pick("serif", "option.quoteStyle.serif", "Book"),
                     pick("sans", "option.quoteStyle.sans", "Plain")},
         .defaultValue = QStringLiteral("serif")}};
}

// Keeping the history on disk is the person's choice; it is in memory alone otherwise.
QList<WidgetOption> clipboardOptions() {
    return {{.key = QStringLiteral("keep"),
             .title = L("option.clipKeep", QStringLiteral("Keep the history after quitting")),
             .type = Type::toggle,
             .choices = {},
             .defaultValue = QStringLiteral("false")},
            {.key = QStringLiteral("images"),
             .title = L("option.clipImages", QStringLiteral("Keep pictures")),
             .type = Type::toggle,
             .choices = {},
             .defaultValue = QStringLiteral("true")}};
}

WidgetOption folderOption(const char* titleKey, const QString& title) {
    return {.key = QStringLiteral("folder"),
            .title = L(titleKey, title),
            .type = Type::folder,
            .choices = {},
            .defaultValue = QString()};
}

// A choice of a number of seconds.
WidgetOption::Choice every(int seconds, const char* key, const char* title) {
    return {QString::number(seconds), L(key, QString::fromUtf8(title))};
}

QList<WidgetOption> photosOptions() {
    return {folderOption("option.photos.folder", QStringLiteral("Folder")),
            {.key = QStringLiteral("interval"),
             .title = L("option.photos.interval", QStringLiteral("Next picture")),
             .type = Type::choice,
             .choices = {every(10, "option.photos.10s", "Every 10 seconds"),
                         every(30, "option.photos.30s", "Every 30 seconds"),
                         every(60, "option.photos.1m", "Every minute"),
                         every(300, "option.photos.5m", "Every 5 minutes"),
                         every(900, "option.photos.15m", "Every 15 minutes"),
                         every(3600, "option.photos.1h", "Every hour")},
             .defaultValue = QStringLiteral("60")},
            {.key = QStringLiteral("order"),
             .title = L("option.photos.order", QStringLiteral("Order")),
             .type = Type::choice,
             .choices = {{QStringLiteral("shuffle"),
                          L("option.photos.shuffle", QStringLiteral("Shuffled"))},
                         {QStringLiteral("name"),
                          L("option.photos.byName", QStringLiteral("By name"))}},
             .defaultValue = QStringLiteral("shuffle")},
            {.key = QStringLiteral("caption"),
             .title = L("option.photos.caption", QStringLiteral("Caption")),
             .type = Type::text,
             .choices = {},
             .defaultValue = QString()},
            {.key = QStringLiteral("names"),
             .title = L("option.photos.names", QStringLiteral("Show file names")),
             .type = Type::toggle,
             .choices = {},
             .defaultValue = QStringLiteral("false")}};
}

QList<WidgetOption> folderTileOptions() {
    WidgetOption path = folderOption("option.folder.path", QStringLiteral("Folder"));
    path.key = QStringLiteral("path");
    return {
        path,
        {.key = QStringLiteral("sort"),
         .title = L("option.folder.sort", QStringLiteral("Sort by")),
         .type = Type::choice,
         .choices = {{QStringLiteral("name"), L("option.folder.sort.name", QStringLiteral("Name"))},
                     {QStringLiteral("modified"),
                      L("option.folder.sort.modified", QStringLiteral("Date modified"))},
                     {QStringLiteral("kind"), L("option.folder.sort.kind", QStringLiteral("Kind"))},
                     {QStringLiteral("size"),
                      L("option.folder.sort.size", QStringLiteral("Size"))}},
         .defaultValue = QStringLiteral("name")},
        {.key = QStringLiteral("hidden"),
         .title = L("option.folder.hidden", QStringLiteral("Show hidden files")),
         .type = Type::toggle,
         .choices = {},
         .defaultValue = QStringLiteral("false")}};
}

QList<WidgetOption> dropZoneOptions() {
    return {
        folderOption("option.dropzone.folder", QStringLiteral("Put files in")),
        {.key = QStringLiteral("mode"),
         .title = L("option.dropzone.mode", QStringLiteral("Dropped files are")),
         .type = Type::choice,
         .choices = {{QStringLiteral("move"), L("option.dropzone.move", QStringLiteral("Moved"))},
                     {QStringLiteral("copy"), L("option.dropzone.copy", QStringLiteral("Copied"))}},
         .defaultValue = QStringLiteral("move")}};
}

QList<WidgetOption> shortcutOptions() {
    const auto when = [](const char* type) {
        return WidgetOption::Condition{QStringLiteral("type"), QLatin1String(type)};
    };
    return {
        {.key = QStringLiteral("type"),
         .title = L("option.shortcutType", QStringLiteral("Opens")),
         .type = Type::choice,
         .choices = {{QStringLiteral("app"),
                      L("option.shortcutType.app", QStringLiteral("An app"))},
                     {QStringLiteral("url"),
                      L("option.shortcutType.url", QStringLiteral("A web address"))},
                     {QStringLiteral("file"),
                      L("option.shortcutType.file", QStringLiteral("A file or folder"))},
                     {QStringLiteral("command"),
                      L("option.shortcutType.command", QStringLiteral("A command"))}},
         .defaultValue = QStringLiteral("app")},
        {.key = QStringLiteral("app"),
         .title = L("option.app", QStringLiteral("App")),
         .type = Type::app,
         .choices = {},
         .defaultValue = {},
         .activeWhen = when("app")},
        {.key = QStringLiteral("url"),
         .title = L("option.url", QStringLiteral("Address")),
         .type = Type::text,
         .choices = {},
         .defaultValue = {},
         .activeWhen = when("url")},
        {.key = QStringLiteral("file"),
         .title = L("option.file", QStringLiteral("File or folder (~/ for home)")),
         .type = Type::text,
         .choices = {},
         .defaultValue = {},
         .activeWhen = when("file")},
        {.key = QStringLiteral("command"),
         .title =
             L("option.shortcutCommand", QStringLiteral("Command (a program and its arguments)")),
         .type = Type::text,
         .choices = {},
         .defaultValue = {},
         .activeWhen = when("command")},
        text(QStringLiteral("name"),
             L("option.shortcutName", QStringLiteral("Title (blank: its own)"))),
    };
}

QList<WidgetOption> speedTestOptions() {
    return {{.key = QStringLiteral("every"),
             .title = L("option.speedEvery", QStringLiteral("Tests on its own")),
             .type = Type::choice,
             .choices = {every(0, "option.speedEvery.never", "Never, only when started"),
                         every(3600, "option.every.1h", "Every hour"),
                         every(21600, "option.every.6h", "Every 6 hours"),
                         every(86400, "option.every.day", "Every day")},
             .defaultValue = QStringLiteral("0")}};
}

QList<WidgetOption> terminalOptions() {
    return {
        text(QStringLiteral("command"),
             L("option.terminalCommand", QStringLiteral("Command (no shell; sh -c '…' for one)"))),
        {.key = QStringLiteral("interval"),
         .title = L("option.terminalInterval", QStringLiteral("Runs again")),
         .type = Type::choice,
         .choices = {every(0, "option.every.click", "Only when clicked"),
                     every(5, "option.every.5s", "Every 5 seconds"),
                     every(10, "option.every.10s", "Every 10 seconds"),
                     every(30, "option.every.30s", "Every 30 seconds"),
                     every(60, "option.every.1m", "Every minute"),
                     every(300, "option.every.5m", "Every 5 minutes"),
                     every(900, "option.every.15m", "Every 15 minutes"),
                     every(3600, "option.every.1h", "Every hour")},
         .defaultValue = QStringLiteral("60")},
        {.key = QStringLiteral("timeout"),
         .title = L("option.terminalTimeout", QStringLiteral("Stops a run after")),
         .type = Type::choice,
         .choices = {every(5, "option.after.5s", "5 seconds"),
                     every(10, "option.after.10s", "10 seconds"),
                     every(30, "option.after.30s", "30 seconds"),
                     every(60, "option.after.1m", "1 minute"),
                     every(300, "option.after.5m", "5 minutes")},
         .defaultValue = QStringLiteral("10")},
        text(QStringLiteral("directory"),
             L("option.terminalDirectory", QStringLiteral("Runs in (blank: home folder)"))),
    };
}

} // namespace

QList<WidgetOption> WidgetOption::of(const QString& kind) {
    if (kind == QLatin1String("clock") || kind == QLatin1String("analogclock")) {
        return {clockStyle(), seconds(), hourFormat(), zone()};
    }
    if (kind == QLatin1String("simpleclock") || kind == QLatin1String("flipclock")) {
        return {hourFormat(), zone()};
    }
    if (kind == QLatin1String("wordclock")) {
        return {zone()};
    }
    if (kind == QLatin1String("dayprogress")) {
        return {hourFormat()};
    }
    if (kind == QLatin1String("countdown")) {
        return {text(QStringLiteral("title"), L("option.title", QStringLiteral("Title"))),
                {.key = QStringLiteral("target"),
                 .title = L("option.target", QStringLiteral("Counts down to")),
                 .type = Type::date,
                 .choices = {},
                 .defaultValue = {}}};
    }
    if (kind == QLatin1String("web")) {
        return webOptions();
    }
    // The camera opens only once the person has said so here.
    if (kind == QLatin1String("mirror")) {
        return {
            toggle("allowed", L("option.allowCamera", QStringLiteral("Use the camera")), "false"),
            toggle("mirrored", L("option.mirrored", QStringLiteral("Mirrored")), "true")};
    }
    if (kind == QLatin1String("timer")) {
        return timerOptions();
    }
    if (kind == QLatin1String("pomodoro")) {
        return pomodoroOptions();
    }
    if (kind == QLatin1String("stopwatch")) {
        return stopwatchOptions();
    }
    if (kind == QLatin1String("battery")) {
        return {batteryStyle()};
    }
    // Blank: the interface that is up and busiest; or one by its name ("wlan0").
    if (kind == QLatin1String("network")) {
        return {text(QStringLiteral("interface"),
                     L("option.interface", QStringLiteral("Interface (blank: automatic)")))};
    }
    // Blank: the system volume; or the mount point of the one to show first ("/home").
    if (kind == QLatin1String("disk")) {
        return {text(QStringLiteral("volume"),
                     L("option.volume", QStringLiteral("First volume (blank: the system's)")))};
    }
    if (kind == QLatin1String("system")) {
        return {systemMetrics()};
    }
    if (kind == QLatin1String("activity")) {
        return {programList()};
    }
    if (kind == QLatin1String("sensors")) {
        return {temperatureUnit()};
    }
    if (kind == QLatin1String("calendar")) {
        return {source(QStringLiteral("calendar"), L("option.calendar", QStringLiteral("Calendar")),
                       L("option.calendar.all", QStringLiteral("All calendars")))};
    }
    if (kind == QLatin1String("reminders")) {
        return {source(QStringLiteral("list"), L("option.list", QStringLiteral("List")),
                       L("option.list.all", QStringLiteral("All lists"))),
                {.key = QStringLiteral("showCompleted"),
                 .title = L("option.showCompleted",
                            QStringLiteral("Show those completed in the last week")),
                 .type = Type::toggle,
                 .choices = {},
                 .defaultValue = QStringLiteral("false")}};
    }
    if (kind == QLatin1String("weather")) {
        return weatherOptions();
    }
    if (kind == QLatin1String("airquality")) {
        return {place()};
    }
    // The moon's rise and set are times of day.
    if (kind == QLatin1String("nowplaying")) {
        return {{.key = QStringLiteral("mode"),
                 .title = L("option.npMode", QStringLiteral("Shows")),
                 .type = Type::choice,
                 .choices = {{QStringLiteral("auto"),
                              L("option.npMode.auto", QStringLiteral("What is playing"))},
                             {QStringLiteral("manual"),
                              L("option.npMode.manual", QStringLiteral("Demo tracks"))}},
                 .defaultValue = QStringLiteral("auto")},
                // The players offered are those the host finds running.
                {.key = QStringLiteral("player"),
                 .title = L("option.npPlayer", QStringLiteral("Player")),
                 .type = Type::source,
                 .choices = {{QString(),
                              L("option.npPlayer.any", QStringLiteral("Whichever played last"))}},
                 .defaultValue = QString()}};
    }
    if (kind == QLatin1String("stocks")) {
        return {{.key = QStringLiteral("symbol"),
                 .title = L("option.symbol", QStringLiteral("Symbol")),
                 .type = Type::quote,
                 .choices = {},
                 .defaultValue = QStringLiteral("AAPL")}};
    }
    if (kind == QLatin1String("crypto")) {
        return cryptoOptions();
    }
    if (kind == QLatin1String("currency")) {
        return currencyOptions();
    }
    if (kind == QLatin1String("stickynote")) {
        return stickyNoteOptions();
    }
    if (kind == QLatin1String("quote")) {
        return quoteOptions();
    }
    if (kind == QLatin1String("clipboard")) {
        return clipboardOptions();
    }
    if (kind == QLatin1String("appusage")) {
        return appUsageOptions();
    }
    if (kind == QLatin1String("calculator")) {
        return {{.key = QStringLiteral("decimals"),
                 .title = L("option.decimals", QStringLiteral("Decimal places")),
                 .type = Type::choice,
                 .choices = {{QString(), L("option.decimals.auto", QStringLiteral("As needed"))},
                             {QStringLiteral("0"), QStringLiteral("0")},
                             {QStringLiteral("2"), QStringLiteral("2")},
                             {QStringLiteral("4"), QStringLiteral("4")},
                             {QStringLiteral("6"), QStringLiteral("6")}},
                 .defaultValue = QString()}};
    }
    if (kind == QLatin1String("passwordgenerator")) {
        return passwordOptions();
    }
    if (kind == QLatin1String("moon")) {
        return {place(), hourFormat()};
    }
    if (kind == QLatin1String("starfield")) {
        return starfieldOptions();
    }
    if (kind == QLatin1String("ambientsound")) {
        return ambientSoundOptions();
    }
    if (kind == QLatin1String("companion")) {
        return companionOptions();
    }
    if (kind == QLatin1String("github")) {
        return gitHubOptions();
    }
    if (kind == QLatin1String("smarthome")) {
        return smartHomeOptions();
    }
    if (kind == QLatin1String("photos")) {
        return photosOptions();
    }
    if (kind == QLatin1String("folder")) {
        return folderTileOptions();
    }
    if (kind == QLatin1String("dropzone")) {
        return dropZoneOptions();
    }
    if (kind == QLatin1String("apps")) {
        return {{.key = QStringLiteral("apps"),
                 .title = L("option.apps", QStringLiteral("Apps")),
                 .type = Type::apps,
                 .choices = {},
                 .defaultValue = {}}};
    }
    if (kind == QLatin1String("shortcut")) {
        return shortcutOptions();
    }
    if (kind == QLatin1String("terminal")) {
        return terminalOptions();
    }
    if (kind == QLatin1String("speedtest")) {
        return speedTestOptions();
    }
    return {};
}

} // namespace tw
