// The jobs of the launch chain, one function per mode, each in a file of its own.
#pragma once

#include "app/LaunchStep.h"

namespace tw {

// --help, -h: the launch modes, their options and the environment; needs no display.
std::optional<int> runHelpMode(LaunchContext& context);
// --web ADDRESS PATH: the page drawn at 900 × 600 through the web tiles' helper, written as a
// picture; "web ok=true|false path=PATH", exit status 1 when no picture was written.
std::optional<int> runWebMode(LaunchContext& context);
// --camera: what this system knows of cameras (access, the devices found, their nodes).
std::optional<int> runCameraMode(LaunchContext& context);
// --sensord: the machine's temperatures by kind and its fans as plain lines; exit status 1 when
// nothing was found.
std::optional<int> runSensordMode(LaunchContext& context);
// --wallpapers <dir>: one PNG per built-in wallpaper at 960 × 600; the count on stderr.
std::optional<int> runWallpapersMode(LaunchContext& context);
// --apply-wallpaper <id>: the built-in on every display through the desktop's own mechanism.
std::optional<int> runApplyWallpaperMode(LaunchContext& context);
// --sizes: the matrix of kinds and sizes.
std::optional<int> runSizesMode(LaunchContext& context);
// --counts: "widgets=… sizes=… themes=…".
std::optional<int> runCountsMode(LaunchContext& context);
// --icon <out.png> [--scale X]: the program's icon, 512 points a side.
// The assistant prompt as UTF-8 text, in English or, for a language beginning with "de", German.
std::optional<int> runSnapshotAIPromptMode(LaunchContext& context);
std::optional<int> runIconMode(LaunchContext& context);
// --snapshot-whatsnew <out.png> [--dark|--light] [--scale X]: the "What's new" window with the
// notes of this version, 560 × 520 points.
std::optional<int> runSnapshotWhatsNewMode(LaunchContext& context);
// --snapshot-browse <out.png> [--dark|--light] [--scale X] [--theme T]: the configuration
// window's gallery page at 980 × 680 points in the house style.
std::optional<int> runSnapshotBrowseMode(LaunchContext& context);
// --snapshot-widget <out.png> --kind K --size S [--theme T] [--dark|--light] [--scale X]
// [--style S] [--set key=value ...]: one tile drawn off-screen.
std::optional<int> runSnapshotWidgetMode(LaunchContext& context);
// --snapshot-share <out.png> [--board FILE] [--theme T] [--dark|--light] [--scale X]
// [--wallpaper ID|PICTURE]: a board's picture for sharing (a sample desk without --board).
std::optional<int> runSnapshotShareMode(LaunchContext& context);
// --snapshot-gallery <out.png> [--theme T] [--dark|--light] [--scale X]: every kind on one sheet.
std::optional<int> runSnapshotGalleryMode(LaunchContext& context);
// --snapshot-glass <out.png> [--backdrop PICTURE] [--size S] [--frost F] [--dark|--light]
// [--scale X]: one tile's liquid lens over a picture.
std::optional<int> runSnapshotGlassMode(LaunchContext& context);
// --snapshot-glass-hero <out.png> [--style frosted|clear|liquid] [--wallpaper ID|PICTURE]
// [--dark|--light] [--scale X]: clocks and the day's progress in the three glass looks over a
// wallpaper.
std::optional<int> runSnapshotGlassHeroMode(LaunchContext& context);
// --snapshot-lock <out.png> [--style frosted|clear|liquid] [--wallpaper ID|PICTURE]
// [--dark|--light] [--scale X]: a 1440 × 900 lock screen with the widgets at their places.
std::optional<int> runSnapshotLockMode(LaunchContext& context);
// --snapshot-lockpane <out.png> [--wallpaper ID|PICTURE] [--dark|--light] [--scale X]: the lock
// screen's settings pane with its preview.
std::optional<int> runSnapshotLockPaneMode(LaunchContext& context);
// --snapshot-glassintro <out.png> [--wallpaper ID|PICTURE] [--dark|--light] [--scale X]: the card
// that introduces the three glass looks, each with a live preview.
std::optional<int> runSnapshotGlassIntroMode(LaunchContext& context);
// --snapshot-livebg <out.png> [SCENE] [--fps F] [--start S] [--dark|--light] [--scale X]: six
// moments of a moving built-in wallpaper (aurora by default) on one sheet, S seconds in and 1/F
// apart (one loop by default).
std::optional<int> runSnapshotLiveBackdropMode(LaunchContext& context);
// --speedtest-cli: one whole speed test, its state every 0.5 s as "phase=… live=… down=… ping=…"
// lines, the last one when it ends; exit status 0 however it ends.
std::optional<int> runSpeedTestCliMode(LaunchContext& context);
// --list-sizes: one line of kind and allowed sizes per kind.
std::optional<int> runListSizesMode(LaunchContext& context);
// --probe-skylight: whether widgets can be drawn above the lock screen, step by step, as labelled
// lines ending in "RESULT" and why.
std::optional<int> runProbeSkylightMode(LaunchContext& context);
// --sky LATITUDE LONGITUDE TIME: the moon's phase and light, sun and moon rise and set on TIME's
// day in its offset, and the subsolar point, one "key=value" a line; exit status 1 with one line
// on stderr for arguments it cannot read.
std::optional<int> runSkyMode(LaunchContext& context);
// --snapshot-config <out.png> [section], --snapshot-settings <out.png> [page],
// --snapshot-general <out.png> [--dark|--light] [--scale X] [--theme T]: the configuration window
// at a section (none: the gallery) or at a settings page, 980 × 680 points.
std::optional<int> runSnapshotConfigMode(LaunchContext& context);
std::optional<int> runSnapshotSettingsMode(LaunchContext& context);
std::optional<int> runSnapshotGeneralMode(LaunchContext& context);
// --snapshot-kit <out.png> [--dark|--light] [--scale X]: every control of the window in each of
// its states, on one sheet.
std::optional<int> runSnapshotKitMode(LaunchContext& context);
// --snapshot-customeditor <out.png> [--template ID] [--dark|--light] [--scale X] [--theme T]: the
// configuration window's custom widget editor with a template loaded (default: crypto).
std::optional<int> runSnapshotCustomEditorMode(LaunchContext& context);
// --snapshot-tutorial <out.png> [step] [--no-tray] [--dark|--light] [--scale X]: the window with
// the first-start guide over it at step 1 to 3 (default 1); --no-tray as on a desktop without one.
std::optional<int> runSnapshotTutorialMode(LaunchContext& context);
// --snapshot-notice <out.png> [--dark|--light] [--scale X]: the program's sample notice as the
// window's banner and as a card, in the window's colours.
std::optional<int> runSnapshotNoticeMode(LaunchContext& context);
// TWK_TIME: pins the clock for whatever follows; never ends the chain.
std::optional<int> runSnapshotTimeStep(LaunchContext& context);
// No mode matched: the desktop host.
std::optional<int> runDesktopHost(LaunchContext& context);

} // namespace tw
