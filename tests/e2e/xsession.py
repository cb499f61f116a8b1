#!/usr/bin/env python3
"""A private X session for end-to-end tests: Xvfb on a display number the server picks itself,
openbox on it, and helpers that look at windows with xprop/xwininfo and drive the pointer with
xdotool. Used as a module by the tests, or as a command:

    xsession.py [--size 1920x1080] -- COMMAND ARGS...

runs COMMAND with DISPLAY set and returns its exit code. Both servers are stopped at the end,
also when the test is killed by its timeout."""

import argparse
import ctypes
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

TOOLS = ("Xvfb", "openbox", "xdotool", "xprop", "xwininfo")
PR_SET_PDEATHSIG = 1


def dies_with_parent():
    """For Popen's preexec_fn: the child is sent SIGTERM when the test process ends, even by
    SIGKILL, so that a test killed at its timeout leaves no server or host behind."""
    ctypes.CDLL(None, use_errno=True).prctl(PR_SET_PDEATHSIG, signal.SIGTERM)


def missing_tools():
    return [t for t in TOOLS if shutil.which(t) is None]


class XSession:
    """Context manager: starts Xvfb and openbox, stops both on exit."""

    def __init__(self, size="1920x1080", window_manager=True):
        self.size = size
        self.window_manager = window_manager
        self.display = None
        self._xvfb = None
        self._wm = None
        self._logdir = tempfile.mkdtemp(prefix="tw-xsession-")
        self._logs = []

    def __enter__(self):
        read_fd, write_fd = os.pipe()
        self._xvfb = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_fd), "-screen", "0", self.size + "x24",
             "-nolisten", "tcp", "-noreset", "+extension", "RANDR"],
            pass_fds=(write_fd,), stdout=subprocess.DEVNULL,
            stderr=self._log("xvfb.log"),
            start_new_session=True, preexec_fn=dies_with_parent)
        os.close(write_fd)
        number = b""
        deadline = time.monotonic() + 20
        with os.fdopen(read_fd, "rb") as pipe:
            while not number.endswith(b"\n") and time.monotonic() < deadline:
                chunk = pipe.read(1)
                if not chunk:
                    break
                number += chunk
        if not number.strip():
            self.__exit__(None, None, None)
            raise RuntimeError("Xvfb did not report a display number")
        self.display = ":" + number.decode().strip()
        if self.window_manager:
            self._wm = subprocess.Popen(
                ["openbox", "--sm-disable"], env=self.env(),
                stdout=subprocess.DEVNULL,
                stderr=self._log("openbox.log"),
                start_new_session=True, preexec_fn=dies_with_parent)
            def managed():
                return "window id #" in self.output(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"])
            # Ready once it names itself on the root; a window manager that ended never will.
            self.wait_for(lambda: managed() or self._wm.poll() is not None, timeout=20)
            if not managed():
                self.__exit__(None, None, None)
                raise RuntimeError("openbox did not start")
        return self

    def __exit__(self, *exc):
        for proc in (self._wm, self._xvfb):
            if proc is not None and proc.poll() is None:
                proc.terminate()
                try:
                    proc.wait(timeout=5)
                except subprocess.TimeoutExpired:
                    proc.kill()
                    proc.wait()
        for log in self._logs:
            log.close()
        shutil.rmtree(self._logdir, ignore_errors=True)
        return False

    def _log(self, name):
        log = open(os.path.join(self._logdir, name), "w", encoding="utf-8")
        self._logs.append(log)
        return log

    @property
    def server_pid(self):
        return self._xvfb.pid

    def env(self, extra=None):
        env = dict(os.environ)
        env.pop("WAYLAND_DISPLAY", None)
        env["DISPLAY"] = self.display
        env["QT_QPA_PLATFORM"] = "xcb"
        # Without a session bus libdbus would start one per process ("autolaunch") and leave it
        # running; a private session has no bus unless the caller brings one.
        env.setdefault("DBUS_SESSION_BUS_ADDRESS", "disabled:")
        # The web services at a closed local port: the host on a test's display never reaches
        # the internet, unless the test brings a server of its own.
        env.setdefault("TKW_ENDPOINT_BASE", "http://127.0.0.1:9")
        # A timer ending in a test rings nothing.
        env.setdefault("TKW_SILENT", "1")
        if extra:
            env.update(extra)
        return env

    def run(self, args, **kwargs):
        return subprocess.run(args, env=self.env(kwargs.pop("env", None)), **kwargs)

    def output(self, args):
        return self.run(args, capture_output=True, text=True, check=False).stdout

    # --- looking at windows -------------------------------------------------------------------

    def client_windows(self):
        """Ids of the windows the window manager manages, bottom to top."""
        out = self.output(["xprop", "-root", "_NET_CLIENT_LIST_STACKING"])
        return [int(w, 16) for w in re.findall(r"0x[0-9a-fA-F]+", out)]

    def prop(self, window, name):
        out = self.output(["xprop", "-id", str(window), name])
        return out.split("=", 1)[1].strip() if "=" in out else None

    def geometry(self, window):
        """(x, y, width, height) of a window on the root, in pixels, y downward."""
        out = self.output(["xwininfo", "-id", str(window)])
        fields = {}
        for key, label in (("x", "Absolute upper-left X"), ("y", "Absolute upper-left Y"),
                           ("w", "Width"), ("h", "Height")):
            m = re.search(label + r":\s+(-?\d+)", out)
            fields[key] = int(m.group(1)) if m else None
        mapped = "IsViewable" in out
        return (fields["x"], fields["y"], fields["w"], fields["h"]) if mapped else None

    def override_windows(self):
        """Ids of the mapped override-redirect windows on the root: open menus among them."""
        out = self.output(["xdotool", "search", "--onlyvisible", "--maxdepth", "1", "--name", ""])
        return {w for w in out.split()
                if "Override Redirect State: yes" in self.output(["xwininfo", "-id", w])}

    def work_area(self):
        """(x, y, width, height) the window manager leaves for windows, y downward."""
        out = self.output(["xprop", "-root", "_NET_WORKAREA"])
        nums = [int(n) for n in re.findall(r"-?\d+", out.split("=", 1)[-1])]
        if len(nums) >= 4:
            return tuple(nums[:4])
        w, h = (int(v) for v in self.size.split("x"))
        return (0, 0, w, h)

    def wait_for(self, predicate, timeout=15.0, interval=0.05):
        deadline = time.monotonic() + timeout
        while time.monotonic() < deadline:
            value = predicate()
            if value:
                return value
            time.sleep(interval)
        return predicate()

    # --- driving the pointer ------------------------------------------------------------------

    def xdotool(self, *args):
        self.run(["xdotool", *[str(a) for a in args]], check=True)

    def drag(self, start, end, steps=12, modifiers=()):
        """Presses at start, moves in steps to end, releases: a person's drag."""
        for key in modifiers:
            self.xdotool("keydown", key)
        self.xdotool("mousemove", "--sync", start[0], start[1])
        self.xdotool("mousedown", 1)
        for i in range(1, steps + 1):
            x = start[0] + (end[0] - start[0]) * i // steps
            y = start[1] + (end[1] - start[1]) * i // steps
            self.xdotool("mousemove", "--sync", x, y)
            time.sleep(0.02)
        self.xdotool("mouseup", 1)
        for key in reversed(modifiers):
            self.xdotool("keyup", key)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--size", default="1920x1080")
    parser.add_argument("command", nargs=argparse.REMAINDER)
    args = parser.parse_args()
    command = args.command[1:] if args.command[:1] == ["--"] else args.command
    if not command:
        parser.error("no command given")
    missing = missing_tools()
    if missing:
        print("xsession: missing " + ", ".join(missing) + " (scripts/setup installs them)",
              file=sys.stderr)
        return 1
    # ctest ends a test that runs too long with SIGTERM: turn it into a normal exit so that the
    # servers are stopped.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(124))
    with XSession(size=args.size) as session:
        # Measurements from inside take the X server's share from its process.
        return session.run(command, env={"XSESSION_SERVER_PID": str(session.server_pid)}).returncode


if __name__ == "__main__":
    sys.exit(main())
