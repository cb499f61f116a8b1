#include "custom/CustomWidgetTemplates.h"

#include "text/L.h"

namespace tw {

namespace {

using Type = CustomElementType;
using Style = CustomTextStyle;

CustomElement element(Type type, const QString& text = {}, std::optional<Style> style = {},
                      const QString& color = {}) {
    CustomElement e;
    e.type = type;
    if (!text.isEmpty()) {
        e.text = text;
    }
    e.style = style;
    if (!color.isEmpty()) {
        e.color = color;
    }
    return e;
}

CustomElement text(const QString& text, Style style, const QString& color = {}) {
    return element(Type::text, text, style, color);
}

CustomElement value(const QString& path, Style style, int decimals, const QString& suffix = {},
                    const QString& prefix = {}) {
    CustomElement e = element(Type::value, {}, style);
    e.path = path;
    e.decimals = decimals;
    if (!suffix.isEmpty()) {
        e.suffix = suffix;
    }
    if (!prefix.isEmpty()) {
        e.prefix = prefix;
    }
    return e;
}

CustomElement icon(const QString& symbol, const QString& color = QStringLiteral("accent")) {
    CustomElement e = element(Type::icon, {}, Style::headline, color);
    e.symbol = symbol;
    return e;
}

CustomElement spacer() {
    return element(Type::spacer);
}

// Green when the number rises, red when it falls.
CustomElement change(const QString& path) {
    CustomElement e = value(path, Style::caption, 2, QStringLiteral("%"));
    e.rules = QList<CustomColorRule>{{CustomColorRule::When::below, 0, QStringLiteral("negative")},
                                     {CustomColorRule::When::above, 0, QStringLiteral("positive")}};
    return e;
}

CustomRow row(QList<CustomElement> elements, std::optional<CustomAlign> align = {}) {
    CustomRow r;
    r.elements = std::move(elements);
    r.align = align;
    return r;
}

CustomSource source(const QString& url, int refresh, const QString& name = {}) {
    CustomSource s;
    s.url = url;
    s.refreshSeconds = refresh;
    if (!name.isEmpty()) {
        s.name = name;
    }
    return s;
}

CustomWidgetDefinition widget(const QString& name, const QString& symbol, QList<WidgetSize> sizes,
                              QList<CustomRow> rows) {
    CustomWidgetDefinition d;
    d.name = name;
    d.symbol = symbol;
    d.sizes = std::move(sizes);
    d.rows = std::move(rows);
    return d;
}

QString meteo(const QString& latitude, const QString& longitude, const QString& extra = {}) {
    return QStringLiteral("https://api.open-meteo.com/v1/forecast?latitude=%1&longitude=%2"
                          "&current=temperature_2m%3&timezone=auto")
        .arg(latitude, longitude, extra);
}

const QString kSecondary = QStringLiteral("secondary");

} // namespace

CustomWidgetDefinition CustomWidgetTemplates::blank() {
    return widget(
               L("custom.tpl.blank", QStringLiteral("Blank")), QStringLiteral("textformat.abc"),
               {WidgetSize::small, WidgetSize::wide},
               {row({text(L("custom.tpl.blank.heading", QStringLiteral("Hello")), Style::title)}),
                row({text(L("custom.tpl.blank.line", QStringLiteral("A line of text.")),
                          Style::body, kSecondary)})})
        .sanitized();
}

CustomWidgetDefinition CustomWidgetTemplates::system() {
    CustomElement cpu = element(Type::gauge, QStringLiteral("{cpu}"));
    cpu.suffix = QStringLiteral("%");
    cpu.decimals = 0;
    CustomElement memory =
        element(Type::bar, L("custom.tpl.system.memory", QStringLiteral("Memory {ram}")));
    memory.suffix = QStringLiteral("%");
    memory.decimals = 0;
    memory.rules =
        QList<CustomColorRule>{{CustomColorRule::When::above, 85, QStringLiteral("warning")}};
    return widget(L("custom.tpl.system", QStringLiteral("System")), QStringLiteral("cpu"),
                  {WidgetSize::wide, WidgetSize::large},
                  {row({text(QStringLiteral("{host}"), Style::headline), spacer(),
                        text(L("custom.tpl.system.uptime", QStringLiteral("up {uptime}")),
                             Style::caption, kSecondary)}),
                   row({cpu, memory}),
                   row({text(
                       L("custom.tpl.system.disk", QStringLiteral("{disk.free} GB free on disk")),
                       Style::caption, kSecondary)})})
        .sanitized();
}

CustomWidgetDefinition CustomWidgetTemplates::dayCard() {
    return widget(L("custom.tpl.clock", QStringLiteral("Day card")), QStringLiteral("sun.max.fill"),
                  {WidgetSize::small, WidgetSize::wide, WidgetSize::large},
                  {row({text(L("custom.tpl.clock.greeting", QStringLiteral("Hello, {user}")),
                             Style::caption, kSecondary)}),
                   row({text(QStringLiteral("{time}"), Style::display)}),
                   row({text(QStringLiteral("{weekday}, {date}"), Style::headline,
                             QStringLiteral("accent"))})})
        .sanitized();
}

CustomWidgetDefinition CustomWidgetTemplates::apiValue() {
    CustomWidgetDefinition d =
        widget(L("custom.tpl.api", QStringLiteral("Number from the web")), QStringLiteral("globe"),
               {WidgetSize::small, WidgetSize::wide},
               {row({text(QStringLiteral("{data:name}"), Style::caption, kSecondary)}),
                row({value(QStringLiteral("value"), Style::display, 0)}),
                row({text(L("custom.tpl.api.updated", QStringLiteral("at {time}")), Style::micro,
                          kSecondary)})});
    d.source = source(QStringLiteral("https://example.com/api/stats.json"), 900);
    return d.sanitized();
}

CustomWidgetDefinition CustomWidgetTemplates::chart() {
    CustomElement now = element(Type::value, QStringLiteral("{cpu}"), Style::headline);
    now.suffix = QStringLiteral("%");
    now.decimals = 0;
    return widget(L("custom.tpl.chart", QStringLiteral("Chart")),
                  QStringLiteral("chart.line.uptrend.xyaxis"),
                  {WidgetSize::small, WidgetSize::wide, WidgetSize::large},
                  {row({text(L("custom.tpl.chart.title", QStringLiteral("CPU")), Style::headline),
                        spacer(), now}),
                   row({element(Type::sparkline, QStringLiteral("{cpu}"))}),
                   row({text(L("custom.tpl.chart.span", QStringLiteral("The last 12 minutes")),
                             Style::micro, kSecondary)})})
        .sanitized();
}

CustomWidgetDefinition CustomWidgetTemplates::crypto() {
    const auto coin = [](const QString& name, const QString& symbol, const QString& color,
                         const QString& id) {
        return row({icon(symbol, color), text(name, Style::headline), spacer(),
                    value(id + QStringLiteral(".usd"), Style::headline, 0, {}, QStringLiteral("$")),
                    change(id + QStringLiteral(".usd_24h_change"))});
    };
    const QList<CustomRow> rows{row({text(L("custom.tpl.crypto.title", QStringLiteral("Prices")),
                                          Style::caption, kSecondary),
                                     spacer(),
                                     text(L("custom.tpl.crypto.change", QStringLiteral("24 h")),
                                          Style::caption, kSecondary)}),
                                coin(QStringLiteral("Bitcoin"),
                                     QStringLiteral("bitcoinsign.circle.fill"),
                                     QStringLiteral("#F7931A"), QStringLiteral("bitcoin")),
                                row({element(Type::divider)}),
                                coin(QStringLiteral("Ethereum"), QStringLiteral("diamond.fill"),
                                     QStringLiteral("#627EEA"), QStringLiteral("ethereum"))};
    CustomWidgetDefinition d = widget(L("custom.tpl.crypto", QStringLiteral("Prices with colour")),
                                      QStringLiteral("bitcoinsign.circle.fill"),
                                      {WidgetSize::wide, WidgetSize::large}, rows);
    d.source = source(QStringLiteral("https://api.coingecko.com/api/v3/simple/price"
                                     "?ids=bitcoin,ethereum&vs_currencies=usd"
                                     "&include_24hr_change=true"),
                      300);
    return d.sanitized();
}

CustomWidgetDefinition CustomWidgetTemplates::forecast() {
    CustomElement hours = element(Type::bars, {}, {}, QStringLiteral("accent"));
    hours.path = QStringLiteral("hourly.temperature_2m");
    CustomWidgetDefinition d = widget(
        L("custom.tpl.forecast", QStringLiteral("Temperature curve")),
        QStringLiteral("thermometer.medium"),
        {WidgetSize::small, WidgetSize::wide, WidgetSize::large},
        {row({icon(QStringLiteral("thermometer.medium")),
              text(L("custom.tpl.forecast.place", QStringLiteral("Berlin")), Style::headline),
              spacer(),
              value(QStringLiteral("current.temperature_2m"), Style::title, 0,
                    QStringLiteral("°"))}),
         row({hours}),
         row({text(L("custom.tpl.forecast.span", QStringLiteral("Today, hour by hour")),
                   Style::micro, kSecondary)})});
    d.accent = QStringLiteral("#FF9F0A");
    d.source = source(meteo(QStringLiteral("52.52"), QStringLiteral("13.41"),
                            QStringLiteral("&hourly=temperature_2m&forecast_days=1")),
                      1800);
    return d.sanitized();
}

CustomWidgetDefinition CustomWidgetTemplates::headlines() {
    CustomElement list = element(Type::list, QStringLiteral("{item:title}"), Style::body);
    list.path = QStringLiteral("hits");
    CustomWidgetDefinition d =
        widget(L("custom.tpl.headlines", QStringLiteral("Headlines")), QStringLiteral("newspaper"),
               {WidgetSize::tall, WidgetSize::wide, WidgetSize::large},
               {row({icon(QStringLiteral("newspaper")),
                     text(L("custom.tpl.headlines.title", QStringLiteral("Front page")),
                          Style::headline)}),
                row({list})});
    d.source = source(
        QStringLiteral("https://hn.algolia.com/api/v1/search?tags=front_page&hitsPerPage=12"), 900);
    d.link = QStringLiteral("https://news.ycombinator.com");
    return d.sanitized();
}

CustomWidgetDefinition CustomWidgetTemplates::release() {
    CustomWidgetDefinition d = widget(
        L("custom.tpl.release", QStringLiteral("Latest release")), QStringLiteral("shippingbox"),
        {WidgetSize::small, WidgetSize::wide},
        {row({icon(QStringLiteral("shippingbox")),
              text(L("custom.tpl.release.project", QStringLiteral("Swift")), Style::headline)}),
         row({text(QStringLiteral("{data:tag_name}"), Style::title)}),
         row({text(
             L("custom.tpl.release.published", QStringLiteral("Published {data:published_at}")),
             Style::micro, kSecondary)})});
    d.source = source(
        QStringLiteral("https://api.github.com/repos/swiftlang/swift/releases/latest"), 3600);
    d.link = QStringLiteral("{data:html_url}");
    return d.sanitized();
}

CustomWidgetDefinition CustomWidgetTemplates::twoCities() {
    const auto city = [](const QString& name) { return text(name, Style::caption, kSecondary); };
    const auto temperature = [](const QString& source) {
        return value(source + QStringLiteral(":current.temperature_2m"), Style::title, 0,
                     QStringLiteral("°"));
    };
    CustomWidgetDefinition d = widget(
        L("custom.tpl.twocities", QStringLiteral("Two sources")), QStringLiteral("globe"),
        {WidgetSize::small, WidgetSize::wide},
        {row({city(L("custom.tpl.twocities.a", QStringLiteral("Berlin"))), spacer(),
              city(L("custom.tpl.twocities.b", QStringLiteral("Tokyo")))}),
         row({temperature(QStringLiteral("a")), spacer(), temperature(QStringLiteral("b"))}),
         row({element(Type::divider)}),
         row({text(L("custom.tpl.twocities.note", QStringLiteral("Each from its own address")),
                   Style::micro, kSecondary)},
             CustomAlign::center)});
    d.extraSources = QList<CustomSource>{
        source(meteo(QStringLiteral("52.52"), QStringLiteral("13.41")), 1800, QStringLiteral("a")),
        source(meteo(QStringLiteral("35.68"), QStringLiteral("139.69")), 1800,
               QStringLiteral("b"))};
    return d.sanitized();
}

CustomWidgetDefinition CustomWidgetTemplates::spaceStation() {
    CustomWidgetDefinition d = widget(
        L("custom.tpl.iss", QStringLiteral("Space station")),
        QStringLiteral("globe.europe.africa.fill"), {WidgetSize::small, WidgetSize::wide},
        {row({icon(QStringLiteral("globe.europe.africa.fill")),
              text(L("custom.tpl.iss.title", QStringLiteral("ISS")), Style::headline)}),
         row({value(QStringLiteral("velocity"), Style::title, 0, QStringLiteral(" km/h"))}),
         row({text(L("custom.tpl.iss.label",
                     QStringLiteral("{data:latitude}° / {data:longitude}°  ·  {data:altitude} km")),
                   Style::caption, kSecondary)})});
    d.accent = QStringLiteral("#5AC8FA");
    d.source = source(QStringLiteral("https://api.wheretheiss.at/v1/satellites/25544"), 60);
    return d.sanitized();
}

QList<CustomWidgetTemplates::Template> CustomWidgetTemplates::all() {
    struct Entry {
        const char* id;
        const char* titleKey;
        const char* title;
        const char* detailKey;
        const char* detail;
        CustomWidgetDefinition (*make)();
    };
    static const Entry entries[] = {
        {"blank", "custom.tpl.blank", "Blank", "custom.tpl.blank.detail",
         "A title and a line of text.", &blank},
        {"system", "custom.tpl.system", "System", "custom.tpl.system.detail",
         "CPU ring, memory bar, free disk space.", &system},
        {"clock", "custom.tpl.clock", "Day card", "custom.tpl.clock.detail",
         "Greeting, time and date.", &dayCard},
        {"api", "custom.tpl.api", "Number from the web", "custom.tpl.api.detail",
         "One value out of a JSON address.", &apiValue},
        {"chart", "custom.tpl.chart", "Chart", "custom.tpl.chart.detail",
         "A reading over time, as a line.", &chart},
        {"crypto", "custom.tpl.crypto", "Prices with colour", "custom.tpl.crypto.detail",
         "Bitcoin and Ethereum, the day's change in green or red.", &crypto},
        {"forecast", "custom.tpl.forecast", "Temperature curve", "custom.tpl.forecast.detail",
         "The temperature now and the hours of today as bars.", &forecast},
        {"headlines", "custom.tpl.headlines", "Headlines", "custom.tpl.headlines.detail",
         "A list from the web, a click opens the page.", &headlines},
        {"release", "custom.tpl.release", "Latest release", "custom.tpl.release.detail",
         "The newest version of a project, a click opens its page.", &release},
        {"twocities", "custom.tpl.twocities", "Two sources", "custom.tpl.twocities.detail",
         "Two cities side by side, each from its own address.", &twoCities},
        {"iss", "custom.tpl.iss", "Space station", "custom.tpl.iss.detail",
         "Where the ISS is and how fast it flies.", &spaceStation},
    };
    QList<Template> out;
    for (const Entry& entry : entries) {
        const CustomWidgetDefinition sample = entry.make();
        out.append(
            {QString::fromLatin1(entry.id), L(entry.titleKey, QString::fromUtf8(entry.title)),
             L(entry.detailKey, QString::fromUtf8(entry.detail)), sample.symbol, entry.make});
    }
    return out;
}

std::optional<CustomWidgetTemplates::Template> CustomWidgetTemplates::byId(const QString& id) {
    for (const Template& t : all()) {
        if (t.id == id) {
            return t;
        }
    }
    return std::nullopt;
}

} // namespace tw
