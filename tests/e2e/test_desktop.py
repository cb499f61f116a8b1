#!/usr/bin/env python3
"""The real host on a private Xvfb with openbox, driven like a person with xdotool: the first
desktop, dragging onto a tile of the same size (a stack), half onto one of another size (it
slides off), removing a tile from its context menu, and a restart that keeps every place.

    test_desktop.py --binary build/tarnwick --artifacts build/artifacts
"""

import argparse
import datetime
import glob
import http.server
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import threading
import time
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from xsession import XSession, dies_with_parent, missing_tools  # noqa: E402

BINARY = None
TEMPLATES = None
ARTIFACTS = None
VERSION = None
SCREEN = (1920, 1080)
MARGIN = 22
TILE = {"small": (96, 96), "large": (204, 204), "wide": (204, 96)}


def overlap(a, b):
    w = min(a[0] + a[2], b[0] + b[2]) - max(a[0], b[0])
    h = min(a[1] + a[3], b[1] + b[3]) - max(a[1], b[1])
    return w > 0.5 and h > 0.5


class Host:
    """One run of the executable on a fresh data directory and fresh preferences."""

    def __init__(self, session, data_dir, config_home):
        self.session = session
        self.data_dir = data_dir
        self.config_home = config_home
        self.process = None
        self.extra_env = {}
        self.stderr = subprocess.DEVNULL

    def start(self, *arguments):
        env = {"TKW_APP_SUPPORT_DIR": self.data_dir, "XDG_CONFIG_HOME": self.config_home,
               "XDG_DATA_HOME": os.path.join(self.config_home, "data"),
               "XDG_RUNTIME_DIR": self.config_home, "QT_LOGGING_RULES": "*.info=false",
               "TKW_NO_KEYCHAIN": "1", **self.extra_env}
        return subprocess.Popen([BINARY, *arguments], env=self.session.env(env),
                                stdout=subprocess.DEVNULL, stderr=self.stderr,
                                preexec_fn=dies_with_parent)

    def launch(self):
        self.process = self.start()
        return self

    def stop(self):
        if self.process and self.process.poll() is None:
            self.process.terminate()
            try:
                self.process.wait(timeout=10)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()

    def grid(self):
        with open(os.path.join(self.data_dir, "grid.json"), encoding="utf-8") as f:
            return json.load(f)

    def panels(self):
        """Instance id (lower case) to the panel's geometry, for every panel on screen."""
        found = {}
        for window in self.session.client_windows():
            role = self.session.prop(window, "WM_WINDOW_ROLE")
            geometry = self.session.geometry(window)
            if role and geometry:
                found[role.strip('"').lower()] = (window, geometry)
        return found

    def wait_for_panels(self, count):
        # A start on a busy machine may take a while: the deadline is generous.
        return self.session.wait_for(lambda: len(self.panels()) == count and self.panels(), 30)


class Started:
    """A process this test did not start itself, ended like a helper by its id."""

    def __init__(self, pid):
        self.pid = pid

    def terminate(self):
        subprocess.run(["kill", "-TERM", str(self.pid)], check=False, stderr=subprocess.DEVNULL)

    def wait(self):
        deadline = time.monotonic() + 10
        while os.path.exists("/proc/%d" % self.pid) and time.monotonic() < deadline:
            time.sleep(0.1)


def tile_rect(instance):
    """The tile as a y-down rectangle on the screen, from the grid's y-up top-left corner."""
    w, h = TILE[instance["size"]]
    return (instance["posX"], SCREEN[1] - instance["posY"], w, h)


def centre(geometry):
    x, y, w, h = geometry
    return (x + w // 2, y + h // 2)


class HostCase(unittest.TestCase):
    """The real host on a fresh X session, data directory and preferences; quiet starts, since
    the configuration window would stand in front of the tiles."""

    panel_count = 3
    conf = "tarnwick.openWindowAtLaunch=false\n"

    def setUp(self):
        self.data_dir = tempfile.mkdtemp(prefix="tw-e2e-data-")
        self.config_home = tempfile.mkdtemp(prefix="tw-e2e-config-")
        self.conf_path = os.path.join(self.config_home, "Tarnwick", "Tarnwick.conf")
        os.makedirs(os.path.dirname(self.conf_path))
        self.write_conf(self.conf)
        self.session = XSession(size="%dx%d" % SCREEN).__enter__()
        self.helpers = []
        self.before_launch()
        self.host = Host(self.session, self.data_dir, self.config_home)
        self.host.extra_env = self.environment()
        if self.panel_count:
            self.host.launch()
            self.panels = self.host.wait_for_panels(self.panel_count)
            self.assertTrue(self.panels, "the desktop did not show its panels: %s, host %s" % (
                self.host.panels(), self.host.process.poll()))

    def before_launch(self):
        pass

    def environment(self):
        return {}

    def tearDown(self):
        self.host.stop()
        for helper in self.helpers:
            helper.terminate()
            helper.wait()
        self.session.__exit__(None, None, None)
        shutil.rmtree(self.data_dir, ignore_errors=True)
        shutil.rmtree(self.config_home, ignore_errors=True)

    def write_conf(self, keys):
        with open(self.conf_path, "w", encoding="utf-8") as f:
            f.write("[General]\n" + keys)

    def instances(self):
        return {i["id"].lower(): i for i in self.host.grid()["instances"]}

    def by_kind(self, kind):
        return next(i for i in self.instances().values() if i["kind"] == kind)

    def panel_of(self, instance):
        return self.host.panels()[instance["id"].lower()][1]

    def settle(self, predicate, message):
        if not self.session.wait_for(predicate, timeout=10):
            self.screenshot("failed-" + self.id().rsplit(".", 1)[-1] + ".png")
            self.fail(message + ": " + json.dumps(self.host.grid()["instances"]))

    def config_window(self, timeout=15):
        """The configuration window once it has its size; the title comes a moment earlier."""
        return self.session.wait_for(lambda: [
            w for w in self.session.output(["xdotool", "search", "--name", "^Tarnwick$"]).split()
            if (self.session.geometry(int(w)) or (0, 0, 0, 0))[2:] == (980, 680)], timeout)

    def screenshot(self, name):
        """Keeps a picture of the screen among the build's artifacts, when there are any."""
        if ARTIFACTS:
            os.makedirs(ARTIFACTS, exist_ok=True)
            self.session.run(["import", "-window", "root", os.path.join(ARTIFACTS, name)],
                             check=False)

    def pixels(self, x, y, w, h):
        """The screen's pixels in a rectangle, as rows of (r, g, b)."""
        raw = subprocess.run(["import", "-window", "root", "-crop", "%dx%d+%d+%d" % (w, h, x, y),
                              "-depth", "8", "rgb:-"], env=self.session.env(),
                             capture_output=True, check=True).stdout
        return [[tuple(raw[(j * w + i) * 3:(j * w + i) * 3 + 3]) for i in range(w)]
                for j in range(h)]

    def dialog(self, title):
        """A window of this title (a regular expression), in front and focused."""
        found = self.session.wait_for(lambda: self.session.output(
            ["xdotool", "search", "--name", "^" + title + "$"]).split(), timeout=20)
        self.assertTrue(found, "no window " + title)
        self.session.xdotool("windowactivate", "--sync", found[0])
        return found[0]

    def choose_last_menu_entry(self, button):
        """Clicks where the pointer rests, waits for the menu, and takes its last entry."""
        before = self.session.override_windows()
        self.session.xdotool("click", button)
        self.assertTrue(self.session.wait_for(lambda: self.session.override_windows() - before),
                        "no menu opened")
        self.session.xdotool("key", "Up")
        self.session.xdotool("key", "Return")


class DesktopTest(HostCase):
    """The first desktop, driven like a person."""

    def test_first_start_shows_the_first_desktop(self):
        instances = self.instances()
        self.assertEqual(sorted(i["kind"] for i in instances.values()),
                         ["calendar", "clock", "weather"])
        area = self.session.work_area()
        tiles = []
        for ident, (_, geometry) in self.panels.items():
            size = TILE[instances[ident]["size"]]
            self.assertEqual(geometry[2:], (size[0] + 2 * MARGIN, size[1] + 2 * MARGIN))
            tile = (geometry[0] + MARGIN, geometry[1] + MARGIN, size[0], size[1])
            self.assertGreaterEqual(tile[0], area[0])
            self.assertGreaterEqual(tile[1], area[1])
            self.assertLessEqual(tile[0] + tile[2], area[0] + area[2])
            self.assertLessEqual(tile[1] + tile[3], area[1] + area[3])
            # The panel stands where the grid says.
            self.assertEqual(tile, tile_rect(instances[ident]))
            tiles.append(tile)
        for i, a in enumerate(tiles):
            for b in tiles[i + 1:]:
                self.assertFalse(overlap(a, b), "%s overlaps %s" % (a, b))
        hints = ("_NET_WM_STATE_BELOW", "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER")
        for window, _ in self.panels.values():
            # The window manager takes the hints up a moment after it maps the panel.
            self.settle(lambda: all(h in (self.session.prop(window, "_NET_WM_STATE") or "")
                                    for h in hints), "panel %#x lacks its hints" % window)
        self.screenshot("first-desktop.png")

    def test_dragging_fully_onto_a_tile_of_the_same_size_stacks_them(self):
        clock = self.by_kind("clock")
        calendar = self.by_kind("calendar")
        self.session.drag(centre(self.panel_of(calendar)), centre(self.panel_of(clock)))

        def stacked():
            now = self.instances()
            a, b = now[clock["id"].lower()], now[calendar["id"].lower()]
            return a.get("stackID") and a.get("stackID") == b.get("stackID")
        self.settle(stacked, "the two large tiles did not form a stack in grid.json")
        now = self.instances()
        self.assertEqual((now[calendar["id"].lower()]["posX"], now[calendar["id"].lower()]["posY"]),
                         (clock["posX"], clock["posY"]))
        # One of the two shows at the stack's place, the other waits its turn.
        self.settle(lambda: len(self.host.panels()) == 2, "a stack shows one member at a time")
        place = tile_rect(clock)[:2]
        self.settle(lambda: any((g[0] + MARGIN, g[1] + MARGIN) == place
                                for _, g in self.host.panels().values()),
                    "no member of the stack stands at its place")
        self.screenshot("stack.png")

    def test_dropping_half_onto_a_tile_of_another_size_slides_it_off(self):
        clock = self.by_kind("clock")
        weather = self.by_kind("weather")
        cx, cy, cw, ch = self.panel_of(clock)
        start = centre(self.panel_of(weather))
        # The weather tile's top half over the clock tile's lower half.
        end = (cx + cw // 2, cy + ch - MARGIN - 96 // 4)
        saved = self.host.grid().get("savedAt")
        self.session.drag(start, end)

        # The nearest free place may be the one it came from, the spacing below the clock: the
        # drop is seen by the save it made.
        def settled():
            now = self.instances()
            rects = [tile_rect(i) for i in now.values()]
            return all(not overlap(a, b) for n, a in enumerate(rects) for b in rects[n + 1:]) \
                and self.host.grid().get("savedAt") != saved
        self.settle(settled, "the dropped tile still overlaps another")
        now = self.instances()[weather["id"].lower()]
        self.assertNotIn("stackID", now)
        self.settle(lambda: tuple(v + MARGIN for v in self.panel_of(weather)[:2])
                    == tile_rect(now)[:2], "the panel did not slide to the tile's new place")

    def test_remove_widget_from_the_context_menu(self):
        weather = self.by_kind("weather")
        self.session.xdotool("mousemove", "--sync", *centre(self.panel_of(weather)))
        # "Remove Widget" is the menu's last entry.
        self.choose_last_menu_entry(3)
        self.settle(lambda: weather["id"].lower() not in self.instances(),
                    "Remove Widget did not take the tile out of grid.json")
        self.settle(lambda: len(self.host.panels()) == 2, "the removed tile's panel stays")

    def test_a_click_opens_the_persons_own_calendar(self):
        marker = os.path.join(self.config_home, "calendar-opened")
        applications = os.path.join(self.config_home, "data", "applications")
        os.makedirs(applications)
        with open(os.path.join(applications, "org.example.Diary.desktop"), "w") as f:
            f.write("[Desktop Entry]\nType=Application\nName=Diary\n"
                    "Exec=touch %s\n" % marker)
        with open(os.path.join(self.config_home, "mimeapps.list"), "w") as f:
            f.write("[Default Applications]\ntext/calendar=org.example.Diary.desktop\n")
        self.session.xdotool("mousemove", "--sync", *centre(self.panel_of(self.by_kind("calendar"))))
        self.session.xdotool("click", 1)
        self.assertTrue(self.session.wait_for(lambda: os.path.exists(marker), timeout=10),
                        "the calendar's click did not start the chosen application")

    def test_quit_and_start_again_keeps_every_place(self):
        before = {k: g for k, (_, g) in self.panels.items()}
        # A second start brings the first one's window forward and ends by itself.
        second = self.host.start()
        self.assertEqual(second.wait(timeout=15), 0)
        config = self.config_window()
        self.assertTrue(config, "no 980 x 680 window titled Tarnwick came forward")
        # Without a tray the status menu is the window's menu bar: Quit Tarnwick is its last item.
        gx, gy, _, _ = self.session.geometry(int(config[0]))
        self.session.xdotool("mousemove", "--sync", gx + 30, gy + 10)
        self.choose_last_menu_entry(1)
        self.assertEqual(self.host.process.wait(timeout=15), 0)
        self.assertTrue(self.session.wait_for(lambda: not self.host.panels(), timeout=5),
                        "panels outlived the host")

        self.host.launch()
        after = self.host.wait_for_panels(3)
        self.assertTrue(after)
        self.assertEqual({k: g for k, (_, g) in after.items()}, before)


class UpdateLaunchTest(HostCase):
    """Every start records the build's version: the next start of the same version stays quiet,
    a start of another version opens the configuration window."""

    panel_count = 0
    # An install from before versions were recorded, window at launch off.
    conf = "tarnwick.energyMode=balanced\ntarnwick.openWindowAtLaunch=false\n"

    def recorded_version(self):
        with open(self.conf_path, encoding="utf-8") as f:
            for line in f:
                if line.startswith("tarnwick.lastLaunchedVersion="):
                    return line.split("=", 1)[1].strip()
        return None

    def start_opens_window(self):
        """Starts the host, waits for its tiles, says whether the window came, and quits."""
        self.host.launch()
        self.assertTrue(self.host.wait_for_panels(3), "no tiles")
        window = self.config_window(timeout=6)
        self.host.stop()
        return bool(window)

    def test_a_second_start_of_one_version_is_quiet(self):
        self.assertTrue(self.start_opens_window(), "an unrecorded install is an update")
        self.assertEqual(self.recorded_version(), VERSION)
        self.assertFalse(self.start_opens_window(), "the same version again is no update")
        with open(self.conf_path, encoding="utf-8") as f:
            text = f.read().replace("tarnwick.lastLaunchedVersion=" + VERSION,
                                    "tarnwick.lastLaunchedVersion=0.0.1")
        with open(self.conf_path, "w", encoding="utf-8") as f:
            f.write(text)
        self.assertTrue(self.start_opens_window(), "another version is an update")
        self.assertEqual(self.recorded_version(), VERSION)


class PinnedTimeTest(HostCase):
    """A pinned clock pins what a view first shows, never the tick: stacks still turn."""

    panel_count = 1
    STACK = "A0000000-0000-4000-8000-000000000001"

    def environment(self):
        return {"TWK_TIME": "10:09"}

    def before_launch(self):
        members = [{"id": "B0000000-0000-4000-8000-00000000000%d" % n, "kind": kind,
                    "size": "small", "order": n, "page": 0, "col": 0, "row": 0,
                    "posX": 300, "posY": 700, "stackID": self.STACK, "stackIndex": n,
                    "settings": {"stackSeconds": "2"}}
                   for n, kind in enumerate(["clock", "dayprogress"])]
        with open(os.path.join(self.data_dir, "grid.json"), "w", encoding="utf-8") as f:
            json.dump({"instances": members, "pageCount": 1}, f)

    def shown(self):
        """Ids of the stack members on show: a member sent back leaves the managed windows."""
        return set(self.host.panels())

    def test_a_stack_turns_with_the_clock_pinned(self):
        first = self.session.wait_for(lambda: len(self.shown()) == 1 and self.shown())
        self.assertTrue(first, "one member of the stack should be on show")
        self.assertTrue(self.session.wait_for(lambda: self.shown() not in ({*first}, set()) and
                                              len(self.shown()) == 1, timeout=10),
                        "the stack never turned")


class GlassTest(HostCase):
    """Without a compositor, the glass stands over the desktop's own picture: red and blue bands
    the desktop's settings name, blurred behind each tile, with smooth corners and no black."""

    BAND = 160

    def environment(self):
        return {"XDG_CURRENT_DESKTOP": "XFCE"}

    def before_launch(self):
        width, height = SCREEN
        row = b"".join((b"\xd0\x20\x20" if (x // self.BAND) % 2 == 0 else b"\x20\x30\xd0")
                       for x in range(width))
        picture = os.path.join(self.config_home, "bands.ppm")
        with open(picture, "wb") as f:
            f.write(b"P6 %d %d 255\n" % (width, height) + row * height)
        settings = os.path.join(self.config_home, "xfce4", "xfconf", "xfce-perchannel-xml")
        os.makedirs(settings)
        with open(os.path.join(settings, "xfce4-desktop.xml"), "w", encoding="utf-8") as f:
            f.write('<?xml version="1.0" encoding="UTF-8"?>\n<channel name="xfce4-desktop">'
                    '<property name="backdrop"><property name="screen0">'
                    '<property name="monitorscreen"><property name="workspace0">'
                    '<property name="last-image" type="string" value="%s"/>'
                    '<property name="image-style" type="int" value="5"/>'
                    '</property></property></property></property></channel>\n' % picture)
        # What the desktop itself would do: the same picture on the root window.
        self.helpers.append(subprocess.Popen(["display", "-window", "root", picture],
                                             env=self.session.env(),
                                             preexec_fn=dies_with_parent))

    def test_frosted_tiles_show_the_picture_blurred_with_smooth_corners(self):
        clock = self.by_kind("clock")
        x, y, w, h = tile_rect(clock)
        band_edge = round((x + w / 2) / self.BAND) * self.BAND
        self.assertTrue(x < band_edge < x + w, "the clock tile should cross a band's edge")

        def blurred_across():
            line = self.pixels(x + 2, y + 6, w - 4, 1)[0]
            reds = [p[0] - p[2] for p in line]
            # Red on one side of the edge, blue on the other, and a soft way between.
            return max(reds) > 8 and min(reds) < -8 and len(set(reds)) > 8
        self.assertTrue(self.session.wait_for(blurred_across, timeout=10),
                        "the bands do not show through the glass: %s" %
                        self.pixels(x + 2, y + 6, w - 4, 1)[0][::20])
        # Just outside the tile, the desktop's picture: never the black of an unblended margin.
        for px, py in ((x - 3, y + h // 2), (x + w // 2, y - 3), (x + w + 2, y + h // 2)):
            r, g, b = self.pixels(px, py, 1, 1)[0][0]
            self.assertGreater(r + g + b, 120, "black at %d,%d" % (px, py))
        # The corner is antialiased: between the picture outside and the glass inside, some
        # pixels of the diagonal are part-way.
        diagonal = [self.pixels(x + i, y + i, 1, 1)[0][0] for i in range(0, 12)]
        outside, inside = sum(diagonal[0]), sum(diagonal[-1])
        part_way = [sum(p) for p in diagonal if min(outside, inside) + 10 < sum(p) <
                    max(outside, inside) - 10]
        self.assertTrue(part_way, "a hard corner: %s" % diagonal)
        self.screenshot("glass-frosted.png")


class ThemeFromWindowTest(HostCase):
    """The window opened at its theme page changes the tiles on the desktop, and the choice is
    kept."""

    conf = "tarnwick.openWindowAtLaunch=true\n"

    def environment(self):
        return {"TKW_CONFIG_SECTION": "appearance", "TKW_SETTINGS_PAGE": "theme"}

    def test_a_theme_chosen_in_the_window_reaches_the_tiles(self):
        window = self.config_window()
        self.assertTrue(window, "the window did not open")
        # Out of the tiles' way, in front and focused.
        self.session.xdotool("windowmove", window[0], 900, 380)
        self.session.xdotool("windowactivate", "--sync", window[0])
        x, y, w, h = tile_rect(self.by_kind("clock"))
        before = self.pixels(x, y, w, h)
        # The theme page focuses the chosen theme; the arrow takes the next one.
        self.session.xdotool("key", "--clearmodifiers", "Right")
        self.assertTrue(self.session.wait_for(lambda: self.pixels(x, y, w, h) != before,
                                              timeout=10), "the tiles kept their colours")
        self.settle(lambda: "graphite" in open(os.path.join(self.data_dir, "theme.json"),
                                               encoding="utf-8").read()
                    if os.path.exists(os.path.join(self.data_dir, "theme.json")) else False,
                    "the theme was not kept")
        self.screenshot("theme-from-window.png")


class SystemTileTest(HostCase):
    """A System tile shows this machine's load as it changes: a busy process moves its figures."""

    panel_count = 1

    def before_launch(self):
        tile = {"id": "D0000000-0000-4000-8000-000000000001", "kind": "system", "size": "large",
                "order": 0, "page": 0, "col": 0, "row": 0, "posX": 300, "posY": 700}
        with open(os.path.join(self.data_dir, "grid.json"), "w", encoding="utf-8") as f:
            json.dump({"instances": [tile], "pageCount": 1}, f)

    def test_the_figures_follow_the_machine(self):
        x, y, w, h = self.panel_of(self.by_kind("system"))
        first = self.pixels(x, y, w, h)
        # Work for one core, so the processor figure has something to show.
        self.helpers.append(subprocess.Popen([sys.executable, "-c", "while True: pass"]))
        self.assertTrue(self.session.wait_for(lambda: self.pixels(x, y, w, h) != first,
                                              timeout=15), "the tile's figures stood still")
        second = self.pixels(x, y, w, h)
        self.assertTrue(self.session.wait_for(lambda: self.pixels(x, y, w, h) != second,
                                              timeout=15), "the tile changed only once")
        self.screenshot("system-tile.png")


# The accent of a chosen segment in the window's light look.
SEGMENT_ACCENT = (0x0A, 0x6C, 0xE6)


class WidgetSettingsTest(HostCase):
    """"Widget Settings…" on a tile opens that tile's own page, and what is set there reaches the
    tile on the desktop."""

    conf = HostCase.conf + "tarnwick.hasSeenGuide=true\n"

    def test_the_tiles_menu_opens_its_page(self):
        clock = self.by_kind("clock")
        width = self.panel_of(clock)[2]
        self.session.xdotool("mousemove", "--sync", *centre(self.panel_of(clock)))
        before = self.session.override_windows()
        self.session.xdotool("click", 3)
        self.assertTrue(self.session.wait_for(lambda: self.session.override_windows() - before),
                        "no menu opened")
        # "Widget Settings…" is the menu's first entry.
        self.session.xdotool("key", "Down")
        self.session.xdotool("key", "Return")
        window = self.config_window()
        self.assertTrue(window, "the window did not open")
        # The window may already stand open from the first start, so the page is awaited on
        # screen: its size row marks the tile's size in the accent, and the next size is clicked.
        x, y, w, h = self.session.geometry(int(window[0]))

        def checked_segment():
            rows = self.pixels(x + w // 2, y, w - w // 2, h)
            spots = [(i, j) for j, row in enumerate(rows) for i, p in enumerate(row)
                     if p == SEGMENT_ACCENT]
            if len(spots) < 400:
                return None
            # The topmost block only: the options further down have switches in the accent.
            spots = [(i, j) for i, j in spots if j < spots[0][1] + 40]
            xs = [i for i, _ in spots]
            ys = [j for _, j in spots]
            return (x + w // 2 + min(xs), y + min(ys), max(xs) - min(xs) + 1,
                    max(ys) - min(ys) + 1)
        # The page may still be settling where it was first seen (a slow machine, the
        # sanitizers): the segment is looked for again before each click.
        for _ in range(3):
            segment = self.session.wait_for(checked_segment, timeout=15)
            self.assertTrue(segment, "the tile's page did not show its size")
            self.session.xdotool("mousemove", "--sync", segment[0] + segment[2] * 3 // 2,
                                 segment[1] + segment[3] // 2)
            self.session.xdotool("click", 1)
            if self.session.wait_for(
                    lambda: self.instances()[clock["id"].lower()]["size"] != clock["size"],
                    timeout=3):
                break
        self.settle(lambda: self.instances()[clock["id"].lower()]["size"] != clock["size"],
                    "the size chosen on the page did not reach the tile")
        self.settle(lambda: self.panel_of(clock)[2] > width, "the tile on the desktop kept its size")
        self.screenshot("widget-settings.png")


@unittest.skipUnless(shutil.which("trayer"), "needs trayer, an XEmbed system tray")
class TrayTest(HostCase):
    """With a system tray on the desktop the status item stands in it."""

    def before_launch(self):
        self.helpers.append(subprocess.Popen(
            ["trayer", "--edge", "bottom", "--align", "right", "--widthtype", "request",
             "--height", "32"], env=self.session.env(), stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL, preexec_fn=dies_with_parent))
        self.session.wait_for(lambda: "window id # 0x" in self.session.output(
            ["xprop", "-root", "_NET_SYSTEM_TRAY_S0"]) or self.tray_window())

    def tray_window(self):
        return next((w for w in self.session.client_windows()
                     if self.session.prop(w, "WM_NAME") == '"panel"'), None)

    def test_quit_from_the_status_menu(self):
        tray = self.tray_window()
        self.assertIsNotNone(tray, "trayer did not start")
        # The icon is the tray's only one, at its right end.
        self.assertTrue(self.session.wait_for(lambda: self.session.geometry(tray)[2] >= 16),
                        "no icon joined the tray")
        x, y, w, h = self.session.geometry(tray)
        # A click opens the window; closing it after the first start shows the hint once.
        self.session.xdotool("mousemove", "--sync", x + w - 12, y + h // 2)
        self.session.xdotool("click", 1)
        window = self.config_window()
        self.assertTrue(window, "a click on the icon did not open the window")
        self.session.xdotool("windowactivate", window[0])
        self.assertTrue(self.session.wait_for(lambda: self.session.output(
            ["xdotool", "getactivewindow"]).strip() == window[0]), "the window took no focus")
        self.session.xdotool("key", "--clearmodifiers", "alt+F4")
        # The pointer still rests on the icon.
        # "Quit Tarnwick" is the menu's last entry.
        self.choose_last_menu_entry(3)
        self.assertEqual(self.host.process.wait(timeout=15), 0)
        with open(self.conf_path, encoding="utf-8") as f:
            self.assertIn("tarnwick.menuHint.pending=false", f.read())


class PowerTest(HostCase):
    """The machine's power from UPower and the power profiles daemon, served by python3-dbusmock
    on a private bus that stands for the system bus: a battery at 15 % forces Energy Saver and
    the desktop ticks every two seconds; with the charger back, every second again."""

    panel_count = 3
    SYSTEM_PYTHON = "/usr/bin/python3"

    def setUp(self):
        if subprocess.run([self.SYSTEM_PYTHON, "-c", "import dbusmock"],
                          capture_output=True, check=False).returncode != 0:
            self.skipTest("python3-dbusmock is not installed")
        super().setUp()
        self.addCleanup(self.host.stderr.close)

    def before_launch(self):
        bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address=1"],
                               stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True,
                               preexec_fn=dies_with_parent)
        self.helpers.append(bus)
        self.addCleanup(bus.stdout.close)
        self.bus = bus.stdout.readline().strip()
        for template, name in (("upower", "org.freedesktop.UPower"),
                               ("power_profiles_daemon", "net.hadess.PowerProfiles")):
            self.helpers.append(subprocess.Popen(
                [self.SYSTEM_PYTHON, "-m", "dbusmock", "--session", "-t", template],
                env={**os.environ, "DBUS_SESSION_BUS_ADDRESS": self.bus},
                stdout=subprocess.DEVNULL, preexec_fn=dies_with_parent))
            self.assertTrue(self.session.wait_for(lambda: self.on_bus(name)), name + " never came")
        self.assertTrue(self.send("/org/freedesktop/UPower", "org.freedesktop.DBus.Mock",
                                  "SetupDisplayDevice", "uint32:2", "uint32:2", "double:15",
                                  "double:15", "double:100", "double:10", "int64:3600",
                                  "int64:0", "boolean:true", "string:", "uint32:1"))
        self.assertTrue(self.on_battery(True))
        self.log = os.path.join(self.config_home, "host.log")

    def environment(self):
        self.host.stderr = open(self.log, "w", encoding="utf-8")
        return {"DBUS_SYSTEM_BUS_ADDRESS": self.bus,
                "QT_LOGGING_RULES": "*.info=false;Energy.info=true;PowerWatcher.info=true"}

    def send(self, path, interface, method, *arguments):
        return subprocess.run(["dbus-send", "--bus=" + self.bus, "--print-reply",
                               "--dest=org.freedesktop.UPower", path, interface + "." + method,
                               *arguments], capture_output=True, check=False).returncode == 0

    def on_bus(self, name):
        out = subprocess.run(["dbus-send", "--bus=" + self.bus, "--print-reply",
                              "--dest=org.freedesktop.DBus", "/org/freedesktop/DBus",
                              "org.freedesktop.DBus.NameHasOwner", "string:" + name],
                             capture_output=True, text=True, check=False).stdout
        return "boolean true" in out

    def on_battery(self, on):
        return self.send("/org/freedesktop/UPower", "org.freedesktop.DBus.Properties", "Set",
                         "string:org.freedesktop.UPower", "string:OnBattery",
                         "variant:boolean:" + ("true" if on else "false"))

    def last(self, topic):
        """The host's last log line about `topic`, without its category."""
        with open(self.log, encoding="utf-8") as f:
            lines = [line.split(": ", 1)[-1].strip() for line in f if topic in line]
        return lines[-1] if lines else None

    def test_a_low_battery_slows_the_tick_and_the_charger_brings_it_back(self):
        self.assertTrue(self.session.wait_for(
            lambda: self.last("mode in force") == "mode in force: saver, a tick every 2000 ms",
            timeout=20), "a battery at 15 %% did not force Energy Saver: %s" %
            self.last("mode in force"))
        self.assertEqual(self.last("power constrained"), "power constrained: 1")
        self.assertTrue(self.on_battery(False))
        self.assertTrue(self.session.wait_for(
            lambda: self.last("mode in force") == "mode in force: balanced, a tick every 1000 ms",
            timeout=20), "the charger did not bring the chosen mode back")
        self.assertEqual(self.last("power constrained"), "power constrained: 0")


class LoopbackServer(http.server.ThreadingHTTPServer):
    """A web server on a free loopback port, serving from a thread of its own: `respond` gives
    each GET's status, body and headers."""

    def __init__(self):
        server = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                status, body, headers = server.respond(self)
                self.send_response(status)
                for name, value in headers.items():
                    self.send_header(name, value)
                self.send_header("Content-Length", str(len(body)))
                self.end_headers()
                self.wfile.write(body)

            def log_message(self, *args):
                pass

        super().__init__(("127.0.0.1", 0), Handler)
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def respond(self, request):
        raise NotImplementedError

    def base(self):
        return "http://127.0.0.1:%d" % self.server_address[1]


JSON = {"Content-Type": "application/json"}


class WeatherServer(LoopbackServer):
    """The web services on loopback, as TKW_ENDPOINT_BASE names them: recorded answers by the
    service's name, the address services after the first down. Answers wait until `release`."""

    ANSWERS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "answers")
    FILES = {"forecast": "forecast.json", "air-quality": "air-quality.json",
             "ipapi": "ipapi.json"}

    def __init__(self):
        self.requests = []
        self.released = threading.Event()
        super().__init__()

    def respond(self, request):
        self.requests.append(request.path)
        self.released.wait(30)
        path = self.answer(request.path)
        body = b""
        if path and os.path.exists(path):
            with open(path, "rb") as f:
                body = f.read()
        return (200 if body else 503), body, JSON

    def answer(self, path):
        """The file that answers `path`, or None for a 503."""
        name = self.FILES.get(path.split("/")[1])
        return os.path.join(self.ANSWERS, name) if name else None


class WeatherTileTest(HostCase):
    """Two tiles of the place where the machine is, with no location service: the place of the
    internet address, its forecast and air fetched once for both, and both past their loading
    state."""

    panel_count = 2

    def before_launch(self):
        self.server = WeatherServer()
        self.addCleanup(self.server.server_close)
        self.addCleanup(self.server.shutdown)
        self.addCleanup(self.server.released.set)
        # The weather's sky stands still, so that only the forecast can change the tile.
        tiles = [{"id": "E0000000-0000-4000-8000-00000000000%d" % n, "kind": kind, "size": size,
                  "order": n, "page": 0, "col": 0, "row": 0, "posX": x, "posY": 700,
                  "settings": {"animate": "off"}}
                 for n, (kind, size, x) in enumerate([("weather", "wide", 300),
                                                      ("airquality", "small", 600)])]
        with open(os.path.join(self.data_dir, "grid.json"), "w", encoding="utf-8") as f:
            json.dump({"instances": tiles, "pageCount": 1}, f)
        self.log = os.path.join(self.config_home, "host.log")

    def environment(self):
        self.host.stderr = open(self.log, "w", encoding="utf-8")
        self.addCleanup(self.host.stderr.close)
        # No system bus: the machine has no location service at all.
        return {"TKW_ENDPOINT_BASE": self.server.base(),
                "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=" + os.path.join(self.config_home, "none"),
                "QT_LOGGING_RULES": "*.info=false;Weather.info=true"}

    def lines(self):
        with open(self.log, encoding="utf-8") as f:
            return [line.split(": ", 1)[-1].strip() for line in f if "Weather" in line]

    def test_the_forecast_of_the_address_reaches_the_tiles(self):
        rects = [self.panel_of(self.by_kind(kind)) for kind in ("weather", "airquality")]
        self.assertTrue(self.session.wait_for(lambda: self.server.requests, timeout=15),
                        "the tiles asked for no weather")
        loading = [self.pixels(*rect) for rect in rects]
        self.server.released.set()
        self.assertTrue(self.session.wait_for(
            lambda: any(line.startswith("forecast ready for Munich: 6°C, rain (approximate)")
                        for line in self.lines()), timeout=30),
            "no forecast: %s" % self.lines())
        forecasts = [r for r in self.server.requests if r.startswith("/forecast/")]
        self.assertEqual(len(forecasts), 1, self.server.requests)
        self.assertIn("latitude=48.1374&longitude=11.5755&", forecasts[0])
        for kind, rect, before in zip(("weather", "airquality"), rects, loading):
            self.assertTrue(self.session.wait_for(lambda: self.pixels(*rect) != before,
                                                  timeout=10), kind + " still shows it loading")
        self.screenshot("weather-tile.png")


# The test feed's own colour, the badge of its notice.
NOTICE_ACCENT = (0xE0, 0x21, 0x8A)


class NoticeServer(LoopbackServer):
    """The notice feed on loopback, under TKW_ENDPOINT_BASE's "notices"."""

    def __init__(self, feed):
        self.feed = feed
        self.requests = []
        super().__init__()

    def respond(self, request):
        self.requests.append(request.path)
        found = request.path == "/notices/campaign.json"
        return (200 if found else 404), (self.feed if found else b""), JSON


class NoticeTest(HostCase):
    """A notice from a loopback feed shows in the window's banner and leads its menu (the status
    menu where there is no tray), counts once in a run however often it is seen, and is gone,
    then and after a restart, once its "Not now" is chosen from the menu."""

    conf = "tarnwick.openWindowAtLaunch=false\ntarnwick.hasSeenGuide=true\n"
    FEED = {"notices": [{
        "id": "e2e-notice", "kind": "news", "placements": ["banner", "menu"],
        "accent": "#E0218A", "symbol": "megaphone.fill",
        "title": {"en": "Hello from the test feed"},
        "body": {"en": "A notice that a person sees, then puts away."},
        "actions": [{"kind": "dismiss"}, {"kind": "pane", "value": "about"}]}]}

    def before_launch(self):
        self.server = NoticeServer(json.dumps(self.FEED).encode())
        self.requests = self.server.requests
        self.addCleanup(self.server.server_close)
        self.addCleanup(self.server.shutdown)

    def environment(self):
        return {"TKW_ENDPOINT_BASE": self.server.base()}

    def open_window(self):
        """Brings the window forward through a second start; its geometry."""
        self.assertEqual(self.host.start().wait(timeout=15), 0)
        config = self.config_window()
        self.assertTrue(config, "no 980 x 680 window titled Tarnwick came forward")
        return self.session.geometry(int(config[0]))

    def banner_shows(self, geometry):
        """Whether the notice's badge stands in the strip over the pages."""
        x, y, w, _ = geometry
        strip = self.pixels(x + 200, y, w - 200, 110)
        return any(max(abs(p[i] - NOTICE_ACCENT[i]) for i in range(3)) <= 12
                   for row in strip for p in row)

    def record(self):
        """The memory of the notice, as the preferences file holds it."""
        with open(self.conf_path, encoding="utf-8") as f:
            for line in f:
                if line.startswith("tarnwick.notices.state="):
                    raw = line.split("=", 1)[1].strip()
                    raw = raw[1:-1].replace('\\"', '"') if raw.startswith('"') else raw
                    return json.loads(raw)["records"].get("e2e-notice")
        return None

    def test_a_notice_shows_once_a_run_and_goes_when_put_away(self):
        geometry = self.open_window()
        self.assertTrue(self.session.wait_for(lambda: self.banner_shows(geometry)),
                        "the notice did not show in the window's banner")
        self.screenshot("notice-banner.png")
        self.assertIn("/notices/campaign.json", self.requests)
        self.assertTrue(self.session.wait_for(lambda: (self.record() or {}).get("count") == 1),
                        "the showing was not remembered: %s" % self.record())
        # Seen again in the same run, in the window and in the menu: still once.
        self.session.xdotool("key", "Escape")
        geometry = self.open_window()
        self.assertTrue(self.session.wait_for(lambda: self.banner_shows(geometry)))
        # Without a tray the status menu is the window's menu bar; the notice is its first entry
        # and "Not now" its first action.
        self.session.xdotool("mousemove", "--sync", geometry[0] + 30, geometry[1] + 10)
        before = self.session.override_windows()
        self.session.xdotool("click", 1)
        self.assertTrue(self.session.wait_for(lambda: self.session.override_windows() - before),
                        "the menu did not open")
        self.session.xdotool("key", "Down")
        self.session.xdotool("key", "Return")
        self.assertTrue(self.session.wait_for(lambda: not self.banner_shows(geometry)),
                        "the notice stayed after it was put away")
        self.assertTrue(self.session.wait_for(
            lambda: (self.record() or {}).get("dismissed") is True), str(self.record()))
        self.assertEqual(self.record()["count"], 1)

        self.host.stop()
        asked = len(self.requests)
        self.host.launch()
        self.assertTrue(self.host.wait_for_panels(3))
        geometry = self.open_window()
        self.assertTrue(self.session.wait_for(lambda: len(self.requests) > asked),
                        "the restarted host did not fetch the feed")
        self.assertFalse(self.banner_shows(geometry), "a dismissed notice came back")


class MarketServer(WeatherServer):
    """The three quote services on loopback, with their recorded answers."""

    FILES = {"stocks": "stocks-chart.json", "crypto": "crypto-price.json",
             "currency": "currency-latest.json"}


# The colours of a rise and a fall on either glass.
RISE = [(72, 214, 120), (22, 138, 64)]
FALL = [(255, 112, 84), (214, 52, 34)]


class MarketTilesTest(HostCase):
    """Two Stocks tiles of one symbol, a Crypto and a Currency tile on the desktop: each service
    asked once, the stocks' symbol once for both, and every tile past its loading state with its
    prices, the day's rise and fall in their colours."""

    panel_count = 4

    def before_launch(self):
        self.server = MarketServer()
        self.addCleanup(self.server.server_close)
        self.addCleanup(self.server.shutdown)
        self.addCleanup(self.server.released.set)
        tiles = [{"id": "F0000000-0000-4000-8000-00000000000%d" % n, "kind": kind, "size": "wide",
                  "order": n, "page": 0, "col": 0, "row": 0, "posX": x, "posY": y,
                  "settings": settings}
                 for n, (kind, x, y, settings) in enumerate([
                     ("stocks", 300, 300, {"symbol": " aapl"}),
                     ("stocks", 600, 300, {"symbol": "AAPL"}),
                     ("crypto", 300, 600, {}),
                     ("currency", 600, 600, {"to": "USD,GBP,JPY"})])]
        with open(os.path.join(self.data_dir, "grid.json"), "w", encoding="utf-8") as f:
            json.dump({"instances": tiles, "pageCount": 1}, f)
        self.log = os.path.join(self.config_home, "host.log")

    def environment(self):
        self.host.stderr = open(self.log, "w", encoding="utf-8")
        self.addCleanup(self.host.stderr.close)
        return {"TKW_ENDPOINT_BASE": self.server.base(),
                "QT_LOGGING_RULES": "*.info=false;Market.info=true"}

    def lines(self):
        with open(self.log, encoding="utf-8") as f:
            return [line.split(": ", 1)[-1].strip() for line in f if "Market" in line]

    def has_colour(self, rect, colours):
        return any(max(abs(a - b) for a, b in zip(pixel, colour)) < 40
                   for row in self.pixels(*rect) for pixel in row for colour in colours)

    def test_the_tiles_show_prices_from_the_services(self):
        rects = {i["id"]: self.panel_of(i) for i in self.instances().values()}
        self.assertTrue(self.session.wait_for(lambda: len(self.server.requests) >= 3, timeout=15),
                        "the tiles asked for no quotes: %s" % self.server.requests)
        loading = {key: self.pixels(*rect) for key, rect in rects.items()}
        self.server.released.set()
        self.assertTrue(self.session.wait_for(
            lambda: {"stocks: AAPL at 189.840000", "currency: 4 rate(s) for EUR"} <=
            set(self.lines()), timeout=30), "no quotes: %s" % self.lines())
        for key, rect in rects.items():
            self.assertTrue(self.session.wait_for(lambda: self.pixels(*rect) != loading[key],
                                                  timeout=10), key + " still shows it loading")
        by_service = {}
        for request in self.server.requests:
            by_service.setdefault(request.split("/")[1], []).append(request)
        self.assertTrue({"crypto", "currency", "stocks"} <= set(by_service), self.server.requests)
        self.assertEqual(by_service["stocks"],
                         ["/stocks/v8/finance/chart/AAPL?range=1d&interval=15m"])
        self.assertEqual(len(by_service["crypto"]), 1, self.server.requests)
        self.assertIn("ids=bitcoin,ethereum,binancecoin,solana&vs_currencies=usd",
                      by_service["crypto"][0])
        self.assertEqual(by_service["currency"],
                         ["/currency/v1/latest?base=EUR&symbols=USD,GBP,JPY"])
        stocks = self.panel_of(self.by_kind("stocks"))
        crypto = self.panel_of(self.by_kind("crypto"))
        self.assertTrue(self.session.wait_for(lambda: self.has_colour(stocks, RISE), timeout=10),
                        "the share's rise is not drawn in its colour")
        self.assertTrue(self.has_colour(crypto, FALL), "the coin's fall is not drawn in its colour")
        self.screenshot("market-tiles.png")


# The timer's colour once it has run out.
TIMER_DONE = (255, 149, 0)


class TimerTileTest(HostCase):
    """A timer left running in grid.json goes on running in the host, runs out on the tile, and
    the tile's own control answers: a press sets the finished timer back, the next starts it."""

    panel_count = 1

    def before_launch(self):
        # Seconds since 1970, as the timer keeps its end; a little ahead, so that it ends here.
        tile = {"id": "D0000000-0000-4000-8000-000000000007", "kind": "timer", "size": "small",
                "order": 0, "page": 0, "col": 0, "row": 0, "posX": 300, "posY": 700,
                "settings": {"minutes": "1", "alarm": "once",
                             "endsAt": "%.3f" % (time.time() + 6)}}
        with open(os.path.join(self.data_dir, "grid.json"), "w", encoding="utf-8") as f:
            json.dump({"instances": [tile], "pageCount": 1}, f)

    def shows_done(self, rect):
        return any(abs(r - TIMER_DONE[0]) < 24 and abs(g - TIMER_DONE[1]) < 24 and b < 60
                   for row in self.pixels(*rect) for r, g, b in row)

    def test_runs_out_and_answers_presses(self):
        timer = self.by_kind("timer")
        rect = self.panel_of(timer)
        self.assertFalse(self.shows_done(rect), "the timer shows finished before its end")
        self.assertTrue(self.session.wait_for(lambda: self.shows_done(rect), timeout=20),
                        "the timer never showed that it ran out")
        self.screenshot("timer-done.png")
        self.session.xdotool("mousemove", "--sync", *centre(rect))
        self.session.xdotool("click", 1)
        self.settle(lambda: "endsAt" not in self.by_kind("timer").get("settings", {}),
                    "the press on the finished timer did not set it back")
        self.session.xdotool("click", 1)
        self.settle(lambda: "endsAt" in self.by_kind("timer").get("settings", {}),
                    "the press on the idle timer did not start it")


class AmbientSoundTileTest(HostCase):
    """The ambient sound tile's own buttons answer clicks: a sound picked on the tile plays and
    stays in its settings, the volume's + steps it up, the moon steps the sleep timer; the run is
    silent, so no sound device is opened."""

    panel_count = 1

    def before_launch(self):
        tile = {"id": "D0000000-0000-4000-8000-000000000021", "kind": "ambientsound",
                "size": "large", "order": 0, "page": 0, "col": 0, "row": 0, "posX": 300,
                "posY": 700, "settings": {"sound": "rain", "volume": "50"}}
        with open(os.path.join(self.data_dir, "grid.json"), "w", encoding="utf-8") as f:
            json.dump({"instances": [tile], "pageCount": 1}, f)

    def setting(self, key):
        return self.by_kind("ambientsound").get("settings", {}).get(key)

    def test_buttons_on_the_tile(self):
        x, y, _, _ = self.panel_of(self.by_kind("ambientsound"))
        # The tile starts 22 points into its panel; the points are those of the large layout.
        for (px, py), key, value in (((87, 149), "sound", "cafe"), ((107, 179), "volume", "60"),
                                     ((158, 179), "sleep", "15")):
            self.session.xdotool("mousemove", "--sync", str(x + 22 + px), str(y + 22 + py))
            self.session.xdotool("click", 1)
            self.settle(lambda: self.setting(key) == value,
                        "a click on the tile did not set %s to %s" % (key, value))
        self.screenshot("ambientsound.png")


class ReleaseServer(LoopbackServer):
    """The published release list on loopback, under TKW_ENDPOINT_BASE's "releases"; the answer
    waits until `released`."""

    ANSWER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "answers", "releases.json")

    def __init__(self):
        self.requests = []
        self.released = threading.Event()
        super().__init__()

    def respond(self, request):
        self.requests.append((request.path, request.headers.get("User-Agent", "")))
        self.released.wait(30)
        body = b""
        if request.path == "/releases/releases.json":
            with open(self.ANSWER, "rb") as f:
                body = f.read()
        return (200 if body else 404), body, JSON


class UpdateCheckTest(HostCase):
    """The check at start finds a newer version in the published list: the desktop's
    notification service is told once, with its notes, and the window's Updates section shows
    them. Notifications go to python3-dbusmock's daemon on a private session bus."""

    panel_count = 3
    SYSTEM_PYTHON = "/usr/bin/python3"

    def setUp(self):
        if subprocess.run([self.SYSTEM_PYTHON, "-c", "import dbusmock"],
                          capture_output=True, check=False).returncode != 0:
            self.skipTest("python3-dbusmock is not installed")
        # A returning person on this version: the window without the guide or "What's new".
        self.conf = ("tarnwick.openWindowAtLaunch=true\ntarnwick.hasSeenGuide=true\n"
                     "tarnwick.lastLaunchedVersion=%s\n" % VERSION)
        super().setUp()

    def before_launch(self):
        self.server = ReleaseServer()
        self.addCleanup(self.server.server_close)
        self.addCleanup(self.server.shutdown)
        self.addCleanup(self.server.released.set)
        bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address=1"],
                               stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True,
                               preexec_fn=dies_with_parent)
        self.helpers.append(bus)
        self.addCleanup(bus.stdout.close)
        self.bus = bus.stdout.readline().strip()
        self.notified = os.path.join(self.config_home, "notifications.log")
        self.helpers.append(subprocess.Popen(
            [self.SYSTEM_PYTHON, "-m", "dbusmock", "--session", "-t", "notification_daemon",
             "-l", self.notified],
            env={**os.environ, "DBUS_SESSION_BUS_ADDRESS": self.bus},
            stdout=subprocess.DEVNULL, preexec_fn=dies_with_parent))
        self.assertTrue(self.session.wait_for(lambda: os.path.exists(self.notified)),
                        "the notification daemon never came")

    def environment(self):
        return {"TKW_ENDPOINT_BASE": self.server.base(), "TKW_CONFIG_SECTION": "updates",
                "DBUS_SESSION_BUS_ADDRESS": self.bus}

    def notifications(self):
        with open(self.notified, encoding="utf-8") as f:
            return [line for line in f if " Notify " in line]

    def test_a_newer_version_and_its_notes_show(self):
        self.assertTrue(self.session.wait_for(lambda: self.server.requests, timeout=15),
                        "the start asked for no release list")
        path, agent = self.server.requests[0]
        # Only the list is asked for: no query, no version, nothing of the person.
        self.assertEqual(path, "/releases/releases.json")
        self.assertNotIn(VERSION, agent)
        window = self.config_window()
        self.assertTrue(window, "the window did not open")
        x, y, w, h = self.session.geometry(int(window[0]))
        page = (x + 200, y, w - 200, h)
        before = self.pixels(*page)
        self.server.released.set()
        self.assertTrue(self.session.wait_for(lambda: self.notifications(), timeout=15),
                        "no notification of the new version")
        said = self.notifications()
        self.assertEqual(len(said), 1, said)
        self.assertIn("Tarnwick 9.0.0 is available", said[0])
        self.assertIn("Tiles learn to juggle.", said[0])
        self.assertTrue(self.session.wait_for(lambda: self.pixels(*page) != before, timeout=10),
                        "the Updates section did not change when the list came")
        self.assertTrue(self.session.wait_for(
            lambda: "tarnwick.updates.outcome=available" in self.conf_text()),
            "the finding was not kept")
        self.assertIn("Tiles learn to juggle.", self.conf_text())
        self.screenshot("update-available.png")

    def conf_text(self):
        with open(self.conf_path, encoding="utf-8") as f:
            return f.read()
class AppTimeTileTest(HostCase):
    """An App Time tile on the desktop counts the application in front by its window class, and
    the count is saved to app-usage.json when the last such tile goes; the host's own windows
    count as nothing."""

    panel_count = 1

    def before_launch(self):
        tile = {"id": "D0000000-0000-4000-8000-000000000012", "kind": "appusage",
                "size": "large", "order": 0, "page": 0, "col": 0, "row": 0, "posX": 300,
                "posY": 500}
        with open(os.path.join(self.data_dir, "grid.json"), "w", encoding="utf-8") as f:
            json.dump({"instances": [tile], "pageCount": 1}, f)

    def test_counts_the_window_in_front(self):
        ledger = os.path.join(self.data_dir, "app-usage.json")
        self.assertFalse(os.path.exists(ledger))
        self.helpers.append(subprocess.Popen(["xmessage", "-name", "apptime", "counted"],
                                             env=self.session.env()))
        window = self.session.wait_for(lambda: self.session.output(
            ["xdotool", "search", "--classname", "^apptime$"]).split(), timeout=20)
        self.assertTrue(window, "the other application's window did not appear")
        self.session.xdotool("windowactivate", "--sync", window[0])
        time.sleep(4)
        tile = self.by_kind("appusage")
        self.session.xdotool("mousemove", "--sync", *centre(self.panel_of(tile)))
        # "Remove Widget" is the menu's last entry; the host's own menu ends the stretch.
        self.choose_last_menu_entry(3)
        self.settle(lambda: os.path.exists(ledger), "no app-usage.json after the tile went")
        with open(ledger, encoding="utf-8") as f:
            saved = json.load(f)
        seconds = {}
        for apps in saved["buckets"].values():
            for app, counted in apps.items():
                seconds[app] = seconds.get(app, 0) + counted
        self.assertEqual(list(seconds), ["Xmessage"], saved)
        self.assertGreater(seconds["Xmessage"], 3, saved)
        self.assertLess(seconds["Xmessage"], 30, saved)
        self.assertEqual(saved["names"], {"Xmessage": "Xmessage"})


class StickyNoteTest(HostCase):
    """Typing into a note tile: a click takes the keyboard, the keys land in the note, and a kill
    in the middle of typing loses nothing that was typed before it."""

    panel_count = 1
    NOTE = "D0000000-0000-4000-8000-000000000020"

    def before_launch(self):
        tile = {"id": self.NOTE, "kind": "stickynote", "size": "large", "order": 0, "page": 0,
                "col": 0, "row": 0, "posX": 300, "posY": 700}
        with open(os.path.join(self.data_dir, "grid.json"), "w", encoding="utf-8") as f:
            json.dump({"instances": [tile], "pageCount": 1}, f)

    def note_text(self):
        """What a start would read: the note's file, then its journal's last whole line."""
        base = os.path.join(self.data_dir, "notes", self.NOTE.lower())
        text = None
        if os.path.exists(base + ".md"):
            with open(base + ".md", encoding="utf-8") as f:
                text = f.read()
        if os.path.exists(base + ".journal"):
            with open(base + ".journal", encoding="utf-8") as f:
                for line in f.read().splitlines():
                    try:
                        text = json.loads(line)["text"]
                    except ValueError:
                        pass
        return text

    def test_typed_text_survives_a_kill(self):
        rect = self.panel_of(self.by_kind("stickynote"))
        self.session.xdotool("mousemove", "--sync", *centre(rect))
        self.session.xdotool("click", 1)
        self.session.xdotool("type", "--delay", "40", "--", "- milk")
        self.session.xdotool("key", "Return")
        self.session.xdotool("type", "--delay", "40", "eggs")
        self.settle(lambda: self.note_text() == "- milk\n- eggs", "the keys did not reach the note")
        # At once, before the pause that rewrites the file: only the journal has the last keys.
        self.host.process.kill()
        self.host.process.wait()
        self.host.launch()
        self.assertTrue(self.host.wait_for_panels(1), "the host did not come back")
        # The start reads the journal back and writes the note's file from it.
        journal = os.path.join(self.data_dir, "notes", self.NOTE.lower() + ".journal")
        self.settle(lambda: not os.path.exists(journal) and self.note_text() == "- milk\n- eggs",
                    "the note lost what was typed before the kill")
        self.screenshot("stickynote-after-kill.png")


class CustomWidgetFileTest(HostCase):
    """A ".twkwidget" file opened while the host runs, as a file manager's double-click opens it:
    the second start hands it over and ends, and the widget joins the desktop as a tile."""

    panel_count = 1

    def before_launch(self):
        tile = {"id": "D0000000-0000-4000-8000-000000000002", "kind": "clock", "size": "small",
                "order": 0, "page": 0, "col": 0, "row": 0, "posX": 300, "posY": 700}
        with open(os.path.join(self.data_dir, "grid.json"), "w", encoding="utf-8") as f:
            json.dump({"instances": [tile], "pageCount": 1}, f)

    def test_a_double_clicked_file_becomes_a_tile(self):
        folder = tempfile.mkdtemp(prefix="tw-e2e-share-")
        self.addCleanup(shutil.rmtree, folder, ignore_errors=True)
        path = os.path.join(folder, "Good morning.twkwidget")
        with open(path, "w", encoding="utf-8") as f:
            json.dump({"schema": 1, "name": "Good morning", "symbol": "sun.max", "sizes": ["wide"],
                       "rows": [{"elements": [{"type": "text", "text": "Hello {user}",
                                               "style": "title"}]}]}, f)
        second = self.host.start(path)
        self.assertEqual(second.wait(timeout=20), 0, "the second start did not hand over")
        panels = self.host.wait_for_panels(2)
        self.assertTrue(panels, "no tile for the widget: %s" % self.host.panels())
        custom = [i for i in self.host.grid()["instances"] if i["kind"].startswith("custom.")]
        self.assertEqual(len(custom), 1, self.host.grid())
        self.assertEqual(custom[0]["size"], "wide")
        width, height = TILE["wide"]
        self.assertEqual(self.panel_of(custom[0])[2:], (width + 2 * MARGIN, height + 2 * MARGIN))
        with open(os.path.join(self.data_dir, "custom-widgets.json"), encoding="utf-8") as f:
            widgets = json.load(f)["widgets"]
        self.assertEqual([w["name"] for w in widgets], ["Good morning"])
        self.assertEqual("custom." + widgets[0]["id"].upper(), custom[0]["kind"])
        # The tile is drawn, not left blank: light letters on the dark glass.
        rect = self.panel_of(custom[0])
        self.assertTrue(self.session.wait_for(
            lambda: any(min(p) > 200 for row in self.pixels(*rect) for p in row), timeout=10),
            "the tile shows no text")
        self.screenshot("custom-widget-file.png")


class WebTemplatesTest(HostCase):
    """Every template that reads the web, opened as a file in the running host: each tile asks
    the loopback server for its sources, where TKW_ENDPOINT_BASE sends every address, and draws
    the recorded answer in place of its loading state; a click opens the headlines' page."""

    panel_count = 1
    ANSWERS = {"api.open-meteo.com": "forecast.json"}

    def before_launch(self):
        tile = {"id": "D0000000-0000-4000-8000-000000000003", "kind": "clock", "size": "small",
                "order": 0, "page": 0, "col": 0, "row": 0, "posX": 100, "posY": 1000}
        with open(os.path.join(self.data_dir, "grid.json"), "w", encoding="utf-8") as f:
            json.dump({"instances": [tile], "pageCount": 1}, f)
        self.folder = tempfile.mkdtemp(prefix="tw-e2e-web-")
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.ids = subprocess.run([TEMPLATES, self.folder], capture_output=True, text=True,
                                  check=True).stdout.split()
        self.server = WeatherServer()
        self.addCleanup(self.server.server_close)
        self.addCleanup(self.server.shutdown)
        self.addCleanup(self.server.released.set)
        self.server.answer = self.answer
        # No browser here: xdg-open writes down what it was asked to open.
        self.opened = os.path.join(self.folder, "opened")
        with open(os.path.join(self.folder, "xdg-open"), "w", encoding="utf-8") as f:
            f.write('#!/bin/sh\necho "$1" >> "%s"\n' % self.opened)
        os.chmod(os.path.join(self.folder, "xdg-open"), 0o755)
        self.log = os.path.join(self.config_home, "host.log")

    def answer(self, path):
        host = path.split("/")[2] if path.startswith("/web/") else ""
        name = self.ANSWERS.get(host, os.path.join("web", host + ".json"))
        return os.path.join(WeatherServer.ANSWERS, name) if host else None

    def environment(self):
        self.host.stderr = open(self.log, "w", encoding="utf-8")
        self.addCleanup(self.host.stderr.close)
        return {"TKW_ENDPOINT_BASE": self.server.base(),
                "PATH": self.folder + os.pathsep + os.environ.get("PATH", ""),
                "QT_LOGGING_RULES": "*.info=false;Custom.info=true"}

    def test_each_web_template_shows_its_answer(self):
        self.assertIn("headlines", self.ids)
        for n, ident in enumerate(self.ids):
            path = os.path.join(self.folder, ident + ".twkwidget")
            with open(path, encoding="utf-8") as f:
                widget = json.load(f)
            asked = len(set(self.server.requests))
            placed = set(self.instances())
            self.server.released.clear()
            second = self.host.start(path)
            self.assertEqual(second.wait(timeout=20), 0, ident + " was not handed over")
            self.assertTrue(self.host.wait_for_panels(n + 2), "no tile for " + ident)
            sources = [widget["source"]] if "source" in widget else widget["sources"]
            self.assertTrue(self.session.wait_for(
                lambda: len(set(self.server.requests)) >= asked + len(sources), timeout=15),
                "%s asked nothing: %s" % (ident, self.server.requests))
            (tile,) = [i for key, i in self.instances().items() if key not in placed]
            rect = self.panel_of(tile)
            loading = self.stable_pixels(rect)
            self.server.released.set()
            self.assertTrue(self.session.wait_for(lambda: self.pixels(*rect) != loading,
                                                  timeout=15), ident + " still shows it loading")
            if ident == "headlines":
                headlines = rect
        with open(self.log, encoding="utf-8") as f:
            self.assertNotIn("custom source failed", f.read())
        # The program's own services (the notice feed) ask the same server; only the templates'
        # addresses come under /web/.
        for request in self.server.requests:
            if request.startswith("/web/"):
                self.assertTrue(os.path.exists(self.answer(request) or ""), request)
        self.screenshot("web-templates.png")
        before = self.session.override_windows()
        self.session.xdotool("mousemove", "--sync", *centre(headlines))
        self.assertTrue(self.session.wait_for(lambda: self.session.override_windows() - before,
                                              timeout=5), "no tooltip over the link")
        self.session.xdotool("click", 1)
        self.assertTrue(self.session.wait_for(lambda: os.path.exists(self.opened), timeout=10),
                        "the click opened nothing")
        with open(self.opened, encoding="utf-8") as f:
            self.assertEqual(f.read().split(), ["https://news.ycombinator.com"])

    def stable_pixels(self, rect):
        """The tile's picture once two looks in a row agree: drawn, not half-way there."""
        seen = [self.pixels(*rect)]

        def settled():
            seen.append(self.pixels(*rect))
            return seen[-1] == seen[-2]
        self.assertTrue(self.session.wait_for(settled), "the tile keeps changing")
        return seen[-1]


class BoardFileTest(HostCase):
    """A ".twkboard" file opened while the host runs: it is offered with its picture before
    anything changes, and "Add to Desktop" (the default) puts its widgets beside the old ones."""

    panel_count = 1

    def before_launch(self):
        tile = {"id": "D0000000-0000-4000-8000-000000000003", "kind": "clock", "size": "small",
                "order": 0, "page": 0, "col": 0, "row": 0, "posX": 300, "posY": 700}
        with open(os.path.join(self.data_dir, "grid.json"), "w", encoding="utf-8") as f:
            json.dump({"instances": [tile], "pageCount": 1}, f)

    def test_an_opened_board_is_offered_then_added(self):
        folder = tempfile.mkdtemp(prefix="tw-e2e-board-")
        self.addCleanup(shutil.rmtree, folder, ignore_errors=True)
        path = os.path.join(folder, "Shared desk.twkboard")
        with open(path, "w", encoding="utf-8") as f:
            json.dump({"format": 1, "app": "Tarnwick", "appVersion": "0.1.0",
                       "name": "Shared desk", "createdAt": "2026-11-24T09:00:00Z",
                       "width": 204, "height": 96,
                       "items": [{"kind": "battery", "size": "small", "dx": 0, "dy": 0},
                                 {"kind": "dayprogress", "size": "small", "dx": 108, "dy": 0},
                                 {"kind": "hologram", "size": "small", "dx": 216, "dy": 0}]}, f)
        second = self.host.start(path)
        self.assertEqual(second.wait(timeout=20), 0, "the second start did not hand over")
        self.dialog('Add the board "Shared desk"[?]')
        self.screenshot("board-offer.png")
        self.assertEqual(len(self.host.grid()["instances"]), 1, "the board changed things early")
        self.session.xdotool("key", "--clearmodifiers", "Return")
        self.dialog("Board added")
        self.session.xdotool("key", "--clearmodifiers", "Return")
        kinds = sorted(i["kind"] for i in self.host.grid()["instances"])
        self.assertEqual(kinds, ["battery", "clock", "dayprogress"])
        # Every tile of the board is drawn where the grid puts it, on the black desktop.
        for instance in self.host.grid()["instances"]:
            x, y, w, h = tile_rect(instance)
            self.settle(lambda: any(max(p) > 60 for row in self.pixels(x + w // 4, y + h // 4,
                                                                       w // 2, h // 2)
                                    for p in row),
                        instance["kind"] + " is not drawn")
        self.screenshot("board-added.png")
        added = [tile_rect(i) for i in self.host.grid()["instances"] if i["kind"] != "clock"]
        self.assertFalse(overlap(added[0], tile_rect(self.by_kind("clock"))), added)


class LayoutFileTest(HostCase):
    """The whole setup out to a layout file from the Layouts section, the data directory wiped,
    and the file opened again: after the restart the same tiles stand in the same places, with
    their content, and look the same."""

    panel_count = 2
    conf = "tarnwick.openWindowAtLaunch=true\ntarnwick.hasSeenGuide=true\n"

    def before_launch(self):
        def tile(n, kind, size, y, **more):
            return {"id": "E0000000-0000-4000-8000-00000000000%d" % n, "kind": kind,
                    "size": size, "order": n, "page": 0, "col": 0, "row": 0, "posX": 40,
                    "posY": y, **more}
        with open(os.path.join(self.data_dir, "grid.json"), "w", encoding="utf-8") as f:
            json.dump({"instances": [
                tile(1, "stickynote", "wide", 900, settings={"text": "Carried over"}),
                tile(2, "battery", "small", 780)], "pageCount": 1}, f)

    def environment(self):
        # The page's "files" group puts the focus on "Export…".
        return {"TKW_CONFIG_SECTION": "layouts", "TKW_SETTINGS_PAGE": "files"}

    def tiles(self):
        return sorted((i["id"].lower(), i["kind"], i["size"], i["posX"], i["posY"],
                       json.dumps(i.get("settings"), sort_keys=True))
                      for i in self.host.grid()["instances"])

    def looks(self):
        """The tiles' pixels once two looks a second apart agree, the pointer out of the way."""
        self.session.xdotool("mousemove", "--sync", SCREEN[0] - 4, SCREEN[1] - 4)
        instances = sorted(self.host.grid()["instances"], key=lambda i: i["id"])
        shots = []

        def steady():
            shots.append([self.pixels(*tile_rect(i)) for i in instances])
            time.sleep(1)
            return len(shots) > 1 and shots[-1] == shots[-2]
        self.assertTrue(self.session.wait_for(steady, timeout=20), "the tiles kept changing")
        return shots[-1]

    def test_exported_wiped_and_imported_gives_the_same_desktop(self):
        folder = tempfile.mkdtemp(prefix="tw-e2e-layout-")
        self.addCleanup(shutil.rmtree, folder, ignore_errors=True)
        path = os.path.join(folder, "moved.twklayout")
        window = self.config_window()
        self.assertTrue(window, "the window did not open")
        self.session.xdotool("windowmove", window[0], 700, 300)
        tiles = self.tiles()
        looks = self.looks()
        self.session.xdotool("windowactivate", "--sync", window[0])
        self.session.xdotool("key", "--clearmodifiers", "space")
        self.dialog("Saves every widget.*")
        self.session.xdotool("key", "--clearmodifiers", "ctrl+a")
        self.session.xdotool("type", "--delay", "15", path)
        # A completion list may take the first Return.
        for _ in range(3):
            self.session.xdotool("key", "--clearmodifiers", "Return")
            if self.session.wait_for(lambda: os.path.exists(path), timeout=3):
                break
        self.assertTrue(os.path.exists(path), "the layout file was not written")
        self.host.stop()

        # Another computer, as far as the program can tell.
        shutil.rmtree(self.data_dir)
        os.makedirs(self.data_dir)
        self.write_conf(HostCase.conf + "tarnwick.hasSeenGuide=true\n")
        self.host.launch()
        self.assertTrue(self.host.wait_for_panels(3), "the first desktop did not come")
        self.assertNotEqual(self.tiles(), tiles)
        first = self.host.process
        self.assertEqual(self.host.start(path).wait(timeout=20), 0, "the file was not handed over")
        self.dialog("Load this layout[?]")
        self.screenshot("layout-file-confirm.png")
        self.session.xdotool("key", "--clearmodifiers", "Return")
        first.wait(timeout=20)
        ids = {t[0] for t in tiles}
        self.assertTrue(self.session.wait_for(lambda: set(self.host.panels()) == ids, timeout=40),
                        "the restarted program did not show the file's tiles")
        # The restarted program is no child of this test: stopped by its id.
        pid = int(self.session.output(
            ["xdotool", "getwindowpid", str(next(iter(self.host.panels().values()))[0])]))
        self.helpers.append(Started(pid))
        self.assertEqual(self.tiles(), tiles)
        self.assertEqual(len(glob.glob(os.path.join(
            self.data_dir, "Backups", "before-import-*.twklayout"))), 1, "no backup came first")
        self.assertEqual(self.looks(), looks, "the tiles look different")
        self.screenshot("layout-file-imported.png")


class ProfilesCase(HostCase):
    """Two layout profiles, a clock on the default and a battery on the other, and one rule that
    chooses the other."""

    panel_count = 1
    DEFAULT = "00000000-0000-4000-8000-000000000001"
    OTHER = "C0000000-0000-4000-8000-000000000001"
    rule = {}

    def before_launch(self):
        def tile(n, kind):
            return {"id": "C1000000-0000-4000-8000-00000000000%d" % n, "kind": kind,
                    "size": "small", "order": n, "page": 0, "col": 0, "row": 0,
                    "posX": 300, "posY": 700}

        def profile(pid, name, kind, n):
            return {"id": pid, "name": name, "isDefault": n == 0, "createdAt": 0, "updatedAt": 0,
                    "snapshot": {"layout": {"instances": [tile(n, kind)], "pageCount": 1},
                                 "displays": [], "placements": []}}

        rule = {"id": "C2000000-0000-4000-8000-000000000001", "name": "Rule",
                "profileID": self.OTHER, "isEnabled": True, "trigger": "display",
                "startMinute": 0, "endMinute": 0, "applicationBundleID": "", "displayID": "",
                "displayName": ""}
        files = {
            "grid.json": {"instances": [tile(0, "clock")], "pageCount": 1},
            "layout-profiles.json": {"version": 1, "activeProfileID": self.DEFAULT, "profiles": [
                profile(self.DEFAULT, "Default", "clock", 0),
                profile(self.OTHER, "Other", "battery", 1)]},
            "smart-layout-rules.json": {"version": 1, "rules": [{**rule, **self.rule}]},
        }
        for name, content in files.items():
            with open(os.path.join(self.data_dir, name), "w", encoding="utf-8") as f:
                json.dump(content, f)

    def shows(self, kind):
        """The desktop holds one tile, of this kind, and its panel is on screen."""
        instances = self.host.grid()["instances"]
        return ([i["kind"] for i in instances] == [kind] and
                list(self.host.panels()) == [instances[0]["id"].lower()])

    def active_profile(self):
        with open(os.path.join(self.data_dir, "layout-profiles.json"), encoding="utf-8") as f:
            return json.load(f)["activeProfileID"]


class SmartLayoutTest(ProfilesCase):
    """A monitor defined at run time puts the display rule's profile on the desktop, and taking
    it away brings the profile from before back."""

    rule = {"name": "Presenting", "trigger": "display", "displayName": "R"}

    def test_a_display_rule_switches_profiles_with_the_monitor(self):
        self.assertTrue(self.shows("clock"))
        added = self.session.run(["xrandr", "--setmonitor", "R", "960/254x1080/286+960+0",
                                  "none"], check=False, capture_output=True)
        if added.returncode != 0:
            self.skipTest("this X server cannot define monitors")
        self.settle(lambda: self.shows("battery"), "the rule's profile did not come")
        self.assertEqual(self.active_profile(), self.OTHER)
        self.session.run(["xrandr", "--delmonitor", "R"], check=True)
        self.settle(lambda: self.shows("clock"), "the profile from before did not come back")


class ScheduleRuleTest(ProfilesCase):
    """The desktop's clock started just before nine: the rule's window opens a few seconds into
    the run and the next evaluation (every 30 s) puts the rule's profile on the desktop."""

    START = datetime.datetime(2026, 11, 24, 8, 59, 45)
    rule = {"name": "Mornings", "trigger": "schedule", "startMinute": 9 * 60,
            "endMinute": 10 * 60}

    def environment(self):
        self.started = time.monotonic()
        return {"TKW_CLOCK_START": self.START.isoformat()}

    def test_a_schedule_rule_switches_profiles_when_its_window_opens(self):
        # Still before nine, unless this start was slower than the time left.
        if time.monotonic() - self.started < 12:
            self.assertTrue(self.shows("clock"), "the rule held before its window")
        self.assertTrue(self.session.wait_for(lambda: self.shows("battery"), timeout=60),
                        "the rule's profile did not come")
        self.assertGreater(time.monotonic() - self.started, 15, "the rule held too early")
        self.assertEqual(self.active_profile(), self.OTHER)
        self.screenshot("schedule-rule.png")


class CalendarTileTest(HostCase):
    """A calendar tile whose person chose "All calendars" shows an event from a vdir folder, in
    its calendar's colour; a list kept in another folder next to it stays out of the way."""

    panel_count = 1
    MAGENTA = "#FF00FF"

    def before_launch(self):
        folder = os.path.join(self.config_home, "data", "calendars", "personal")
        os.makedirs(folder)
        with open(os.path.join(folder, "displayname"), "w", encoding="utf-8") as f:
            f.write("Personal")
        with open(os.path.join(folder, "color"), "w", encoding="utf-8") as f:
            f.write(self.MAGENTA)
        start = datetime.datetime.now(datetime.timezone.utc) + datetime.timedelta(hours=1)
        stamp = lambda t: t.strftime("%Y%m%dT%H%M%SZ")
        with open(os.path.join(folder, "dentist.ics"), "w", encoding="utf-8", newline="") as f:
            f.write("BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//e2e//EN\r\nBEGIN:VEVENT\r\n"
                    "UID:dentist\r\nSUMMARY:Dentist\r\nDTSTART:%s\r\nDTEND:%s\r\n"
                    "END:VEVENT\r\nEND:VCALENDAR\r\n"
                    % (stamp(start), stamp(start + datetime.timedelta(minutes=45))))
        tile = {"id": "C0000000-0000-4000-8000-000000000001", "kind": "calendar",
                "size": "large", "order": 0, "page": 0, "col": 0, "row": 0,
                "posX": 300, "posY": 700, "settings": {"calendar": "all"}}
        with open(os.path.join(self.data_dir, "grid.json"), "w", encoding="utf-8") as f:
            json.dump({"instances": [tile], "pageCount": 1}, f)

    def test_the_tile_shows_the_event_in_its_calendars_colour(self):
        x, y, w, h = self.panel_of(self.by_kind("calendar"))

        def magenta():
            return sum(1 for row in self.pixels(x, y, w, h) for (r, g, b) in row
                       if r > 200 and g < 90 and b > 200)
        if not self.session.wait_for(lambda: magenta() >= 20, timeout=20):
            self.screenshot("failed-calendar-tile.png")
            self.fail("the calendar tile did not show the event of the folder")
        self.screenshot("calendar-tile.png")


class ReminderCompletionTest(HostCase):
    """A reminders tile reading a task list the test keeps as a vdir folder: a click on the
    reminder's check mark writes it done into its own file, and the tile lets it go."""

    panel_count = 1
    MAGENTA = "#FF00FF"

    def before_launch(self):
        folder = os.path.join(self.config_home, "data", "calendars", "tasks")
        os.makedirs(folder)
        with open(os.path.join(folder, "displayname"), "w", encoding="utf-8") as f:
            f.write("Tasks")
        with open(os.path.join(folder, "color"), "w", encoding="utf-8") as f:
            f.write(self.MAGENTA)
        self.item = os.path.join(folder, "plants.ics")
        with open(self.item, "w", encoding="utf-8", newline="") as f:
            f.write("BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//e2e//EN\r\nBEGIN:VTODO\r\n"
                    "UID:plants\r\nSUMMARY:Water the plants\r\nEND:VTODO\r\nEND:VCALENDAR\r\n")
        tile = {"id": "C0000000-0000-4000-8000-000000000002", "kind": "reminders",
                "size": "large", "order": 0, "page": 0, "col": 0, "row": 0,
                "posX": 300, "posY": 700, "settings": {"list": "all"}}
        with open(os.path.join(self.data_dir, "grid.json"), "w", encoding="utf-8") as f:
            json.dump({"instances": [tile], "pageCount": 1}, f)

    def written(self):
        with open(self.item, encoding="utf-8") as f:
            return f.read()

    def test_a_click_on_the_check_mark_completes_the_reminder_in_its_file(self):
        x, y, _, _ = self.panel_of(self.by_kind("reminders"))
        # The first row stands under the 30-point header of the padded content; its check mark
        # is the circle at its left, drawn in the list's colour.
        left, top = x + MARGIN + 12, y + MARGIN + 12 + 30
        mark = (left, top, 18, 22)

        def magenta():
            return sum(1 for row in self.pixels(*mark) for (r, g, b) in row
                       if r > 200 and g < 90 and b > 200)
        if not self.session.wait_for(lambda: magenta() >= 10, timeout=20):
            self.screenshot("failed-reminder-tile.png")
            self.fail("the reminders tile did not show the folder's reminder")
        self.assertNotIn("COMPLETED", self.written())
        self.session.xdotool("mousemove", "--sync", left + 8, top + 10)
        self.session.xdotool("click", "1")
        self.assertTrue(self.session.wait_for(lambda: "STATUS:COMPLETED" in self.written(), 10),
                        "the click did not complete the reminder: " + self.written())
        self.assertIn("SUMMARY:Water the plants", self.written())
        self.assertTrue(self.session.wait_for(lambda: magenta() == 0, timeout=10),
                        "the tile kept showing the completed reminder")
        self.screenshot("reminder-completed.png")


class NowPlayingTest(HostCase):
    """A media player of our own on a private session bus: the music tile shows its track with
    the cover from a file, a click on the tile's play button reaches the player and the button
    turns, and when the player leaves the bus the tile says nothing is playing."""

    panel_count = 1
    SYSTEM_PYTHON = "/usr/bin/python3"
    PLAYER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support",
                          "fake_mpris_player.py")
    RED = (220, 30, 40)

    def setUp(self):
        if subprocess.run([self.SYSTEM_PYTHON, "-c", "import dbus, gi"],
                          capture_output=True, check=False).returncode != 0:
            self.skipTest("python3-dbus or python3-gi is not installed")
        super().setUp()

    def before_launch(self):
        bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address=1"],
                               stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True,
                               preexec_fn=dies_with_parent)
        self.helpers.append(bus)
        self.addCleanup(bus.stdout.close)
        self.bus = bus.stdout.readline().strip()
        cover = os.path.join(self.config_home, "cover.ppm")
        with open(cover, "wb") as f:
            f.write(b"P6 64 64 255\n" + bytes(self.RED) * 64 * 64)
        track = {"PlaybackStatus": "Paused", "Position": 30000000, "Metadata": {
            "xesam:title": "Harbour Lights", "xesam:artist": ["The Tides"],
            "mpris:length": 200000000, "mpris:artUrl": "file://" + cover}}
        self.player_log = os.path.join(self.config_home, "player.log")
        log = open(self.player_log, "w", encoding="utf-8")
        self.addCleanup(log.close)
        self.player = subprocess.Popen(
            [self.SYSTEM_PYTHON, self.PLAYER, "tides", "--json", json.dumps(track)],
            env={**os.environ, "DBUS_SESSION_BUS_ADDRESS": self.bus}, stdin=subprocess.PIPE,
            stdout=log, preexec_fn=dies_with_parent)
        self.helpers.append(self.player)
        self.assertTrue(self.session.wait_for(lambda: "ready" in self.said()), "no player")
        tile = {"id": "D0000000-0000-4000-8000-000000000004", "kind": "nowplaying",
                "size": "wide", "order": 0, "page": 0, "col": 0, "row": 0, "posX": 300,
                "posY": 700}
        with open(os.path.join(self.data_dir, "grid.json"), "w", encoding="utf-8") as f:
            json.dump({"instances": [tile], "pageCount": 1}, f)

    def environment(self):
        return {"DBUS_SESSION_BUS_ADDRESS": self.bus}

    def said(self):
        with open(self.player_log, encoding="utf-8") as f:
            return f.read().split("\n")

    def test_shows_the_track_and_its_button_reaches_the_player(self):
        x, y, _, _ = self.panel_of(self.by_kind("nowplaying"))
        # The wide tile's content: 12 points in from a tile that stands 22 in from its panel;
        # the cover is its left square, the play button the middle of three under the bar.
        left, top = x + MARGIN + 12, y + MARGIN + 12
        cover = (left + 30, top + 30, 12, 12)
        button = (left + 122, top + 48, 20, 20)

        def red():
            return all(abs(a - b) < 12 for row in self.pixels(*cover) for p in row
                       for a, b in zip(p, self.RED))
        self.assertTrue(self.session.wait_for(red, timeout=20), "the cover never showed")
        paused = self.pixels(*button)
        self.session.xdotool("mousemove", "--sync", button[0] + 10, button[1] + 10)
        self.session.xdotool("click", "1")
        self.assertTrue(self.session.wait_for(lambda: "called PlayPause" in self.said()),
                        "the click did not reach the player")
        self.assertTrue(self.session.wait_for(lambda: self.pixels(*button) != paused),
                        "the button did not turn to pause")
        self.screenshot("now-playing.png")
        self.player.stdin.close()
        self.player.wait(timeout=10)
        self.assertTrue(self.session.wait_for(lambda: not red(), timeout=10),
                        "the tile kept the track of a player that left")


class SpeedLine:
    """The build's speed test host at a set rate, as a process of its own."""

    def __init__(self, mbit):
        server = os.path.join(os.path.dirname(BINARY), "tkw_speedtest_server")
        self.process = subprocess.Popen([server, "--mbit", str(mbit)], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, text=True,
                                        preexec_fn=dies_with_parent)
        self.base = "http://127.0.0.1:" + self.process.stdout.readline().strip().split("=")[1]

    def close(self):
        """Ends the host; what it served and swallowed, in bytes."""
        self.process.stdin.close()
        totals = dict(pair.split("=") for pair in self.process.stdout.readline().split())
        self.process.wait(timeout=10)
        return int(totals["served"]), int(totals["swallowed"])


class SpeedTestTest(HostCase):
    """The speed test against a local host held to 80 Mbit/s: from the command line, which prints
    its fields and exits 0, and from the tile, whose press runs a test that joins the history."""

    panel_count = 1
    line_pattern = re.compile(r"phase=(\S+) live=([\d.]+) down=([\d.]+|—) ping=([\d.]+|—)$")

    def before_launch(self):
        self.line = SpeedLine(80)
        tile = {"id": "D0000000-0000-4000-8000-000000000013", "kind": "speedtest",
                "size": "small", "order": 0, "page": 0, "col": 0, "row": 0, "posX": 300,
                "posY": 700}
        with open(os.path.join(self.data_dir, "grid.json"), "w", encoding="utf-8") as f:
            json.dump({"instances": [tile], "pageCount": 1}, f)

    def environment(self):
        return {"TKW_ENDPOINT_BASE": self.line.base}

    def tearDown(self):
        self.line.close()
        super().tearDown()

    def history(self):
        with open(self.conf_path, encoding="utf-8") as f:
            return "tarnwick.speedtest.history" in f.read()

    def test_command_line(self):
        run = subprocess.run([BINARY, "--speedtest-cli"], capture_output=True, text=True,
                             timeout=60, env=self.session.env({
                                 "TKW_ENDPOINT_BASE": self.line.base,
                                 "XDG_CONFIG_HOME": self.config_home,
                                 "QT_LOGGING_RULES": "*.info=false"}))
        self.assertEqual(run.returncode, 0, run.stderr)
        lines = run.stdout.splitlines()
        matched = [self.line_pattern.match(line) for line in lines]
        self.assertTrue(all(matched), run.stdout)
        phases = [m.group(1) for m in matched]
        self.assertEqual(phases[-1], "done", run.stdout)
        self.assertIn("download", phases)
        self.assertIn("upload", phases)
        down = float(matched[-1].group(3))
        # Something measured, and never more than the line gives.
        self.assertTrue(0 < down <= 80 * 1.1, run.stdout)
        self.assertNotEqual(matched[-1].group(4), "—")

    def test_tile_runs_a_test(self):
        self.assertFalse(self.history())
        rect = self.panel_of(self.by_kind("speedtest"))
        self.session.xdotool("mousemove", "--sync", *centre(rect))
        self.session.xdotool("click", 1)
        self.assertTrue(self.session.wait_for(self.history, timeout=60),
                        "the press on the tile did not run a test to its end")
        self.screenshot("speedtest-done.png")
        served, swallowed = self.line.close()
        self.line = SpeedLine(80)
        self.assertGreater(served, 1_000_000)
        self.assertGreater(swallowed, 1_000_000)


class CalculatorTileTest(HostCase):
    """Typing into a calculator tile: a click gives it the keys, the sum typed is worked out on
    Return, and the tape in grid.json has it at once, so a quit right after loses nothing."""

    panel_count = 1

    def before_launch(self):
        tile = {"id": "E0000000-0000-4000-8000-000000000003", "kind": "calculator",
                "size": "large", "order": 0, "page": 0, "col": 0, "row": 0,
                "posX": 300, "posY": 700}
        with open(os.path.join(self.data_dir, "grid.json"), "w", encoding="utf-8") as f:
            json.dump({"instances": [tile], "pageCount": 1}, f)

    def tape(self):
        return self.by_kind("calculator").get("settings", {}).get("tape", "")

    def test_a_sum_typed_into_the_tile_joins_its_tape(self):
        x, y, w, _ = self.panel_of(self.by_kind("calculator"))
        # The display, above the key pad: a click there copies, and gives the tile the keys.
        self.session.xdotool("mousemove", "--sync", x + w // 2, y + MARGIN + 30)
        self.session.xdotool("click", "1")
        self.session.xdotool("type", "--delay", "40", "12*3+4%")
        self.session.xdotool("key", "Return")
        self.settle(lambda: self.tape() == "12*3+4%=37.44", "the typed sum is not on the tape")
        self.session.xdotool("type", "--delay", "40", "/0")
        self.session.xdotool("key", "Return")
        self.session.xdotool("key", "BackSpace")
        self.session.xdotool("type", "--delay", "40", "2=")
        self.settle(lambda: self.tape().endswith("37.44/2=18.72"),
                    "a division by zero left the calculator stuck")
        self.screenshot("calculator-typed.png")


class LauncherTilesTest(HostCase):
    """A click on a shortcut tile starts its command, its words as they were quoted and never
    through a shell; a terminal tile runs its command again and again while it is in view."""

    panel_count = 2

    def before_launch(self):
        self.out = tempfile.mkdtemp(prefix="tw-e2e-launch-")
        tiles = [
            {"id": "D0000000-0000-4000-8000-000000000031", "kind": "shortcut", "size": "small",
             "order": 0, "page": 0, "col": 0, "row": 0, "posX": 300, "posY": 700,
             "settings": {"type": "command",
                          "command": "touch '%s/clicked; not a shell'" % self.out}},
            {"id": "D0000000-0000-4000-8000-000000000032", "kind": "terminal", "size": "wide",
             "order": 1, "page": 0, "col": 1, "row": 0, "posX": 500, "posY": 700,
             "settings": {"command": "sh -c 'echo run >> %s/runs'" % self.out,
                          "interval": "2"}},
        ]
        with open(os.path.join(self.data_dir, "grid.json"), "w", encoding="utf-8") as f:
            json.dump({"instances": tiles, "pageCount": 1}, f)

    def tearDown(self):
        super().tearDown()
        shutil.rmtree(self.out, ignore_errors=True)

    def runs(self):
        try:
            with open(os.path.join(self.out, "runs"), encoding="utf-8") as f:
                return len(f.read().split())
        except OSError:
            return 0

    def test_a_click_starts_the_command_and_the_terminal_runs_in_view(self):
        self.assertTrue(self.session.wait_for(lambda: self.runs() >= 2, timeout=20),
                        "the terminal tile did not run its command again")
        self.screenshot("launcher-tiles.png")
        shortcut = self.by_kind("shortcut")
        self.session.xdotool("mousemove", "--sync", *centre(self.panel_of(shortcut)))
        self.session.xdotool("click", 1)
        self.settle(lambda: os.path.exists(os.path.join(self.out, "clicked; not a shell")),
                    "the click on the shortcut did not start its command")
        self.assertFalse(os.path.exists(os.path.join(self.out, "clicked")),
                         "the command went through a shell")


class PageServer(LoopbackServer):
    """Two pages on loopback: a red one that is a link to a blue one."""

    PAGES = {"/": b"<title>Red</title><body style='margin:0;background:#d01010'>"
                  b"<a href='/two' style='display:block;height:100vh'>next</a>",
             "/two": b"<title>Blue</title><body style='margin:0;background:#1010d0'>"}

    def respond(self, request):
        body = self.PAGES.get(request.path)
        return (200 if body else 404), (body or b""), {"Content-Type": "text/html"}

    def url(self):
        return self.base() + "/"


class WebTileTest(HostCase):
    """A web tile shows a loopback page drawn by its helper, the one helper there is, and a click
    on the page's link takes the tile to the next page."""

    panel_count = 1

    def before_launch(self):
        self.server = PageServer()
        self.addCleanup(self.server.server_close)
        self.addCleanup(self.server.shutdown)
        tile = {"id": "D0000000-0000-4000-8000-000000000021", "kind": "web", "size": "large",
                "order": 0, "page": 0, "col": 0, "row": 0, "posX": 300, "posY": 700,
                "settings": {"url": self.server.url(), "refresh": "0"}}
        with open(os.path.join(self.data_dir, "grid.json"), "w", encoding="utf-8") as f:
            json.dump({"instances": [tile], "pageCount": 1}, f)

    def helpers_running(self):
        found = subprocess.run(["pgrep", "-P", str(self.host.process.pid), "-x", "tarnwick-web"],
                               capture_output=True, text=True).stdout.split()
        return len(found)

    def middle(self, rect):
        x, y = centre(rect)
        rows = self.pixels(x - 5, y - 5, 10, 10)
        return [sum(p[c] for row in rows for p in row) // 100 for c in range(3)]

    def test_a_click_follows_the_pages_link(self):
        rect = self.panel_of(self.by_kind("web"))
        red = lambda: self.middle(rect)[0] > 150 and self.middle(rect)[2] < 80
        if not self.session.wait_for(red, timeout=60):
            self.screenshot("failed-web-first-page.png")
            self.fail("the page never showed: %s" % self.middle(rect))
        self.assertEqual(self.helpers_running(), 1)
        self.session.xdotool("mousemove", "--sync", *centre(rect))
        self.session.xdotool("click", 1)
        blue = lambda: self.middle(rect)[2] > 150 and self.middle(rect)[0] < 80
        if not self.session.wait_for(blue, timeout=30):
            self.screenshot("failed-web-next-page.png")
            self.fail("the click did not follow the link: %s" % self.middle(rect))
        self.screenshot("web-tile.png")


class GitHubServer(LoopbackServer):
    """GitHub's REST API on loopback under TKW_ENDPOINT_BASE's "github": a repository with an
    ETag that answers 304 to it, no release, one pull request waiting."""

    ANSWERS = {
        "/github/repos/kde/kate": b'{"full_name":"kde/kate","description":"An editor",'
                                  b'"stargazers_count":1234,"forks_count":5}',
        "/github/repos/kde/kate/pulls": b'[{"title":"Faster search","number":12,"state":"open",'
                                        b'"html_url":"https://github.com/kde/kate/pull/12"}]',
    }

    def __init__(self):
        self.requests = []
        super().__init__()

    def respond(self, request):
        path = request.path.split("?")[0]
        tag = request.headers.get("If-None-Match")
        if path.startswith("/github/"):
            self.requests.append((path, tag, request.headers.get("Authorization")))
        body = self.ANSWERS.get(path)
        if body is not None and tag == '"e1"':
            return 304, b"", {}
        found = body is not None
        return (200 if found else 404), (body if found else b'{"message":"Not Found"}'), \
            {**JSON, "ETag": '"e1"'}


class GitHubTileTest(HostCase):
    """A GitHub tile of a repository: its three requests on the desktop, no token sent, and
    "Refresh Now" from its context menu asking again with the ETags, answered 304."""

    panel_count = 1

    def before_launch(self):
        self.server = GitHubServer()
        self.addCleanup(self.server.server_close)
        self.addCleanup(self.server.shutdown)
        tile = {"id": "E0000000-0000-4000-8000-000000000021", "kind": "github", "size": "large",
                "order": 0, "page": 0, "col": 0, "row": 0, "posX": 300, "posY": 700,
                "settings": {"target": "kde/kate"}}
        with open(os.path.join(self.data_dir, "grid.json"), "w", encoding="utf-8") as f:
            json.dump({"instances": [tile], "pageCount": 1}, f)

    def environment(self):
        return {"TKW_ENDPOINT_BASE": self.server.base()}

    def test_refresh_now_asks_again_with_etags(self):
        self.assertTrue(self.session.wait_for(lambda: len(self.server.requests) >= 3, timeout=15),
                        "the tile asked GitHub nothing: %s" % self.server.requests)
        self.assertEqual({r[0] for r in self.server.requests},
                         {"/github/repos/kde/kate", "/github/repos/kde/kate/releases/latest",
                          "/github/repos/kde/kate/pulls"})
        self.assertFalse(any(r[1] or r[2] for r in self.server.requests), self.server.requests)
        x, y, w, h = self.panel_of(self.by_kind("github"))
        self.session.xdotool("mousemove", "--sync", x + w // 2, y + h // 2)
        before = self.session.override_windows()
        self.session.xdotool("click", "3")
        self.assertTrue(self.session.wait_for(lambda: self.session.override_windows() - before),
                        "no menu opened")
        self.session.xdotool("key", "Down")
        self.session.xdotool("key", "Return")
        self.assertTrue(self.session.wait_for(lambda: len(self.server.requests) >= 6, timeout=15),
                        "Refresh Now asked nothing: %s" % self.server.requests)
        again = self.server.requests[3:]
        self.assertEqual(sorted(r[1] for r in again if r[0] != "/github/repos/kde/kate/releases"
                                "/latest"), ['"e1"', '"e1"'])
        self.screenshot("github-tile.png")


class FileTilesTest(HostCase):
    """A folder tile over a folder the test keeps and a trash tile over the session's own trash:
    a click on an item opens it with the desktop's handler, and the trash empties only after the
    tile's own second press."""

    panel_count = 2

    def before_launch(self):
        self.folder = tempfile.mkdtemp(prefix="tw-e2e-files-")
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        with open(os.path.join(self.folder, "agenda.txt"), "w", encoding="utf-8") as f:
            f.write("items")
        trash = os.path.join(self.config_home, "data", "Trash")
        self.trashed = os.path.join(trash, "files", "old notes.txt")
        os.makedirs(os.path.dirname(self.trashed))
        os.makedirs(os.path.join(trash, "info"))
        with open(self.trashed, "w", encoding="utf-8") as f:
            f.write("gone soon")
        with open(os.path.join(trash, "info", "old notes.txt.trashinfo"), "w",
                  encoding="utf-8") as f:
            f.write("[Trash Info]\nPath=/tmp/old%20notes.txt\nDeletionDate=2026-11-01T10:00:00\n")
        tiles = [{"id": "F0000000-0000-4000-8000-000000000001", "kind": "folder",
                  "size": "large", "order": 0, "page": 0, "col": 0, "row": 0, "posX": 300,
                  "posY": 700, "settings": {"path": self.folder}},
                 {"id": "F0000000-0000-4000-8000-000000000002", "kind": "trash",
                  "size": "wide", "order": 1, "page": 0, "col": 3, "row": 0, "posX": 700,
                  "posY": 700}]
        with open(os.path.join(self.data_dir, "grid.json"), "w", encoding="utf-8") as f:
            json.dump({"instances": tiles, "pageCount": 1}, f)
        # No file manager here: xdg-open writes down what it was asked to open.
        self.opened = os.path.join(self.folder, "opened")
        self.bin = tempfile.mkdtemp(prefix="tw-e2e-bin-")
        self.addCleanup(shutil.rmtree, self.bin, ignore_errors=True)
        with open(os.path.join(self.bin, "xdg-open"), "w", encoding="utf-8") as f:
            f.write('#!/bin/sh\necho "$1" >> "%s"\n' % self.opened)
        os.chmod(os.path.join(self.bin, "xdg-open"), 0o755)

    def environment(self):
        return {"PATH": self.bin + os.pathsep + os.environ.get("PATH", "")}

    def was_opened(self, name):
        if not os.path.exists(self.opened):
            return False
        with open(self.opened, encoding="utf-8") as f:
            return name in f.read()

    def test_a_click_on_an_item_opens_it(self):
        x, y, _, _ = self.panel_of(self.by_kind("folder"))
        # The padded content starts 12 points in; under the header's 30 points the first of the
        # 90-point-wide cells holds the icon and the name.
        self.session.xdotool("mousemove", "--sync", x + MARGIN + 12 + 45, y + MARGIN + 12 + 60)
        for _ in range(5):
            self.session.xdotool("click", "1")
            if self.session.wait_for(lambda: self.was_opened("agenda.txt"), timeout=3):
                break
        if not self.was_opened("agenda.txt"):
            self.screenshot("failed-folder-click.png")
            self.fail("the click did not open the item")

    def test_the_trash_empties_after_the_tiles_confirmation(self):
        x, y, _, _ = self.panel_of(self.by_kind("trash"))
        # "Empty…" stands at the lower right of the wide tile; "Empty" takes its place to confirm.
        self.session.xdotool("mousemove", "--sync", x + MARGIN + 12 + 150, y + MARGIN + 12 + 62)
        self.session.xdotool("click", "1")
        self.assertFalse(self.session.wait_for(lambda: not os.path.exists(self.trashed), timeout=2),
                         "the first press emptied the trash")
        self.session.xdotool("click", "1")
        if not self.session.wait_for(lambda: not os.path.exists(self.trashed), timeout=10):
            self.screenshot("failed-trash-empty.png")
            self.fail("the confirmed press did not empty the trash")
        self.assertEqual(os.listdir(os.path.dirname(self.trashed)), [])


def main():
    global BINARY, ARTIFACTS, VERSION, TEMPLATES
    parser = argparse.ArgumentParser()
    parser.add_argument("--binary", required=True)
    parser.add_argument("--artifacts")
    parser.add_argument("--version", required=True, help="the project version of the build")
    parser.add_argument("--templates", help="the build's tw_write_web_templates (default: beside "
                        "the binary, in tests/e2e)")
    args, rest = parser.parse_known_args()
    BINARY = os.path.abspath(args.binary)
    TEMPLATES = os.path.abspath(args.templates or os.path.join(
        os.path.dirname(BINARY), "tests", "e2e", "tw_write_web_templates"))
    VERSION = args.version
    ARTIFACTS = args.artifacts
    missing = missing_tools()
    if missing:
        print("missing " + ", ".join(missing) + ": scripts/setup installs them", file=sys.stderr)
        return 1
    result = unittest.main(argv=[sys.argv[0], "-v", *rest], exit=False).result
    return 0 if result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main())
