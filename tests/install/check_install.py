#!/usr/bin/env python3
"""Installs the build into a temporary prefix as `make install PREFIX=…` does and checks that a
desktop finds everything where it looks, and that the installed program runs.

    check_install.py --build build --version 0.1.0
"""

import argparse
import os
import re
import subprocess
import sys
import tempfile

APP_ID = "com.tarnwick.Tarnwick"
SIZES = (16, 22, 24, 32, 48, 64, 128, 256, 512)


def png_size(path):
    with open(path, "rb") as f:
        head = f.read(24)
    if head[:8] != b"\x89PNG\r\n\x1a\n":
        return None
    return int.from_bytes(head[16:20], "big"), int.from_bytes(head[20:24], "big")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", required=True)
    parser.add_argument("--version", required=True)
    args = parser.parse_args()
    problems = []
    with tempfile.TemporaryDirectory(prefix="tw-install-") as prefix:
        subprocess.run(["cmake", "--install", args.build, "--prefix", prefix], check=True,
                       stdout=subprocess.DEVNULL)
        share = os.path.join(prefix, "share")
        expected = {
            "bin/tarnwick": None,
            "libexec/tarnwick/tarnwick-web": None,
            "share/applications/%s.desktop" % APP_ID: None,
            "share/metainfo/%s.metainfo.xml" % APP_ID: None,
            "share/mime/packages/%s.xml" % APP_ID: None,
            "share/icons/hicolor/scalable/apps/%s.svg" % APP_ID: None,
            "share/tarnwick/strings/de.json": None,
        }
        for size in SIZES:
            expected["share/icons/hicolor/%dx%d/apps/%s.png" % (size, size, APP_ID)] = size
        for path, size in expected.items():
            full = os.path.join(prefix, path)
            if not os.path.isfile(full):
                problems.append("missing " + path)
            elif size is not None and png_size(full) != (size, size):
                problems.append("%s is %s, not %dx%d" % (path, png_size(full), size, size))
        if not os.access(os.path.join(prefix, "bin/tarnwick"), os.X_OK):
            problems.append("bin/tarnwick is not executable")
        with open(os.path.join(share, "metainfo", APP_ID + ".metainfo.xml"), encoding="utf-8") as f:
            if '<release version="%s"' % args.version not in f.read():
                problems.append("the metainfo has no release of " + args.version)
        with open(os.path.join(share, "mime", "packages", APP_ID + ".xml"), encoding="utf-8") as f:
            mime = f.read()
        for glob in ("*.twkboard", "*.twkwidget", "*.twklayout"):
            if glob not in mime:
                problems.append("no MIME type for " + glob)
        # A file manager offers the program only for the types its desktop entry names.
        with open(os.path.join(share, "applications", APP_ID + ".desktop"), encoding="utf-8") as f:
            listed = [line.split("=", 1)[1].strip().split(";") for line in f
                      if line.startswith("MimeType=")]
        for declared in re.findall(r'<mime-type type="([^"]+)"', mime):
            if not listed or declared not in listed[0]:
                problems.append("the desktop entry does not open " + declared)
        env = {k: v for k, v in os.environ.items() if k not in ("DISPLAY", "WAYLAND_DISPLAY")}
        run = subprocess.run([os.path.join(prefix, "bin/tarnwick"), "--help"], env=env,
                             capture_output=True, text=True, timeout=30)
        if run.returncode != 0 or not run.stdout.startswith("tarnwick %s\n" % args.version):
            problems.append("the installed program's --help gave %d: %s" %
                            (run.returncode, (run.stdout + run.stderr)[:200]))
    for problem in problems:
        print(problem, file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
