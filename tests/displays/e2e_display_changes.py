#!/usr/bin/env python3
"""End to end on a real X server: the topology watcher over Qt's screens sees a RandR monitor
defined at run time as one settled change with changed=true, and a monitor removed and defined
again within the quiet period as one settled change with changed=false.

    e2e_display_changes.py PROBE

Exits 77 (skipped) with the reason when this X server cannot change its monitors."""

import os
import queue
import subprocess
import sys
import threading
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "e2e"))
from xsession import XSession  # noqa: E402

SKIP = 77
MONITOR = "1920/508x1080/286+1920+0"


def skip(reason):
    print("SKIP: " + reason)
    sys.exit(SKIP)


def fail(reason, lines):
    print("FAIL: " + reason)
    print("probe said:\n  " + "\n  ".join(lines))
    sys.exit(1)


class Probe:
    def __init__(self, path, env):
        self.proc = subprocess.Popen([path, "50"], env=env, stdout=subprocess.PIPE,
                                     stderr=subprocess.STDOUT, text=True)
        self.lines = []
        self._queue = queue.Queue()
        threading.Thread(target=self._pump, daemon=True).start()

    def _pump(self):
        for line in self.proc.stdout:
            self._queue.put(line.rstrip("\n"))

    def next(self, prefix, timeout):
        """The next line starting with `prefix` within `timeout` seconds, else None."""
        deadline = time.monotonic() + timeout
        while True:
            left = deadline - time.monotonic()
            if left <= 0:
                return None
            try:
                line = self._queue.get(timeout=left)
            except queue.Empty:
                return None
            self.lines.append(line)
            if line.startswith(prefix):
                return line

    def stop(self):
        if self.proc.poll() is None:
            self.proc.terminate()
            try:
                self.proc.wait(timeout=5)
            except subprocess.TimeoutExpired:
                self.proc.kill()
                self.proc.wait()


def xrandr(env, *args):
    return subprocess.run(["xrandr", *args], env=env, capture_output=True, text=True, timeout=10)


def main():
    if len(sys.argv) != 2:
        print(__doc__)
        return 2
    missing = [t for t in ("Xvfb", "xrandr") if not any(
        os.access(os.path.join(d, t), os.X_OK) for d in os.environ.get("PATH", "").split(":"))]
    if missing:
        skip("missing tools: " + ", ".join(missing))

    with XSession(size="3840x1080", window_manager=False) as session:
        env = session.env()
        env["QT_QPA_PLATFORM"] = "xcb"
        env["QT_LOGGING_RULES"] = "*.debug=false"
        probe = Probe(sys.argv[1], env)
        try:
            ready = probe.next("ready", 15)
            if ready is None:
                fail("the probe did not start on " + session.display, probe.lines)
            print(ready)

            added = xrandr(env, "--setmonitor", "R", MONITOR, "none")
            if added.returncode != 0:
                skip("xrandr --setmonitor failed, this X server cannot define monitors: " +
                     added.stderr.strip())
            first = probe.next("settled", 10)
            if first is None:
                skip("Qt reported no screen change after xrandr --setmonitor (tried: RandR "
                     "monitor R " + MONITOR + " on a 3840x1080 Xvfb)")
            print(first)
            if "changed=true" not in first or "screens=2" not in first:
                fail("a new monitor should settle as a change of two screens", probe.lines)

            # Away and back within the quiet period: one evaluation, the same set as before.
            if xrandr(env, "--delmonitor", "R").returncode != 0:
                fail("xrandr --delmonitor failed", probe.lines)
            if xrandr(env, "--setmonitor", "R", MONITOR, "none").returncode != 0:
                fail("xrandr --setmonitor failed the second time", probe.lines)
            second = probe.next("settled", 10)
            if second is None:
                fail("no settled change after the monitor came back", probe.lines)
            print(second)
            if "changed=false" not in second or "screens=2" not in second:
                fail("a monitor that returns within the quiet period is no change", probe.lines)
            extra = probe.next("settled", 3)
            if extra is not None:
                fail("one burst of notifications must settle once", probe.lines)

            if xrandr(env, "--delmonitor", "R").returncode != 0:
                fail("xrandr --delmonitor failed", probe.lines)
            third = probe.next("settled", 10)
            if third is None or "changed=true" not in third or "screens=1" not in third:
                fail("removing the monitor should settle as a change to one screen", probe.lines)
            print(third)
        finally:
            probe.stop()
    print("PASS")
    return 0


if __name__ == "__main__":
    sys.exit(main())
