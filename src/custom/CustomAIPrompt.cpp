#include "custom/CustomAIPrompt.h"

namespace tw {

namespace {

const char* const kRole =
    "You are an expert designer of Mac desktop widgets. Build ONE widget for the Mac app "
    "\"Tarnwick\".\n"
    "A Tarnwick widget is a small tile on the desktop, described by a single JSON object: no "
    "code, no formulas, no conditions, no loops. Tarnwick fetches the web addresses you name, "
    "fills in the values and draws the rows you describe. Anything the format does not know is "
    "ignored, so stick exactly to what is described below.\n\n";

const char* const kWishEn = "===== MY WISH =====\n"
                            "[PUT YOUR WISH HERE]\n"
                            "===================\n\n"
                            "An example of a good wish: \"A medium widget with the weather in "
                            "Lisbon: the temperature now, large, and today's hours as bars; blue "
                            "accent.\"\n\n";

const char* const kWishDe = "===== MY WISH =====\n"
                            "[HIER DEINEN WUNSCH EINFÜGEN]\n"
                            "===================\n\n"
                            "An example of a good wish: \"Ein mittleres Widget mit dem Wetter in "
                            "Lissabon: die Temperatur jetzt, groß, und die Stunden von heute als "
                            "Balken; blauer Akzent.\"\n"
                            "The wish may be written in German: write the widget's texts in the "
                            "language of the wish.\n\n";

const char* const kBody = R"(HOW TO THINK ABOUT IT
1. Find out what the person wants to see at a glance: usually one main value and a little context.
2. Choose a source: a public JSON address that needs no key, or no source at all when the machine's own readings or the time are enough.
3. Look at the source's real answer and write the paths to the values exactly as they appear there.
4. Choose the sizes: only those in which the rows really fit.
5. Lay out the rows from top to bottom: the most important first, few words, large numbers.

THE FORMAT
The widget is one JSON object with these keys (all optional, but a useful widget has most of them):
- "schema": 2.
- "id": a UUID such as "7D3F1C2A-9B4E-4F6A-8C1D-2E5B7A9C0F13"; leave it out and a new one is made.
- "name": the widget's name, at most 48 characters.
- "symbol": an SF Symbols name for the widget, e.g. "cloud.sun.fill".
- "accent": a colour "#RRGGBB"; leave it out to follow the person's theme.
- "sizes": a list of "small" (1×1), "tall" (1×2), "wide" (2×1), "large" (2×2), "banner" (4×1), "wideTall" (3×2), "huge" (4×3), "panorama" (6×2), "grand" (4×4). Unknown names are dropped; an empty list means small, wide and large.
- "source": the main data source, an object with "url" (https; plain http only for an address on the local network), "refreshSeconds" (60 to 86400, default 900), and optionally "headers" (an object of request headers, e.g. an API key; they are never written into shared files).
- "sources": up to 3 further sources, each like "source" plus a "name" of 1 to 16 characters from a to z, 0 to 9 and "_". Every further source needs a name, and names must differ.
- "link": a web address opened when the tile is clicked; it may hold tokens, e.g. "{data:html_url}".
- "rows": the content, a list of rows from top to bottom. A row is an object with "elements" (the elements side by side, left to right), optionally "align" ("leading", "center" or "trailing") and "spacing" (points between its elements). Rows without elements are dropped.

ELEMENTS
Every element is an object with "type" and the keys its type uses:
- "text": "text" with words and tokens; "style" one of "display", "title", "headline", "body", "caption", "micro"; "color".
- "value": a number from "path" (or from the first token of "text"), with "decimals" (0 to 6), "prefix", "suffix", "style", "color" and "rules".
- "icon": an SF Symbols name in "symbol", with "color" and "style" for its size.
- "gauge": a ring from "min" to "max" (default 0 to 100). The number comes from "path", or from the single reading token in "text" such as "{cpu}"; other words in "text" are its caption. "suffix" and "decimals" shape the number in the middle.
- "bar": a horizontal bar, read like "gauge"; the words of "text" stand above it on the left, the number on the right.
- "sparkline": a line of one number over the last 12 minutes; "text" is a reading token such as "{cpu}", or "path" a number in the source.
- "image": "text" is the path of a picture file on this computer.
- "divider": a thin line across. "spacer": empty room that pushes its neighbours apart.
- "list": the entries of an array at "path", one line each; "text" is the line, with {item:FIELD} for a field of the entry (default "{item:title}"); "limit" 1 to 12 lines.
- "bars": a bar chart of the numbers of an array at "path"; "text" names the field of the number in each entry (leave it out for an array of plain numbers). The last 24 are shown.
Colours ("color" and in rules): "accent", "primary", "secondary", "positive" (green), "negative" (red), "warning" (amber) or "#RRGGBB".
"rules" colour a number: a list of at most 4 objects {"when": "below" or "above", "value": NUMBER, "color": COLOUR}; the first that matches wins. All three keys are required.
An unknown type becomes text; an unknown style is ignored; but a value of the wrong kind (a number where text belongs, text where a number belongs) makes the whole file unreadable.

PATHS AND TOKENS
A path points into a source's JSON answer with dots: "current.temperature_2m", "items.0.title" (arrays by index from 0). "tokyo:current.temperature_2m" reads the further source named "tokyo". A string such as "3,5" or "65000.12" counts as a number; "12 kg" does not.
Tokens stand in braces inside any "text":
- {data:PATH} a value of the main source; {data.NAME:PATH} of the further source NAME; {item:FIELD} of the current list entry. A missing value shows "—".
- {time} {date} {weekday}, and {time:FORMAT} such as {time:EEEE HH:mm} or {date:d MMMM yyyy}.
- {battery} {battery.state} {cpu} {ram} {disk} in percent; {ram.used} {ram.total} {ram.free} {disk.free} {disk.total} {disk.used} in GB; {host} {user} {uptime}.
There is no nesting and no arithmetic: a token is replaced by its value, and an unknown token stays as written.

GOOD FREE SOURCES (no key needed)
- Weather: https://api.open-meteo.com/v1/forecast?latitude=52.52&longitude=13.41&current=temperature_2m&hourly=temperature_2m&forecast_days=1&timezone=auto (paths "current.temperature_2m", "hourly.temperature_2m").
- Crypto: https://api.coingecko.com/api/v3/simple/price?ids=bitcoin,ethereum&vs_currencies=usd&include_24hr_change=true (paths "bitcoin.usd", "bitcoin.usd_24h_change").
- Exchange rates: https://api.frankfurter.app/latest?from=EUR&to=USD,GBP (path "rates.USD").
- A project's latest release: https://api.github.com/repos/OWNER/REPO/releases/latest (paths "tag_name", "published_at", "html_url").
- A news front page: https://hn.algolia.com/api/v1/search?tags=front_page&hitsPerPage=12 (a "list" at "hits" with "{item:title}").
- Tokens alone: the time, the date and the machine's readings need no source at all.

DESIGN RULES
- One idea per widget. One large number beats five small ones.
- Put the main value in "display" or "title"; labels in "caption" or "micro" with colour "secondary".
- A small tile holds two or three rows; a wide or large one four to six. Offer only the sizes that fit.
- Use "spacer" to push a value to the right edge of its row, and "divider" sparingly.
- Keep "refreshSeconds" as long as the data allows (weather 1800, prices 300).
- Set an accent that suits the subject, or none.

BEFORE YOU ANSWER, CHECK
- The JSON is valid: double quotes, no comments, no trailing commas.
- Every path exists in the source's real answer, spelled exactly.
- Every further source has a unique name of a to z, 0 to 9 and "_", and is used by some element.
- Numbers are numbers, texts are texts; "decimals" and "limit" are whole numbers.
- The addresses are https and need no key, or the key goes into "headers".

ANSWER WITH ONE ```json CODE BLOCK THAT CONTAINS THE COMPLETE WIDGET, AND NOTHING ELSE.

EXAMPLE OF A FINISHED WIDGET
```json
{
  "schema": 2,
  "name": "Lisbon weather",
  "symbol": "cloud.sun.fill",
  "accent": "#0A84FF",
  "sizes": ["small", "wide", "large"],
  "source": {
    "url": "https://api.open-meteo.com/v1/forecast?latitude=38.72&longitude=-9.14&current=temperature_2m&hourly=temperature_2m&forecast_days=1&timezone=auto",
    "refreshSeconds": 1800
  },
  "rows": [
    { "elements": [
      { "type": "icon", "symbol": "cloud.sun.fill", "color": "accent" },
      { "type": "text", "text": "Lisbon", "style": "headline" },
      { "type": "spacer" },
      { "type": "value", "path": "current.temperature_2m", "decimals": 0, "suffix": "°", "style": "title" }
    ] },
    { "elements": [ { "type": "bars", "path": "hourly.temperature_2m", "color": "accent" } ] },
    { "elements": [ { "type": "text", "text": "Today, hour by hour", "style": "micro", "color": "secondary" } ] }
  ]
}
```)";

QString assembled(const char* wish) {
    return QString::fromUtf8(kRole) + QString::fromUtf8(wish) + QString::fromUtf8(kBody);
}

} // namespace

QString CustomAIPrompt::en() {
    return assembled(kWishEn);
}

QString CustomAIPrompt::de() {
    return assembled(kWishDe);
}

QString CustomAIPrompt::forLanguage(const QString& languageCode) {
    return languageCode.startsWith(QLatin1String("de")) ? de() : en();
}

std::optional<QString> CustomAIPrompt::extractJSON(const QString& answer) {
    const QLatin1String fence("```");
    QString text = answer;
    const qsizetype open = text.indexOf(fence);
    if (open >= 0) {
        text = text.mid(open + fence.size());
        // The language tag's line goes.
        const qsizetype lineEnd = text.indexOf(QLatin1Char('\n'));
        text = lineEnd >= 0 ? text.mid(lineEnd + 1) : text;
        const qsizetype close = text.indexOf(fence);
        if (close >= 0) {
            text.truncate(close);
        }
    }
    const qsizetype first = text.indexOf(QLatin1Char('{'));
    const qsizetype last = text.lastIndexOf(QLatin1Char('}'));
    if (first < 0 || last < 0 || first >= last) {
        return std::nullopt;
    }
    return text.mid(first, last - first + 1);
}

} // namespace tw
