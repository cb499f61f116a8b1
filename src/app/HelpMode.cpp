#include "app/LaunchModes.h"
#include "custom/CustomWidgetTemplates.h"
#include "faces/Wallpaper.h"
#include "platform/PlatformServices.h"

#include <QCoreApplication>

namespace tw {

namespace {

const char* const kUsage = R"(Usage: tarnwick [MODE] [OPTIONS]

Without a mode Tarnwick starts the desktop-widget host on the current display.
With a mode it does that one job without a display, prints one line or report and
exits. The first mode in this list wins; other flags are ignored.

Modes:
  -h, --help                   show this text and exit
  --web ADDRESS OUT.png        draw a web page at 900 x 600 as a web tile does; prints
                               "web ok=true|false path=OUT.png", exits 1 without a picture
  --camera                     what this system knows of cameras: access, devices, nodes
  --sensord                    temperatures by kind and fan speeds; exits 1 when none are found
  --wallpapers DIR             write each built-in wallpaper to DIR as a 960 x 600 PNG
  --apply-wallpaper ID         show a built-in wallpaper on every display; ID is one of
                               %4
  --sizes                      table of the sizes each widget kind allows
  --counts                     one line: "widgets=N sizes=N themes=N"
  --icon OUT.png               the program's icon, 512 points a side
  --snapshot-aiprompt OUT.txt [LANG]  the prompt that asks an AI assistant for a custom widget,
                               in English or German (LANG de...; default: en)
  --snapshot-whatsnew OUT.png  the "What's new" window with this version's notes
  --snapshot-browse OUT.png    draw the gallery page of the configuration window
  --snapshot-kit OUT.png       every control of the configuration window on one sheet
  --snapshot-general OUT.png   the configuration window's General section
  --snapshot-config OUT.png [SECTION]  the window at a section: general, appearance, layouts,
                               updates, about (default: the gallery)
  --snapshot-settings OUT.png [PAGE]  the window at a page: theme, look, displays, lock,
                               energy, language, ... (default: look)
  --snapshot-tutorial OUT.png [STEP]  the window with the first-start guide at step 1, 2 or 3
      --no-tray                as on a desktop without a tray
  --snapshot-customeditor OUT.png  the custom widget editor with a template loaded
      --template ID            which one (default: crypto)
  --snapshot-widget OUT.png    draw one tile to a PNG file
      --kind KIND              the widget kind (required; --list-sizes names them)
      --template NAME          instead of --kind, a custom widget template with sample
                               values: %5
      --size SIZE              one of the kind's sizes (default: the kind's own)
      --style STYLE            a style the kind draws (clock: digital, analog)
      --set KEY=VALUE          one setting of the tile; may be repeated
  --snapshot-gallery OUT.png   draw every kind on one sheet
      --kinds K1,K2,...        only these kinds, each at every size it allows
  --snapshot-share OUT.png     a board's picture for sharing, its tiles over a wallpaper
      --board FILE             the board to draw (default: a sample desk)
  --snapshot-glass OUT.png     draw one tile's liquid glass over a picture
      --backdrop PICTURE       the picture behind it (default: coloured stripes)
      --size SIZE              the tile's size (default: large)
      --frost F                how frosted the glass is, 0 to 1 (default: 0)
  --snapshot-glass-hero OUT.png  clocks in the frosted, clear and liquid glass over a wallpaper
      --style LOOK             only one look: frosted, clear or liquid
  --snapshot-lock OUT.png      the lock screen with the widgets above it (1440 x 900)
      --style LOOK             the tiles' glass (default: frosted)
  --snapshot-lockpane OUT.png  the lock screen's settings pane with its preview
  --snapshot-notice OUT.png    the sample notice as the window's banner and as a card
  --snapshot-glassintro OUT.png  the card that introduces the three glass looks
  --snapshot-livebg OUT.png [SCENE]  six moments of a moving wallpaper (aurora, lagoon,
                               night-sky; default aurora) on one sheet
      --fps F                  frames a second between the moments (default: one loop)
      --start S                the first moment, in seconds (default: 0)
  --speedtest-cli              measure the connection against the speed test host (about 15 s);
                               a line "phase=... live=... down=... ping=..." every 0.5 s
  --list-sizes                 one line per kind: "kind:size,size,..."
  --probe-skylight             whether widgets can show above the lock screen here, and why
  --sky LAT LON TIME           the moon's phase and light, sun and moon rise and set on TIME's
                               day, the point under the sun; TIME is ISO 8601 with its offset

Options of the picture modes:
  --theme THEME                a built-in theme (default: midnight)
  --dark, --light              the shade of the glass (default: dark)
  --scale X                    pixels per point, 0.5 to 4 (default: 2)
  --wallpaper ID|PICTURE       the wallpaper of a scene: a built-in or a picture file
                               (default: lagoon, or dawn with --light)

A mode whose value is missing counts as absent: the desktop host starts instead.
Unknown flags are ignored.

Environment:
%1  TWK_TIME=HH:MM               pin the clock to that time tomorrow, for repeatable pictures
  TKW_CLOCK_START=TIME         start the desktop's clock at TIME (ISO 8601; local time
                               when it has no offset) and let it run on, to watch time rules
  TKW_APP_SUPPORT_DIR=DIR      keep the data files in DIR
                               (default: %2)
  TKW_CONFIG_ONLY=1            open only the configuration window, no tiles
  TKW_CONFIG_SECTION=NAME      open the configuration window at general, appearance,
                               layouts, updates or about
  TKW_CAMPAIGN_URL=URL         try out a notice feed from URL (http, https, a file URL or
                               a path): nothing is cached or remembered while it is set
  TKW_ENDPOINT_BASE=URL        send every web request to URL/<service> instead of the
                               public services (forecast, geocoding, air-quality, ipapi,
                               ipwho, ipinfo, notices, releases), and a custom widget's addresses to
                               URL/web/<host><path>, for tests against a local server
  TKW_SILENT=1                 play no sound: a timer ends without ringing
%3
Exit status: 0 on success; 1 when a mode fails or no display can be opened.
)";

QString wallpaperIds() {
    QStringList ids;
    for (const Wallpaper& wallpaper : Wallpaper::all()) {
        ids.append(wallpaper.id);
    }
    return ids.join(QLatin1String(", "));
}

QString templateIds() {
    QStringList ids;
    for (const CustomWidgetTemplates::Template& entry : CustomWidgetTemplates::all()) {
        ids.append(entry.id);
    }
    return ids.join(QLatin1String(", "));
}

} // namespace

std::optional<int> runHelpMode(LaunchContext& context) {
    const PlatformServices::Wording wording = PlatformServices::wording();
    context.out << "tarnwick " << QCoreApplication::applicationVersion() << "\n\n"
                << QString::fromUtf8(kUsage).arg(wording.displayHelp, wording.dataDirectoryDefault,
                                                 wording.preferencesHelp, wallpaperIds(),
                                                 templateIds());
    return 0;
}

} // namespace tw
